// Reads the http association (the user's choice, then the machine's) and expands the program.
#include <windows.h>

#include <vector>

#include "common/Browser.h"

namespace mivo::common {
namespace {

// A string value (REG_SZ or REG_EXPAND_SZ, left unexpanded); "" when missing.
CString ReadString(HKEY root, const CString& subkey, const wchar_t* name) {
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, subkey, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) return CString();
  CString result;
  DWORD type = 0, bytes = 0;
  if (RegQueryValueExW(key, name, nullptr, &type, nullptr, &bytes) == ERROR_SUCCESS &&
      (type == REG_SZ || type == REG_EXPAND_SZ) && bytes > 0) {
    std::vector<wchar_t> buffer(bytes / sizeof(wchar_t) + 1, L'\0');
    if (RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(buffer.data()), &bytes) == ERROR_SUCCESS)
      result = buffer.data();  // up to the first NUL; the buffer ends in one either way
  }
  RegCloseKey(key);
  return result;
}

bool ProcessEnvironment(const CString& name, CString& value) {
  DWORD size = GetEnvironmentVariableW(name, nullptr, 0);
  if (size == 0) return false;
  std::vector<wchar_t> buffer(size + 1, L'\0');
  DWORD got = GetEnvironmentVariableW(name, buffer.data(), size);
  if (got == 0 || got >= size) return false;
  value = CString(buffer.data(), static_cast<int>(got));
  return true;
}

CString ProgramOf(const CString& commandKey) {
  return ProgramFromOpenCommand(ReadString(HKEY_CLASSES_ROOT, commandKey, nullptr), ProcessEnvironment);
}

}  // namespace

CString GetDefaultBrowserPath() {
  try {
    CString progId =
        ReadString(HKEY_CURRENT_USER,
                   L"Software\\Microsoft\\Windows\\Shell\\Associations\\UrlAssociations\\http\\UserChoice", L"Progid");
    if (!progId.IsEmpty()) {
      CString program = ProgramOf(progId + L"\\shell\\open\\command");
      if (!program.IsEmpty()) return program;
    }
    return ProgramOf(L"http\\shell\\open\\command");
  } catch (...) {
    return CString();
  }
}

}  // namespace mivo::common
