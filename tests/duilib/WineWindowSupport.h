#pragma once
// What the window tests under Wine share: fixture images and the rendering read back with
// GDI+, the program's folder, and a message pump that waits for a condition.
#include <windows.h>
// GDI+ needs the COM stream interfaces that WIN32_LEAN_AND_MEAN leaves out
#include <objidl.h>

#include <gdiplus.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace wine_window {

// GDI+ started once for the test program and left running: the framework's images live in it too.
inline bool StartGdiplus() {
  static ULONG_PTR token = 0;
  Gdiplus::GdiplusStartupInput input;
  return token || Gdiplus::GdiplusStartup(&token, &input, nullptr) == Gdiplus::Ok;
}

inline bool SavePng(Gdiplus::Bitmap& bitmap, const std::wstring& path) {
  UINT count = 0, bytes = 0;
  Gdiplus::GetImageEncodersSize(&count, &bytes);
  std::vector<unsigned char> buffer(bytes);
  auto* encoders = reinterpret_cast<Gdiplus::ImageCodecInfo*>(buffer.data());
  if (bytes == 0 || Gdiplus::GetImageEncoders(count, bytes, encoders) != Gdiplus::Ok) return false;
  for (UINT i = 0; i < count; ++i)
    if (std::wstring(encoders[i].MimeType) == L"image/png")
      return bitmap.Save(path.c_str(), &encoders[i].Clsid, nullptr) == Gdiplus::Ok;
  return false;
}

// An 8x8 image of one colour inside a frame of another, two pixels wide.
inline bool WriteFramedPng(const std::wstring& path, Gdiplus::ARGB frame, Gdiplus::ARGB fill, int side = 8,
                           int border = 2) {
  Gdiplus::Bitmap bitmap(side, side, PixelFormat32bppARGB);
  for (int y = 0; y < side; ++y)
    for (int x = 0; x < side; ++x) {
      const bool edge = x < border || y < border || x >= side - border || y >= side - border;
      bitmap.SetPixel(x, y, Gdiplus::Color(edge ? frame : fill));
    }
  return SavePng(bitmap, path);
}

inline std::wstring ProgramFolder() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  std::wstring folder = path;
  return folder.substr(0, folder.find_last_of(L'\\') + 1);
}

inline bool PumpUntil(const std::function<bool()>& done, DWORD timeoutMs = 5000) {
  const DWORD start = GetTickCount();
  for (;;) {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&msg);
      DispatchMessageW(&msg);
    }
    if (done()) return true;
    if (GetTickCount() - start > timeoutMs) return false;
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
  }
}

// The rendering, read back: RGB at a point, and the darkest and brightest RGB sums within a
// rectangle.
struct Picture {
  explicit Picture(const std::wstring& path) : bitmap(path.c_str()) {}
  uint32_t At(int x, int y) {
    Gdiplus::Color color;
    bitmap.GetPixel(x, y, &color);
    return color.GetValue() & 0xFFFFFF;
  }
  int DarkestIn(int left, int top, int right, int bottom) { return Extreme(left, top, right, bottom, false); }
  int BrightestIn(int left, int top, int right, int bottom) { return Extreme(left, top, right, bottom, true); }
  int Extreme(int left, int top, int right, int bottom, bool brightest) {
    int found = brightest ? 0 : 3 * 255;
    for (int y = top; y < bottom; ++y)
      for (int x = left; x < right; ++x) {
        const uint32_t rgb = At(x, y);
        const int sum = static_cast<int>((rgb >> 16) + ((rgb >> 8) & 0xFF) + (rgb & 0xFF));
        found = brightest ? std::max(found, sum) : std::min(found, sum);
      }
    return found;
  }
  Gdiplus::Bitmap bitmap;
};

}  // namespace wine_window
