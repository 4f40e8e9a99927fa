#pragma once
// What the framework shares process-wide: where the skins are, the skin's class table (named
// attribute lists that the "class" attribute applies), its fonts and named text colours, the
// string table that text ids resolve through, and the DPI scale. One UI thread uses it;
// nothing here is locked.
#include <cstdint>
#include <functional>
#include <map>
#include <string>

#include "toolkit/export.h"

namespace mivo::duilib {

// A font as a skin describes it; the window layer makes the GDI font from it.
struct FontInfo {
  std::wstring name;
  int size = 12;  // pixels before DPI scaling
  bool bold = false;
  bool underline = false;
  bool italic = false;
  friend bool operator==(const FontInfo&, const FontInfo&) = default;
};

class MIVO_COMMON_API GlobalManager {
 public:
  // Where the skins are: `resourceRoot` is a folder (a backslash is added when it has none) and
  // `skinFolder` the skin in use below it ("skins\default"); either may
  // be written with "/" for "\".
  static void Startup(const std::wstring& resourceRoot, const std::wstring& skinFolder);
  static const std::wstring& GetResourceRoot();
  static const std::wstring& GetSkinFolder();
  // Root, skin folder and a backslash: where a window's own skin folder lies.
  static std::wstring GetResourcePath();

  // A class: a name for an attribute list written  name="value" name2="value2" .
  static void AddClass(const std::wstring& name, const std::wstring& attributeList);
  // The list, or "" for an unknown class.
  static std::wstring GetClassAttributes(const std::wstring& name);
  static void RemoveAllClasses();

  // Fonts by the number that the "font" attribute of a label names; a later one replaces an
  // earlier one of the same number.
  static void AddFont(int id, const FontInfo& font);
  static const FontInfo* GetFont(int id);  // null for an unknown number
  static void RemoveAllFonts();

  // Colours by name ("TextColor" in a skin): a later one replaces an earlier one.
  static void AddTextColor(const std::wstring& name, const std::wstring& value);
  static std::wstring GetTextColor(const std::wstring& name);  // "" for an unknown name
  static void RemoveAllTextColors();
  // A colour as skins name one: an entry of the TextColor table, else a colour value as
  // attr::ParseColor reads it. 0 (transparent) for anything else.
  static uint32_t ResolveColor(const std::wstring& name);

  // Text ids ("STRID_...") become text through the resolver; without one the id stays.
  static void SetTextResolver(std::function<std::wstring(const std::wstring&)> resolver);
  static std::wstring GetTextById(const std::wstring& id);

  // With scaling on, pixel values from skins are scaled by `percent` (100: unchanged).
  static void SetDpiScale(bool enabled, int percent);
  static bool IsDpiScaleEnabled();
  static int GetDpiScalePercent();
  // value × percent ÷ 100, rounded half away from zero like MulDiv.
  static int ScaleByDpi(int value);
};

}  // namespace mivo::duilib
