#include "Execute/ExplainReport.h"

#include "Execute/LauncherStrings.h"
#include "common/Conversion.h"

namespace {

std::string Utf8(const CString& text) { return mivo::common::CString_to_utf8(text); }
std::string T(const wchar_t* id) { return Utf8(ExplainText(id)); }

std::string Join(const Json::Value& list) {
  std::string out;
  for (const Json::Value& item : list) out += (out.empty() ? "" : ", ") + item.asString();
  return out;
}

}  // namespace

CString ExplainText(const wchar_t* id) {
  CString text = LauncherText(id);
  return text.IsEmpty() ? CString(id) : text;
}

bool TakeJsonSwitch(CString& commandLine) {
  bool quoted = false;
  const int length = commandLine.GetLength();
  for (int i = 0; i < length; ++i) {
    wchar_t c = commandLine[i];
    if (c == L'"') quoted = !quoted;
    if (quoted || c != L'-' || (i > 0 && commandLine[i - 1] != L' ' && commandLine[i - 1] != L'\t')) continue;
    if (commandLine.Mid(i, 6) != L"--json" ||
        (i + 6 < length && commandLine[i + 6] != L' ' && commandLine[i + 6] != L'\t'))
      continue;
    int from = i;
    while (from > 0 && (commandLine[from - 1] == L' ' || commandLine[from - 1] == L'\t')) --from;
    int to = i + 6;
    if (from == 0)  // at the start: the blanks after it go instead
      while (to < length && (commandLine[to] == L' ' || commandLine[to] == L'\t')) ++to;
    commandLine = commandLine.Left(from) + commandLine.Mid(to);
    return true;
  }
  return false;
}

std::string RenderExplanation(const Json::Value& e) {
  std::string out = T(L"STRID_EXPLAIN_TITLE") + "\n";
  out += T(L"STRID_EXPLAIN_COMMAND_LINE") + ": [" + e["commandLine"].asString() + "]";
  if (e["silent"].asBool()) out += "; " + T(L"STRID_EXPLAIN_SILENT");
  out += "\n\n" + T(L"STRID_EXPLAIN_FOLDERS") + ":\n";
  const Json::Value& f = e["folders"];
  for (const char* name : {"launcher", "sharedData", "virtualStore", "update"})
    out += std::string("  ") + name + ": " + f[name].asString() + "\n";
  out += "  " + T(L"STRID_EXPLAIN_UPDATE_SOURCE") + ": " + f["updateSource"].asString() + " (" +
         T(L"STRID_EXPLAIN_RULE") + " " + f["updateSourceRule"].asString() + ")\n";
  if (e["startEventHeld"].asBool()) out += "\n" + T(L"STRID_EXPLAIN_EVENT_HELD") + "\n";

  const Json::Value& c = e["cleanUp"];
  out += "\n" + T(L"STRID_EXPLAIN_CLEANUP") + ": ";
  if (c["skipped"].asBool() || c["folders"].empty()) {
    out += (c["skipped"].asBool() ? T(L"STRID_EXPLAIN_CLEANUP_SKIPPED") + " " : std::string()) + "(" +
           c["reason"].asString() + ")\n";
  } else {
    out += T(L"STRID_EXPLAIN_WOULD_DELETE") + "\n";
    for (const Json::Value& folder : c["folders"]) {
      out += "  " + folder["path"].asString() + ": " + std::to_string(folder["files"].asUInt64()) + " " +
             T(L"STRID_EXPLAIN_FILES") + ", " + std::to_string(folder["bytes"].asUInt64()) + " " +
             T(L"STRID_EXPLAIN_BYTES") + "\n";
      for (const Json::Value& path : folder["first"]) out += "    " + path.asString() + "\n";
    }
  }

  out += "\n" + T(L"STRID_EXPLAIN_TARGETS") + ":\n";
  for (const Json::Value& t : e["updateTargets"]) {
    out += "  " + t["name"].asString() + ": " + t["state"].asString() + " (" + T(L"STRID_EXPLAIN_MARKER") + " " +
           t["marker"].asString() + (t["markerPresent"].asBool() ? " +" : " -") + ")\n";
    if (!t["pending"].empty()) out += "    " + T(L"STRID_EXPLAIN_PENDING") + ": " + Join(t["pending"]) + "\n";
    if (!t["coreDone"].empty()) out += "    " + T(L"STRID_EXPLAIN_CORE_DONE") + ": " + Join(t["coreDone"]) + "\n";
    if (!t["finishedCommon"].empty())
      out += "    " + T(L"STRID_EXPLAIN_COMMON_REMOVED") + ": " + Join(t["finishedCommon"]) + "\n";
  }

  if (e.isMember("clients")) {
    out +=
        "\n" + T(L"STRID_EXPLAIN_CLIENTS") + ":" + (e["clients"].empty() ? " " + T(L"STRID_EXPLAIN_NONE") : "") + "\n";
    for (const Json::Value& client : e["clients"]) {
      out += "  " + client["account"].asString();
      if (!client["admitted"].asBool())
        out += ": " + T(L"STRID_EXPLAIN_NOT_ADMITTED");
      else if (client["nickname"].asString().empty())
        out += ": " + T(L"STRID_EXPLAIN_ADMITTED") + ", " + T(L"STRID_EXPLAIN_NO_ANSWER");
      else
        out += " (" + client["nickname"].asString() + "): " + T(L"STRID_EXPLAIN_ADMITTED");
      out += "\n";
    }
    const Json::Value& s = e["store"];
    out += T(L"STRID_EXPLAIN_STORE") + ": LastUser [" + s["lastUser"].asString() + "], Choice " +
           std::to_string(s["choice"].asInt()) + ", Users [" + Join(s["users"]) + "]\n";
    out += T(L"STRID_EXPLAIN_USER_TYPE") + ": " + std::to_string(e["userType"].asInt()) + " (" +
           e["userTypeRule"].asString() + ")\n";
  }

  const Json::Value& a = e["action"];
  const std::string kind = a["kind"].asString();
  out += "\n" + T(L"STRID_EXPLAIN_ACTION") + ": ";
  if (kind == "exit") {
    out += T(L"STRID_EXPLAIN_ACTION_EXIT") + "\n";
  } else if (kind == "forward") {
    out += T(L"STRID_EXPLAIN_ACTION_FORWARD") + " " + a["account"].asString() + "\n";
  } else if (kind == "showWindow") {
    out += T(L"STRID_EXPLAIN_ACTION_WINDOW") + ": " + Join(a["rows"]) + " (" + a["preselected"].asString() + ")\n";
  } else {
    if (kind == "updateThenClient")
      out += T(L"STRID_EXPLAIN_ACTION_UPDATE") + "\n  " + a["executorFile"].asString() + " " +
             a["executorParameters"].asString() + "\n";
    else
      out += T(L"STRID_EXPLAIN_ACTION_START") + "\n";
    out += "  " + a["clientCommandLine"].asString() + "\n";
    out += T(L"STRID_EXPLAIN_TOKEN") + ": " + e["token"]["kind"].asString() + " (" + e["token"]["reason"].asString() +
           ")\n";
  }
  out += "\n" + T(L"STRID_EXPLAIN_PROBLEMS") + ": " + (e["problems"].empty() ? T(L"STRID_EXPLAIN_NONE") : "") + "\n";
  for (const Json::Value& p : e["problems"]) out += "  " + p.asString() + "\n";
  return out;
}
