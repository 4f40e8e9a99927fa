#pragma once
// Encoding names and Windows code-page numbers, both ways.
#include <map>
#include <string>

#include "toolkit/export.h"

namespace mivo::common {

// Fills nameToCodePage with the lower-case .NET names of the Windows code-page table plus
// "utf8", "utf-8" and "gbk" (a name listed twice keeps its later number), then
// codePageToName from it in ascending name order (the alphabetically last name of a number
// wins), and finally fixes 65001 to "utf-8" and 936 to "gb2312". Both maps are cleared first.
MIVO_COMMON_API void InitCodepageMap(std::map<std::string, int>& nameToCodePage,
                                     std::map<int, std::string>& codePageToName);

}  // namespace mivo::common
