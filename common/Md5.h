#pragma once
#include <string>

#include "toolkit/export.h"

namespace mivo::common {

// MD5 of the bytes as 32 lower-case hexadecimal digits; it names the update folder of an
// installation, so its form must never change.
MIVO_COMMON_API std::string MakeMD5Value(const char* data, unsigned int length);

}  // namespace mivo::common
