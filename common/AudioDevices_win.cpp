// Lists the wave devices through winmm's capability queries.
#include <windows.h>

#include <mmsystem.h>

#include "common/AudioDevices.h"

namespace mivo::common {
namespace {

// A device that vanishes between the count and the query fails the whole list: a list with a
// hole would shift every later index.
template <typename Caps, typename Query>
bool ListNames(UINT count, Query query, std::vector<CString>& names) {
  for (UINT i = 0; i < count; ++i) {
    Caps caps = {};
    if (query(i, &caps, sizeof(caps)) != MMSYSERR_NOERROR) return false;
    names.push_back(CString(caps.szPname));
  }
  return true;
}

}  // namespace

bool GetAudioDevices(std::vector<CString>& outputs, std::vector<CString>& inputs) {
  outputs.clear();
  inputs.clear();
  try {
    if (ListNames<WAVEOUTCAPSW>(waveOutGetNumDevs(), waveOutGetDevCapsW, outputs) &&
        ListNames<WAVEINCAPSW>(waveInGetNumDevs(), waveInGetDevCapsW, inputs))
      return true;
  } catch (...) {
  }
  outputs.clear();
  inputs.clear();
  return false;
}

}  // namespace mivo::common
