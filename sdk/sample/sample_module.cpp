// A module for MivoStart.exe. The library's functions live in the executable that loads the
// module: include "common/common.h", link Mivo::Sdk, and call them as if they were linked in.
// Its entry points have the form the kit's host calls (bin/MivoStart.exe MODULE ENTRY=ARGUMENT):
// int ENTRY(const wchar_t* argument, char* out, unsigned outSize), UTF-8 text into `out`, its
// length returned, or a negative number for failure.
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

namespace {

// Counts what the matcher reports; it calls back inside Feed, on this thread.
class MatchCounter : public mivo::common::IMatchCallBack {
 public:
  void OnMatch(int, unsigned long long) override { ++count; }
  int count = 0;
};

}  // namespace

// How often the words occur in the text, any case, overlaps included, the text fed in two halves
// as it would come from a stream. The argument is "word|word...:text"; -1 when a word is empty.
SAMPLE_EXPORT int SampleCountWords(const wchar_t* argument, char* out, unsigned outSize) {
  const std::wstring all = argument ? argument : L"";
  const size_t colon = all.find(L':');
  if (colon == std::wstring::npos) return -1;
  mivo::common::CPatternMatcher matcher;
  int id = 0;
  for (size_t start = 0; start <= colon;) {
    size_t bar = all.find(L'|', start);
    if (bar == std::wstring::npos || bar > colon) bar = colon;
    if (!matcher.AddPattern(all.data() + start, bar - start, id++, true)) return -1;
    start = bar + 1;
  }
  MatchCounter counter;
  const std::wstring body = all.substr(colon + 1);
  const size_t half = body.size() / 2;
  matcher.Feed(body.data(), half, &counter);
  matcher.Feed(body.data() + half, body.size() - half, &counter);
  return CopyOut(std::to_string(counter.count), out, outSize);
}

// Puts the text on the clipboard and reads it back: "same" when it comes back unchanged; -1 when
// the clipboard was busy or gave something else.
SAMPLE_EXPORT int SampleClipboardRoundTrip(const wchar_t* argument, char* out, unsigned outSize) {
  const CString text(argument ? argument : L"");
  CString back;
  if (!mivo::common::CopyTextToClipborder(text) || !mivo::common::GetTextFromClipborder(back) || back != text)
    return -1;
  return CopyOut("same", out, outSize);
}

// How many messages MyPreTranslateMessage took so far.
SAMPLE_EXPORT int SampleHandledCount(const wchar_t*, char* out, unsigned outSize) {
  return CopyOut(std::to_string(g_handled), out, outSize);
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
