#include "duilib/Core/Control.h"

#include <algorithm>
#include <cwchar>
#include <cwctype>
#include <vector>

#include "duilib/Core/AttributeValue.h"
#include "duilib/Core/DpiScale.h"
#include "duilib/Core/GlobalManager.h"

namespace mivo::duilib {

namespace {

// The index of `value` in `keywords`, or -1.
template <size_t N>
int KeywordIndex(const std::wstring& value, const wchar_t* const (&keywords)[N]) {
  for (size_t i = 0; i < N; ++i)
    if (value == keywords[i]) return static_cast<int>(i);
  return -1;
}

// The state named by the attribute among four names, or -1.
int StateOf(const std::wstring& name, const wchar_t* normal, const wchar_t* hot, const wchar_t* pushed,
            const wchar_t* disabled) {
  const wchar_t* const names[] = {normal, hot, pushed, disabled};
  return KeywordIndex(name, names);
}

// A class's attributes may name other classes. A class already being applied (a loop) is
// passed over, and one "class" attribute applies at most kMaxClassUses classes in all, so a
// damaged skin can neither recurse nor fan out without end.
constexpr int kMaxClassUses = 64;
struct ClassNesting {
  std::vector<std::wstring> open;  // outermost first
  int applied = 0;
};
thread_local ClassNesting t_classes;

// "#AARRGGBB": the first character dropped, the rest hexadecimal, red and blue exchanged.
uint32_t ParsePenColor(const std::wstring& value) {
  if (value.empty()) return 0xFFFFFFFFu;
  uint32_t argb = static_cast<uint32_t>(std::wcstoul(value.c_str() + 1, nullptr, 16));
  return (argb & 0xFF00FF00u) | ((argb & 0xFFu) << 16) | ((argb >> 16) & 0xFFu);
}

}  // namespace

void Control::ApplyAttributeList(const std::wstring& list) {
  // name="value" pairs separated by blanks; a value runs to its closing quote.
  size_t at = 0;
  while (at < list.size()) {
    while (at < list.size() && std::iswspace(list[at])) ++at;
    size_t equals = list.find(L'=', at);
    if (equals == std::wstring::npos || equals + 1 >= list.size() || list[equals + 1] != L'"') return;
    size_t close = list.find(L'"', equals + 2);
    if (close == std::wstring::npos) return;
    std::wstring name = list.substr(at, equals - at);
    while (!name.empty() && std::iswspace(name.back())) name.pop_back();
    ApplySkinAttribute(name, list.substr(equals + 2, close - equals - 2));
    at = close + 1;
  }
}

void Control::ApplySkinAttribute(const std::wstring& name, const std::wstring& value) {
  // "renderoffset" scales itself; it is kept all the same, to follow a change of scale.
  const bool scaled = IsScaledAttribute(name);
  if (scaled || name == L"renderoffset") {
    auto kept =
        std::find_if(m_skinSizes.begin(), m_skinSizes.end(), [&name](const auto& size) { return size.first == name; });
    if (kept == m_skinSizes.end())
      m_skinSizes.emplace_back(name, value);
    else
      kept->second = value;
  }
  if (scaled && GlobalManager::IsDpiScaleEnabled())
    SetAttribute(name, ScaleAttributeValue(value, GlobalManager::GetDpiScalePercent()));
  else
    SetAttribute(name, value);
}

void Control::RescaleForDpi() {
  // A copy: applying an attribute may not add to the list, but the list must not move under us.
  const auto sizes = m_skinSizes;
  for (const auto& [name, value] : sizes) ApplySkinAttribute(name, value);
}

void Control::SetAttribute(const std::wstring& name, const std::wstring& value) {
  static const wchar_t* const kHorAlign[] = {L"left", L"center", L"right"};
  static const wchar_t* const kVerAlign[] = {L"top", L"center", L"bottom"};
  static const wchar_t* const kStates[] = {L"normal", L"hot", L"pushed", L"disabled"};
  static const wchar_t* const kCursors[] = {L"arrow", L"hand", L"ibeam"};
  static const wchar_t* const kImageLayouts[] = {L"compress", L"cut", L"scale"};
  int index;

  if (name == L"class") {
    // a fresh "class" attribute starts a new count
    if (t_classes.open.empty()) t_classes.applied = 0;
    size_t at = 0;
    while (at <= value.size()) {
      size_t blank = value.find(L' ', at);
      std::wstring one = value.substr(at, blank == std::wstring::npos ? std::wstring::npos : blank - at);
      if (!one.empty() && t_classes.applied < kMaxClassUses &&
          std::find(t_classes.open.begin(), t_classes.open.end(), one) == t_classes.open.end()) {
        ++t_classes.applied;
        t_classes.open.push_back(one);
        ApplyAttributeList(GlobalManager::GetClassAttributes(one));
        t_classes.open.pop_back();
      }
      if (blank == std::wstring::npos) break;
      at = blank + 1;
    }
  } else if (name == L"halign") {
    if ((index = KeywordIndex(value, kHorAlign)) >= 0) SetHorAlignType(static_cast<HorAlignType>(index));
  } else if (name == L"valign") {
    if ((index = KeywordIndex(value, kVerAlign)) >= 0) SetVerAlignType(static_cast<VerAlignType>(index));
  } else if (name == L"margin") {
    SetMargin(attr::ParseRect(value));
  } else if (name == L"bkcolor" || name == L"bkcolor1") {
    size_t first = 0;
    while (first < value.size() && static_cast<unsigned>(value[first]) <= 32) ++first;
    m_bkColor = value.substr(first);
    Invalidate();
  } else if ((index = StateOf(name, L"normalcolor", L"hotcolor", L"pushedcolor", L"disabledcolor")) >= 0) {
    SetStateColor(static_cast<ControlStateType>(index), value);
  } else if (name == L"bordercolor") {
    m_borderColor = value;
    Invalidate();
  } else if (name == L"isgradient") {
    m_gradient.enabled = attr::ParseBool(value);
  } else if (name == L"begingradientcolor") {
    m_gradient.beginColor = value;
  } else if (name == L"endgradientcolor") {
    m_gradient.endColor = value;
  } else if (name == L"isgradientvertical") {
    m_gradient.vertical = attr::ParseBool(value);
    Invalidate();
  } else if (name == L"nSteps") {
    m_gradient.steps = attr::ParseInt(value);
    Invalidate();
  } else if (name == L"bordersize") {
    if (value.find(L',') == std::wstring::npos) {
      m_borderSize = attr::ParseInt(value);
      m_sideBorderSize = UiRect{};
    } else {
      m_sideBorderSize = attr::ParseRect(value);
    }
    Invalidate();
  } else if (name == L"leftbordersize") {
    m_sideBorderSize.left = attr::ParseInt(value);
  } else if (name == L"topbordersize") {
    m_sideBorderSize.top = attr::ParseInt(value);
  } else if (name == L"rightbordersize") {
    m_sideBorderSize.right = attr::ParseInt(value);
  } else if (name == L"bottombordersize") {
    m_sideBorderSize.bottom = attr::ParseInt(value);
  } else if (name == L"borderround") {
    m_borderRound = attr::ParsePair(value);
  } else if (name == L"drawgdiplus") {
    // accepted and ignored: borders that need GDI+ (rounded ones) always get it
  } else if (name == L"drawgdipulsround") {  // spelled so in every skin
    m_drawGdiplusRound = attr::ParseBool(value);
  } else if (name == L"gdipenroundcolor") {
    m_gdiPenRoundColor = ParsePenColor(value);
  } else if (name == L"width") {
    SetFixedWidth(attr::ParseSize(value));
  } else if (name == L"height") {
    SetFixedHeight(attr::ParseSize(value));
  } else if (name == L"maxwidth") {
    SetMaxWidth(attr::ParseSize(value));
  } else if (name == L"maxheight") {
    SetMaxHeight(attr::ParseSize(value));
  } else if (name == L"bkimage") {
    m_bkImage = value;
    RepaintOrArrangeForImage();
  } else if (name == L"minwidth") {
    SetMinWidth(attr::ParseInt(value));
  } else if (name == L"minheight") {
    SetMinHeight(attr::ParseInt(value));
  } else if (name == L"name") {
    SetName(value);
  } else if (name == L"tooltiptext") {
    m_toolTipText = value;
  } else if (name == L"tooltiptextid") {
    m_toolTipTextId = value;
    m_toolTipText = GlobalManager::GetTextById(value);
  } else if (name == L"dataid") {
    m_dataId = value;
  } else if (name == L"enabled") {
    SetEnabled(attr::ParseBool(value));
  } else if (name == L"mouse") {
    m_mouseEnabled = attr::ParseBool(value);
  } else if (name == L"keyboard") {
    m_keyboardEnabled = attr::ParseBool(value);
  } else if (name == L"visible") {
    SetVisible(attr::ParseBool(value));
  } else if (name == L"fadevisible") {
    m_fadeVisible = attr::ParseBool(value);
    SetFadeVisible(m_fadeVisible);
  } else if (name == L"float") {
    SetFloat(attr::ParseBool(value));
  } else if (name == L"menu") {
    m_contextMenu = attr::ParseBool(value);
  } else if (name == L"nofocus") {
    m_noFocus = true;  // whatever the value says
  } else if (name == L"alpha") {
    m_alpha = attr::ParseInt(value);
    Invalidate();
  } else if (name == L"state") {
    if ((index = KeywordIndex(value, kStates)) >= 0) {
      if (index == kControlStateNormal) m_hotAlpha = 0;
      if (index == kControlStateHot) m_hotAlpha = 255;
      SetState(static_cast<ControlStateType>(index));
    }
  } else if (name == L"cursortype") {
    if ((index = KeywordIndex(value, kCursors)) >= 0) m_cursorType = static_cast<CursorType>(index);
  } else if ((index = StateOf(name, L"normalimage", L"hotimage", L"pushedimage", L"disabledimage")) >= 0) {
    SetStateImage(static_cast<ControlStateType>(index), value);
  } else if ((index = StateOf(name, L"forenormalimage", L"forehotimage", L"forepushedimage", L"foredisabledimage")) >=
             0) {
    SetForeStateImage(static_cast<ControlStateType>(index), value);
  } else if (name == L"renderoffset") {
    UiSize offset = attr::ParsePair(value);
    if (GlobalManager::IsDpiScaleEnabled()) {
      offset.cx = GlobalManager::ScaleByDpi(offset.cx);
      offset.cy = GlobalManager::ScaleByDpi(offset.cy);
    }
    m_renderOffset = offset;
    Invalidate();
  } else if (name == L"fadealpha") {
    m_fade.alpha = attr::ParseBool(value);
  } else if (name == L"fadehot") {
    m_fade.hot = attr::ParseBool(value);
  } else if (name == L"fadewidth") {
    m_fade.width = attr::ParseBool(value);
  } else if (name == L"fadeheight") {
    m_fade.height = attr::ParseBool(value);
  } else if (name == L"fadeinoutxfromleft" || name == L"fadeinoutxfromright") {
    m_fade.inOutX = attr::ParseBool(value);
    m_fade.inOutXDirection = name == L"fadeinoutxfromleft" ? 0 : 1;
  } else if (name == L"fadeinoutyfromtop" || name == L"fadeinoutyfrombottom") {
    m_fade.inOutY = attr::ParseBool(value);
    m_fade.inOutYDirection = name == L"fadeinoutyfromtop" ? 0 : 1;
  } else if (name == L"gifmaxplaylimit" || name == L"gifstoptype") {
    // accepted and ignored: images are drawn from their first frame
  } else if (name == L"emptycenter") {
    m_emptyCenter = attr::ParseBool(value);
  } else if (name == L"imagelayout") {
    if ((index = KeywordIndex(value, kImageLayouts)) >= 0) m_imageLayout = index;
  }
}

void Control::SetStateColor(ControlStateType state, const std::wstring& color) {
  if (state == kControlStateHot) m_fade.hot = true;
  if (m_stateColors[state] == color) return;
  m_stateColors[state] = color;
  Invalidate();
}

void Control::SetStateImage(ControlStateType state, const std::wstring& image) {
  if (state == kControlStateHot) m_fade.hot = true;
  m_images[kImageSetBackground][state] = image;
  RepaintOrArrangeForImage();
}

void Control::SetForeStateImage(ControlStateType state, const std::wstring& image) {
  if (state == kControlStateHot) m_fade.hot = true;
  m_images[kImageSetForeground][state] = image;
  Invalidate();
}

void Control::SetEnabled(bool enabled) {
  if (m_enabled == enabled) return;
  m_enabled = enabled;
  m_state = enabled ? kControlStateNormal : kControlStateDisabled;
  m_pressed = false;  // its button-up will not come to a disabled control
  Invalidate();
}

void Control::RepaintOrArrangeForImage() {
  if (GetFixedWidth() == DUI_LENGTH_AUTO || GetFixedHeight() == DUI_LENGTH_AUTO)
    ArrangeAncestor();
  else
    Invalidate();
}

}  // namespace mivo::duilib
