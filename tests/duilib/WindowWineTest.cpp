// A real Win32 window under Wine: a form built from a skin folder on disk (with PNG images
// written here), its class, its layout on WM_SIZE, clicks and hit tests from posted messages,
// message filters, closing, and what it looks like, rendered to a PNG beside this program and
// read back pixel by pixel.
#include <windows.h>
// GDI+ needs the COM stream interfaces that WIN32_LEAN_AND_MEAN leaves out
#include <objidl.h>

#include <gdiplus.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "WineWindowSupport.h"
#include "duilib/Core/Box.h"
#include "duilib/Core/CheckBox.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/WindowBuilder.h"
#include "duilib/Core/WindowImplBase.h"
#include "tests/support/Files.h"
#include "tests/support/TempDir.h"

namespace {

using namespace mivo::duilib;
using testing_support::TempDir;
using wine_window::Picture;
using wine_window::ProgramFolder;
using wine_window::PumpUntil;
using wine_window::WriteFramedPng;

constexpr UINT kPing = WM_APP + 1;

constexpr char kSkin[] = R"(<?xml version="1.0" encoding="utf-8"?>
<Window size="320,240" caption="0,0,0,32">
  <Font name="Tahoma" size="24" bold="true"/>
  <TextColor name="panel" value="#FF2E8B57"/>
  <VBox bkcolor="#FFF0F0F0">
    <HBox height="32" bkcolor="#FF3060A0">
      <Label name="title" text="Mivo" normaltextcolor="white" textpadding="8,0,0,0"/>
      <Button name="close" width="32" normalcolor="#FFC04040" hotcolor="#FFE06060"/>
    </HBox>
    <Swatch name="swatch" height="40" margin="10,10,10,0" bkcolor="panel" bordercolor="black" bordersize="2"/>
    <Label name="text" height="48" text="Hello Mivo" normaltextcolor="black" align="center"/>
    <HBox height="40" childmargin="10" padding="10,0,10,0">
      <Control name="image" width="64" bkimage="blue"/>
      <Control name="shared" width="64" bkimage="file='../shared/red.png' corner='2,2,2,2'"/>
      <CheckBox name="check" width="40" normalcolor="c8e4e4" selectednormalcolor="d8ebeb" selected="true"/>
      <Button name="ok" bkcolor="#FF808080" hotcolor="#FFFFA500" text="OK" normaltextcolor="white"/>
    </HBox>
  </VBox>
</Window>)";

class TestForm : public WindowImplBase {
 public:
  std::wstring GetSkinFolder() override { return L"form"; }
  std::wstring GetSkinFile() override { return skinFile; }
  LRESULT MessageHandler(UINT message, WPARAM wParam, LPARAM lParam, bool& handled) override {
    if (message == kPing || (message == WM_CLOSE && keepOpen)) {
      handled = true;
      return message == kPing ? 42 : 0;
    }
    return WindowImplBase::MessageHandler(message, wParam, lParam, handled);
  }

  std::wstring skinFile = L"main.xml";
  bool keepOpen = false;
  bool initialised = false;
  std::vector<std::wstring> customTags;
  int clicks = 0;
  HWND finalHwnd = nullptr;

 protected:
  std::wstring GetWindowClassName() const override { return L"MivoWineTestForm"; }
  UINT GetClassStyle() const override { return CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW; }
  void InitWindow() override {
    initialised = GetRoot() && GetRoot()->GetPos() == (UiRect{0, 0, 320, 240});
    FindControl(L"ok")->AttachClick([this](EventArgs*) { return ++clicks > 0; });
    FindControl(L"close")->AttachClick([this](EventArgs*) {
      Close();
      return true;
    });
  }
  Control* CreateControl(const std::wstring& tag) override {
    customTags.push_back(tag);
    return tag == L"Swatch" ? new Control() : nullptr;
  }
  void OnFinalMessage(HWND hwnd) override { finalHwnd = hwnd; }
};

class WindowUnderWine : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(wine_window::StartGdiplus()); }
  void SetUp() override {
    const std::wstring root = dir.Path().GetString();
    testing_support::Write(dir.NativeOf(L"skins\\default\\form\\main.xml"), kSkin);
    std::filesystem::create_directories(dir.NativeOf(L"skins\\default\\shared"));
    ASSERT_TRUE(WriteFramedPng(root + L"skins\\default\\form\\blue.png", 0xFF1E50C8, 0xFF1E50C8));
    ASSERT_TRUE(WriteFramedPng(root + L"skins\\default\\shared\\red.png", 0xFF801010, 0xFFC81E1E));
    GlobalManager::Startup(root, L"skins\\default");
  }
  void TearDown() override {
    GlobalManager::SetDpiScale(true, 100);  // as the first window found the display
    GlobalManager::Startup(L"", L"");
    GlobalManager::RemoveAllFonts();
    GlobalManager::RemoveAllTextColors();
  }
  static LPARAM At(int x, int y) { return MAKELPARAM(x, y); }
  void Click(HWND hwnd, int x, int y) {
    PostMessageW(hwnd, WM_LBUTTONDOWN, MK_LBUTTON, At(x, y));
    PostMessageW(hwnd, WM_LBUTTONUP, 0, At(x, y));
  }
  TempDir dir;
};

TEST_F(WindowUnderWine, AFormFromItsSkinFolderShowsLaysOutClicksAndCloses) {
  TestForm form;
  HWND hwnd = form.Create(nullptr, L"Mivo test", WS_POPUP | WS_CLIPCHILDREN, 0);
  ASSERT_NE(hwnd, nullptr);
  EXPECT_EQ(form.GetHWND(), hwnd);
  wchar_t className[64] = {};
  GetClassNameW(hwnd, className, 64);
  EXPECT_STREQ(className, L"MivoWineTestForm");
  EXPECT_EQ(GetClassLongPtrW(hwnd, GCL_STYLE), static_cast<ULONG_PTR>(CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW));
  EXPECT_TRUE(form.initialised) << "InitWindow ran after the skin was attached and laid out";
  EXPECT_EQ(form.customTags, std::vector<std::wstring>{L"Swatch"});

  // The skin's size is the client size; WM_SIZE laid the tree out in it.
  RECT client;
  GetClientRect(hwnd, &client);
  EXPECT_EQ(client.right, 320);
  EXPECT_EQ(client.bottom, 240);
  EXPECT_EQ(form.FindControl(L"swatch")->GetPos(), (UiRect{10, 42, 310, 82}));
  EXPECT_EQ(form.FindControl(L"ok")->GetPos(), (UiRect{208, 130, 310, 170}));
  form.CenterWindow();
  form.ShowWindow(true, false);
  EXPECT_TRUE(IsWindowVisible(hwnd));

  // What it looks like.
  const std::wstring png = ProgramFolder() + L"window_render.png";
  ASSERT_TRUE(form.RenderToPng(png));
  {
    Picture picture(png);
    ASSERT_EQ(picture.bitmap.GetLastStatus(), Gdiplus::Ok);
    EXPECT_EQ(picture.bitmap.GetWidth(), 320u);
    EXPECT_EQ(picture.bitmap.GetHeight(), 240u);
    EXPECT_EQ(picture.At(5, 220), 0xF0F0F0u) << "background";
    EXPECT_EQ(picture.At(250, 4), 0x3060A0u) << "title band";
    EXPECT_EQ(picture.At(304, 16), 0xC04040u) << "close button";
    EXPECT_EQ(picture.At(160, 62), 0x2E8B57u) << "swatch, a colour of the TextColor table";
    EXPECT_EQ(picture.At(11, 62), 0x000000u) << "swatch border";
    EXPECT_EQ(picture.At(12, 62), 0x2E8B57u) << "border is two pixels";
    EXPECT_LT(picture.DarkestIn(60, 82, 260, 130), 200) << "black text on the light background";
    EXPECT_EQ(picture.DarkestIn(0, 82, 40, 130), 3 * 0xF0) << "centred text leaves the left alone";
    EXPECT_GT(picture.BrightestIn(0, 0, 100, 32), 3 * 0xC0) << "white title text on the blue band";
    EXPECT_LT(picture.BrightestIn(200, 0, 260, 32), 0x30 + 0x60 + 0xA0 + 1) << "the band right of the title";
    EXPECT_EQ(picture.At(42, 150), 0x1E50C8u) << "form\\blue.png, stretched";
    // shared\red.png at (84,130)-(148,170): its 2-pixel frame stays 2 pixels wide
    EXPECT_EQ(picture.At(116, 150), 0xC81E1Eu) << "shared\\red.png, its middle";
    for (auto [x, y] : {std::pair{84, 150}, {85, 150}, {146, 150}, {147, 150}, {116, 130}, {116, 169}, {84, 130}})
      EXPECT_EQ(picture.At(x, y), 0x801010u) << "frame at " << x << "," << y;
    for (auto [x, y] : {std::pair{86, 150}, {145, 150}, {116, 132}, {116, 167}, {90, 136}})
      EXPECT_EQ(picture.At(x, y), 0xC81E1Eu) << "middle at " << x << "," << y;
    EXPECT_EQ(picture.At(178, 150), 0xD8EBEBu) << "selected check box";
    EXPECT_EQ(picture.At(215, 135), 0x808080u) << "ok button";
  }

  // The mouse over the ok button makes it hot, and a press and release on it is a click.
  PostMessageW(hwnd, WM_MOUSEMOVE, 0, At(259, 150));
  ASSERT_TRUE(PumpUntil([&] { return form.GetHotControl() == form.FindControl(L"ok"); }));
  ASSERT_TRUE(form.RenderToPng(ProgramFolder() + L"window_render_hot.png"));
  EXPECT_EQ(Picture(ProgramFolder() + L"window_render_hot.png").At(215, 135), 0xFFA500u) << "hot ok button";
  Click(hwnd, 259, 150);
  ASSERT_TRUE(PumpUntil([&] { return form.clicks == 1; }));
  Click(hwnd, 259, 150);
  PostMessageW(hwnd, WM_LBUTTONDOWN, MK_LBUTTON, At(259, 150));
  PostMessageW(hwnd, WM_LBUTTONUP, 0, At(5, 220));  // let go elsewhere: no click
  ASSERT_TRUE(PumpUntil([&] { return form.clicks == 2 && !form.GetPushedControl(); }));
  PumpUntil([] { return false; }, 100);
  EXPECT_EQ(form.clicks, 2);
  EXPECT_EQ(GetCapture(), nullptr);

  // The caption drags, except where the close button is; filters see messages first.
  POINT title{150, 16}, close{304, 16}, body{150, 100};
  for (POINT* p : {&title, &close, &body}) ClientToScreen(hwnd, p);
  EXPECT_EQ(SendMessageW(hwnd, WM_NCHITTEST, 0, At(title.x, title.y)), HTCAPTION);
  EXPECT_EQ(SendMessageW(hwnd, WM_NCHITTEST, 0, At(close.x, close.y)), HTCLIENT);
  EXPECT_EQ(SendMessageW(hwnd, WM_NCHITTEST, 0, At(body.x, body.y)), HTCLIENT);
  EXPECT_EQ(SendMessageW(hwnd, kPing, 0, 0), 42);

  // A new size lays the tree out again.
  SetWindowPos(hwnd, nullptr, 0, 0, 400, 300, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  EXPECT_EQ(form.GetRoot()->GetPos(), (UiRect{0, 0, 400, 300}));
  EXPECT_EQ(form.FindControl(L"ok")->GetPos(), (UiRect{208, 130, 390, 170}));

  // A filter may keep the window open; the close button's Close() ends it.
  form.keepOpen = true;
  SendMessageW(hwnd, WM_CLOSE, 0, 0);
  EXPECT_TRUE(IsWindow(hwnd));
  form.keepOpen = false;
  Click(hwnd, 380, 16);
  ASSERT_TRUE(PumpUntil([&] { return form.finalHwnd != nullptr; }));
  EXPECT_EQ(form.finalHwnd, hwnd);
  EXPECT_FALSE(IsWindow(hwnd));
  EXPECT_EQ(form.GetHWND(), nullptr);
}

// The keyboard alone: the focus starts on the first control of the tab order (the close
// button is left out), shows its mark, and keys posted to the window press what they should.
TEST_F(WindowUnderWine, KeysMoveTheFocusAndPressTheFocusedDefaultAndCancelButtons) {
  testing_support::Write(dir.NativeOf(L"skins\\default\\form\\keys.xml"), R"(<?xml version="1.0" encoding="utf-8"?>
<Window size="200,120" defaultbutton="ok" cancelbutton="close" focuscolor="#FFFF00FF">
  <VBox bkcolor="#FFFFFFFF">
    <HBox height="40"><Button name="close" width="40" nofocus="true"/></HBox>
    <CheckBox name="check" height="40"/>
    <HBox height="40"><Button name="ok" width="100"/><Button name="other"/></HBox>
  </VBox>
</Window>)");
  TestForm form;
  form.skinFile = L"keys.xml";
  HWND hwnd = form.Create(nullptr, L"keys", WS_POPUP, 0);
  ASSERT_NE(hwnd, nullptr);
  auto* check = dynamic_cast<CheckBox*>(form.FindControl(L"check"));
  ASSERT_EQ(form.GetFocus(), check);
  const std::wstring png = ProgramFolder() + L"window_focus.png";
  ASSERT_TRUE(form.RenderToPng(png));
  {
    Picture picture(png);
    EXPECT_EQ(picture.At(2, 42), 0xFF00FFu) << "the mark's corner, two pixels inside";
    EXPECT_EQ(picture.At(100, 77), 0xFF00FFu) << "its bottom line";
    EXPECT_EQ(picture.At(197, 60), 0xFF00FFu) << "its right line";
    EXPECT_EQ(picture.At(1, 41), 0xFFFFFFu) << "outside the mark";
    EXPECT_EQ(picture.At(100, 60), 0xFFFFFFu) << "inside the mark";
  }

  auto key = [&](UINT vk) { PostMessageW(hwnd, WM_KEYDOWN, vk, 1); };
  key(VK_SPACE);
  ASSERT_TRUE(PumpUntil([&] { return check->IsSelected(); })) << "Space turns the check box over";
  key(VK_RETURN);  // Enter is the default button's, even from the check box
  ASSERT_TRUE(PumpUntil([&] { return form.clicks == 1; }));
  key(VK_TAB);
  ASSERT_TRUE(PumpUntil([&] { return form.GetFocus() == form.FindControl(L"ok"); }));
  ASSERT_TRUE(form.RenderToPng(png));
  EXPECT_EQ(Picture(png).At(2, 82), 0xFF00FFu) << "the mark moved to the ok button";
  key(VK_TAB);
  key(VK_SPACE);  // presses "other", which has no handler
  ASSERT_TRUE(PumpUntil([&] { return form.GetFocus() == form.FindControl(L"other"); }));
  key(VK_TAB);
  ASSERT_TRUE(PumpUntil([&] { return form.GetFocus() == check; })) << "round to the start";
  EXPECT_EQ(form.clicks, 1);
  key(VK_ESCAPE);  // the cancel button closes the form
  ASSERT_TRUE(PumpUntil([&] { return form.finalHwnd != nullptr; }));
  EXPECT_FALSE(IsWindow(hwnd));
}

// A list taller than its place: the wheel scrolls it, and the thumb shows where it is.
TEST_F(WindowUnderWine, TheWheelScrollsAListAndItsThumbFollows) {
  std::string rows;
  for (int i = 0; i < 12; ++i) rows += "<ListContainerElement height=\"25\"/>";
  testing_support::Write(dir.NativeOf(L"skins\\default\\form\\list.xml"), R"(<?xml version="1.0" encoding="utf-8"?>
<Window size="200,150">
  <VBox bkcolor="#FFFFFFFF">
    <ListBox name="list" height="100" vscrollbar="true" scrollbarwidth="10" scrollthumbcolor="#FF0000FF"
      scrolltrackcolor="#FFEEEEEE">)" + rows + R"(</ListBox>
    <HBox><Button name="ok"/><Button name="close"/></HBox>
  </VBox>
</Window>)");
  TestForm form;
  form.skinFile = L"list.xml";
  HWND hwnd = form.Create(nullptr, L"list", WS_POPUP, 0);
  ASSERT_NE(hwnd, nullptr);
  auto* list = dynamic_cast<Box*>(form.FindControl(L"list"));
  // 300 pixels in 100: the track 10..90, a thumb of 80 × 100 ÷ 300 = 26 with 54 to move in.
  ASSERT_EQ(list->GetVScrollBarRect(), (UiRect{190, 0, 200, 100}));
  const std::wstring png = ProgramFolder() + L"window_scroll.png";
  ASSERT_TRUE(form.RenderToPng(png));
  {
    Picture picture(png);
    EXPECT_EQ(picture.At(195, 20), 0x0000FFu) << "the thumb at the top";
    EXPECT_EQ(picture.At(195, 40), 0xEEEEEEu) << "the track below it";
  }
  POINT at{50, 50};
  ClientToScreen(hwnd, &at);
  PostMessageW(hwnd, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), MAKELPARAM(at.x, at.y));
  ASSERT_TRUE(PumpUntil([&] { return list->GetScrollPos() == 60; })) << "a notch is three lines of 20";
  ASSERT_TRUE(form.RenderToPng(png));
  {
    Picture picture(png);  // the thumb at 10 + 54 × 60 ÷ 200 = 26
    EXPECT_EQ(picture.At(195, 20), 0xEEEEEEu);
    EXPECT_EQ(picture.At(195, 45), 0x0000FFu);
  }
  DestroyWindow(hwnd);
}

// Moved to a screen at 150%: the skin's sizes, its fonts and its images follow at once.
TEST_F(WindowUnderWine, ADpiChangeRescalesTheOpenWindow) {
  TestForm form;
  HWND hwnd = form.Create(nullptr, L"dpi", WS_POPUP, 0);
  ASSERT_NE(hwnd, nullptr);
  ASSERT_EQ(form.FindControl(L"ok")->GetPos(), (UiRect{208, 130, 310, 170}));
  // shared\red.png's copy for 150%: 12 pixels with a 3-pixel frame, and green to tell it apart
  ASSERT_TRUE(WriteFramedPng(std::wstring(dir.Path().GetString()) + L"skins\\default\\shared\\red@150.png", 0xFF108010,
                             0xFF1EC81E, 12, 3));
  RECT suggested{0, 0, 480, 360};
  SendMessageW(hwnd, 0x02E0 /* WM_DPICHANGED */, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&suggested));
  EXPECT_EQ(GlobalManager::GetDpiScalePercent(), 150);  // TearDown sets it back
  RECT client;
  GetClientRect(hwnd, &client);
  EXPECT_EQ(client.right, 480);
  EXPECT_EQ(client.bottom, 360);
  // title 48, swatch 60 after a margin of 15, the 72-pixel text, then the row of 60
  EXPECT_EQ(form.FindControl(L"swatch")->GetPos(), (UiRect{15, 63, 465, 123}));
  EXPECT_EQ(form.FindControl(L"image")->GetPos(), (UiRect{15, 195, 111, 255}));
  const std::wstring png = ProgramFolder() + L"window_render_150.png";
  ASSERT_TRUE(form.RenderToPng(png));
  Picture picture(png);
  EXPECT_EQ(picture.At(16, 64), 0x000000u) << "the swatch's border, 3 pixels now";
  EXPECT_EQ(picture.At(17, 65), 0x000000u);
  EXPECT_EQ(picture.At(18, 66), 0x2E8B57u);
  EXPECT_EQ(picture.At(60, 225), 0x1E50C8u) << "the image fills its larger place";
  // shared at (126,195)-(222,255) from red@150.png, its corners of 2 grown to 3
  EXPECT_EQ(picture.At(128, 225), 0x108010u);
  EXPECT_EQ(picture.At(129, 225), 0x1EC81Eu);
  EXPECT_EQ(picture.At(170, 225), 0x1EC81Eu);
  DestroyWindow(hwnd);
}

TEST_F(WindowUnderWine, AFormWithoutItsSkinIsNotCreated) {
  TestForm form;
  form.skinFile = L"missing.xml";
  EXPECT_EQ(form.Create(nullptr, L"", WS_POPUP, 0), nullptr);
  EXPECT_NE(form.finalHwnd, nullptr) << "the window that refused still had its final message";
  EXPECT_EQ(form.GetHWND(), nullptr);
}

TEST_F(WindowUnderWine, APlainWindowTakesTheSkinSizeAsItsClientSize) {
  Window window;
  WindowBuilder builder;
  Control* root =
      builder.CreateFromString(R"(<Window size="300,200"><VBox bkcolor="red"/></Window>)", nullptr, &window);
  window.AttachRoot(static_cast<Box*>(root));
  HWND hwnd = window.Create(nullptr, L"plain", WS_OVERLAPPEDWINDOW, 0, true);
  ASSERT_NE(hwnd, nullptr);
  wchar_t className[64] = {};
  GetClassNameW(hwnd, className, 64);
  EXPECT_STREQ(className, L"MivoUIWindow");
  EXPECT_EQ(GetClassLongPtrW(hwnd, GCL_STYLE), static_cast<ULONG_PTR>(CS_DBLCLKS));
  EXPECT_TRUE(GetWindowLongPtrW(hwnd, GWL_EXSTYLE) & WS_EX_LAYERED);
  RECT client;
  GetClientRect(hwnd, &client);
  EXPECT_EQ(client.right, 300);
  EXPECT_EQ(client.bottom, 200);
  EXPECT_EQ(window.GetRoot()->GetPos(), (UiRect{0, 0, 300, 200}));

  // Centred on the work area of its monitor.
  window.CenterWindow();
  RECT placed;
  GetWindowRect(hwnd, &placed);
  MONITORINFO monitor{};
  monitor.cbSize = sizeof(monitor);
  GetMonitorInfoW(MonitorFromWindow(hwnd, MONITOR_DEFAULTTONEAREST), &monitor);
  const RECT& work = monitor.rcWork;
  EXPECT_LE(std::abs((placed.left + placed.right) - (work.left + work.right)), 1);
  EXPECT_LE(std::abs((placed.top + placed.bottom) - (work.top + work.bottom)), 1);
  DestroyWindow(hwnd);
  EXPECT_EQ(window.GetHWND(), nullptr);
}

TEST_F(WindowUnderWine, AChildAddedToAShownWindowIsLaidOutAndRepaintedWithoutMoreInput) {
  Window window;
  WindowBuilder builder;
  Control* root = builder.CreateFromString(
      R"(<Window size="300,200"><VBox bkcolor="red"><Control height="50"/></VBox></Window>)", nullptr, &window);
  window.AttachRoot(static_cast<Box*>(root));
  HWND hwnd = window.Create(nullptr, L"grows", WS_POPUP, 0);
  ASSERT_NE(hwnd, nullptr);
  window.ShowWindow(true, false);
  PumpUntil([] { return false; }, 100);  // the first paint
  ASSERT_FALSE(GetUpdateRect(hwnd, nullptr, FALSE));

  auto* added = new Control();
  added->SetFixedHeight(30);
  window.GetRoot()->Add(added);
  // Posted messages only: the window's own lays the box out, and that asks for the repaint.
  MSG msg;
  while (PeekMessageW(&msg, hwnd, 0, 0, PM_REMOVE | PM_QS_POSTMESSAGE)) DispatchMessageW(&msg);
  RECT update{};
  EXPECT_TRUE(GetUpdateRect(hwnd, &update, FALSE));
  EXPECT_EQ((UiRect{update.left, update.top, update.right, update.bottom}), (UiRect{0, 50, 300, 80}));
  EXPECT_EQ(added->GetPos(), (UiRect{0, 50, 300, 80}));
  DestroyWindow(hwnd);
}

// What the painting attributes look like, pixel by pixel: rounded corners that show the parent
// through (and clip the children), a gradient's end colours, a half-transparent control's blend,
// a render offset, a corner-stretched image without its centre, tiling, image layouts, wrapped
// text; and the cursor a control asks for.
TEST_F(WindowUnderWine, PaintingAttributesShowInThePixels) {
  testing_support::Write(dir.NativeOf(L"skins\\default\\form\\paint.xml"), R"(<?xml version="1.0" encoding="utf-8"?>
<Window size="200,140">
  <Font name="Tahoma" size="12"/>
  <VBox bkcolor="#FFFFFFFF">
    <HBox height="40">
      <VBox width="40" borderround="16,16" bordersize="2" bordercolor="#FF000000"><Control bkcolor="#FFFF0000"/></VBox>
      <Control width="40" isgradient="true" begingradientcolor="#FF000000" endgradientcolor="#FF0000FF" nSteps="4"/>
      <Control width="40" bkcolor="#FFFF0000" alpha="128"/>
      <Control name="offset" width="40" bkcolor="#FF00FF00" renderoffset="10,0" cursortype="ibeam"/>
      <Control width="40" bkcolor="#FF0000FF" borderround="40,40"/>
    </HBox>
    <HBox height="40">
      <Control width="40" bkimage="file='../shared/red.png' corner='2,2,2,2'" emptycenter="true"/>
      <Control width="40" bkimage="file='../shared/red.png' xtiled='true'"/>
      <Control width="40" bkimage="../shared/red.png" imagelayout="cut"/>
      <Control width="80" bkimage="../shared/red.png" imagelayout="scale"/>
    </HBox>
    <HBox height="60">
      <Label width="100" text="wrap wrap wrap wrap wrap wrap" align="top" singleline="false"/>
      <Label width="100" text="wrap wrap wrap wrap wrap wrap" align="top"/>
    </HBox>
    <HBox visible="false"><Button name="ok"/><Button name="close"/></HBox>
  </VBox>
</Window>)");
  TestForm form;
  form.skinFile = L"paint.xml";
  HWND hwnd = form.Create(nullptr, L"paint", WS_POPUP, 0);
  ASSERT_NE(hwnd, nullptr);
  const std::wstring png = ProgramFolder() + L"window_paint.png";
  ASSERT_TRUE(form.RenderToPng(png));
  Picture picture(png);
  struct Row {
    const char* what;
    int x, y;
    uint32_t rgb;
    int tolerance;  // per channel
  };
  const Row rows[] = {
      {"rounded box: its corner shows the parent, not its child", 0, 0, 0xFFFFFF, 0},
      {"rounded box: its child inside", 20, 20, 0xFF0000, 0},
      {"rounded box: the border over the child", 20, 1, 0x000000, 0},
      {"rounded box: the bottom right corner", 39, 39, 0xFFFFFF, 0},
      {"gradient: the first colour at the left", 40, 20, 0x000000, 0},
      {"gradient: the third of four steps", 60, 20, 0x0000AA, 0},
      {"gradient: the last colour at the right", 79, 20, 0x0000FF, 0},
      {"alpha 128: red half over white", 100, 20, 0xFF7F7F, 1},
      {"render offset: the control's left ten pixels are left bare", 125, 20, 0xFFFFFF, 0},
      {"render offset: its colour moved right", 135, 20, 0x00FF00, 0},
      {"round without a border: the corner", 161, 1, 0xFFFFFF, 0},
      {"round without a border: the middle", 180, 20, 0x0000FF, 0},
      {"empty centre: the corner keeps its size", 1, 41, 0x801010, 0},
      {"empty centre: the right edge", 38, 60, 0x801010, 0},
      {"empty centre: the middle shows the parent", 20, 60, 0xFFFFFF, 0},
      {"tiled across: the second tile's frame", 48, 60, 0x801010, 0},
      {"tiled across: the first tile's middle", 44, 60, 0xC81E1E, 0},
      {"cut: the image at its own size", 84, 44, 0xC81E1E, 0},
      {"cut: nothing past it", 100, 60, 0xFFFFFF, 0},
      {"scale: square in the middle of a wide place", 160, 60, 0xC81E1E, 0},
      {"scale: the sides are bare", 125, 60, 0xFFFFFF, 0},
  };
  for (const Row& row : rows) {
    const uint32_t seen = picture.At(row.x, row.y);
    for (int shift = 0; shift < 24; shift += 8)
      EXPECT_LE(std::abs(static_cast<int>((seen >> shift) & 0xFF) - static_cast<int>((row.rgb >> shift) & 0xFF)),
                row.tolerance)
          << row.what << ": " << std::hex << seen;
  }
  EXPECT_LT(picture.DarkestIn(0, 97, 100, 110), 300) << "wrapped text reaches its second line";
  EXPECT_EQ(picture.DarkestIn(100, 97, 200, 110), 3 * 255) << "one line stays one line";

  PostMessageW(hwnd, WM_MOUSEMOVE, 0, At(135, 20));
  ASSERT_TRUE(PumpUntil([&] { return form.GetHotControl() == form.FindControl(L"offset"); }));
  SendMessageW(hwnd, WM_SETCURSOR, reinterpret_cast<WPARAM>(hwnd), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
  EXPECT_EQ(GetCursor(), LoadCursorW(nullptr, IDC_IBEAM)) << "cursortype ibeam";
  DestroyWindow(hwnd);
}

}  // namespace
