#pragma once
// Telling the user something before any window exists: a message box with the information
// icon on Windows; on Linux a line on standard error ("caption: text").
#include "toolkit/CString.h"

namespace mivo::common {

void ShowInformationBox(const CString& text, const CString& caption);

}  // namespace mivo::common
