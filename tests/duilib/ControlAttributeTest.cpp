#include <gtest/gtest.h>

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
  EXPECT_EQ(30, ParseSize(L"30"));
  EXPECT_EQ((UiRect{1, 2, 3, 4}), ParseRect(L"1,2,3,4"));
  EXPECT_EQ((UiRect{1, 2, 3, 4}), ParseRect(L"1;2 3x4"));  // any one separator character
  EXPECT_EQ((UiRect{1, 0, 2, 0}), ParseRect(L"1,,2"));     // a missing number reads as 0 and eats a separator
  EXPECT_EQ((UiRect{5, 6, 0, 0}), ParseRect(L"5,6"));
  EXPECT_EQ((UiSize{3, 4}), ParsePair(L"3,4"));
  EXPECT_EQ((UiSize{3, 0}), ParsePair(L"3"));
}

TEST(ControlAttributeTest, KeywordsAreExactAndUnknownOnesChangeNothing) {
  Probe c;
  c.SetAttribute(L"halign", L"right");
  c.SetAttribute(L"halign", L"Center");
  EXPECT_EQ(kHorAlignRight, c.GetHorAlignType());
  c.SetAttribute(L"valign", L"bottom");
  c.SetAttribute(L"valign", L"vcenter");
  EXPECT_EQ(kVerAlignBottom, c.GetVerAlignType());
  c.SetAttribute(L"cursortype", L"hand");
  c.SetAttribute(L"cursortype", L"Hand");
  EXPECT_EQ(kCursorHand, c.GetCursorType());
  const std::pair<const wchar_t*, int> layouts[] = {{L"cut", 1}, {L"compress", 0}, {L"scale", 2}, {L"Scale", 2}};
  for (const auto& [value, expected] : layouts) {
    c.SetAttribute(L"imagelayout", value);
    EXPECT_EQ(expected, c.GetImageLayout()) << value;
  }
  c.SetAttribute(L"Width", L"40");  // names are case-sensitive too
  c.SetAttribute(L"nosuchthing", L"1");
  EXPECT_EQ(DUI_LENGTH_STRETCH, c.GetFixedWidth());
}

TEST(ControlAttributeTest, SizesAndTheirLimits) {
  Probe c;
  const std::pair<const wchar_t*, int> widths[] = {{L"auto", -2}, {L"stretch", -1}, {L"abc", 0}, {L"120", 120}};
  for (const auto& [value, expected] : widths) {
    c.SetAttribute(L"width", value);
    EXPECT_EQ(expected, c.GetFixedWidth()) << value;
  }
  c.SetAttribute(L"height", L"auto");
  c.SetAttribute(L"minwidth", L"10");
  c.SetAttribute(L"minheight", L"11");
  c.SetAttribute(L"maxwidth", L"stretch");
  c.SetAttribute(L"maxheight", L"300");
  c.SetAttribute(L"margin", L"1,2,3,4");
  EXPECT_EQ(DUI_LENGTH_AUTO, c.GetFixedHeight());
  EXPECT_EQ(10, c.GetMinWidth());
  EXPECT_EQ(11, c.GetMinHeight());
  EXPECT_EQ(-1, c.GetMaxWidth());
  EXPECT_EQ(300, c.GetMaxHeight());
  EXPECT_EQ((UiRect{1, 2, 3, 4}), c.GetMargin());
  EXPECT_GT(c.arranges, 0);  // size changes reach the box that holds the control
}

TEST(ControlAttributeTest, BordersAndColours) {
  Probe c;
  c.SetAttribute(L"bordersize", L"1,0,1,0");
  c.SetAttribute(L"bordersize", L"2");
  EXPECT_EQ(2, c.GetBorderSize());
  EXPECT_EQ((UiRect{}), c.GetSideBorderSize());  // a single number resets the sides
  c.SetAttribute(L"bordersize", L"1,0,1,0");
  EXPECT_EQ(2, c.GetBorderSize());  // four numbers keep the uniform width
  EXPECT_EQ((UiRect{1, 0, 1, 0}), c.GetSideBorderSize());
  c.SetAttribute(L"topbordersize", L"5");
  EXPECT_EQ(5, c.GetSideBorderSize().top);
  c.SetAttribute(L"borderround", L"4,6");
  EXPECT_EQ((UiSize{4, 6}), c.GetBorderRound());

  c.SetAttribute(L"gdipenroundcolor", L"#FF102030");
  EXPECT_EQ(0xFF302010u, c.GetGdiPenRoundColor());
  c.SetAttribute(L"gdipenroundcolor", L"");
  EXPECT_EQ(0xFFFFFFFFu, c.GetGdiPenRoundColor());

  c.SetAttribute(L"bkcolor", L" \t\x01white");
  EXPECT_EQ(L"white", c.GetBkColor());
  c.SetAttribute(L"bkcolor1", L"black");
  EXPECT_EQ(L"black", c.GetBkColor());
  c.SetAttribute(L"drawgdipulsround", L"true");
  EXPECT_TRUE(c.IsDrawGdiplusRound());
  c.SetAttribute(L"isgradient", L"true");
  c.SetAttribute(L"begingradientcolor", L"red");
  c.SetAttribute(L"nSteps", L"8");
  EXPECT_TRUE(c.GetGradient().enabled);
  EXPECT_EQ(L"red", c.GetGradient().beginColor);
  EXPECT_EQ(8, c.GetGradient().steps);
}

TEST(ControlAttributeTest, StateColoursAndImagesSwitchTheHotFadeOn) {
  Probe c;
  EXPECT_FALSE(c.GetFade().hot);
  c.SetAttribute(L"normalcolor", L"white");
  EXPECT_FALSE(c.GetFade().hot);
  int before = c.repaints;
  c.SetAttribute(L"hotcolor", L"d8ebeb");
  EXPECT_TRUE(c.GetFade().hot);
  EXPECT_EQ(L"d8ebeb", c.GetStateColor(kControlStateHot));
  EXPECT_EQ(before + 1, c.repaints);
  c.SetAttribute(L"hotcolor", L"d8ebeb");  // unchanged: no repaint
  EXPECT_EQ(before + 1, c.repaints);

  Probe image;
  image.SetAttribute(L"fadehot", L"false");
  image.SetAttribute(L"hotimage", L"file='hot.png'");
  EXPECT_TRUE(image.GetFade().hot);
  EXPECT_EQ(L"file='hot.png'", image.GetImage(kImageSetBackground, kControlStateHot));
  Probe fore;
  fore.SetAttribute(L"forehotimage", L"f.png");
  EXPECT_TRUE(fore.GetFade().hot);
  EXPECT_EQ(L"f.png", fore.GetImage(kImageSetForeground, kControlStateHot));
}

TEST(ControlAttributeTest, AnImageRepaintsUnlessTheControlSizesItself) {
  Probe fixed;
  fixed.SetAttribute(L"width", L"20");
  fixed.SetAttribute(L"height", L"20");
  int repaints = fixed.repaints, arranges = fixed.arranges;
  fixed.SetAttribute(L"normalimage", L"a.png");
  EXPECT_EQ(repaints + 1, fixed.repaints);
  EXPECT_EQ(arranges, fixed.arranges);

  Probe sized;
  sized.SetAttribute(L"width", L"auto");
  repaints = sized.repaints, arranges = sized.arranges;
  sized.SetAttribute(L"pushedimage", L"b.png");
  EXPECT_EQ(repaints, sized.repaints);
  EXPECT_EQ(arranges + 1, sized.arranges);
}

TEST(ControlAttributeTest, FlagsStatesAndFades) {
  Probe c;
  c.SetAttribute(L"nofocus", L"false");  // any value sets it
  EXPECT_TRUE(c.IsNoFocus());
  c.SetAttribute(L"visible", L"True");
  EXPECT_FALSE(c.IsVisible());
  c.SetAttribute(L"enabled", L"false");
  EXPECT_FALSE(c.IsEnabled());
  c.SetAttribute(L"state", L"hot");
  EXPECT_EQ(kControlStateHot, c.GetState());
  EXPECT_EQ(255, c.GetHotAlpha());
  c.SetAttribute(L"state", L"normal");
  EXPECT_EQ(0, c.GetHotAlpha());
  c.SetAttribute(L"state", L"Pushed");
  EXPECT_EQ(kControlStateNormal, c.GetState());
  c.SetAttribute(L"fadeinoutxfromright", L"true");
  EXPECT_TRUE(c.GetFade().inOutX);
  EXPECT_EQ(1, c.GetFade().inOutXDirection);
  c.SetAttribute(L"fadeinoutyfromtop", L"true");
  EXPECT_EQ(0, c.GetFade().inOutYDirection);
  c.SetAttribute(L"float", L"true");
  EXPECT_TRUE(c.IsFloat());
}

TEST(ControlAttributeTest, RenderOffsetFollowsTheDpiScale) {
  Probe c;
  c.SetAttribute(L"renderoffset", L"3,-3");
  EXPECT_EQ((UiSize{3, -3}), c.GetRenderOffset());
  GlobalManager::SetDpiScale(true, 150);
  c.SetAttribute(L"renderoffset", L"3,-3");
  GlobalManager::SetDpiScale(false, 100);
  EXPECT_EQ((UiSize{5, -5}), c.GetRenderOffset());  // 4.5 rounds away from zero
}

TEST(ControlAttributeTest, ClassesApplyTheirListsInOrder) {
  GlobalManager::AddClass(L"wide", L"width=\"300\" height=\"20\"");
  GlobalManager::AddClass(L"tall", L"height=\"90\"  name=\"a b=c\"");
  Probe c;
  c.SetAttribute(L"class", L"wide  missing tall");
  GlobalManager::RemoveAllClasses();
  EXPECT_EQ(300, c.GetFixedWidth());
  EXPECT_EQ(90, c.GetFixedHeight());
  EXPECT_EQ(L"a b=c", c.GetName());
}

TEST(ControlAttributeTest, ToolTipTextIdsResolveThroughTheStringTable) {
  GlobalManager::SetTextResolver([](const std::wstring& id) { return id == L"STRID_TIP" ? L"Choose" : L""; });
  Probe c;
  c.SetAttribute(L"tooltiptextid", L"STRID_TIP");
  GlobalManager::SetTextResolver(nullptr);
  EXPECT_EQ(L"Choose", c.GetToolTipText());
  EXPECT_EQ(L"STRID_TIP", c.GetToolTipTextId());
}

}  // namespace
}  // namespace mivo::duilib
