// A module for MivoStart.exe. The library's functions live in the executable that loads the
// module: include "common/common.h", link Mivo::Sdk, and call them as if they were linked in.
#include <windows.h>

#include <cstring>
#include <memory>
#include <string>

#include "common/common.h"

#define SAMPLE_EXPORT extern "C" __declspec(dllexport)

namespace {

// The message this module takes for itself before the main loop dispatches it.
constexpr UINT kSampleMessage = WM_APP + 0x51;
int g_handled = 0;

int CopyOut(const std::string& text, char* out, unsigned outSize) {
  if (!out || outSize <= text.size()) return -1;
  std::memcpy(out, text.c_str(), text.size() + 1);
  return static_cast<int>(text.size());
}

}  // namespace

// Offered every message of the main loop once the module has registered its instance;
// non-zero means handled, and the message goes no further.
SAMPLE_EXPORT int MyPreTranslateMessage(MSG* message) {
  if (!message || message->message != kSampleMessage) return 0;
  ++g_handled;
  return 1;
}

SAMPLE_EXPORT int SampleHandledCount() { return g_handled; }

// The MD5 of the text's UTF-8 form, worked out twice (the MD5 family and the crypto
// factory) and written as "<32 hex digits> <UTF-8 length>". The length of the result, or
// -1 when the two digests disagree or `out` is too small.
SAMPLE_EXPORT int SampleDigest(const wchar_t* text, char* out, unsigned outSize) {
  const std::string utf8 = mivo::common::CString_to_utf8(CString(text));
  const std::string md5 = mivo::common::GetMD5(utf8);

  // Objects from the factory are ours to delete; the virtual destructor frees them inside
  // MivoStart.exe, where they were made.
  std::unique_ptr<mivo::common::IDigest> digest(
      mivo::common::CryptoFactory::instance()->createDigest(mivo::common::kDigestMD5));
  if (!digest) return -1;
  digest->Update(utf8.data(), static_cast<unsigned>(utf8.size()));
  if (mivo::common::bin2hex(digest->Final()) != md5) return -1;

  // Windows format conventions: %S is narrow text in a wide format.
  CString line;
  line.Format(L"%S %d", md5.c_str(), static_cast<int>(utf8.size()));
  return CopyOut(mivo::common::CString_to_utf8(line), out, outSize);
}

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved) {
  if (reason == DLL_PROCESS_ATTACH) {
    mivo::common::RegisterMsgInstance(instance);
  } else if (reason == DLL_PROCESS_DETACH && reserved == nullptr) {
    // Only on FreeLibrary: when the process ends, the executable's tables are already gone.
    mivo::common::UnRegisterMsgInstance(instance);
  }
  return TRUE;
}
