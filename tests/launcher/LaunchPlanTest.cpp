#include <gtest/gtest.h>

#include "Execute/ExplainReport.h"
#include "Execute/LaunchPlan.h"

namespace {

RunningClientMap Clients(std::initializer_list<const wchar_t*> accounts) {
  RunningClientMap clients;
  for (const wchar_t* a : accounts) clients[a].nickname = L"n";
  return clients;
}

TEST(LaunchPlan, HandOverByUserType) {
  const struct {
    int userType;
    bool skin;
    RunningClientMap clients;
    const wchar_t* lastUser;
    PlanAction action;
    int finalType;
    const wchar_t* account;  // forward target, or the preselected row
    size_t rows;
  } rows[] = {
      {1, true, {}, L"", PlanAction::kStartClient, 1, L"", 0},
      {2, true, Clients({L"a@qq.com"}), L"", PlanAction::kForward, 2, L"a@qq.com", 0},
      {4, true, Clients({L"a@qq.com", L"b@qq.com"}), L"b@qq.com", PlanAction::kForward, 4, L"b@qq.com", 0},
      // the window lists every client in account order, the last user preselected
      {3, true, Clients({L"c@qq.com", L"a@qq.com", L"b@qq.com"}), L"b@qq.com", PlanAction::kShowWindow, 3, L"b@qq.com",
       3},
      {3, true, Clients({L"c@qq.com", L"a@qq.com"}), L"gone@qq.com", PlanAction::kShowWindow, 3, L"a@qq.com", 2},
      // no skin to ask with: as when no client runs
      {3, false, Clients({L"a@qq.com", L"b@qq.com"}), L"", PlanAction::kStartClient, 1, L"", 0},
  };
  for (const auto& r : rows) {
    bool asked = false;
    HandOverPlan plan = PlanHandOver(r.userType, r.clients, r.lastUser, [&] {
      asked = true;
      return r.skin;
    });
    SCOPED_TRACE(r.userType);
    EXPECT_EQ(plan.action, r.action);
    EXPECT_EQ(plan.userType, r.finalType);
    EXPECT_EQ(asked, r.userType == 3);  // the skin is built only when the window would show
    EXPECT_EQ(plan.action == PlanAction::kShowWindow ? plan.preselected : plan.account, CString(r.account));
    EXPECT_EQ(plan.rows.size(), r.rows);
  }
  HandOverPlan window = PlanHandOver(3, Clients({L"c@qq.com", L"a@qq.com"}), L"", [] { return true; });
  ASSERT_EQ(window.rows.size(), 2u);
  EXPECT_EQ(window.rows[0], L"a@qq.com");
}

TEST(LaunchPlan, StartWaitsOnTheExecutorOnlyForAPendingUpdate) {
  PendingUpdates none, pending, halfDone;
  pending.pending.push_back(UpdateTarget{});
  halfDone.halfDone.push_back(UpdateTarget{});
  const struct {
    const PendingUpdates* found;
    bool silent;
    PlanAction action;
  } rows[] = {
      {&none, false, PlanAction::kStartClient},
      {&pending, true, PlanAction::kStartClient},
      {&pending, false, PlanAction::kUpdateThenClient},
      {&halfDone, false, PlanAction::kUpdateThenClient},
  };
  for (const auto& r : rows) {
    int sidAsked = 0;
    StartPlan plan = PlanStart(
        *r.found, r.silent, L"/open x", L"C:\\app\\", [] { return CString(L"C:\\up\\"); },
        [&] {
          ++sidAsked;
          return CString(L"S-1-5-21-0-0-0-1000");
        });
    EXPECT_EQ(plan.action, r.action);
    EXPECT_EQ(plan.clientCommandLine, L"MyMivo.exe /sf \"5C1D7E20-94AB-4f63-8E2D-17B0C3A9F456\" /open x");
    bool update = r.action == PlanAction::kUpdateThenClient;
    EXPECT_EQ(plan.waitForExecutor, update);
    EXPECT_EQ(sidAsked, update ? 1 : 0);
    EXPECT_EQ(plan.executorFile, update ? CString(L"C:\\app\\UpdateExec.exe") : CString());
    EXPECT_EQ(plan.executorParameters,
              update ? CString(L"/sf \"5C1D7E20-94AB-4f63-8E2D-17B0C3A9F456\" /open x /hky \"S-1-5-21-0-0-0-1000\"")
                     : CString());
  }
}

TEST(LaunchPlan, TokenByIntegrityLevels) {
  constexpr unsigned long kHigh = 0x3000, kMedium = 0x2000;
  const struct {
    bool vista, shell, known;
    unsigned long shellLevel, ownLevel;
    TokenChoice choice;
  } rows[] = {
      {false, false, false, 0, 0, TokenChoice::kPlain},
      {true, false, false, 0, 0, TokenChoice::kNoShell},
      {true, true, false, 0, 0, TokenChoice::kLevelUnknown},
      {true, true, true, kMedium, kHigh, TokenChoice::kShellToken},
      {true, true, true, kHigh, kMedium, TokenChoice::kShellElevated},
      {true, true, true, kHigh, kHigh, TokenChoice::kPlain},  // Wine: everything runs high
  };
  for (const auto& r : rows)
    EXPECT_EQ(ChooseToken(r.vista, r.shell, r.known, r.shellLevel, r.ownLevel), r.choice) << TokenChoiceName(r.choice);
}

// The explainer's own switch leaves the line; a quoted or longer look-alike stays.
TEST(LaunchPlan, JsonSwitchIsTakenOffTheCommandLine) {
  const struct {
    const wchar_t* in;
    const wchar_t* out;
    bool taken;
  } rows[] = {
      {L"--json", L"", true},
      {L"--json /open x", L"/open x", true},
      {L"/open \"chat room\" --json /uid 42", L"/open \"chat room\" /uid 42", true},
      {L"/open \"a --json b\"", L"/open \"a --json b\"", false},
      {L"/open --jsonx a--json", L"/open --jsonx a--json", false},
  };
  for (const auto& r : rows) {
    CString line = r.in;
    EXPECT_EQ(TakeJsonSwitch(line), r.taken) << r.in;
    EXPECT_EQ(line, CString(r.out));
  }
}

}  // namespace
