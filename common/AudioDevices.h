#pragma once
// The names of the sound devices (Windows only): the wave output devices (speakers, headsets)
// and the wave input devices (microphones), in the system's device order.
// Names come from the devices' capabilities and are at most 31 characters (longer names are
// cut by the system). The wave mapper is not listed. Thread-safe; nothing throws.
#if defined(_WIN32)
#include <vector>

#include "toolkit/CString.h"
#include "toolkit/export.h"

namespace mivo::common {

// Replaces both lists. true also when there are no devices (both lists empty); false, with
// both lists empty, when the system cannot be asked.
MIVO_COMMON_API bool GetAudioDevices(std::vector<CString>& outputs, std::vector<CString>& inputs);

}  // namespace mivo::common
#endif
