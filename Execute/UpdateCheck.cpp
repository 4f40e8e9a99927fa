#include "Execute/UpdateCheck.h"

#include <vector>

#include "Execute/PathTool.h"
#include "Execute/VersionManifest.h"
#include "toolkit/FileSystem.h"

bool IsEmptyMarkerFile(const CString& path) {
  DWORD attributes = toolkit::GetAttributes(path);
  if (attributes == toolkit::kInvalidAttributes || (attributes & FILE_ATTRIBUTE_DIRECTORY)) return false;
  ULONGLONG length = 1;
  return toolkit::GetFileLength(path, length) && length == 0;
}

CString TargetUpdateFolder(const UpdateTarget& target, const CString& updateFolder) {
  if (target.isMain == 0) return updateFolder + L"plugin\\" + target.folder + L"\\";
  return updateFolder;
}

bool UpdateFlagPresent(const UpdateTarget& target, const CString& updateFolder) {
  return IsEmptyMarkerFile(TargetUpdateFolder(target, updateFolder) + L"UpdateTemp\\UpdateFlag");
}

void CCheckUpdateProgress::Check() {
  UpdateVersionManifest manifest(m_path);
  const bool read = manifest.Read();
  if (manifest.GetModules().empty()) {
    m_state = kNothingToDo;
    if (m_evidence)
      m_evidence->list = read ? ProgressEvidence::List::kEmpty
                         : toolkit::GetAttributes(m_path) == toolkit::kInvalidAttributes
                             ? ProgressEvidence::List::kMissing
                             : ProgressEvidence::List::kDamaged;
    return;
  }
  m_detail = manifest.GetDetail();

  // Clean-up: finished "common" components leave the list, one rewrite each. The next
  // component is taken before the current one goes.
  ModuleVersionMap& modules = manifest.GetModules();
  for (auto it = modules.begin(); it != modules.end();) {
    auto next = std::next(it);
    const ModuleVersionRecord& m = it->second;
    if (m.group == L"common" && m.currentversion == m.version) {
      if (m_evidence) m_evidence->finishedCommon.push_back(it->first);
      modules.erase(it);
      if (!m_evidence) manifest.Write();  // a failed rewrite is ignored: the check goes on in memory
    }
    it = next;
  }

  int commonPending = 0, corePending = 0, coreDone = 0;
  for (const auto& [name, m] : modules) {
    bool notBegun = m.currentversion == m.oldversion;
    if (m.group == L"common") {
      if (notBegun) ++commonPending;
    } else if (m.group == L"core") {
      if (notBegun) ++corePending;
      if (m.currentversion == m.version) {
        ++coreDone;
        if (m_evidence) m_evidence->coreDone.push_back(name);
      }
    } else {
      continue;
    }
    if (notBegun && m_evidence) m_evidence->pending.push_back(name);
  }
  if (coreDone > 0 && corePending > 0) {
    m_state = kCoreHalfDone;
    m_coreDoneCount = coreDone;
  } else if (commonPending + corePending > 0) {
    m_state = kUpdatePending;
    m_pendingCount = commonPending + corePending;
  } else {
    m_state = kNothingToDo;
  }
}

void CheckTargetProgress(UpdateTarget& target, const CString& updateFolder, ProgressEvidence* evidence) {
  if (!UpdateFlagPresent(target, updateFolder)) {
    target.state = kNothingToDo;
    return;
  }
  if (evidence) evidence->markerPresent = true;
  CCheckUpdateProgress progress(TargetUpdateFolder(target, updateFolder) + L"UpdateTemp\\StaticUpdateVersion.xml",
                                CString(), target.state, target.coreDoneCount, target.pendingCount);
  progress.LookOnly(evidence);
  progress.Check();
  CheckResult r = progress.result();
  target.detail = r.detail;
  target.state = r.state;
  target.coreDoneCount = r.coreDoneCount;
  target.pendingCount = r.pendingCount;
}

PendingUpdates FindPendingUpdates(const CString& launcherFolder, const CString& updateFolder,
                                  std::vector<JudgedTarget>* judged) {
  CString launcher = launcherFolder.IsEmpty() ? CPathTool::GetLauncherFolder() : launcherFolder;
  CString update = updateFolder.IsEmpty() ? CPathTool::GetUpdateFolderFor(launcher, true) : updateFolder;
  UpdateTargetList targets;
  AddMainTarget(targets, launcher);
  AddPluginTargets(targets, launcher);
  PendingUpdates result;
  for (const UpdateTarget& entry : targets) {
    UpdateTarget copy = entry;
    ProgressEvidence evidence;
    CheckTargetProgress(copy, update, judged ? &evidence : nullptr);
    if (judged) judged->push_back({copy, evidence});
    if (copy.state == kUpdatePending)
      result.pending.push_back(copy);
    else if (copy.state == kCoreHalfDone)
      result.halfDone.push_back(copy);
  }
  return result;
}
