// The launcher's command line from arbitrary text: split into arguments as the C runtime (and
// CommandLineToArgvW) splits them, parsed into the switch map, and carried over to the client.
// Checks: every switch that was given is in the map; the map written back as arguments parses
// to the same map and the same silent-start decision; the arguments the launcher finds after
// its own name reach the client's command line as the same arguments.
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "Execute/CommandLineInfoEx.h"
#include "Execute/LaunchCommand.h"
#include "fuzz/FuzzTemp.h"
#include "toolkit/Utf8.h"

namespace {

void Check(bool ok, const char* what) { fuzz::Check(ok, "command_line_fuzz", what); }

// The runtime's rules: blanks and tabs separate arguments outside quotes; 2n backslashes
// before a quote are n backslashes and the quote opens or closes; 2n+1 are n and a literal
// quote; "" inside quotes is a literal quote; other backslashes are themselves.
std::vector<CString> SplitArguments(const std::wstring& line) {
  std::vector<CString> args;
  std::wstring current;
  bool inArgument = false, quoted = false;
  for (size_t i = 0; i < line.size();) {
    wchar_t c = line[i];
    if (!quoted && (c == L' ' || c == L'\t')) {
      if (inArgument) args.emplace_back(current.c_str());
      current.clear();
      inArgument = false;
      ++i;
      continue;
    }
    inArgument = true;
    if (c == L'\\') {
      size_t n = 0;
      while (i < line.size() && line[i] == L'\\') ++n, ++i;
      if (i < line.size() && line[i] == L'"') {
        current.append(n / 2, L'\\');
        if (n % 2) {
          current += L'"';
          ++i;
        }
      } else {
        current.append(n, L'\\');
      }
    } else if (c == L'"') {
      if (quoted && i + 1 < line.size() && line[i + 1] == L'"') {
        current += L'"';
        i += 2;
      } else {
        quoted = !quoted;
        ++i;
      }
    } else {
      current += c;
      ++i;
    }
  }
  if (inArgument) args.emplace_back(current.c_str());
  return args;
}

// Records the switches it is given, so the map can be read back whole.
class RecordingInfo : public CCommandLineInfoEx {
 public:
  void ParseParam(const wchar_t* param, BOOL isFlag, BOOL isLast) override {
    if (isFlag) keys.insert(CString(param));
    CCommandLineInfoEx::ParseParam(param, isFlag, isLast);
  }
  std::set<CString> keys;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::wstring line;
  toolkit::Utf8ToWide(reinterpret_cast<const char*>(data), size, line);
  line = line.substr(0, line.find(L'\0'));  // a command line ends at its terminator

  std::vector<CString> tokens = SplitArguments(line);
  RecordingInfo info;
  info.ParseCommandLine(tokens);
  for (const CString& t : tokens) {
    CString value;
    if (!t.IsEmpty() && (t[0] == L'/' || t[0] == L'-'))
      Check(info.Lookup(t.GetString() + 1, value), "a given switch is not in the map");
  }

  // Written back as "/key value" pairs, the map parses to itself. A value is never a switch
  // (it would have been taken as one), so it cannot be mistaken for one the second time.
  std::vector<CString> again;
  for (const CString& key : info.keys) {
    CString value;
    Check(info.Lookup(key, value), "a recorded switch went missing");
    Check(value.IsEmpty() || (value[0] != L'/' && value[0] != L'-'), "a switch taken as a value");
    again.push_back(L"/" + key);
    again.push_back(value);
  }
  RecordingInfo reparsed;
  reparsed.ParseCommandLine(again);
  Check(reparsed.keys == info.keys, "the switches differ when parsed again");
  for (const CString& key : info.keys) {
    CString a, b;
    info.Lookup(key, a);
    Check(reparsed.Lookup(key, b) && a == b, "a value differs when parsed again");
  }
  Check(IsSilentLaunch(info) == IsSilentLaunch(reparsed), "the silent decision differs when parsed again");

  // The launcher's own name is the first argument; what follows it goes to the client.
  CString argv0 = tokens.empty() ? CString() : tokens[0];
  CString arguments = ExtractLaunchArguments(argv0, CString(line.c_str()));
  Check(arguments.IsEmpty() || line.find(arguments.str()) != std::wstring::npos, "arguments not taken from the line");
  std::vector<CString> client = SplitArguments(BuildClientCommandLine(arguments).str());
  std::vector<CString> passed = SplitArguments(arguments.str());
  Check(client.size() == passed.size() + 3, "the client's line has other arguments");
  for (size_t i = 0; i < passed.size(); ++i) Check(client[i + 3] == passed[i], "an argument changed on its way");
  return 0;
}
