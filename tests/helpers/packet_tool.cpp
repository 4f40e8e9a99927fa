// packet_tool write|check|spoil <file>: writes a fixed packet (nested folders, binary and
// empty streams, a name outside ASCII, a stream past the small-stream limit), checks that a
// packet holds exactly that, or changes one without committing and is then killed by the
// system. Built natively and for Windows, so each reads what the other wrote.
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

#include "common/ResourcePacket.h"
#include "toolkit/Utf8.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <csignal>
#endif

namespace mc = mivo::common;

namespace {

std::string Bytes(size_t n, unsigned seed) {
  std::string s(n, '\0');
  for (size_t i = 0; i < n; ++i) s[i] = static_cast<char>((i * seed + i / 251) & 0xFF);
  return s;
}

struct Entry {
  const wchar_t* path;
  std::string data;
};

const std::vector<Entry>& Expected() {
  static const std::vector<Entry> entries = {
      {L"readme.txt", "a packet made by packet_tool\r\n"},
      {L"skins\\default\\a.png", Bytes(777, 131)},
      {L"skins\\default\\big.bin", Bytes(100003, 7)},
      {L"skins\\default\\empty.txt", ""},
      {L"skins\\dark\\b.png", Bytes(4096, 17)},
      {L"lang\\zh_CN\\\u5b57\u7b26\u4e32.ini", "\xEF\xBB\xBFk=v\n"},
  };
  return entries;
}

const std::vector<std::wstring> kFolders = {L"skins", L"skins\\default", L"skins\\dark", L"lang", L"lang\\zh_CN"};

int Fail(const char* what, const wchar_t* path) {
  std::string utf8;
  toolkit::WideToUtf8(path, std::wcslen(path), utf8);
  std::fprintf(stderr, "packet_tool: %s: %s\n", what, utf8.c_str());
  return 1;
}

int WritePacket(const CString& file) {
  mc::CResourcePacket packet;
  if (!packet.Create(file)) return Fail("cannot create", file.GetString());
  for (const auto& e : Expected())
    if (!packet.Write(e.path, e.data)) return Fail("cannot write", e.path);
  return packet.Commit() ? 0 : Fail("cannot commit", file.GetString());
}

int CheckPacket(const CString& file) {
  mc::CResourcePacket packet;
  std::vector<mc::ResourcePacketEntry> listed;
  if (!packet.Open(file, false) || !packet.List(listed)) return Fail("cannot open or list", file.GetString());
  if (listed.size() != Expected().size() + kFolders.size()) return Fail("wrong number of entries in", file.GetString());
  for (const auto& l : listed) {
    bool known = false;
    for (const auto& f : kFolders) known = known || (l.folder && f == l.path.GetString());
    for (const auto& e : Expected()) {
      if (l.folder || e.path != std::wstring(l.path.GetString())) continue;
      std::string data;
      if (l.size != e.data.size() || !packet.Read(l.path, data) || data != e.data) return Fail("wrong content", e.path);
      known = true;
    }
    if (!known) return Fail("unexpected entry", l.path.GetString());
  }
  std::printf("packet_tool: %zu entries as expected\n", listed.size());
  return 0;
}

int SpoilPacket(const CString& file) {
  mc::CResourcePacket packet;
  if (!packet.Open(file, true) || !packet.Remove(L"skins") || !packet.Write(L"readme.txt", Bytes(200000, 3)) ||
      !packet.Write(L"new\\entry", "x"))
    return Fail("cannot change", file.GetString());
  // ended by the system as a kill would, with the update open and nothing closed or committed
  std::fflush(nullptr);
#if defined(_WIN32)
  TerminateProcess(GetCurrentProcess(), 9);
#else
  raise(SIGKILL);
#endif
  return Fail("still alive", file.GetString());
}

int Run(const std::vector<std::wstring>& args) {
  if (args.size() == 2 && args[0] == L"write") return WritePacket(args[1].c_str());
  if (args.size() == 2 && args[0] == L"check") return CheckPacket(args[1].c_str());
  if (args.size() == 2 && args[0] == L"spoil") return SpoilPacket(args[1].c_str());
  std::fprintf(stderr, "usage: packet_tool write|check|spoil <file>\n");
  return 2;
}

}  // namespace

#if defined(_WIN32)
int wmain(int argc, wchar_t** argv) { return Run(std::vector<std::wstring>(argv + 1, argv + argc)); }
#else
int main(int argc, char** argv) {
  std::vector<std::wstring> args(argc > 1 ? argc - 1 : 0);
  for (int i = 1; i < argc; ++i) toolkit::Utf8ToWide(argv[i], std::strlen(argv[i]), args[i - 1]);
  return Run(args);
}
#endif
