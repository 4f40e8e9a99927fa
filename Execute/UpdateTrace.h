#pragma once
// "update_log.txt" in the current folder: a start line with the local time, the update
// logic's own lines, a stop line. UTF-8, "\r\n" line ends, appended run after run.
#include "toolkit/CString.h"

// Raises CFileException* when the log cannot be created.
void OpenUpdateTrace();
// Writes the text as UTF-8, exactly its bytes; nothing when the log is closed.
void WriteUpdateTrace(const CString& text);
void CloseUpdateTrace();
