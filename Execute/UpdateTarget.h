#pragma once
// The things that can be updated: the client itself, named in the launcher's "gdstrings.ini",
// and every plug-in under "plugin\" with a "PluginConfig.xml" for the current language.
#include <list>

#include "toolkit/CString.h"

struct UpdateTarget {
  CString name;
  CString main;
  int isMain = 0;  // 1 for the client; selects the update folder
  CString folder;  // the plug-in's folder name under "plugin\"
  int firstFlag = 0;
  int secondFlag = 0;
  int pendingCount = 0;
  CString detail;  // release notes of the pending update
  int state = 0;   // UpdateProgressState
  int coreDoneCount = 0;
};

using UpdateTargetList = std::list<UpdateTarget>;

// An empty launcher folder means the running launcher's own; an empty language code the one
// in force (CMutiLanSupport), "zh_CN" when none is.
void AddMainTarget(UpdateTargetList& list, const CString& launcherFolder = CString());
void ScanPluginConfigs(UpdateTargetList& list, const CString& launcherFolder = CString(),
                       const CString& language = CString());
void AddPluginTargets(UpdateTargetList& list, const CString& launcherFolder = CString(),
                      const CString& language = CString());
