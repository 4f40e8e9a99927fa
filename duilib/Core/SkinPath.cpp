#include "duilib/Core/SkinPath.h"

namespace mivo::duilib::detail {

bool AppendPathParts(const std::wstring& path, std::vector<std::wstring>& parts) {
  size_t at = 0;
  while (at <= path.size()) {
    size_t end = path.find_first_of(L"\\/", at);
    if (end == std::wstring::npos) end = path.size();
    std::wstring part = path.substr(at, end - at);
    at = end + 1;
    if (part.empty() || part == L".") continue;
    if (part == L"..") {
      if (parts.empty()) return false;
      parts.pop_back();
    } else if (part.find_last_not_of(L". ") == std::wstring::npos) {
      return false;
    } else {
      parts.push_back(part);
    }
  }
  return true;
}

}  // namespace mivo::duilib::detail
