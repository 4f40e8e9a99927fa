#include "Execute/LauncherStrings.h"

#include "common/FileUtil.h"
#include "common/MutiLanSupport.h"
#include "common/Trace.h"
#include "toolkit/File.h"
#include "toolkit/FileSystem.h"

namespace {

// The English table as shipped in resources/lang/en_US, for the ids the launcher and
// MivoExplain.exe show.
const struct {
  const wchar_t* id;
  const wchar_t* text;
} kEnglish[] = {
    {L"STRID_MIVO_INIT_GLOBAL_STRUCT_ERROR_CONTENT", L"MIVO could not start. Please reinstall MIVO and try again."},
    {L"STRID_MIVO_INIT_GLOBAL_STRUCT_ERROR_CAPTION", L"MIVO start-up error"},
    {L"STRID_SELECTED_USER_FORM_TITLE", L"Choose a user"},
    {L"STRID_SELECTED_USER_FORM_LOGIN_USER_TIP", L"Choose the signed-in account to use:"},
    {L"STRID_SELECTED_USER_FORM_REMEMBER_CHOICE_TIP", L"Remember my choice and do not ask again"},
    {L"STRID_SELECTED_USER_FORM_SELECT_ONE_TIP", L"Please choose an account first."},
    {L"STRID_SELECTED_USER_FORM_OK", L"OK"},
    {L"STRID_SELECTED_USER_FORM_CANCEL", L"Cancel"},
    {L"STRID_EXPLAIN_TITLE", L"What MivoStart.exe would do now, and why"},
    {L"STRID_EXPLAIN_COMMAND_LINE", L"Command line"},
    {L"STRID_EXPLAIN_SILENT", L"Silent start (pluginapp, port, uid and key all given)"},
    {L"STRID_EXPLAIN_FOLDERS", L"Folders"},
    {L"STRID_EXPLAIN_UPDATE_SOURCE", L"Update source"},
    {L"STRID_EXPLAIN_RULE", L"chosen by"},
    {L"STRID_EXPLAIN_EVENT_HELD",
     L"Another launcher holds \"MIVO6 Start Running Event\": this one would exit silently"},
    {L"STRID_EXPLAIN_CLEANUP", L"Shared-folder clean-up"},
    {L"STRID_EXPLAIN_CLEANUP_SKIPPED", L"skipped"},
    {L"STRID_EXPLAIN_WOULD_DELETE", L"would delete"},
    {L"STRID_EXPLAIN_FILES", L"files"},
    {L"STRID_EXPLAIN_BYTES", L"bytes"},
    {L"STRID_EXPLAIN_TARGETS", L"Update targets"},
    {L"STRID_EXPLAIN_MARKER", L"marker"},
    {L"STRID_EXPLAIN_PENDING", L"pending"},
    {L"STRID_EXPLAIN_CORE_DONE", L"core done"},
    {L"STRID_EXPLAIN_COMMON_REMOVED", L"finished common components removed from the list"},
    {L"STRID_EXPLAIN_CLIENTS", L"Running clients"},
    {L"STRID_EXPLAIN_ADMITTED", L"admitted by the mail-domain rule"},
    {L"STRID_EXPLAIN_NOT_ADMITTED", L"not admitted by the mail-domain rule"},
    {L"STRID_EXPLAIN_NO_ANSWER", L"no nickname within the time limit"},
    {L"STRID_EXPLAIN_STORE", L"start.txt remembers"},
    {L"STRID_EXPLAIN_USER_TYPE", L"User type"},
    {L"STRID_EXPLAIN_ACTION", L"Action"},
    {L"STRID_EXPLAIN_ACTION_EXIT", L"exit at once, doing nothing"},
    {L"STRID_EXPLAIN_ACTION_START", L"start the client"},
    {L"STRID_EXPLAIN_ACTION_UPDATE", L"start the update executor, wait for it to end, then start the client"},
    {L"STRID_EXPLAIN_ACTION_FORWARD", L"forward the command line to"},
    {L"STRID_EXPLAIN_ACTION_WINDOW", L"show the login-user window with the rows"},
    {L"STRID_EXPLAIN_TOKEN", L"Token"},
    {L"STRID_EXPLAIN_PROBLEMS", L"Problems"},
    {L"STRID_EXPLAIN_NONE", L"none"},
};

void TraceText(const wchar_t* format, const CString& path) {
  if (g_ITrace) g_ITrace->Trace(3, true, format, path.GetString());
}

// Whether the table can be read as one: a file within the size bound that opens for reading.
// Checked first because the loader itself tells a failure with a message box.
bool Readable(const CString& path) {
  if (mivo::common::GetFileSize(path) > CMutiLanSupport::kMaxStringTableBytes) return false;
  CFile file;
  if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone)) return false;
  char byte;
  try {
    file.Read(&byte, 1);  // a folder opens on some systems, and fails here
  } catch (CException* e) {
    e->Delete();
    return false;
  }
  return true;
}

}  // namespace

bool EnsureLauncherStrings(const CString& launcherFolder) {
  static CString loadedFrom;
  if (!loadedFrom.IsEmpty() && loadedFrom.CompareNoCase(launcherFolder) == 0) return true;
  CString path = launcherFolder + L"gdstrings.ini";
  if (!mivo::common::IsFileExist(path) && !mivo::common::IsFolderExist(path)) {
    TraceText(L"EnsureLauncherStrings %s is missing; the built-in English texts are used", path);
    return false;
  }
  if (!Readable(path) || !CMutiLanSupport::GetInstance()->LoadStringTable(path)) {
    TraceText(L"EnsureLauncherStrings %s cannot be read; the built-in English texts are used", path);
    return false;
  }
  loadedFrom = launcherFolder;
  return true;
}

CString BuiltInLauncherText(const CString& id) {
  for (const auto& entry : kEnglish)
    if (id == entry.id) return entry.text;
  return CString();
}

CString LauncherText(const CString& id) {
  CString text = CMutiLanSupport::GetInstance()->GetStringViaID(id);
  return text.IsEmpty() ? BuiltInLauncherText(id) : text;
}
