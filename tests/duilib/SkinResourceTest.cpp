// What skins name and the painters need resolved: colours (table entries, "#AARRGGBB",
// bare hex, names), image descriptions, where image files lie, and corner-stretched pieces.
#include <gtest/gtest.h>

#include <cstdint>
#include <cwchar>
#include <set>
#include <string>
#include <vector>

#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/ImageDescription.h"

namespace {

using namespace mivo::duilib;

class SkinResources : public ::testing::Test {
 protected:
  void TearDown() override {
    GlobalManager::RemoveAllTextColors();
    GlobalManager::Startup(L"", L"");
  }
};

TEST_F(SkinResources, ColoursFromTheTableFromHexAndByName) {
  GlobalManager::AddTextColor(L"link", L"#FF0078D7");
  GlobalManager::AddTextColor(L"shade", L"#336699");
  GlobalManager::AddTextColor(L"d8ebeb", L"#FF112233");  // a table name wins over its hex reading
  GlobalManager::AddTextColor(L"broken", L"#12345");
  GlobalManager::AddTextColor(L"named", L"white");
  // bare hex is how the skins write state colours; three digits are not a colour here
  const std::pair<const wchar_t*, uint32_t> rows[] = {
      {L"link", 0xFF0078D7u},
      {L"shade", 0xFF336699u},
      {L"d8ebeb", 0xFF112233u},
      {L"broken", 0},
      {L"named", 0xFFFFFFFFu},
      {L"#80102030", 0x80102030u},
      {L"#102030", 0xFF102030u},
      {L"#aBcDeF", 0xFFABCDEFu},
      {L"c8e4e4", 0xFFC8E4E4u},
      {L"00c8e4e4", 0x00C8E4E4u},
      {L"  #FF000080 ", 0xFF000080u},
      {L"white", 0xFFFFFFFFu},
      {L"Black", 0xFF000000u},
      {L"transparent", 0},
      {L"#FFF", 0},
      {L"#GG0000", 0},
      {L"12345", 0},
      {L"c8e4e4e", 0},
      {L"#white", 0},
      {L"nosuchcolour", 0},
      {L"", 0},
  };
  for (const auto& [name, argb] : rows)
    EXPECT_EQ(GlobalManager::ResolveColor(name), argb) << std::string(name, name + std::wcslen(name));
}

TEST_F(SkinResources, ImageDescriptions) {
  struct Row {
    const wchar_t* text;
    bool ok;
    ImageDescription expected;
  } rows[] = {
      {L"logo.png", true, {L"logo.png"}},
      {L"  bk_listitem_selected ", true, {L"bk_listitem_selected"}},
      {L"file='btn.png' corner='1,2,3,4' fade='200'", true, {L"btn.png", {}, {}, {1, 2, 3, 4}, 200}},
      {L"file=\"a b.png\" source='0,0,16,16' dest='2,2,18,18'", true, {L"a b.png", {0, 0, 16, 16}, {2, 2, 18, 18}}},
      {L"res='x.png' alpha='300'", true, {L"x.png", {}, {}, {}, 255}},
      {L"file='x.png' fade='-5' unknown='1'", true, {L"x.png", {}, {}, {}, 0}},
      {L"file=x.png corner=4,4,4,4", true, {L"x.png", {}, {}, {4, 4, 4, 4}}},
      {L"file='unterminated.png", true, {L"unterminated.png"}},
      {L"corner='1,1,1,1'", false, {}},
      {L"file=''", false, {}},
      {L"   ", false, {}}};
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.text, row.text + std::wcslen(row.text)));
    ImageDescription parsed;
    parsed.alpha = 7;  // whatever was there before is replaced
    EXPECT_EQ(ParseImageDescription(row.text, parsed), row.ok);
    EXPECT_EQ(parsed, row.expected);
  }
}

TEST_F(SkinResources, ImageFilesLieInTheWindowsSkinFolder) {
  GlobalManager::Startup(L"C:\\Mivo\\resources", L"skins/default/");
  EXPECT_EQ(GlobalManager::GetResourceRoot(), L"C:\\Mivo\\resources\\");
  EXPECT_EQ(GlobalManager::GetResourcePath(), L"C:\\Mivo\\resources\\skins\\default\\");
  struct Row {
    const wchar_t* file;
    const wchar_t* windowFolder;
    const wchar_t* path;
  } rows[] = {
      {L"logo.png", L"start", L"C:\\Mivo\\resources\\skins\\default\\start\\logo.png"},
      {L"bk_listitem_selected", L"start", L"C:\\Mivo\\resources\\skins\\default\\start\\bk_listitem_selected.png"},
      {L"icons/close.bmp", L"start", L"C:\\Mivo\\resources\\skins\\default\\start\\icons\\close.bmp"},
      {L"../public/1.png", L"start", L"C:\\Mivo\\resources\\skins\\default\\public\\1.png"},
      {L"..\\public\\bk", L"start", L"C:\\Mivo\\resources\\skins\\default\\public\\bk.png"},
      {L"./a/../b.png", L"", L"C:\\Mivo\\resources\\skins\\default\\b.png"},
      {L"../../../shared/x.png", L"start", L"C:\\Mivo\\resources\\shared\\x.png"},  // still inside the root
      {L"../../../../x.png", L"start", L""},                                        // out of it
      {L"../x.png", L"..\\..\\..", L""},
      {L"... /x.png", L"start", L""},
      {L"C:\\photos\\me.png", L"start", L"C:\\photos\\me.png"},
      {L"\\\\server\\share\\pic", L"start", L"\\\\server\\share\\pic.png"},
      {L"", L"start", L""}};
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.file, row.file + std::wcslen(row.file)));
    EXPECT_EQ(ResolveImagePath(row.file, row.windowFolder), row.path);
  }
}

TEST_F(SkinResources, LargerCopiesOfAnImageAreChosenByTheScaling) {
  const std::set<std::wstring> files = {L"C:\\s\\a@150.png", L"C:\\s\\a@200.png", L"C:\\s\\b@125.png",
                                        L"C:\\s.v2\\c@200", L"C:\\s\\d.x@300.png"};
  std::vector<std::wstring> probed;
  auto exists = [&](const std::wstring& name) {
    probed.push_back(name);
    return files.count(name) > 0;
  };
  struct Row {
    const wchar_t* path;
    int percent;
    ImageVariant chosen;
  } rows[] = {
      {L"C:\\s\\a.png", 100, {L"C:\\s\\a.png", 100}},
      {L"C:\\s\\a.png", 125, {L"C:\\s\\a@150.png", 150}},  // the nearest larger one
      {L"C:\\s\\a.png", 150, {L"C:\\s\\a@150.png", 150}},
      {L"C:\\s\\a.png", 175, {L"C:\\s\\a@200.png", 200}},
      {L"C:\\s\\a.png", 300, {L"C:\\s\\a@200.png", 200}},  // none larger: the nearest below
      {L"C:\\s\\b.png", 150, {L"C:\\s\\b@125.png", 125}},
      {L"C:\\s\\x.png", 200, {L"C:\\s\\x.png", 100}},    // no copy: the plain file
      {L"C:\\s.v2\\c", 200, {L"C:\\s.v2\\c@200", 200}},  // a dot in a folder is no extension
      {L"C:\\s\\d.x.png", 250, {L"C:\\s\\d.x@300.png", 300}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << std::wstring(row.path) << " at " << row.percent);
    EXPECT_EQ(ChooseImageVariant(row.path, row.percent, exists), row.chosen);
  }
  probed.clear();
  ChooseImageVariant(L"C:\\s\\a.png", 100, exists);
  EXPECT_TRUE(probed.empty()) << "at 100% the disk is not asked";
}

TEST_F(SkinResources, CornersKeepTheirSizeWhileTheRestStretches) {
  using Pieces = std::vector<ImagePiece>;
  // a 10x10 image with 2-pixel corners into 30x20 at (100,50)
  const Pieces nine = SplitImage({0, 0, 10, 10}, {100, 50, 130, 70}, {2, 2, 2, 2});
  ASSERT_EQ(nine.size(), 9u);
  EXPECT_EQ(nine[0], (ImagePiece{{0, 0, 2, 2}, {100, 50, 102, 52}}));
  EXPECT_EQ(nine[1], (ImagePiece{{2, 0, 8, 2}, {102, 50, 128, 52}}));
  EXPECT_EQ(nine[4], (ImagePiece{{2, 2, 8, 8}, {102, 52, 128, 68}}));
  EXPECT_EQ(nine[8], (ImagePiece{{8, 8, 10, 10}, {128, 68, 130, 70}}));

  EXPECT_EQ(SplitImage({0, 0, 10, 10}, {0, 0, 40, 40}, {}), (Pieces{{{0, 0, 10, 10}, {0, 0, 40, 40}}}));
  // left and right edges only: three pieces in a row
  EXPECT_EQ(SplitImage({0, 0, 10, 4}, {0, 0, 50, 4}, {3, 0, 3, 0}),
            (Pieces{{{0, 0, 3, 4}, {0, 0, 3, 4}}, {{3, 0, 7, 4}, {3, 0, 47, 4}}, {{7, 0, 10, 4}, {47, 0, 50, 4}}}));
  // a destination narrower than both corners: they share it in proportion, no middle
  EXPECT_EQ(SplitImage({0, 0, 10, 2}, {0, 0, 2, 2}, {3, 0, 1, 0}),
            (Pieces{{{0, 0, 3, 2}, {0, 0, 1, 2}}, {{9, 0, 10, 2}, {1, 0, 2, 2}}}));
  // an image part of a strip (source), and nothing for an empty destination
  EXPECT_EQ(SplitImage({16, 0, 32, 16}, {0, 0, 16, 16}, {}), (Pieces{{{16, 0, 32, 16}, {0, 0, 16, 16}}}));
  EXPECT_TRUE(SplitImage({0, 0, 10, 10}, {5, 5, 5, 9}, {}).empty());
}

}  // namespace
