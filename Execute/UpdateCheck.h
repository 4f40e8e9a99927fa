#pragma once
// Whether an update the update executor began is pending, finished, or has replaced the core
// components only half way: read from the marker "UpdateTemp\UpdateFlag" and the update list
// "UpdateTemp\StaticUpdateVersion.xml" in a target's update folder. Failures are silent.
#include <vector>

#include "Execute/UpdateTarget.h"
#include "toolkit/CString.h"

enum UpdateProgressState {
  kNothingToDo = 0,
  kUpdatePending = 1,
  kCoreHalfDone = 2,
};

// Present only as an existing file (not a folder) of exactly 0 bytes.
bool IsEmptyMarkerFile(const CString& path);

// The folder a target's update is staged in: the installation's update folder, plus
// "plugin\<folder>\" for a plug-in.
CString TargetUpdateFolder(const UpdateTarget& target, const CString& updateFolder);
bool UpdateFlagPresent(const UpdateTarget& target, const CString& updateFolder);

struct CheckResult {
  CString path;
  CString detail;
  int state;
  int coreDoneCount;
  int pendingCount;
};

// What a check looked at, by component name, for a program that explains it.
struct ProgressEvidence {
  enum class List { kRead, kMissing, kDamaged, kEmpty };  // what the update list turned out to be
  bool markerPresent = false;
  List list = List::kRead;
  std::vector<CString> finishedCommon;  // finished "common" components that leave the list
  std::vector<CString> pending;         // not begun (current version is the old one)
  std::vector<CString> coreDone;        // core components already at the new version
};

class IProgress {
 public:
  virtual ~IProgress() = default;
  virtual void Check() = 0;
};

class CCheckUpdateProgress : public IProgress {
 public:
  CCheckUpdateProgress(const CString& path, const CString& detail, int state, int coreDoneCount, int pendingCount)
      : m_path(path), m_detail(detail), m_state(state), m_coreDoneCount(coreDoneCount), m_pendingCount(pendingCount) {}
  // Removes finished "common" components from the list (rewriting it once per removal),
  // then counts what is left and decides.
  void Check() override;
  CheckResult result() const { return {m_path, m_detail, m_state, m_coreDoneCount, m_pendingCount}; }
  // Only looks: the list is not rewritten, and what was found goes into `evidence`.
  void LookOnly(ProgressEvidence* evidence) { m_evidence = evidence; }

 private:
  CString m_path;
  CString m_detail;
  int m_state;
  int m_coreDoneCount;
  int m_pendingCount;
  ProgressEvidence* m_evidence = nullptr;
};

// Judges one target in place: its state, detail and counts.
// With `evidence` it only looks and says what it found.
void CheckTargetProgress(UpdateTarget& target, const CString& updateFolder, ProgressEvidence* evidence = nullptr);

// The launch decision's input: every target of the installation in `launcherFolder` (the
// running launcher's when empty) judged against the update folder (the installation's when
// empty); those with a pending update and those with a half-done core update.
struct PendingUpdates {
  UpdateTargetList pending;
  UpdateTargetList halfDone;
};
// With `judged` it only looks, and lists every target with its evidence.
struct JudgedTarget {
  UpdateTarget target;
  ProgressEvidence evidence;
};
PendingUpdates FindPendingUpdates(const CString& launcherFolder = CString(), const CString& updateFolder = CString(),
                                  std::vector<JudgedTarget>* judged = nullptr);
