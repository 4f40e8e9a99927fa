#pragma once
// The shell's file and folder pickers (Windows only).
#if defined(_WIN32)
#include "toolkit/CString.h"
#include "toolkit/Wnd.h"
#include "toolkit/export.h"
#include "toolkit/platform.h"

namespace mivo::common {

// open non-zero: an "Open" dialog, otherwise "Save As". Returns the chosen path or "".
// The owner is `parent`'s window when `parent` is given, else the active window.
MIVO_COMMON_API CString OpenFileDialog(int open, const wchar_t* defExt, const wchar_t* fileName, const wchar_t* filter,
                                       const wchar_t* title, unsigned long flags, CWnd* parent);
// Folder picker titled with "STRID_SESSION_FOLDER_TITLE", starting at `start`; "" if cancelled.
MIVO_COMMON_API CString BrowseFolder(HWND owner, const CString& start);

}  // namespace mivo::common
#endif
