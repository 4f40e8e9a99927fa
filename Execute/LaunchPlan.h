#pragma once
// The launcher's decision as a plan: from what it found at start-up (its command line, the
// running clients and the user type they give, the pending updates, the desktop shell's
// integrity level) what it does: forward the command line to one account, show the
// login-user window with its rows, or start the client (after the update executor, waited
// on) with exactly which command lines. MivoStart.exe carries a plan out; MivoExplain.exe
// prints it, so the two never disagree.
#include <functional>
#include <vector>

#include "Execute/LoginUserStore.h"
#include "Execute/UpdateCheck.h"
#include "toolkit/CString.h"

enum class PlanAction {
  kExitSilently,      // another launcher holds the start event
  kStartClient,       // the client at once
  kUpdateThenClient,  // the update executor, waited on, then the client
  kForward,           // the command line goes to one running client
  kShowWindow,        // the login-user window asks which client gets it
};

const wchar_t* PlanActionName(PlanAction action);

// Which running client gets a non-empty command line, or none (kStartClient stands for "go
// on to the launch decision"). `userType` is LoginUserStore's; `skinReadable` is asked only
// for type 3, since without the window's skin nobody can be asked and the start goes on as
// when no client runs.
struct HandOverPlan {
  PlanAction action = PlanAction::kStartClient;
  int userType = 1;           // after the skin rule
  CString account;            // kForward
  std::vector<CString> rows;  // kShowWindow: accounts in the order the window lists them
  CString preselected;        // kShowWindow: the row selected first
};
HandOverPlan PlanHandOver(int userType, const RunningClientMap& clients, const CString& lastUser,
                          const std::function<bool()>& skinReadable);

// The launch decision: the client's command line, and the update executor's file and
// parameters when it runs first. `updateFolder` and `sid` are asked only when the executor runs.
struct StartPlan {
  PlanAction action = PlanAction::kStartClient;
  CString clientCommandLine;  // started with no application name, so found on the search path
  CString executorFile;       // kUpdateThenClient
  CString executorParameters;
  bool waitForExecutor = false;
};
StartPlan PlanStart(const PendingUpdates& found, bool silent, const CString& arguments, const CString& launcherFolder,
                    const std::function<CString()>& updateFolder, const std::function<CString()>& sid);

// How a program is started on this system: with the desktop shell's token when the launcher
// runs elevated and the shell does not, plainly when their levels allow, or not at all.
enum class TokenChoice {
  kPlain,          // CreateProcessW with the launcher's own token
  kShellToken,     // de-elevated: the shell's token, duplicated
  kNoShell,        // no "Progman" window: nothing starts
  kLevelUnknown,   // an integrity level could not be read: nothing starts
  kShellElevated,  // the shell runs elevated and the launcher does not: nothing starts
};
const wchar_t* TokenChoiceName(TokenChoice choice);
// `levelsKnown` is false when either integrity level could not be read.
TokenChoice ChooseToken(bool vistaOrLater, bool shellFound, bool levelsKnown, unsigned long shellLevel,
                        unsigned long ownLevel);
