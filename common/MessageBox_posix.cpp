// Without a desktop, an information box is written to standard error.
#include <cstdio>

#include "common/Conversion.h"
#include "common/MessageBox.h"

namespace mivo::common {

void ShowInformationBox(const CString& text, const CString& caption) {
  std::fprintf(stderr, "%s: %s\n", CString_to_utf8(caption).c_str(), CString_to_utf8(text).c_str());
}

}  // namespace mivo::common
