// POSIX half of the animations: no timer manager here, so animations end at once.
#include "duilib/Core/Animation.h"

namespace mivo::duilib {

AnimationTicker* PlatformAnimationTicker() { return nullptr; }

}  // namespace mivo::duilib
