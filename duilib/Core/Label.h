#pragma once
// A control that shows a line (or a few lines) of text. Written over its base class so the same
// text exists both on a plain control (Label) and on a box that holds children (LabelBox).
#include <array>
#include <cstdint>
#include <string>

#include "duilib/Core/AttributeValue.h"
#include "duilib/Core/Box.h"
#include "duilib/Core/Control.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/UiTypes.h"
#include "duilib/Render/IRender.h"
#include "duilib/Render/TextFormat.h"

namespace mivo::duilib {

// GDI+ text-rendering hints, in the order of Gdiplus::TextRenderingHint.
enum TextRenderingHintType : int {
  kTextRenderingHintSystemDefault = 0,
  kTextRenderingHintSingleBitPerPixelGridFit = 1,
  kTextRenderingHintSingleBitPerPixel = 2,
  kTextRenderingHintAntiAliasGridFit = 3,
  kTextRenderingHintAntiAlias = 4,
  kTextRenderingHintClearTypeGridFit = 5,
};

template <typename InheritType = Control>
class LabelTemplate : public InheritType {
 public:
  using InheritType::InheritType;

  // A label starts as one line, left-aligned and centred vertically: what a caption next to
  // another control wants without any "align" attribute.
  static constexpr uint32_t kDefaultTextStyle = DUI_DT_VCENTER | DUI_DT_SINGLELINE;

  void SetAttribute(const std::wstring& name, const std::wstring& value) override {
    int state;
    if (name == L"align") {
      ApplyAlign(value);
    } else if (name == L"endellipsis") {
      SetTextStyleBit(DUI_DT_END_ELLIPSIS, attr::ParseBool(value));
    } else if (name == L"linelimit") {
      SetLineLimit(attr::ParseBool(value));
    } else if (name == L"text") {
      SetText(value);
    } else if (name == L"textid") {
      SetTextId(value);
    } else if (name == L"font") {
      SetFont(attr::ParseInt(value));
    } else if ((state = TextColorState(name)) >= 0) {
      SetStateTextColor(static_cast<ControlStateType>(state), value);
    } else if (name == L"textpadding") {
      SetTextPadding(attr::ParseRect(value));
    } else if (name == L"singleline") {
      SetTextStyleBit(DUI_DT_SINGLELINE, attr::ParseBool(value));
    } else if (name == L"TextRenderingHint") {
      static const wchar_t* const kHints[] = {
          L"TextRenderingHintSystemDefault",     L"TextRenderingHintSingleBitPerPixelGridFit",
          L"TextRenderingHintSingleBitPerPixel", L"TextRenderingHintAntiAliasGridFit",
          L"TextRenderingHintAntiAlias",         L"TextRenderingHintClearTypeGridFit"};
      for (int hint = 0; hint < 6; ++hint)
        if (value == kHints[hint]) m_textRenderingHint = static_cast<TextRenderingHintType>(hint);
    } else {
      InheritType::SetAttribute(name, value);
    }
  }

  const std::wstring& GetText() const { return m_text; }
  // New text may change the size of a label that sizes itself to its content.
  void SetText(const std::wstring& text) {
    if (m_text == text) return;
    m_text = text;
    this->RepaintOrArrangeForImage();
  }
  const std::wstring& GetTextId() const { return m_textId; }
  void SetTextId(const std::wstring& id) {
    m_textId = id;
    SetText(GlobalManager::GetTextById(id));
  }

  int GetFont() const { return m_font; }
  void SetFont(int font) {
    m_font = font;
    this->Invalidate();
  }

  const std::wstring& GetStateTextColor(ControlStateType state) const { return m_textColors[state]; }
  void SetStateTextColor(ControlStateType state, const std::wstring& color) {
    m_textColors[state] = color;
    this->Invalidate();
  }

  const UiRect& GetTextPadding() const { return m_textPadding; }
  // The padding is part of an auto size, like the text.
  void SetTextPadding(const UiRect& padding) {
    if (m_textPadding == padding) return;
    m_textPadding = padding;
    this->RepaintOrArrangeForImage();
  }

  // One line, or wrapped at words: "singleline" and the "align" keywords set it, the last one
  // written wins.
  bool IsSingleLine() const { return (m_textStyle & DUI_DT_SINGLELINE) != 0; }
  bool IsLineLimit() const { return m_lineLimit; }
  void SetLineLimit(bool lineLimit) {
    if (m_lineLimit == lineLimit) return;
    m_lineLimit = lineLimit;
    this->Invalidate();
  }

  TextRenderingHintType GetTextRenderingHint() const { return m_textRenderingHint; }
  uint32_t GetTextStyle() const { return m_textStyle; }

 protected:
  // The text inside the padding, in the colour of the state (black when the skin gives none),
  // laid out as the style, "linelimit" and the rendering hint say.
  void PaintText(IRenderContext& render) override {
    InheritType::PaintText(render);
    if (m_text.empty()) return;
    const std::wstring& color = PaintTextColor();
    const uint32_t argb = color.empty() ? 0xFF000000u : GlobalManager::ResolveColor(color);
    if ((argb >> 24) == 0) return;
    const UiRect& pos = this->GetPos();
    UiRect rc{pos.left + m_textPadding.left, pos.top + m_textPadding.top, pos.right - m_textPadding.right,
              pos.bottom - m_textPadding.bottom};
    if (rc.GetWidth() > 0 && rc.GetHeight() > 0)
      render.DrawString(rc, m_text, argb, m_font, TextFormatFor(m_textStyle, m_lineLimit), m_textRenderingHint);
  }
  // The text colour to paint with now; "" for the default.
  virtual const std::wstring& PaintTextColor() const { return Control::ForState(m_textColors, this->GetState()); }

  // Each keyword found anywhere in the value applies, in this order. The search is by
  // substring on purpose: "vcenter" also matches "center", and it sets DT_CENTER itself, so a
  // label aligned "vcenter" (or "left vcenter") is centred both ways, as the skins expect.
  void ApplyAlign(const std::wstring& value) {
    auto has = [&value](const wchar_t* keyword) { return value.find(keyword) != std::wstring::npos; };
    uint32_t style = m_textStyle;
    if (has(L"left")) style &= ~(DUI_DT_CENTER | DUI_DT_RIGHT | DUI_DT_VCENTER | DUI_DT_SINGLELINE);
    if (has(L"center")) style = (style & ~DUI_DT_RIGHT) | DUI_DT_CENTER;
    if (has(L"right")) style = (style & ~(DUI_DT_CENTER | DUI_DT_VCENTER | DUI_DT_SINGLELINE)) | DUI_DT_RIGHT;
    if (has(L"top")) style = (style & ~(DUI_DT_VCENTER | DUI_DT_BOTTOM)) | DUI_DT_SINGLELINE;
    if (has(L"vcenter")) style = (style & ~DUI_DT_BOTTOM) | DUI_DT_CENTER | DUI_DT_VCENTER | DUI_DT_SINGLELINE;
    if (has(L"bottom")) style = (style & ~DUI_DT_VCENTER) | DUI_DT_BOTTOM | DUI_DT_SINGLELINE;
    SetTextStyle(style);
  }

  void SetTextStyleBit(uint32_t bit, bool on) { SetTextStyle(on ? (m_textStyle | bit) : (m_textStyle & ~bit)); }
  void SetTextStyle(uint32_t style) {
    if (m_textStyle == style) return;
    m_textStyle = style;
    this->Invalidate();
  }

 private:
  static int TextColorState(const std::wstring& name) {
    static const wchar_t* const kNames[] = {L"normaltextcolor", L"hottextcolor", L"pushedtextcolor",
                                            L"disabledtextcolor"};
    for (int state = 0; state < kControlStateCount; ++state)
      if (name == kNames[state]) return state;
    return -1;
  }

  std::wstring m_text;
  std::wstring m_textId;
  int m_font = 0;  // the window's first font, its default
  std::array<std::wstring, kControlStateCount> m_textColors;
  UiRect m_textPadding;
  bool m_lineLimit = false;
  TextRenderingHintType m_textRenderingHint = kTextRenderingHintSystemDefault;
  uint32_t m_textStyle = kDefaultTextStyle;
};

using Label = LabelTemplate<Control>;
using LabelBox = LabelTemplate<Box>;

}  // namespace mivo::duilib
