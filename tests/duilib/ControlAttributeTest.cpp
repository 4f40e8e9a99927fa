#include <gtest/gtest.h>

#include <cwchar>
#include <string>

#include "duilib/Core/AttributeValue.h"
#include "duilib/Core/Box.h"
#include "duilib/Core/Control.h"
#include "duilib/Core/GlobalManager.h"

namespace mivo::duilib {
namespace {

// A control that counts what it was asked to do.
class Probe : public Control {
 public:
  void Invalidate() override { ++repaints; }
  void ArrangeAncestor() override { ++arranges; }
  int repaints = 0, arranges = 0;
};

TEST(AttributeValueTest, NumbersSizesRectsAndPairs) {
  using namespace attr;
  EXPECT_TRUE(ParseBool(L"true"));
  for (const wchar_t* value : {L"True", L"1", L"", L"true "}) EXPECT_FALSE(ParseBool(value));
  const std::pair<const wchar_t*, int> ints[] = {
      {L"42", 42}, {L"-7", -7}, {L"12px", 12}, {L"px", 0}, {L"", 0}, {L" 5", 5}, {L"99999999999", 2147483647}};
  for (const auto& [text, expected] : ints) EXPECT_EQ(expected, ParseInt(text)) << text;
  EXPECT_EQ(DUI_LENGTH_STRETCH, ParseSize(L"stretch"));
  EXPECT_EQ(DUI_LENGTH_AUTO, ParseSize(L"auto"));
  EXPECT_EQ(0, ParseSize(L"Auto"));
  EXPECT_EQ((UiRect{1, 2, 3, 4}), ParseRect(L"1;2 3x4"));  // any one separator character
  EXPECT_EQ((UiRect{1, 0, 2, 0}), ParseRect(L"1,,2"));     // a missing number reads as 0 and eats a separator
  EXPECT_EQ((UiRect{5, 6, 0, 0}), ParseRect(L"5,6"));
  EXPECT_EQ((UiSize{3, 0}), ParsePair(L"3"));
}

// Keywords and names are exact (an unknown one changes nothing), aliases and odd rules hold.
TEST(ControlAttributeTest, WhatAnAttributeListLeavesBehind) {
  using Get = int64_t (*)(Probe&);
  const Get width = [](Probe& c) -> int64_t { return c.GetFixedWidth(); };
  const Get imageLayout = [](Probe& c) -> int64_t { return c.GetImageLayout(); };
  const Get hotAlpha = [](Probe& c) -> int64_t { return c.GetHotAlpha(); };
  const Get state = [](Probe& c) -> int64_t { return c.GetState(); };
  const Get border = [](Probe& c) -> int64_t { return c.GetBorderSize(); };
  const Get sideLeft = [](Probe& c) -> int64_t { return c.GetSideBorderSize().left; };
  const Get penColor = [](Probe& c) -> int64_t { return c.GetGdiPenRoundColor(); };
  struct Row {
    const wchar_t* attributes;
    Get get;
    int64_t expected;
  } rows[] = {
      {L"halign=\"right\" halign=\"Center\"", [](Probe& c) -> int64_t { return c.GetHorAlignType(); }, kHorAlignRight},
      {L"valign=\"bottom\" valign=\"vcenter\"", [](Probe& c) -> int64_t { return c.GetVerAlignType(); },
       kVerAlignBottom},
      {L"cursortype=\"hand\" cursortype=\"Hand\"", [](Probe& c) -> int64_t { return c.GetCursorType(); }, kCursorHand},
      {L"imagelayout=\"cut\"", imageLayout, 1},
      {L"imagelayout=\"scale\" imagelayout=\"Scale\"", imageLayout, 2},
      {L"width=\"auto\"", width, DUI_LENGTH_AUTO},
      {L"width=\"abc\"", width, 0},
      {L"width=\"120\" Width=\"40\" nosuchthing=\"1\"", width, 120},
      {L"maxwidth=\"stretch\"", [](Probe& c) -> int64_t { return c.GetMaxWidth(); }, -1},
      {L"bordersize=\"1,0,1,0\" bordersize=\"2\"", sideLeft, 0},  // a single number resets the sides
      {L"bordersize=\"2\" bordersize=\"1,0,1,0\"", border, 2},    // four numbers keep the uniform width
      {L"bordersize=\"2\" bordersize=\"1,0,1,0\"", sideLeft, 1},
      {L"topbordersize=\"5\"", [](Probe& c) -> int64_t { return c.GetSideBorderSize().top; }, 5},
      {L"gdipenroundcolor=\"#FF102030\"", penColor, 0xFF302010},
      {L"gdipenroundcolor=\"#FF102030\" gdipenroundcolor=\"\"", penColor, 0xFFFFFFFF},
      {L"drawgdipulsround=\"true\"", [](Probe& c) -> int64_t { return c.IsDrawGdiplusRound(); }, 1},
      {L"nofocus=\"false\"", [](Probe& c) -> int64_t { return c.IsNoFocus(); }, 1},  // any value sets it
      {L"visible=\"True\"", [](Probe& c) -> int64_t { return c.IsVisible(); }, 0},
      {L"state=\"hot\"", hotAlpha, 255},
      {L"state=\"hot\"", state, kControlStateHot},
      {L"state=\"hot\" state=\"normal\"", hotAlpha, 0},
      {L"state=\"Pushed\"", state, kControlStateNormal},
      {L"fadeinoutxfromright=\"true\"", [](Probe& c) -> int64_t { return c.GetFade().inOutXDirection; }, 1},
      {L"fadeinoutyfrombottom=\"true\" fadeinoutyfromtop=\"true\"",
       [](Probe& c) -> int64_t { return c.GetFade().inOutYDirection; }, 0}};
  for (const Row& row : rows) {
    Probe c;
    c.ApplyAttributeList(row.attributes);
    EXPECT_EQ(row.get(c), row.expected) << std::string(row.attributes, row.attributes + wcslen(row.attributes));
  }
  Probe c;
  c.SetAttribute(L"bkcolor", L" \t\x01white");
  EXPECT_EQ(L"white", c.GetBkColor());
  c.SetAttribute(L"bkcolor1", L"black");
  EXPECT_EQ(L"black", c.GetBkColor());
  c.SetAttribute(L"height", L"auto");
  EXPECT_GT(c.arranges, 0);  // size changes reach the box that holds the control
}

TEST(ControlAttributeTest, StateColoursAndImagesSwitchTheHotFadeOn) {
  Probe c;
  c.SetAttribute(L"normalcolor", L"white");
  EXPECT_FALSE(c.GetFade().hot);
  int before = c.repaints;
  c.SetAttribute(L"hotcolor", L"d8ebeb");
  EXPECT_TRUE(c.GetFade().hot);
  EXPECT_EQ(L"d8ebeb", c.GetStateColor(kControlStateHot));
  c.SetAttribute(L"hotcolor", L"d8ebeb");  // unchanged: no repaint
  EXPECT_EQ(before + 1, c.repaints);

  Probe image, fore;
  image.SetAttribute(L"fadehot", L"false");
  image.SetAttribute(L"hotimage", L"file='hot.png'");
  EXPECT_TRUE(image.GetFade().hot);
  EXPECT_EQ(L"file='hot.png'", image.GetImage(kImageSetBackground, kControlStateHot));
  fore.SetAttribute(L"forehotimage", L"f.png");
  EXPECT_TRUE(fore.GetFade().hot);
  EXPECT_EQ(L"f.png", fore.GetImage(kImageSetForeground, kControlStateHot));
}

TEST(ControlAttributeTest, AnImageRepaintsUnlessTheControlSizesItself) {
  for (const bool autoSized : {false, true}) {
    Probe c;
    c.SetAttribute(L"width", autoSized ? L"auto" : L"20");
    c.SetAttribute(L"height", L"20");
    const int repaints = c.repaints, arranges = c.arranges;
    c.SetAttribute(autoSized ? L"pushedimage" : L"normalimage", L"a.png");
    EXPECT_EQ(repaints + !autoSized, c.repaints) << autoSized;
    EXPECT_EQ(arranges + autoSized, c.arranges) << autoSized;
  }
}

TEST(ControlAttributeTest, RenderOffsetClassesAndToolTipIds) {
  Probe c;
  GlobalManager::SetDpiScale(true, 150);
  c.SetAttribute(L"renderoffset", L"3,-3");
  GlobalManager::SetDpiScale(false, 100);
  EXPECT_EQ((UiSize{5, -5}), c.GetRenderOffset());  // 4.5 rounds away from zero

  GlobalManager::AddClass(L"wide", L"width=\"300\" height=\"20\"");
  GlobalManager::AddClass(L"tall", L"height=\"90\"  name=\"a b=c\"");
  GlobalManager::SetTextResolver([](const std::wstring& id) { return id == L"STRID_TIP" ? L"Choose" : L""; });
  c.SetAttribute(L"class", L"wide  missing tall");
  c.SetAttribute(L"tooltiptextid", L"STRID_TIP");
  GlobalManager::RemoveAllClasses();
  GlobalManager::SetTextResolver(nullptr);
  EXPECT_EQ(300, c.GetFixedWidth());
  EXPECT_EQ(90, c.GetFixedHeight());
  EXPECT_EQ(L"a b=c", c.GetName());
  EXPECT_EQ(L"Choose", c.GetToolTipText());
  EXPECT_EQ(L"STRID_TIP", c.GetToolTipTextId());
}

}  // namespace
}  // namespace mivo::duilib
