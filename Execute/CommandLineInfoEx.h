#pragma once
// The launcher's command line, parsed with the framework's rules: a token that begins with
// "/" or "-" is a switch, handed over without that character; a plain token right after a
// switch is that switch's argument. Switches map to their argument, or "TRUE".
#include <vector>

#include "toolkit/CString.h"
#include "toolkit/Collections.h"

class CCommandLineInfoEx {
 public:
  virtual ~CCommandLineInfoEx() = default;
  virtual void ParseParam(const wchar_t* param, BOOL isFlag, BOOL isLast);
  BOOL Lookup(const wchar_t* key, CString& value) const { return m_switches.Lookup(key, value); }

  // Tokens after the program name, as the C runtime splits the command line.
  void ParseCommandLine(const std::vector<CString>& tokens);

 private:
  CMapStringToString m_switches;
  CString m_waiting;
};

// All four of "pluginapp", "port", "uid" and "key": the client is started directly.
bool IsSilentLaunch(const CCommandLineInfoEx& info);
