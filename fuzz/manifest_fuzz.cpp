// Feeds arbitrary bytes to every manifest reader as a file, and checks three things no input
// may break: the readers do not crash, an update list that was read writes and reads back
// stably, and the nesting scan never reports fewer levels than TinyXML opens, in its legacy
// encoding (as the manifests are read) and in UTF-8 (as the skins are).
#include <tinyxml.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "Execute/VersionManifest.h"
#include "common/MutiLanSupport.h"
#include "common/XmlNesting.h"
#include "toolkit/CodePage.h"
#include "toolkit/FileSys.h"
#include "toolkit/Utf8.h"

namespace {

void Check(bool ok, const char* what) {
  if (!ok) {
    std::fprintf(stderr, "manifest_fuzz: %s\n", what);
    std::abort();
  }
}

struct Files {
  Files() : dir(std::filesystem::temp_directory_path() / ("mivo_manifest_fuzz_" + std::to_string(getpid()))) {
    std::filesystem::create_directories(dir);
    input = dir / "input.xml";
    inputPath = Library(input);
    firstPath = Library(dir / "first.xml");
    secondPath = Library(dir / "second.xml");
  }
  static CString Library(const std::filesystem::path& p) {
    return CString(toolkit::sys::FromNativePath(p.string()).c_str());
  }
  ~Files() {
    std::error_code ec;
    std::filesystem::remove_all(dir, ec);
  }
  std::filesystem::path dir, input;
  CString inputPath, firstPath, secondPath;
};

// The deepest element nesting of the parsed (or partly parsed) document, without recursion.
int TreeDepth(const TiXmlNode* top) {
  int deepest = 0;
  std::vector<std::pair<const TiXmlNode*, int>> todo{{top, 0}};
  while (!todo.empty()) {
    auto [node, depth] = todo.back();
    todo.pop_back();
    if (depth > deepest) deepest = depth;
    for (const TiXmlNode* c = node->FirstChild(); c; c = c->NextSibling())
      todo.emplace_back(c, depth + (c->ToElement() ? 1 : 0));
  }
  return deepest;
}

bool Same(const ModuleManifest& a, const ModuleManifest& b) {
  return a.GetModules() == b.GetModules() && a.GetDetail() == b.GetDetail() && a.GetMainVersion() == b.GetMainVersion();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  toolkit::SetAnsiCodePage(936);  // so that what was read writes back as it was read
  CMutiLanSupport::GetInstance()->SetLangSetting({L"zh_CN", L"zh_CN"});
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Files files;
  std::string bytes(reinterpret_cast<const char*>(data), size);
  std::ofstream(files.input, std::ios::binary | std::ios::trunc) << bytes;

  UpdateVersionManifest update(files.inputPath);
  bool read = update.Read();
  ServerVersionManifest(files.inputPath).Read();
  LocalVersionList(files.inputPath).Read();
  MainVersionFile(files.inputPath).Read();
  PluginConfigFile(files.inputPath).Read();
  ClientConfigFile(files.inputPath).Read();

  if (read) {
    // the first write turns what code page 936 could not hold into '?'; from then on it is stable
    UpdateVersionManifest first(files.firstPath), second(files.secondPath);
    first.GetModules() = update.GetModules();
    first.SetDetail(update.GetDetail());
    first.SetMainVersion(update.GetMainVersion());
    Check(first.Write(), "write failed");
    UpdateVersionManifest again(files.firstPath);
    Check(again.Read(), "a written list does not read");
    second.GetModules() = again.GetModules();
    second.SetDetail(again.GetDetail());
    second.SetMainVersion(again.GetMainVersion());
    Check(second.Write(), "second write failed");
    UpdateVersionManifest last(files.secondPath);
    Check(last.Read() && Same(again, last), "a written list reads back differently");
  }

  // TinyXML's own nesting of the same text: the scan must never say it stays within fewer.
  // The deepest element of the tree may hold nothing, so it opens no level of its own.
  std::string text = bytes.substr(0, bytes.find('\0'));
  TiXmlDocument doc;
  doc.Parse(text.c_str(), nullptr, TIXML_ENCODING_LEGACY);
  int depth = TreeDepth(&doc);
  Check(depth < 2 || !mivo::common::XmlNestingWithin(text.c_str(), depth - 2, mivo::common::XmlScanMode::kLegacy),
        "nesting scan counts fewer levels than TinyXML");

  // In UTF-8 every level of the tree counts, empty elements too. The text is first made valid
  // UTF-8 as the skin builder does: TinyXML's UTF-8 mode can step over the terminator otherwise.
  std::wstring wide;
  toolkit::Utf8ToWide(text.data(), text.size(), wide);
  std::string utf8;
  toolkit::WideToUtf8(wide.data(), wide.size(), utf8);
  TiXmlDocument skin;
  skin.Parse(utf8.c_str(), nullptr, TIXML_ENCODING_UTF8);
  depth = TreeDepth(&skin);
  Check(depth < 1 || !mivo::common::XmlNestingWithin(utf8.c_str(), depth - 1, mivo::common::XmlScanMode::kUtf8),
        "nesting scan counts fewer levels than TinyXML in UTF-8");
  return 0;
}
