#include <gtest/gtest.h>

#include "common/CodepageMap.h"

namespace {

TEST(CodepageMap, DuplicateNamesAndFinalOverrides) {
  std::map<std::string, int> byName{{"stale", 1}};
  std::map<int, std::string> byNumber{{1, "stale"}};
  mivo::common::InitCodepageMap(byName, byNumber);
  EXPECT_EQ(byName.count("stale"), 0u);
  EXPECT_EQ(byName.at("gbk"), 936);
  EXPECT_EQ(byName.at("gb2312"), 936);
  EXPECT_EQ(byName.at("euc-jp"), 51932);       // the later of its two rows
  EXPECT_EQ(byName.at("iso-2022-jp"), 50222);  // likewise
  EXPECT_EQ(byName.at("utf8"), 65001);
  EXPECT_EQ(byName.at("ibm037"), 37);
  EXPECT_EQ(byName.at("x-iscii-pa"), 57011);
  EXPECT_EQ(byName.at("ks_c_5601-1987"), 949);
  EXPECT_EQ(byNumber.at(936), "gb2312");
  EXPECT_EQ(byNumber.at(65001), "utf-8");
  EXPECT_EQ(byNumber.at(50221), "csiso2022jp");
  EXPECT_EQ(byNumber.at(50222), "iso-2022-jp");
  EXPECT_EQ(byNumber.count(50220), 0u);  // its only name moved on to 50222
  EXPECT_EQ(byNumber.count(20932), 0u);
  EXPECT_EQ(byNumber.at(51932), "euc-jp");
  for (const auto& [name, number] : byName) {
    for (char c : name) EXPECT_FALSE(c >= 'A' && c <= 'Z') << name;
    EXPECT_GT(number, 0) << name;
  }
}

}  // namespace
