#include <gtest/gtest.h>

#include <fstream>

#include "Execute/CommandLineInfoEx.h"
#include "Execute/LaunchCommand.h"
#include "support/TempDir.h"

using testing_support::TempDir;

namespace {

CCommandLineInfoEx Parse(std::vector<CString> tokens) {
  CCommandLineInfoEx info;
  info.ParseCommandLine(tokens);
  return info;
}

TEST(CommandLine, SwitchesTakeTheFollowingPlainToken) {
  CCommandLineInfoEx info = Parse({L"/up", L"D:\\x\\", L"-flag", L"/next", L"plain", L"orphan", L"/up", L"E:\\"});
  CString v;
  ASSERT_TRUE(info.Lookup(L"up", v));
  EXPECT_EQ(v, L"E:\\");  // a repeated switch overwrites
  ASSERT_TRUE(info.Lookup(L"flag", v));
  EXPECT_EQ(v, L"TRUE");  // followed directly by another switch
  ASSERT_TRUE(info.Lookup(L"next", v));
  EXPECT_EQ(v, L"plain");
  EXPECT_FALSE(info.Lookup(L"orphan", v));
  EXPECT_FALSE(info.Lookup(L"UP", v));  // exact keys
  EXPECT_FALSE(info.Lookup(L"/up", v));
}

TEST(CommandLine, SilentNeedsAllFourSwitches) {
  EXPECT_TRUE(IsSilentLaunch(Parse({L"/pluginapp", L"a", L"/port", L"1", L"/uid", L"u", L"/key", L"k"})));
  EXPECT_TRUE(IsSilentLaunch(Parse({L"-key", L"-uid", L"-port", L"-pluginapp"})));
  EXPECT_FALSE(IsSilentLaunch(Parse({L"/pluginapp", L"a"})));
  EXPECT_FALSE(IsSilentLaunch(Parse({L"/pluginapp", L"/port", L"/uid"})));
  EXPECT_FALSE(IsSilentLaunch(Parse({})));
}

TEST(LaunchCommand, ArgumentsFollowTheProgramName) {
  EXPECT_EQ(ExtractLaunchArguments(L"C:\\Mivo\\MivoStart.exe", L"\"C:\\Mivo\\MivoStart.exe\"  /up \"D:\\u\\\"  "),
            L"/up \"D:\\u\\\"");
  EXPECT_EQ(ExtractLaunchArguments(L"MivoStart.exe", L"MivoStart.exe /x"), L"/x");
  EXPECT_EQ(ExtractLaunchArguments(L"MivoStart.exe", L"MivoStart.exe"), L"");
  EXPECT_EQ(ExtractLaunchArguments(L"Other.exe", L"MivoStart.exe /x"), L"");
  EXPECT_EQ(ExtractLaunchArguments(L"", L"MivoStart.exe /x"), L"");
}

TEST(LaunchCommand, UpdateExecutorParameters) {
  TempDir update;
  const CString token = GetLaunchToken();
  EXPECT_EQ(BuildUpdateExecParameters(L"/a b", update.Path(), L"S-1-5-21-0-0-0-1000"),
            token + L" /a b /hky \"S-1-5-21-0-0-0-1000\"");
  EXPECT_EQ(BuildUpdateExecParameters(L"", update.Path(), L""), token + L" ");  // no marker, no SID
  std::ofstream(update.NativeOf(L"SilentFlag"), std::ios::binary) << "x";
  EXPECT_EQ(BuildUpdateExecParameters(L"", update.Path(), L""), token + L" ");  // a marker with content
  std::ofstream(update.NativeOf(L"SilentFlag"), std::ios::binary).close();
  EXPECT_EQ(BuildUpdateExecParameters(L"", update.Path(), L"S-1"),
            token + L" /up \"" + update.Path() + L"\" /hky \"S-1\"");
  EXPECT_EQ(BuildUpdateExecParameters(L"/x", update.Path(), L""), token + L" /x");  // arguments win
}

}  // namespace
