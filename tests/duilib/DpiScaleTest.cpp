// Scaling a skin to the screen's DPI: which attributes are pixels and how their values scale,
// a window that changes scale while open applies the skin's own values again, and images
// stretch smoothly from their own pixels.
#include "duilib/Core/DpiScale.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "duilib/Core/Box.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/Label.h"
#include "duilib/Core/Window.h"
#include "duilib/Core/WindowBuilder.h"
#include "duilib/Render/ImageResample.h"

namespace {

using namespace mivo::duilib;

TEST(DpiScale, PixelAttributesScaleEveryNumberAndKeepTheRest) {
  struct Row {
    const wchar_t* name;
    const wchar_t* value;
    int percent;
    const wchar_t* expected;  // null: the attribute is no pixel value and stays as written
  };
  const Row rows[] = {{L"width", L"80", 125, L"100"},
                      {L"height", L"13", 150, L"20"},  // 19.5 rounds up
                      {L"width", L"auto", 200, L"auto"},
                      {L"height", L"stretch", 150, L"stretch"},
                      {L"maxwidth", L"-1", 200, L"-1"},               // "no limit" written as a number
                      {L"margin", L"12,0,-3,7", 150, L"18,0,-5,11"},  // -4.5 rounds away from zero
                      {L"padding", L"10,6,10,6", 200, L"20,12,20,12"},
                      {L"childmargin", L"10", 125, L"13"},
                      {L"bordersize", L"1", 150, L"2"},
                      {L"textpadding", L"20,0,0,0", 125, L"25,0,0,0"},
                      {L"borderround", L"5,5", 200, L"10,10"},
                      {L"minheight", L"99999999999", 200, L"2147483647"},  // clipped, never wrapped
                      {L"width", L"80", 100, L"80"},
                      {L"name", L"row12", 200, nullptr},
                      {L"font", L"1", 200, nullptr},
                      {L"text", L"3 users", 150, nullptr}};
  for (const Row& row : rows) {
    EXPECT_EQ(IsScaledAttribute(row.name), row.expected != nullptr) << row.name;
    if (row.expected) {
      EXPECT_EQ(ScaleAttributeValue(row.value, row.percent), row.expected) << row.name << "=" << row.value;
    }
  }
  EXPECT_EQ(DpiPercent(96), 100);
  EXPECT_EQ(DpiPercent(120), 125);
  EXPECT_EQ(DpiPercent(144), 150);
  EXPECT_EQ(DpiPercent(192), 200);
}

TEST(DpiScale, AWindowRescaledWhileOpenAppliesTheSkinsOwnValues) {
  GlobalManager::AddClass(L"row", L"height=\"48\" padding=\"10,6,10,6\"");
  GlobalManager::SetDpiScale(true, 150);
  Window window;
  WindowBuilder builder;
  Control* root = builder.CreateFromString(R"(<Window size="340,300" caption="0,0,0,34">
    <VBox childmargin="4"><HBox name="row" class="row"><Label name="name" width="101" margin="3,0,0,0"/></HBox></VBox>
  </Window>)",
                                           nullptr, &window);
  window.AttachRoot(static_cast<Box*>(root));
  window.ArrangeRoot(UiRect{0, 0, 510, 450});
  Control* name = window.FindControl(L"name");
  EXPECT_EQ(window.GetInitialSize(), (UiSize{510, 450}));
  EXPECT_EQ(name->GetPos(), (UiRect{15 + 5, 9, 15 + 5 + 152, 72 - 9})) << "from the class and the element alike";
  EXPECT_TRUE(window.IsCaptionAt(UiPoint{100, 50}));
  EXPECT_FALSE(window.IsCaptionAt(UiPoint{100, 51}));

  // 150% to 125% to 200%: each time the values as written, not the last scaled ones.
  for (int percent : {125, 200}) window.ApplyDpiScale(percent);
  GlobalManager::SetDpiScale(false, 100);
  GlobalManager::RemoveAllClasses();
  EXPECT_EQ(name->GetFixedWidth(), 202);
  EXPECT_EQ(name->GetMargin(), (UiRect{6, 0, 0, 0}));
  EXPECT_EQ(window.FindControl(L"row")->GetFixedHeight(), 96);
  EXPECT_EQ(name->GetPos(), (UiRect{20 + 6, 12, 20 + 6 + 202, 96 - 12}));
}

TEST(DpiScale, ImagesStretchSmoothlyFromTheirOwnPixelsOnly) {
  using Pixels = std::vector<uint32_t>;
  const Pixels ramp{0xFF000000, 0xFFFFFFFF};
  const Pixels rgb{0xFFFF0000, 0xFF00FF00, 0xFF0000FF};
  const Pixels flat(4, 0x80402010);  // premultiplied, half transparent
  struct Row {
    const Pixels* image;
    int width;
    UiRect source;
    UiSize size;
    Pixels expected;
  };
  const Row rows[] = {
      {&ramp, 2, {0, 0, 2, 1}, {4, 1}, {0xFF000000, 0xFF404040, 0xFFBFBFBF, 0xFFFFFFFF}},
      {&ramp, 2, {0, 0, 2, 1}, {2, 1}, ramp},                                 // its own size: unchanged
      {&rgb, 3, {1, 0, 2, 1}, {3, 1}, {0xFF00FF00, 0xFF00FF00, 0xFF00FF00}},  // no red, no blue bleeds in
      {&flat, 2, {0, 0, 2, 2}, {3, 1}, Pixels(3, 0x80402010)},                // one colour stays exact
      {&ramp, 2, {0, 0, 2, 1}, {0, 1}, {}}};
  for (const Row& row : rows)
    EXPECT_EQ(ResampleBilinear(row.image->data(), row.width, row.source, row.size), row.expected)
        << row.size.cx << "x" << row.size.cy;
}

}  // namespace
