#include "Execute/CommandLineInfoEx.h"

void CCommandLineInfoEx::ParseParam(const wchar_t* param, BOOL isFlag, BOOL) {
  if (isFlag) {
    m_switches.SetAt(param, L"TRUE");
    m_waiting = param;
  } else if (!m_waiting.IsEmpty()) {
    m_switches.SetAt(m_waiting, param);
    m_waiting.Empty();
  }
}

void CCommandLineInfoEx::ParseCommandLine(const std::vector<CString>& tokens) {
  for (size_t i = 0; i < tokens.size(); ++i) {
    const CString& t = tokens[i];
    bool isFlag = !t.IsEmpty() && (t[0] == L'/' || t[0] == L'-');
    ParseParam(isFlag ? t.GetString() + 1 : t.GetString(), isFlag, i + 1 == tokens.size());
  }
}

bool IsSilentLaunch(const CCommandLineInfoEx& info) {
  CString value;
  for (const wchar_t* key : {L"pluginapp", L"port", L"uid", L"key"})
    if (!info.Lookup(key, value)) return false;
  return true;
}
