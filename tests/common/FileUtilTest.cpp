#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <thread>

#include "common/FileUtil.h"
#include "support/Files.h"
#include "support/TempDir.h"
#include "toolkit/File.h"
#include "toolkit/FileSystem.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace mc = mivo::common;
namespace fs = std::filesystem;
using testing_support::Read;
using testing_support::TempDir;
using testing_support::Write;

namespace {

TEST(FileTests, ExistenceAndSize) {
  TempDir dir;
  Write(dir.NativeOf(L"f.bin"), std::string(1234, 'x'));
  EXPECT_TRUE(mc::IsFileExist(dir.Path() + L"f.bin"));
  EXPECT_FALSE(mc::IsFileExist(dir.Path()));  // a folder is not a file
  EXPECT_TRUE(mc::IsFolderExist(dir.Path()));
  EXPECT_TRUE(mc::IsFolderExist(dir.Path().Left(dir.Path().GetLength() - 1)));
  EXPECT_FALSE(mc::IsFolderExist(dir.Path() + L"f.bin"));
  EXPECT_FALSE(mc::IsFileExist(dir.Path() + L"missing"));
  EXPECT_FALSE(mc::IsFileExist(L""));
  EXPECT_EQ(mc::GetFileSize(dir.Path() + L"f.bin"), 1234u);
  EXPECT_EQ(mc::GetFileSize(dir.Path() + L"missing"), 0u);
  EXPECT_GT(mc::GetDiskFree(dir.Path()), 0u);
  EXPECT_EQ(mc::GetDiskFree(dir.Path() + L"no\\such\\place\\"), 0u);
}

TEST(FileTests, EmptyFolderKeepsSubFoldersWithoutRecursion) {
  TempDir dir;
  Write(dir.NativeOf(L"a.txt"), "a");
  Write(dir.NativeOf(L"\u6587\u4ef6.txt"), "b");
  fs::create_directories(dir.NativeOf(L"sub\\deep"));
  Write(dir.NativeOf(L"sub\\deep\\c.txt"), "c");
  EXPECT_FALSE(mc::IsEmptyFoler(dir.Path()));
  EXPECT_EQ(mc::EmptyFolder(dir.Path(), 0, 0), 1);
  EXPECT_FALSE(fs::exists(dir.NativeOf(L"a.txt")));
  EXPECT_FALSE(fs::exists(dir.NativeOf(L"\u6587\u4ef6.txt")));
  EXPECT_TRUE(fs::exists(dir.NativeOf(L"sub\\deep\\c.txt")));
  EXPECT_EQ(mc::EmptyFolder(dir.Path(), 0, 1), 1);
  EXPECT_TRUE(mc::IsEmptyFoler(dir.Path()));
  EXPECT_TRUE(fs::exists(dir.Native()));
  EXPECT_EQ(mc::EmptyFolder(dir.Path() + L"missing", 1, 1), 0);
}

TEST(FileTests, EmptyFolderRemovesSelfAndReadOnlyFiles) {
  TempDir dir;
  fs::create_directories(dir.NativeOf(L"victim\\sub"));
  Write(dir.NativeOf(L"victim\\sub\\ro.txt"), "r");
  ASSERT_TRUE(toolkit::SetAttributes(dir.Path() + L"victim\\sub\\ro.txt", FILE_ATTRIBUTE_READONLY));
  EXPECT_EQ(mc::EmptyFolder(dir.Path() + L"victim", 1, 1), 1);
  EXPECT_FALSE(fs::exists(dir.NativeOf(L"victim")));
}

// A link inside the folder to a folder outside: the walk removes the link, never what it
// points at.
TEST(FileTests, EmptyFolderNeverFollowsALink) {
  TempDir dir;
  fs::create_directories(dir.NativeOf(L"outside"));
  Write(dir.NativeOf(L"outside\\precious.txt"), "keep me");
  fs::create_directories(dir.NativeOf(L"inside"));
  Write(dir.NativeOf(L"inside\\junk.txt"), "junk");
#if defined(_WIN32)
  CString link = dir.Path() + L"inside\\link", target = dir.Path() + L"outside";
  if (!CreateSymbolicLinkW(link, target, SYMBOLIC_LINK_FLAG_DIRECTORY | 0x2 /* unprivileged */) ||
      !(GetFileAttributesW(link) & FILE_ATTRIBUTE_REPARSE_POINT))
    GTEST_SKIP() << "this system makes no folder links";
#else
  fs::create_directory_symlink(dir.NativeOf(L"outside"), dir.NativeOf(L"inside\\link"));
#endif
  std::list<CString> files;
  EXPECT_EQ(mc::GetAllFilesInFolderT(dir.Path() + L"inside", files), 1);  // the link is not walked
  EXPECT_EQ(mc::EmptyFolder(dir.Path() + L"inside", 1, 1), 1);
  EXPECT_FALSE(fs::exists(dir.NativeOf(L"inside")));
  EXPECT_EQ(Read(dir.NativeOf(L"outside\\precious.txt")), "keep me");
}

#if !defined(_WIN32)
// Links nested in the tree: a file link and a folder link go as links, their targets stay;
// without recursion a link to a folder stays like a folder, a link to a file goes.
TEST(FileTests, LinksAnywhereInTheTreeGoAsLinks) {
  TempDir dir;
  fs::create_directories(dir.NativeOf(L"outside\\deep"));
  Write(dir.NativeOf(L"outside\\deep\\precious.txt"), "keep me");
  fs::create_directories(dir.NativeOf(L"tree\\a\\b"));
  Write(dir.NativeOf(L"tree\\a\\b\\plain.txt"), "p");
  fs::create_directory_symlink(dir.NativeOf(L"outside"), dir.NativeOf(L"tree\\a\\b\\to_folder"));
  fs::create_symlink(dir.NativeOf(L"outside\\deep\\precious.txt"), dir.NativeOf(L"tree\\a\\to_file"));
  fs::create_symlink(dir.NativeOf(L"nowhere"), dir.NativeOf(L"tree\\dangling"));

  EXPECT_EQ(mc::EmptyFolder(dir.Path() + L"tree\\a\\b", 0, 0), 1);
  EXPECT_TRUE(fs::is_symlink(dir.NativeOf(L"tree\\a\\b\\to_folder")));
  EXPECT_FALSE(fs::exists(dir.NativeOf(L"tree\\a\\b\\plain.txt")));

  EXPECT_EQ(mc::RemoveFolderLinks(dir.Path() + L"tree"), 0);
  EXPECT_FALSE(fs::is_symlink(dir.NativeOf(L"tree\\a\\b\\to_folder")));
  EXPECT_FALSE(fs::is_symlink(dir.NativeOf(L"tree\\a\\to_file")));
  EXPECT_FALSE(fs::is_symlink(dir.NativeOf(L"tree\\dangling")));
  EXPECT_TRUE(fs::is_directory(dir.NativeOf(L"tree\\a\\b")));

  fs::create_directory_symlink(dir.NativeOf(L"outside"), dir.NativeOf(L"tree\\a\\again"));
  EXPECT_EQ(mc::EmptyFolder(dir.Path() + L"tree", 1, 1), 1);
  EXPECT_FALSE(fs::exists(dir.NativeOf(L"tree")));
  EXPECT_EQ(Read(dir.NativeOf(L"outside\\deep\\precious.txt")), "keep me");
}

// Folders below kMaxFolderDepth are neither walked nor removed, and a link search counts
// them as one link left.
TEST(FileTests, WalksStopAtTheDepthBound) {
  TempDir dir;
  CString deepest = dir.Path() + L"top";
  for (int i = 0; i <= mc::kMaxFolderDepth; ++i) deepest += L"\\d";
  fs::create_directories(dir.NativeOf(deepest.Mid(dir.Path().GetLength())));
  Write(dir.NativeOf(deepest.Mid(dir.Path().GetLength()) + L"\\f.txt"), "f");
  EXPECT_EQ(mc::RemoveFolderLinks(dir.Path() + L"top"), 1);
  EXPECT_EQ(mc::EmptyFolder(dir.Path() + L"top", 1, 1), 0);
  EXPECT_TRUE(fs::exists(dir.NativeOf(deepest.Mid(dir.Path().GetLength()) + L"\\f.txt")));
  CString kept = dir.Path() + L"top";
  for (int i = 0; i < mc::kMaxFolderDepth; ++i) kept += L"\\d";
  EXPECT_TRUE(fs::is_directory(dir.NativeOf(kept.Mid(dir.Path().GetLength()))));
  kept += L"\\d";
  EXPECT_TRUE(fs::is_directory(dir.NativeOf(kept.Mid(dir.Path().GetLength()))));
}
#endif

TEST(FileTests, GetAllFilesInFolderForms) {
  TempDir dir;
  Write(dir.NativeOf(L"a.XML"), "");
  Write(dir.NativeOf(L"b.txt"), "");
  fs::create_directories(dir.NativeOf(L"s"));
  Write(dir.NativeOf(L"s\\c.xml"), "");
  std::list<CString> files;
  EXPECT_EQ(mc::GetAllFilesInFolder(dir.Path(), files), 2);
  files.sort();
  CString base = dir.Path().Left(dir.Path().GetLength() - 1);
  EXPECT_EQ(files.front(), base + L"\\a.XML");
  EXPECT_EQ(files.back(), base + L"\\b.txt");
  files.clear();
  EXPECT_EQ(mc::GetAllFilesInFolderT(dir.Path(), files, L"xml"), 2);
  files.sort();
  EXPECT_EQ(files.back(), base + L"\\s\\c.xml");
  EXPECT_EQ(mc::GetAllFilesInFolder(dir.Path() + L"missing", files), 0);
}

TEST(FileTests, SafeDeleteFile) {
  TempDir dir;
  Write(dir.NativeOf(L"x"), "x");
  EXPECT_TRUE(mc::SafeDeleteFile(dir.Path() + L"x"));
  EXPECT_FALSE(mc::SafeDeleteFile(dir.Path() + L"x"));
  EXPECT_FALSE(mc::SafeDeleteFile(nullptr));
}

TEST(WholeFiles, LoadAppendsAndSaveReplaces) {
  TempDir dir;
  std::string big(10000, '\0');
  for (size_t i = 0; i < big.size(); ++i) big[i] = static_cast<char>(i * 7);
  CString path = dir.Path() + L"\u6570\u636e.bin";
  EXPECT_EQ(mc::SaveFile(path, big), 1);
  std::string data = "prefix";
  EXPECT_EQ(mc::LoadFile(path, data), 1);
  EXPECT_EQ(data, "prefix" + big);
  EXPECT_EQ(mc::SaveFile(path, "short"), 1);
  data.clear();
  EXPECT_EQ(mc::LoadFile(path, data), 1);
  EXPECT_EQ(data, "short");
  EXPECT_EQ(mc::LoadFile(L"", data), 0);
  EXPECT_EQ(mc::LoadFile(dir.Path() + L"missing", data), 0);
  EXPECT_EQ(mc::LoadFile(dir.Path(), data), 0);  // a folder
  std::list<CString> left;
  mc::GetAllFilesInFolder(dir.Path(), left);
  EXPECT_EQ(left.size(), 1u) << "no temporary file may stay behind";
}

TEST(WholeFiles, FailedSaveLeavesTheOldContent) {
  TempDir dir;
  CString path = dir.Path() + L"keep.txt";
  ASSERT_EQ(mc::SaveFile(path, "old"), 1);
  // the target's folder is a file, so nothing can be written beside it
  EXPECT_EQ(mc::SaveFile(dir.Path() + L"keep.txt\\inner.txt", "new"), 0);
  EXPECT_EQ(mc::SaveFile(dir.Path() + L"no\\folder\\x.txt", "new"), 0);
  EXPECT_EQ(mc::SaveFile(L"", "new"), 0);
  std::string data;
  mc::LoadFile(path, data);
  EXPECT_EQ(data, "old");
}

#if defined(_WIN32)
TEST(WholeFiles, LockedFileGivesZeroAndKeepsTheLock) {
  TempDir dir;
  CString path = dir.Path() + L"locked.txt";
  ASSERT_EQ(mc::SaveFile(path, "mine"), 1);
  HANDLE h = CreateFileW(path, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);  // no sharing
  ASSERT_NE(h, INVALID_HANDLE_VALUE);
  std::string data;
  EXPECT_EQ(mc::LoadFile(path, data), 0);
  EXPECT_EQ(mc::SaveFile(path, "theirs"), 0);
  CloseHandle(h);
  EXPECT_EQ(mc::LoadFile(path, data), 1);
  EXPECT_EQ(data, "mine");
}
#endif

TEST(WholeFiles, LongPathsFailCleanly) {
  TempDir dir;
  CString deep = dir.Path();
  for (int i = 0; i < 40; ++i) deep += L"segment_of_a_long_path\\";
  std::string data;
  EXPECT_EQ(mc::LoadFile(deep + L"x.txt", data), 0);
  EXPECT_EQ(mc::SaveFile(deep + L"x.txt", "x"), 0);
  EXPECT_FALSE(mc::IsFileExist(deep + L"x.txt"));
  EXPECT_EQ(mc::EmptyFolder(deep, 1, 1), 0);
}

}  // namespace
