// Skins from text and from a folder: the window's attributes, the resources, the control tree
// with its attributes in document order, tags the caller makes, damaged skins, and includes of
// other files of the skin with those that are refused.
#include "duilib/Core/WindowBuilder.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "duilib/Core/Box.h"
#include "duilib/Core/Button.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/Label.h"
#include "duilib/Core/ListBox.h"
#include "duilib/Core/Option.h"
#include "duilib/Core/Window.h"
#include "tests/support/Files.h"
#include "tests/support/TempDir.h"

namespace {

using namespace mivo::duilib;

// The skins define classes, fonts and colours process-wide; each test starts without any.
class WindowBuilderTest : public ::testing::Test {
 protected:
  void TearDown() override {
    GlobalManager::RemoveAllClasses();
    GlobalManager::RemoveAllFonts();
    GlobalManager::RemoveAllTextColors();
  }
  std::unique_ptr<Control> Build(const std::string& xml, CreateControlCallback callback = nullptr) {
    return std::unique_ptr<Control>(builder.CreateFromString(xml, std::move(callback)));
  }
  WindowBuilder builder;
};

// The tree as "Tag:name(child,child)", from the controls' own types, or as "name(child,child)".
std::string Shape(Control* control, bool kinds = true) {
  if (!control) return "(null)";
  std::string kind = dynamic_cast<ListBox*>(control)                ? "ListBox"
                     : dynamic_cast<ListContainerElement*>(control) ? "Row"
                     : dynamic_cast<Option*>(control)               ? "Option"
                     : dynamic_cast<Button*>(control)               ? "Button"
                     : dynamic_cast<Label*>(control)                ? "Label"
                     : dynamic_cast<VBox*>(control)                 ? "VBox"
                     : dynamic_cast<HBox*>(control)                 ? "HBox"
                     : dynamic_cast<Box*>(control)                  ? "Box"
                                                                    : "Control";
  std::string name(control->GetName().begin(), control->GetName().end());
  std::string shape = !kinds ? name : kind + (name.empty() ? "" : ":" + name);
  if (auto* box = dynamic_cast<Box*>(control); box && box->GetCount() > 0) {
    shape += "(";
    for (size_t i = 0; i < box->GetCount(); ++i) {
      if (i) shape += ",";
      shape += Shape(box->GetItemAt(i), kinds);
    }
    shape += ")";
  }
  return shape;
}

const char* const kSkin = R"(<?xml version="1.0" encoding="utf-8"?>
<Window size="300,200" caption="0,0,0,30" roundcorner="4,4" mininfo="200,100" sizebox="4,4,4,4" shadowattached="false">
  <Font id="0" name="Arial" size="12"/>
  <Font id="3" name="微软雅黑" size="14" bold="true" underline="true" italic="true"/>
  <Font name="Courier"/>
  <TextColor name="darkcolor" value="#FF333333"/>
  <VBox name="root" bkcolor="#FFFFFFFF">
    <HBox name="title" height="30">
      <Label name="caption" text="Mivo &amp; friends &#x4E2D;" font="3" width="auto"/>
      <Control/>
      <Button name="close" normalimage="early.png" class="closebtn" hotimage="late.png"/>
    </HBox>
    <Class name="ignored" value='text="x"'/>
    <Option name="tab" group="tabs" selected="true"/>
    <ListBox name="list">
      <ListContainerElement name="r0" height="20"/>
      <ListContainerElement name="r1" height="20" selected="true"/>
    </ListBox>
  </VBox>
  <Class name="closebtn" value='normalimage="close.png" hotimage="close_hot.png" width="20"'/>
</Window>)";

TEST_F(WindowBuilderTest, WholeSkin) {
  Window window;
  Control* root = builder.CreateFromString(kSkin, nullptr, &window);
  ASSERT_NE(root, nullptr);
  window.AttachRoot(dynamic_cast<Box*>(root));
  EXPECT_EQ(Shape(root),
            "VBox:root(HBox:title(Label:caption,Control,Button:close),Option:tab,ListBox:list(Row:r0,Row:r1))");

  const std::map<std::wstring, std::wstring> attributes = {{L"size", L"300,200"},    {L"caption", L"0,0,0,30"},
                                                           {L"roundcorner", L"4,4"}, {L"mininfo", L"200,100"},
                                                           {L"sizebox", L"4,4,4,4"}, {L"shadowattached", L"false"}};
  EXPECT_EQ(builder.WindowAttributes(), attributes);
  EXPECT_EQ(window.GetAttributes(), attributes);

  // resources, including those written after the controls
  ASSERT_NE(GlobalManager::GetFont(3), nullptr);
  EXPECT_EQ(*GlobalManager::GetFont(3), (FontInfo{L"微软雅黑", 14, true, true, true}));
  EXPECT_EQ(*GlobalManager::GetFont(0), (FontInfo{L"Arial", 12, false, false, false}));
  ASSERT_NE(GlobalManager::GetFont(2), nullptr);  // no number: its place among the fonts
  EXPECT_EQ(GlobalManager::GetFont(2)->name, L"Courier");
  EXPECT_EQ(GlobalManager::GetTextColor(L"darkcolor"), L"#FF333333");
  EXPECT_EQ(GlobalManager::GetClassAttributes(L"ignored"), L"");  // only the window's own count

  auto* caption = dynamic_cast<Label*>(window.FindControl(L"caption"));
  ASSERT_NE(caption, nullptr);
  EXPECT_EQ(caption->GetText(), L"Mivo & friends \u4E2D");
  EXPECT_EQ(caption->GetFont(), 3);
  EXPECT_EQ(caption->GetFixedWidth(), DUI_LENGTH_AUTO);
  EXPECT_EQ(window.FindControl(L"title")->GetFixedHeight(), 30);
  EXPECT_EQ(root->GetBkColor(), L"#FFFFFFFF");

  // the class applies where it stands among the attributes
  Control* close = window.FindControl(L"close");
  EXPECT_EQ(close->GetImage(kImageSetBackground, kControlStateNormal), L"close.png");
  EXPECT_EQ(close->GetImage(kImageSetBackground, kControlStateHot), L"late.png");
  EXPECT_EQ(close->GetFixedWidth(), 20);

  ASSERT_NE(window.GetOptionGroup(L"tabs"), nullptr);
  EXPECT_TRUE(dynamic_cast<Option*>(window.FindControl(L"tab"))->IsSelected());
  EXPECT_EQ(dynamic_cast<ListBox*>(window.FindControl(L"list"))->GetCurSel(), 1);
}

TEST_F(WindowBuilderTest, UnknownTagsGoToTheCallback) {
  const char* const skin = R"(<Window><VBox>
      <Fancy name="f"><Label name="inside"/></Fancy>
      <Missing><Fancy name="lost"/></Missing>
      <Label name="plain"><Fancy name="child of a label"/></Label>
      <Window/>
    </VBox></Window>)";
  std::vector<std::wstring> asked;
  auto callback = [&asked](const std::wstring& tag) -> Control* {
    asked.push_back(tag);
    return tag == L"Fancy" ? new HBox() : nullptr;
  };
  std::unique_ptr<Control> root = Build(skin, callback);
  ASSERT_NE(root, nullptr);
  // a null answer leaves the element out with what is inside it; a child of a non-box is
  // not built at all
  EXPECT_EQ(Shape(root.get()), "VBox(HBox:f(Label:inside),Label:plain)");
  EXPECT_EQ(asked, (std::vector<std::wstring>{L"Fancy", L"Missing", L"Window"}));

  root = Build(skin);  // without a callback unknown tags are left out
  EXPECT_EQ(Shape(root.get()), "VBox(Label:plain)");
}

TEST_F(WindowBuilderTest, RootsOtherThanAWindow) {
  std::unique_ptr<Control> row = Build(R"(<ListContainerElement name="row" height="24">
      <Label name="text" mouse="false"/></ListContainerElement>)");
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(Shape(row.get()), "Row:row(Label:text)");
  EXPECT_TRUE(builder.WindowAttributes().empty());

  std::unique_ptr<Control> label = Build(R"(<Label name="alone" text="hi"/>)");
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(dynamic_cast<Label*>(label.get())->GetText(), L"hi");

  // a window has one root; later controls are dropped
  std::unique_ptr<Control> first = Build(R"(<Window a="1"><HBox name="one"/><VBox name="two"/></Window>)");
  EXPECT_EQ(Shape(first.get()), "HBox:one");
  EXPECT_EQ(builder.WindowAttributes().at(L"a"), L"1");
}

TEST_F(WindowBuilderTest, IntoAParentOfAWindow) {
  Window window;
  window.AttachRoot(new VBox());
  Control* row = builder.CreateFromString(R"(<Option name="o" group="g"/>)", nullptr, nullptr, window.GetRoot());
  ASSERT_NE(row, nullptr);
  EXPECT_EQ(row->GetParent(), window.GetRoot());
  EXPECT_EQ(window.FindControl(L"o"), row);
  EXPECT_EQ(window.GetOptionGroup(L"g")->size(), 1u);
}

TEST_F(WindowBuilderTest, DamagedSkinsGiveNull) {
  const char* const rows[] = {"",
                              "not xml at all",
                              "<Window>",
                              "<Window><VBox></Window>",
                              "<Window><VBox name=\"a\" name=\"b\"/></Window>",
                              "<Window><VBox name=\"unterminated/></Window>",
                              "<Window><VBox>&#xZZ;</VBox></Window>",
                              "<Window size=\"1,1\"/>",  // no control
                              "<Window><Unknown/></Window>",
                              "<!-- only a comment -->"};
  for (const char* xml : rows) {
    EXPECT_EQ(Build(xml), nullptr) << xml;
  }
}

std::string Nested(int boxes, const char* inner = "") {
  std::string xml = "<Window>";
  for (int i = 0; i < boxes; ++i) xml += "<VBox>";
  xml += inner;
  for (int i = 0; i < boxes; ++i) xml += "</VBox>";
  return xml + "</Window>";
}

TEST_F(WindowBuilderTest, NestingIsLimited) {
  // the Window element is the first level
  std::unique_ptr<Control> deepest = Build(Nested(WindowBuilder::kMaxNesting - 1));
  ASSERT_NE(deepest, nullptr);
  int depth = 1;
  for (auto* box = dynamic_cast<Box*>(deepest.get()); box && box->GetCount();
       box = dynamic_cast<Box*>(box->GetItemAt(0)))
    ++depth;
  EXPECT_EQ(depth, WindowBuilder::kMaxNesting - 1);
  EXPECT_EQ(Build(Nested(WindowBuilder::kMaxNesting)), nullptr);
  EXPECT_EQ(Build(Nested(WindowBuilder::kMaxNesting - 1, "<Label/>")), nullptr);
  EXPECT_EQ(Build(Nested(WindowBuilder::kMaxNesting - 1, "<Control></Control>")), nullptr);

  EXPECT_EQ(Build(Nested(100000)), nullptr);  // refused before TinyXML recurses into it
}

TEST_F(WindowBuilderTest, TextIsReadAsUtf8) {
  // a broken sequence becomes U+FFFD; line ends inside values become "\n"
  std::unique_ptr<Control> label = Build(
      "<Label text=\"a\xFF"
      "b\r\nc\xE4\xB8\xAD\"/>");
  ASSERT_NE(label, nullptr);
  EXPECT_EQ(dynamic_cast<Label*>(label.get())->GetText(), L"a\uFFFDb\nc\u4E2D");
  // a byte-order mark in front is fine
  EXPECT_NE(Build("\xEF\xBB\xBF<Window><Box/></Window>"), nullptr);
}

// A temporary folder with the skin in its subfolder "skin".
class SkinFolderTest : public ::testing::Test {
 protected:
  void TearDown() override { GlobalManager::RemoveAllClasses(); }
  void Write(const std::wstring& relative, const std::string& xml) {
    testing_support::Write(dir.NativeOf(CString((L"skin\\" + relative).c_str())), xml);
  }
  std::wstring Folder() const { return std::wstring(dir.Path().GetString()) + L"skin"; }
  std::string Build(const std::wstring& file) {
    std::unique_ptr<Control> root(builder.Create(Folder(), file));
    return Shape(root.get(), false);
  }
  testing_support::TempDir dir;
  WindowBuilder builder;
};

TEST_F(SkinFolderTest, IncludesBringTheControlsOfOtherFiles) {
  Write(L"main.xml", R"(<Window size="10,10"><Class name="btn" value='width="20"'/>
    <VBox name="root">
      <Include source="parts\title.xml"/>
      <Label name="middle"/>
      <Include source="parts/more.xml"/>
      <Include source=".\子目录\行.xml"/>
    </VBox></Window>)");
  Write(L"parts/title.xml", R"(<HBox name="title"><Button name="close" class="btn"/></HBox>)");
  Write(L"parts/more.xml", R"(<Window ignored="yes"><Class name="wide" value='width="99"'/>
    <Label name="m1" class="wide"/><Label name="m2"/></Window>)");
  Write(L"子目录/行.xml", "\xEF\xBB\xBF<ListContainerElement name=\"row\"/>");

  std::unique_ptr<Control> root(builder.Create(Folder() + L"\\", L"main.xml"));
  EXPECT_EQ(Shape(root.get(), false), "root(title(close),middle,m1,m2,row)");
  auto* box = dynamic_cast<Box*>(root.get());
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->FindSubControl(L"close")->GetFixedWidth(), 20);
  EXPECT_EQ(box->FindSubControl(L"m1")->GetFixedWidth(), 99);  // the included file's own class
  EXPECT_NE(dynamic_cast<ListContainerElement*>(box->FindSubControl(L"row")), nullptr);
  EXPECT_EQ(builder.WindowAttributes().size(), 1u);  // an included window's attributes are not the window's
  EXPECT_EQ(builder.WindowAttributes().count(L"size"), 1u);

  // the file itself may lie in a subfolder; its includes are still relative to the skin folder
  Write(L"forms/login.xml", R"(<Window><VBox name="login"><Include source="parts\title.xml"/></VBox></Window>)");
  EXPECT_EQ(Build(L"forms\\login.xml"), "login(title(close))");
}

TEST_F(SkinFolderTest, RefusedIncludesAreLeftOut) {
  testing_support::Write(dir.Native() / "outside.xml", R"(<Label name="outside"/>)");
  Write(L"parts/inside.xml", R"(<Label name="inside"/>)");
  Write(L"broken.xml", R"(<Label name="broken">)");
  const std::wstring outsideAbsolute = std::wstring(dir.Path().GetString()) + L"outside.xml";
  const std::wstring rows[] = {L"..\\outside.xml",
                               L"parts\\..\\..\\outside.xml",
                               L"parts/../../outside.xml",
                               outsideAbsolute,
                               L"\\outside.xml",
                               L"C:outside.xml",
                               L"...\\outside.xml",
                               L"parts\\.. \\..\\outside.xml",
                               L"missing.xml",
                               L"broken.xml",
                               L"",
                               L"parts"};
  for (const std::wstring& source : rows) {
    SCOPED_TRACE(std::string(source.begin(), source.end()));
    std::string skin = "<Window><VBox name=\"root\"><Label name=\"before\"/><Include source=\"";
    for (wchar_t c : source) skin += static_cast<char>(c);
    Write(L"main.xml", skin + "\"/><Label name=\"after\"/></VBox></Window>");
    EXPECT_EQ(Build(L"main.xml"), "root(before,after)");
  }
  // the same skin with a path that stays inside, for contrast
  Write(L"main.xml", R"(<Window><VBox name="root"><Include source="parts\..\parts\inside.xml"/></VBox></Window>)");
  EXPECT_EQ(Build(L"main.xml"), "root(inside)");
}

TEST_F(SkinFolderTest, RecursiveIncludesStop) {
  Write(L"a.xml", R"(<Window><VBox name="a"><Include source="b.xml"/></VBox></Window>)");
  Write(L"b.xml", R"(<VBox name="b"><Include source="sub\..\a.xml"/><Include source="B.xml"/>
    <Include source="b.xml"/><Label name="leaf"/></VBox>)");
#ifndef _WIN32
  // Another file here, but the same one where skins are made: names compare without case on
  // every platform, so a skin behaves the same everywhere.
  Write(L"B.xml", R"(<Label name="upper"/>)");
#endif
  EXPECT_EQ(Build(L"a.xml"), "a(b(leaf))");
}

TEST_F(SkinFolderTest, IncludesNestAtMostEightDeep) {
  Write(L"main.xml", R"(<Window><VBox name="main"><Include source="f1.xml"/></VBox></Window>)");
  for (int i = 1; i <= 10; ++i)
    Write(L"f" + std::to_wstring(i) + L".xml",
          "<VBox name=\"n" + std::to_string(i) + "\"><Include source=\"f" + std::to_string(i + 1) + ".xml\"/></VBox>");
  EXPECT_EQ(Build(L"main.xml"), "main(n1(n2(n3(n4(n5(n6(n7(n8))))))))");
}

TEST_F(SkinFolderTest, UnreadableTopFilesGiveNull) {
  Write(L"broken.xml", "<Window><VBox></Window>");
  Write(L"empty.xml", "");
  EXPECT_EQ(Build(L"missing.xml"), "(null)");
  EXPECT_EQ(Build(L"broken.xml"), "(null)");
  EXPECT_EQ(Build(L"empty.xml"), "(null)");
  std::unique_ptr<Control> none(builder.Create(Folder() + L"\\nowhere", L"main.xml"));
  EXPECT_EQ(none, nullptr);
}

TEST_F(SkinFolderTest, TextSkinsIncludeFromTheFolderTheyAreGiven) {
  Write(L"part.xml", R"(<Label name="part"/>)");
  const std::string skin = R"(<Window><HBox name="root"><Include source="part.xml"/></HBox></Window>)";
  std::unique_ptr<Control> with(builder.CreateFromString(skin, nullptr, nullptr, nullptr, Folder()));
  EXPECT_EQ(Shape(with.get(), false), "root(part)");
  std::unique_ptr<Control> without(builder.CreateFromString(skin));
  EXPECT_EQ(Shape(without.get(), false), "root");
}

}  // namespace
