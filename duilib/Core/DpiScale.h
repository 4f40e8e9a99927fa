#pragma once
// Skins are written in pixels at 100%; at another scaling every size attribute is scaled as it
// is applied. A control remembers the values it was given as written, so that a change of
// scaling while the window is open applies them again at the new scale rather than scaling
// scaled values (which would drift by rounding).
#include <string>

#include "toolkit/export.h"

namespace mivo::duilib {

// The scaling of `dpi` dots per inch, in percent of 96.
MIVO_COMMON_API int DpiPercent(int dpi);
// Whether `name` is an attribute measured in pixels ("width", "margin", "padding", ...).
MIVO_COMMON_API bool IsScaledAttribute(const std::wstring& name);
// `value` with every integer in it scaled by `percent` (rounded half away from zero, as
// GlobalManager::ScaleByDpi does) and everything else kept: separators, "auto", "stretch".
// A size that is -1 or -2 on its own (stretch and auto written as numbers) stays.
MIVO_COMMON_API std::wstring ScaleAttributeValue(const std::wstring& value, int percent);

}  // namespace mivo::duilib
