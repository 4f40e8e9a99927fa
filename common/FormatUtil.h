#pragma once
// Sizes, rates and durations as display text.
#include "toolkit/CString.h"
#include "toolkit/export.h"

namespace mivo::common {

// "%0.1f GB" / "MB" / "KB" scaled in single precision, or "%I64u B" below 1024.
MIVO_COMMON_API CString GetFormatSizeString(ULONGLONG bytes);
// The same ladder for a rate: "GB/S", "MB/S", "KB/S", "%0.1f B/S".
MIVO_COMMON_API CString GetFormatSizeString(float bytesPerSecond);
// Hours, minutes and seconds with the language strings "STRID_SESSION_HOUR",
// "STRID_SESSION_MINUTE" and "STRID_SESSION_SECOND" behind each number: the hours appear
// from one hour on, the minutes from one minute on (also when zero inside an hour), the
// seconds always. No separator is added; the language strings carry their own spacing.
MIVO_COMMON_API CString GetFormatTimeString(ULONGLONG seconds);

}  // namespace mivo::common
