// A module in miniature for the module manager's tests, built three times: one that handles
// key-down messages (MSG_MODULE_VERDICT 1), one that lets them pass (0), and one without the
// hook (MSG_MODULE_NO_HOOK). Each counts how often it was asked.
#include "toolkit/platform.h"

#if defined(_WIN32)
#define MSG_MODULE_EXPORT extern "C" __declspec(dllexport)
#else
#define MSG_MODULE_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace {
int g_asked = 0;
}

#if !defined(MSG_MODULE_NO_HOOK)
MSG_MODULE_EXPORT int MyPreTranslateMessage(MSG* message) {
  ++g_asked;
  return message && message->message == 0x0100 ? MSG_MODULE_VERDICT : 0;  // WM_KEYDOWN
}
#endif

MSG_MODULE_EXPORT int AskedCount() { return g_asked; }
