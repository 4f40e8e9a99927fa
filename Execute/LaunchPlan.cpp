#include "Execute/LaunchPlan.h"

#include "Execute/LaunchCommand.h"

namespace {
constexpr unsigned long kHighIntegrity = 0x3000;
constexpr unsigned long kMediumIntegrity = 0x2000;
}  // namespace

const wchar_t* PlanActionName(PlanAction action) {
  switch (action) {
    case PlanAction::kExitSilently:
      return L"exit";
    case PlanAction::kStartClient:
      return L"startClient";
    case PlanAction::kUpdateThenClient:
      return L"updateThenClient";
    case PlanAction::kForward:
      return L"forward";
    case PlanAction::kShowWindow:
      return L"showWindow";
  }
  return L"";
}

HandOverPlan PlanHandOver(int userType, const RunningClientMap& clients, const CString& lastUser,
                          const std::function<bool()>& skinReadable) {
  HandOverPlan plan;
  plan.userType = userType == 3 && !skinReadable() ? 1 : userType;
  switch (plan.userType) {
    case 2:  // the one client
      plan.action = PlanAction::kForward;
      if (!clients.empty()) plan.account = clients.begin()->first;
      break;
    case 4:  // the remembered one
      plan.action = PlanAction::kForward;
      if (clients.count(lastUser)) plan.account = lastUser;
      break;
    case 3:
      plan.action = PlanAction::kShowWindow;
      for (const auto& entry : clients) plan.rows.push_back(entry.first);
      plan.preselected = plan.rows.empty() ? CString() : plan.rows.front();
      for (const CString& row : plan.rows)
        if (!lastUser.IsEmpty() && row == lastUser) plan.preselected = row;
      break;
    default:
      plan.action = PlanAction::kStartClient;
      break;
  }
  return plan;
}

StartPlan PlanStart(const PendingUpdates& found, bool silent, const CString& arguments, const CString& launcherFolder,
                    const std::function<CString()>& updateFolder, const std::function<CString()>& sid) {
  StartPlan plan;
  plan.clientCommandLine = BuildClientCommandLine(arguments);
  if (DecideLaunch(found, silent) == LaunchAction::kStartClient) return plan;
  plan.action = PlanAction::kUpdateThenClient;
  plan.executorFile = launcherFolder + L"UpdateExec.exe";
  plan.executorParameters = BuildUpdateExecParameters(arguments, updateFolder(), sid());
  plan.waitForExecutor = true;
  return plan;
}

const wchar_t* TokenChoiceName(TokenChoice choice) {
  switch (choice) {
    case TokenChoice::kPlain:
      return L"plain";
    case TokenChoice::kShellToken:
      return L"shellToken";
    case TokenChoice::kNoShell:
      return L"noShell";
    case TokenChoice::kLevelUnknown:
      return L"levelUnknown";
    case TokenChoice::kShellElevated:
      return L"shellElevated";
  }
  return L"";
}

TokenChoice ChooseToken(bool vistaOrLater, bool shellFound, bool levelsKnown, unsigned long shellLevel,
                        unsigned long ownLevel) {
  if (!vistaOrLater) return TokenChoice::kPlain;
  if (!levelsKnown) return shellFound ? TokenChoice::kLevelUnknown : TokenChoice::kNoShell;
  if (ownLevel == kHighIntegrity && shellLevel == kMediumIntegrity) return TokenChoice::kShellToken;
  if (ownLevel == kMediumIntegrity && shellLevel == kHighIntegrity) return TokenChoice::kShellElevated;
  return TokenChoice::kPlain;
}
