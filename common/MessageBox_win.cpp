// An information box is the system's message box.
#include <windows.h>

#include "common/MessageBox.h"

namespace mivo::common {

void ShowInformationBox(const CString& text, const CString& caption) {
  MessageBoxW(nullptr, text, caption, MB_OK | MB_ICONINFORMATION);
}

}  // namespace mivo::common
