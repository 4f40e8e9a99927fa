#pragma once
// Unicode text on the Windows clipboard (CF_UNICODETEXT), for copy and paste in the client.
// Windows only: there is no clipboard half for Linux, and the declarations are not there.
//
// Another process may hold the clipboard open for a moment (clipboard managers, remote
// desktop): opening it is retried every kClipboardRetryMs for up to kClipboardWaitMs, and
// then the call gives up. A call can therefore block its thread for about half a second.
// The clipboard belongs to the whole session: calls from several threads at once are safe,
// each one waits its turn. Nothing here throws.
#if defined(_WIN32)
#include "toolkit/CString.h"
#include "toolkit/export.h"
#include "toolkit/platform.h"

namespace mivo::common {

constexpr unsigned kClipboardWaitMs = 500;
constexpr unsigned kClipboardRetryMs = 10;

// Replaces the clipboard's content with `text` (up to its first zero character). `owner`
// becomes the clipboard's owner window; null leaves it without one. False when the clipboard
// could not be opened in time or the text could not be stored; the content is then the
// previous one or empty.
MIVO_COMMON_API bool CopyTextToClipborder(const CString& text, HWND owner = nullptr);

// Reads the clipboard's Unicode text (the system converts ANSI and OEM text into it). True
// when the clipboard could be read: `text` is then its text, "" when it holds none. False,
// with `text` emptied, when the clipboard stayed busy or its content could not be read.
MIVO_COMMON_API bool GetTextFromClipborder(CString& text, HWND owner = nullptr);
// The same for a caller that does not need to tell "busy" from "no text": "" for both.
MIVO_COMMON_API CString GetTextFromClipborder(HWND owner = nullptr);

}  // namespace mivo::common
#endif
