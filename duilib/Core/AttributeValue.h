#pragma once
// How skin attribute values are read. Nothing here fails: what is not a number reads as
// far as its leading digits go, or as 0.
#include <cstdint>
#include <string>

#include "duilib/Core/UiTypes.h"
#include "toolkit/export.h"

namespace mivo::duilib::attr {

// Exactly "true".
MIVO_COMMON_API bool ParseBool(const std::wstring& value);
// A decimal integer from the start of `value` (an optional sign, then digits).
MIVO_COMMON_API int ParseInt(const std::wstring& value);
// "stretch" -1, "auto" -2, else ParseInt.
MIVO_COMMON_API int ParseSize(const std::wstring& value);
// Four integers left, top, right, bottom; after each number exactly one character (normally
// a comma) is skipped.
MIVO_COMMON_API UiRect ParseRect(const std::wstring& value);
// Two integers with one separator character between them.
MIVO_COMMON_API UiSize ParsePair(const std::wstring& value);
// A colour written "#AARRGGBB", "#RRGGBB", or as bare hex "AARRGGBB" / "RRGGBB" (the skins'
// state colours are written "d8ebeb"), or one of a few names ("white", "black", "transparent",
// ...; any letter case). Six digits are opaque. Blanks around the value are ignored; false
// for anything else, with `argb` left alone.
MIVO_COMMON_API bool ParseColor(const std::wstring& value, uint32_t& argb);

}  // namespace mivo::duilib::attr
