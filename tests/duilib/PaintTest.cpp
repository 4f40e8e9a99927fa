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
  bool PushClip(const UiRect& rc) override { return Push(rc, "clip "); }
  bool PushRoundClip(const UiRect& rc, UiSize round) override {
    return Push(rc, "round " + std::to_string(round.cx) + "," + std::to_string(round.cy) + " clip ");
  }
  bool Push(const UiRect& rc, const std::string& what) {
    UiRect clip = rc;
    if (!clips.empty()) {
      const UiRect& top = clips.back();
      clip = UiRect{std::max(clip.left, top.left), std::max(clip.top, top.top), std::min(clip.right, top.right),
                    std::min(clip.bottom, top.bottom)};
    }
    const bool visible = clip.GetWidth() > 0 && clip.GetHeight() > 0;
    if (!visible) clip = UiRect{};
    clips.push_back(clip);
    lines.push_back(what + Rect(clip));
    return visible;
  }
  void PopClip() override {
    clips.pop_back();
    lines.push_back("pop");
  }
  void PushOffset(int dx, int dy) override {
    lines.push_back("offset " + std::to_string(dx) + "," + std::to_string(dy));
  }
  void PopOffset() override { lines.push_back("pop offset"); }
  void PushAlpha(const UiRect& rc, int alpha) override {
    lines.push_back("alpha " + std::to_string(alpha) + " " + Rect(rc));
  }
  void PopAlpha() override { lines.push_back("pop alpha"); }
  void FillRect(const UiRect& rc, uint32_t argb) override { lines.push_back("fill " + Rect(rc) + " " + Argb(argb)); }
  void FillRoundRect(const UiRect& rc, UiSize round, uint32_t argb) override {
    lines.push_back("fill round " + std::to_string(round.cx) + "," + std::to_string(round.cy) + " " + Rect(rc) + " " +
                    Argb(argb));
  }
  void DrawRoundBorder(const UiRect& rc, UiSize round, int width, uint32_t argb) override {
    lines.push_back("border round " + std::to_string(round.cx) + "," + std::to_string(round.cy) + " " + Rect(rc) +
                    " width " + std::to_string(width) + " " + Argb(argb));
  }
  void DrawImage(const UiRect& dest, const ImageDescription& image) override {
    lines.push_back("image " + Text(image.file) + " " + Rect(dest) + " corner " + Rect(image.corner) + " alpha " +
                    std::to_string(image.alpha) + (image.layout ? " layout " + std::to_string(image.layout) : "") +
                    (image.emptyCenter ? " emptycenter" : ""));
  }
  void DrawString(const UiRect& rc, const std::wstring& text, uint32_t argb, int font, uint32_t format,
                  int hint) override {
    char flags[16];
    std::snprintf(flags, sizeof flags, "%X", format);
    lines.push_back("text " + Text(text) + " " + Rect(rc) + " " + Argb(argb) + " font " + std::to_string(font) +
                    " format " + flags + (hint ? " hint " + std::to_string(hint) : ""));
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
                         "text OK 2,21,198,39 FF000000 font 1 format 825",  // centred, one line, no prefix
                         "pop",
                         "clip 0,40,200,60",
                         "fill 0,40,200,60 FFD8EBEB",
                         "text x 0,40,200,60 FF0000FF font 0 format 824",
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
                         "text a label without colours 5,5,195,35 FF000000 font 0 format 824",
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

// What the painting attributes ask of the render context: a layer for alpha, an offset, a
// rounded fill, clip and border (children inside, border over them), gradient bands, image
// layout and empty centre, the pen colour for the rounded border, and the text's flags and hint.
TEST_F(Painting, RoundedHalfTransparentMovedAndGradientControls) {
  Build(R"(<Window><VBox>
      <VBox height="40" bkcolor="#FF0000FF" borderround="8,6" bordersize="2" bordercolor="black" alpha="128"
            renderoffset="3,4"><Control bkcolor="red"/></VBox>
      <Control height="20" isgradient="true" begingradientcolor="#FF000000" endgradientcolor="#FF0000FF"
               nSteps="2" isgradientvertical="true"/>
      <Control height="20" borderround="4,4" drawgdipulsround="true" gdipenroundcolor="#FF102030"
               bkimage="file='a' corner='1,1,1,1'" emptycenter="true" imagelayout="scale"/>
      <Label height="20" text="t" align="right" singleline="false" linelimit="true"
             TextRenderingHint="TextRenderingHintAntiAlias"/>
    </VBox></Window>)",
        UiRect{0, 0, 100, 100});
  EXPECT_EQ(Paint(), (Lines{
                         "clip 0,0,100,100",
                         "clip 0,0,100,40",
                         "alpha 128 0,0,100,40",
                         "offset 3,4",
                         "fill round 8,6 0,0,100,40 FF0000FF",
                         "round 8,6 clip 0,0,100,40",
                         "clip 0,0,100,40",
                         "fill 0,0,100,40 FFFF0000",
                         "pop",
                         "pop",
                         "border round 8,6 0,0,100,40 width 2 FF000000",  // over the child
                         "pop offset",
                         "pop alpha",
                         "pop",
                         "clip 0,40,100,60",
                         "fill 0,40,100,50 FF000000",  // two steps from the first colour to the last
                         "fill 0,50,100,60 FF0000FF",
                         "pop",
                         "clip 0,60,100,80",
                         "round 4,4 clip 0,60,100,80",
                         "image C:\\res\\skins\\default\\form\\a.png 0,60,100,80 corner 1,1,1,1 alpha 255 layout 2 "
                         "emptycenter",
                         "pop",
                         "border round 4,4 0,60,100,80 width 1 FF102030",  // the pen colour, back in ARGB
                         "pop",
                         "clip 0,80,100,100",
                         "text t 0,80,100,100 FF000000 font 0 format 2812 hint 4",  // right, wrapped, whole lines
                         "pop",
                         "pop",
                     }));
}

}  // namespace
