// Skins from a folder: includes of other files of the skin, and the includes that are
// refused (out of the folder, recursive, too many levels, too deep, unreadable).
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "duilib/Core/Box.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/Label.h"
#include "duilib/Core/ListBox.h"
#include "duilib/Core/WindowBuilder.h"
#include "tests/support/Files.h"
#include "tests/support/TempDir.h"

namespace {

using namespace mivo::duilib;
using testing_support::TempDir;

// The tree as "name(child,child)".
std::string Names(Control* control) {
  if (!control) return "(null)";
  std::string shape(control->GetName().begin(), control->GetName().end());
  if (auto* box = dynamic_cast<Box*>(control); box && box->GetCount() > 0) {
    shape += "(";
    for (size_t i = 0; i < box->GetCount(); ++i) {
      if (i) shape += ",";
      shape += Names(box->GetItemAt(i));
    }
    shape += ")";
  }
  return shape;
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
    return Names(root.get());
  }
  TempDir dir;
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
  EXPECT_EQ(Names(root.get()), "root(title(close),middle,m1,m2,row)");
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
  const std::wstring rows[] = {
      L"..\\outside.xml",
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
      L"parts",
  };
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

TEST_F(SkinFolderTest, AnIncludeCountsInTheNesting) {
  // Window and 250 boxes fill levels 1 to 251; the included root takes the Include's level 252
  const int boxes = 250;
  auto nested = [](int levels, const std::string& name) {
    std::string xml;
    for (int i = 0; i < levels; ++i) xml += "<VBox name=\"" + (i ? std::string() : name) + "\">";
    for (int i = 0; i < levels; ++i) xml += "</VBox>";
    return xml;
  };
  Write(L"five.xml", nested(5, "five"));
  Write(L"six.xml", nested(6, "six"));
  std::string skin = "<Window>";
  for (int i = 0; i < boxes; ++i) skin += "<VBox>";
  skin += "<Include source=\"five.xml\"/><Include source=\"six.xml\"/>";
  for (int i = 0; i < boxes; ++i) skin += "</VBox>";
  Write(L"main.xml", skin + "</Window>");

  std::unique_ptr<Control> root(builder.Create(Folder(), L"main.xml"));
  ASSERT_NE(root, nullptr);
  auto* box = dynamic_cast<Box*>(root.get());
  EXPECT_NE(box->FindSubControl(L"five"), nullptr);
  EXPECT_EQ(box->FindSubControl(L"six"), nullptr);
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
  EXPECT_EQ(Names(with.get()), "root(part)");
  std::unique_ptr<Control> without(builder.CreateFromString(skin));
  EXPECT_EQ(Names(without.get()), "root");
}

}  // namespace
