#include "Execute/LaunchCommand.h"

namespace {
const wchar_t kLaunchGuid[] = L"5C1D7E20-94AB-4f63-8E2D-17B0C3A9F456";
}

CString GetLaunchToken() {
  CString token;
  token.Format(L"%s%s \"%s\"", L"/", L"sf", kLaunchGuid);
  return token;
}

CString ExtractLaunchArguments(const CString& argv0, const CString& commandLine) {
  if (argv0.IsEmpty()) return CString();
  int at = commandLine.Find(argv0);
  if (at < 0) return CString();
  int rest = at + argv0.GetLength();
  if (rest < commandLine.GetLength() && commandLine[rest] == L'"') ++rest;
  CString args = commandLine.Mid(rest);
  args.Trim();
  return args;
}

CString BuildClientCommandLine(const CString& arguments) {
  CString line;
  line.Format(L"%s %s %s", L"MyMivo.exe", GetLaunchToken().GetString(), arguments.GetString());
  return line;
}

CString BuildUpdateExecParameters(const CString& arguments, const CString& updateFolder, const CString& sid) {
  CString args = arguments;
  if (args.IsEmpty() && IsEmptyMarkerFile(updateFolder + L"SilentFlag")) args = L"/up \"" + updateFolder + L"\"";
  CString parameters;
  parameters.Format(L"%s %s", GetLaunchToken().GetString(), args.GetString());
  if (!sid.IsEmpty()) parameters.AppendFormat(L" /hky \"%s\"", sid.GetString());
  return parameters;
}

LaunchAction DecideLaunch(const PendingUpdates& found, bool silent) {
  if ((found.pending.empty() && found.halfDone.empty()) || silent) return LaunchAction::kStartClient;
  return LaunchAction::kUpdateThenClient;
}
