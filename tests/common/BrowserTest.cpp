#include <gtest/gtest.h>

#include "common/Browser.h"

namespace mc = mivo::common;

namespace {

bool FakeEnvironment(const CString& name, CString& value) {
  if (name.CompareNoCase(L"ProgramFiles") == 0)
    value = L"C:\\Program Files";
  else if (name.CompareNoCase(L"SystemRoot") == 0)
    value = L"C:\\Windows";
  else
    return false;
  return true;
}

struct CommandRow {
  const wchar_t* command;
  const wchar_t* program;
};

TEST(ProgramFromOpenCommand, Rows) {
  const CommandRow rows[] = {
      {L"\"C:\\Program Files\\Mozilla Firefox\\firefox.exe\" -osint -url \"%1\"",
       L"C:\\Program Files\\Mozilla Firefox\\firefox.exe"},
      {L"C:\\Program Files\\Internet Explorer\\iexplore.exe %1", L"C:\\Program Files\\Internet Explorer\\iexplore.exe"},
      {L"\"%ProgramFiles%\\Opera\\opera.exe\" \"%1\"", L"C:\\Program Files\\Opera\\opera.exe"},
      {L"%SystemRoot%\\system32\\rundll32.exe url.dll,FileProtocolHandler %1", L"C:\\Windows\\system32\\rundll32.exe"},
      {L"  winebrowser -nohome", L"winebrowser"},
      {L"C:\\Tools\\my.exe.d\\B.EXE", L"C:\\Tools\\my.exe.d\\B.EXE"},  // ".exe" inside a word is no end
      {L"C:\\Program Files\\Annexe Tools\\annexe.exe -u %1", L"C:\\Program Files\\Annexe Tools\\annexe.exe"},
      {L"\"C:\\unclosed\\b.exe -x", L"C:\\unclosed\\b.exe -x"},
      {L"%Unknown%\\b.exe %1", L"%Unknown%\\b.exe"},
      {L"\"C:\\50%\\%systemroot%\\b.exe\"", L"C:\\50%\\C:\\Windows\\b.exe"},  // a lone '%' stays
      {L"\"\" %1", L""},
      {L"", L""},
  };
  for (const CommandRow& row : rows)
    EXPECT_EQ(mc::ProgramFromOpenCommand(row.command, FakeEnvironment), row.program) << row.command;
}

}  // namespace
