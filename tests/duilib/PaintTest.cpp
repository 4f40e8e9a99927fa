// What a window's tree paints, in order, through a render context that records instead of
// drawing: colours per state, selected looks, borders, text, resolved image paths, clipping.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "duilib/Core/Box.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/Window.h"
#include "duilib/Core/WindowBuilder.h"
#include "duilib/Render/IRender.h"

namespace {

using namespace mivo::duilib;

std::string Text(const std::wstring& wide) { return std::string(wide.begin(), wide.end()); }

std::string Rect(const UiRect& rc) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%d,%d,%d,%d", rc.left, rc.top, rc.right, rc.bottom);
  return buffer;
}

std::string Argb(uint32_t argb) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "%08X", argb);
  return buffer;
}

// Keeps a clip stack as a real context does and writes one line per call.
class RecordingRender : public IRenderContext {
 public:
  bool PushClip(const UiRect& rc) override {
    UiRect clip = rc;
    if (!clips.empty()) {
      const UiRect& top = clips.back();
      clip = UiRect{std::max(clip.left, top.left), std::max(clip.top, top.top), std::min(clip.right, top.right),
                    std::min(clip.bottom, top.bottom)};
    }
    const bool visible = clip.GetWidth() > 0 && clip.GetHeight() > 0;
    if (!visible) clip = UiRect{};
    clips.push_back(clip);
    lines.push_back("clip " + Rect(clip));
    return visible;
  }
  void PopClip() override {
    clips.pop_back();
    lines.push_back("pop");
  }
  void FillRect(const UiRect& rc, uint32_t argb) override { lines.push_back("fill " + Rect(rc) + " " + Argb(argb)); }
  void DrawImage(const UiRect& dest, const ImageDescription& image) override {
    lines.push_back("image " + Text(image.file) + " " + Rect(dest) + " corner " + Rect(image.corner) + " alpha " +
                    std::to_string(image.alpha));
  }
  void DrawString(const UiRect& rc, const std::wstring& text, uint32_t argb, int font, uint32_t style) override {
    lines.push_back("text " + Text(text) + " " + Rect(rc) + " " + Argb(argb) + " font " + std::to_string(font) +
                    " style " + std::to_string(style));
  }
  std::vector<UiRect> clips;
  std::vector<std::string> lines;
};

class FormWindow : public Window {
 public:
  std::wstring GetSkinFolder() override { return L"form"; }
};

class Painting : public ::testing::Test {
 protected:
  void SetUp() override { GlobalManager::Startup(L"C:\\res", L"skins\\default"); }
  void TearDown() override {
    GlobalManager::Startup(L"", L"");
    GlobalManager::RemoveAllTextColors();
  }
  void Build(const char* xml, UiRect client) {
    WindowBuilder builder;
    Control* root = builder.CreateFromString(xml, nullptr, &window);
    ASSERT_NE(dynamic_cast<Box*>(root), nullptr);
    window.AttachRoot(static_cast<Box*>(root));
    window.ArrangeRoot(client);
  }
  std::vector<std::string> Paint() {
    RecordingRender render;
    window.Paint(render);
    EXPECT_TRUE(render.clips.empty()) << "every clip pushed is popped";
    return render.lines;
  }
  FormWindow window;
};

using Lines = std::vector<std::string>;

TEST_F(Painting, EachControlInTreeOrderWithItsLooks) {
  Build(R"(<Window><TextColor name="accent" value="#FF0078D7"/>
    <VBox bkcolor="white">
      <Control height="20" bkcolor="accent" bordercolor="black" bordersize="1"/>
      <Button name="btn" height="20" normalcolor="#FF101010" hotcolor="#FF202020" text="OK" textpadding="2,1,2,1"
              hottextcolor="#FFFF0000" font="1" align="center"/>
      <Control height="10" visible="false" bkcolor="red"/>
      <CheckBox height="20" normalcolor="c8e4e4" selectednormalcolor="d8ebeb" selected="true"
                selectedtextcolor="blue" text="x"/>
      <Control height="20" bkimage="file='bk' corner='1,1,1,1' fade='128'" normalimage="../common/n.png"/>
    </VBox></Window>)",
        UiRect{0, 0, 200, 100});
  EXPECT_EQ(Paint(), (Lines{
                         "clip 0,0,200,100",
                         "fill 0,0,200,100 FFFFFFFF",
                         "clip 0,0,200,20",
                         "fill 0,0,200,20 FF0078D7",
                         "fill 0,0,200,1 FF000000",
                         "fill 0,19,200,20 FF000000",
                         "fill 0,1,1,19 FF000000",
                         "fill 199,1,200,19 FF000000",
                         "pop",
                         "clip 0,20,200,40",
                         "fill 0,20,200,40 FF101010",
                         "text OK 2,21,198,39 FF000000 font 1 style 37",  // centred, one line
                         "pop",
                         "clip 0,40,200,60",
                         "fill 0,40,200,60 FFD8EBEB",
                         "text x 0,40,200,60 FF0000FF font 0 style 36",
                         "pop",
                         "clip 0,60,200,80",
                         "image C:\\res\\skins\\default\\form\\bk.png 0,60,200,80 corner 1,1,1,1 alpha 128",
                         "image C:\\res\\skins\\default\\common\\n.png 0,60,200,80 corner 0,0,0,0 alpha 255",
                         "pop",
                         "pop",
                     }));
}

TEST_F(Painting, StatesPickTheirColoursWithFallbacks) {
  Build(R"(<Window><HBox>
      <Button name="btn" normalcolor="#FF101010" hotcolor="#FF202020" disabledtextcolor="gray" text="b"
              normaltextcolor="#FF000001" hottextcolor="#FF000002" pushedtextcolor="#FF000003"/>
    </HBox></Window>)",
        UiRect{0, 0, 50, 20});
  Control* button = window.FindControl(L"btn");
  auto looks = [this] {
    Lines lines = Paint();
    return lines[2] + " / " + lines[3].substr(0, lines[3].find(" font"));
  };
  EXPECT_EQ(looks(), "fill 0,0,50,20 FF101010 / text b 0,0,50,20 FF000001");
  window.HandleMouseEvent(kEventMouseMove, UiPoint{5, 5});
  EXPECT_EQ(looks(), "fill 0,0,50,20 FF202020 / text b 0,0,50,20 FF000002");
  window.HandleMouseEvent(kEventMouseButtonDown, UiPoint{5, 5});  // no pushed colour: looks hot
  EXPECT_EQ(looks(), "fill 0,0,50,20 FF202020 / text b 0,0,50,20 FF000003");
  window.HandleMouseEvent(kEventMouseButtonUp, UiPoint{5, 5});
  button->SetEnabled(false);  // no disabled colour: looks normal, with its own text colour
  EXPECT_EQ(looks(), "fill 0,0,50,20 FF101010 / text b 0,0,50,20 FF808080");
}

TEST_F(Painting, ChildrenAreClippedToTheirBoxAndFloatingOnesComeLast) {
  Build(R"(<Window><VBox bkcolor="white">
      <Control float="true" width="10" height="10" margin="195,95,0,0" bkcolor="yellow"/>
      <Control float="true" width="10" height="10" margin="250,0,0,0" bkcolor="red"/>
      <HBox height="40" padding="5,5,5,5">
        <Label text="a label without colours"/>
      </HBox>
      <Label text="transparent text" normaltextcolor="transparent" bkcolor="transparent"/>
    </VBox></Window>)",
        UiRect{0, 0, 200, 100});
  EXPECT_EQ(Paint(), (Lines{
                         "clip 0,0,200,100",
                         "fill 0,0,200,100 FFFFFFFF",
                         "clip 0,0,200,40",
                         "clip 5,5,195,35",
                         "text a label without colours 5,5,195,35 FF000000 font 0 style 36",
                         "pop",
                         "pop",
                         "clip 0,40,200,100",  // transparent colours paint nothing
                         "pop",
                         "clip 195,95,200,100",
                         "fill 195,95,205,105 FFFFFF00",
                         "pop",
                         "clip 0,0,0,0",  // wholly outside the window: not painted
                         "pop",
                         "pop",
                     }));
  window.GetRoot()->SetVisible(false);
  EXPECT_EQ(Paint(), Lines{});
}

}  // namespace
