#include "base/callback/SupportWeakCallback.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

class Form : public nbase::SupportWeakCallback {};

TEST(SupportWeakCallback, ExpiredCallbackYieldsAnEmptyResult) {
  auto form = std::make_unique<Form>();
  auto name = form->ToWeakCallback([](const std::string& prefix) { return prefix + "form"; });
  EXPECT_FALSE(name.Expired());
  EXPECT_EQ(name("main "), "main form");
  form.reset();
  EXPECT_TRUE(name.Expired());
  EXPECT_EQ(name("main "), "");
}

TEST(SupportWeakCallback, CopiesHaveLivesOfTheirOwn) {
  Form original;
  auto originalFlag = original.GetWeakFlag();
  std::weak_ptr<nbase::WeakFlag> copyFlag;
  {
    Form copy(original);
    copyFlag = copy.GetWeakFlag();
    Form assigned;
    auto assignedFlag = assigned.GetWeakFlag();
    assigned = original;
    // what the assigned object handed out before stays tied to it
    EXPECT_FALSE(assignedFlag.expired());
  }
  EXPECT_TRUE(copyFlag.expired());
  EXPECT_FALSE(originalFlag.expired());
}

TEST(WeakCallbackFlag, CancelDropsEarlierCallbacksOnly) {
  nbase::WeakCallbackFlag flag;
  int runs = 0;
  auto before = nbase::MakeWeakCallback(flag.GetWeakFlag(), [&runs] { ++runs; });
  flag.Cancel();
  auto after = nbase::MakeWeakCallback(flag.GetWeakFlag(), [&runs] { runs += 10; });
  before();
  after();
  EXPECT_EQ(runs, 10);
}

}  // namespace
