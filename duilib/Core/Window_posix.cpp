// POSIX half of the window: there is no native window here, so nothing to pass on.
#include "duilib/Core/Window.h"

namespace mivo::duilib {

void Window::InvalidateNative(const UiRect&) {}

void Window::ReleaseNative() {}

bool Window::ScheduleArrangeNative() { return false; }

}  // namespace mivo::duilib
