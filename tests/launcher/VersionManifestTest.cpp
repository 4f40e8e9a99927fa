#include <gtest/gtest.h>
#include <tinyxml.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Execute/VersionManifest.h"
#include "common/Conversion.h"
#include "common/MutiLanSupport.h"
#include "support/TempDir.h"
#include "toolkit/CodePage.h"

namespace fs = std::filesystem;
using testing_support::TempDir;

namespace {

// A record whose every field differs, so a field read into the wrong member shows.
ModuleVersionRecord Record(const CString& name) {
  ModuleVersionRecord r;
  int i = 0;
  for (CString* f : {&r.version, &r.group, &r.type, &r.dest_dir, &r.detail, &r.url, &r.md5, &r.size, &r.oldversion,
                     &r.currentversion, &r.local, &r.package, &r.backup})
    f->Format(L"%s-%d", name.GetString(), ++i);
  r.name = name;
  return r;
}

std::vector<CString> Keys(const ModuleVersionMap& m) {
  std::vector<CString> keys;
  for (const auto& [k, v] : m) keys.push_back(k);
  return keys;
}

// Each test has its own folder; the language and the ANSI code page are put back afterwards.
class Manifest : public ::testing::Test {
 protected:
  void SetUp() override { SetLanguage(L"zh_CN"); }
  void TearDown() override {
    CMutiLanSupport::GetInstance()->SetLangSetting(m_lang);
    toolkit::SetAnsiCodePage(m_ansi);
  }
  void SetLanguage(const CString& code) { CMutiLanSupport::GetInstance()->SetLangSetting({code, code}); }
  CString Put(const char* name, const std::string& bytes) {
    std::ofstream(m_dir.NativeOf(CString(name)), std::ios::binary) << bytes;
    return Path(name);
  }
  std::string Get(const char* name) {
    std::ifstream in(m_dir.NativeOf(CString(name)), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }
  CString Path(const char* name) { return m_dir.Path() + CString(name); }

  TempDir m_dir;
  LANG_SETTING m_lang = CMutiLanSupport::GetInstance()->GetLangSetting();
  unsigned m_ansi = toolkit::GetAnsiCodePage();
};

TEST(OrdinalLess, OrdersByUtf16CodeUnitsCaseSensitively) {
  const struct {
    const wchar_t* before;
    const wchar_t* after;
  } rows[] = {
      {L"B", L"a"},
      {L"A", L"a"},
      {L"Z", L"_"},
      {L"a", L"ab"},
      {L"", L"a"},
      {L"\u00e9", L"\u4e2d"},
      {L"\U0001F600", L"\uFF21"},  // a surrogate pair sorts below U+E000
  };
  OrdinalLess less;
  for (const auto& row : rows) {
    EXPECT_TRUE(less(row.before, row.after)) << testing::PrintToString(std::wstring(row.before));
    EXPECT_FALSE(less(row.after, row.before)) << testing::PrintToString(std::wstring(row.after));
  }
  EXPECT_FALSE(less(L"same", L"same"));
}

TEST_F(Manifest, ModuleListsRoundTripEveryFieldInNameOrder) {
  const struct {
    bool updateList;
    size_t attributes;
  } kinds[] = {{false, 9}, {true, 14}};
  const char* order[] = {"name", "version", "group",      "type",           "dest_dir", "detail",  "url",
                         "md5",  "size",    "oldversion", "currentversion", "local",    "package", "backup"};
  for (const auto& kind : kinds) {
    SCOPED_TRACE(kind.updateList ? "update list" : "server");
    UpdateVersionManifest update(Path("list.xml"));
    ServerVersionManifest server(Path("list.xml"));
    ModuleManifest& out = kind.updateList ? static_cast<ModuleManifest&>(update) : server;
    for (const wchar_t* name : {L"b", L"a", L"B", L"core"}) out.GetModules()[name] = Record(name);
    out.GetModules()[L"a"].detail = L" <tag> & \"quoted\" 'single'\r\n\ttab ";
    out.GetModules()[L"empty"].name = L"empty";  // every other field empty, still written
    out.SetDetail(L"notes & more");
    out.SetMainVersion(L"6.0.1");
    ASSERT_TRUE(out.Write());
    EXPECT_EQ(std::distance(fs::directory_iterator(m_dir.Native()), {}), 1) << "a temporary file was left";

    std::string text = Get("list.xml");
    EXPECT_LT(text.find("name=\"B\""), text.find("name=\"a\""));
    TiXmlDocument doc;
    doc.Parse(text.c_str());
    ASSERT_FALSE(doc.Error()) << text;
    for (auto* e = doc.RootElement()->FirstChildElement("Module"); e; e = e->NextSiblingElement("Module")) {
      std::vector<std::string> written;
      for (auto* a = e->FirstAttribute(); a; a = a->Next()) written.push_back(a->Name());
      EXPECT_EQ(written, std::vector<std::string>(order, order + kind.attributes)) << e->Attribute("name");
    }
    EXPECT_EQ(doc.RootElement()->FirstChildElement("VersionDetail")->FirstChild(), nullptr);

    // each reader keeps the fields of its own format only
    for (bool readUpdateList : {false, true}) {
      UpdateVersionManifest update(Path("list.xml"));
      ServerVersionManifest server(Path("list.xml"));
      ModuleManifest& in = readUpdateList ? static_cast<ModuleManifest&>(update) : server;
      ASSERT_TRUE(in.Read());
      EXPECT_EQ(Keys(in.GetModules()), (std::vector<CString>{L"B", L"a", L"b", L"core", L"empty"}));
      for (const auto& [name, record] : out.GetModules()) {
        ModuleVersionRecord expected = record;
        if (!kind.updateList || !readUpdateList)
          expected.oldversion = expected.currentversion = expected.local = expected.package = expected.backup = L"";
        EXPECT_EQ(in.GetModules().at(name), expected) << testing::PrintToString(name.str());
      }
      EXPECT_EQ(in.GetDetail(), L"notes & more");
      EXPECT_EQ(in.GetMainVersion(), L"6.0.1");
    }
  }
}

TEST_F(Manifest, OtherFormatsRoundTrip) {
  LocalVersionList list(Path("local.xml")), listIn(Path("local.xml"));
  list.GetModules()[L"x"] = Record(L"x");
  list.GetModules()[L"X"] = Record(L"X");
  ASSERT_TRUE(list.Write() && listIn.Read());
  ModuleVersionRecord compact;  // name and version only
  compact.name = L"x";
  compact.version = L"x-1";
  EXPECT_EQ(Keys(listIn.GetModules()), (std::vector<CString>{L"X", L"x"}));
  EXPECT_EQ(listIn.GetModules().at(L"x"), compact);

  MainVersionFile main(Path("main.xml")), mainIn(Path("main.xml"));
  main.SetMainVersion(L"7.1");
  ASSERT_TRUE(main.Write() && mainIn.Read());
  EXPECT_EQ(mainIn.GetMainVersion(), L"7.1");

  PluginConfigFile plugin(Path("PluginConfig.xml")), pluginIn(Path("PluginConfig.xml"));
  plugin.SetUpdateUrl(L"http://u/p?a=1&b=2");
  plugin.SetName(L"Notes");
  plugin.SetDetail(L"Notes.dll");
  plugin.SetId(L"42");
  ASSERT_TRUE(plugin.Write() && pluginIn.Read());
  EXPECT_EQ(pluginIn.GetUpdateUrl() + L"|" + pluginIn.GetName() + L"|" + pluginIn.GetDetail() + L"|" + pluginIn.GetId(),
            L"http://u/p?a=1&b=2|Notes|Notes.dll|42");

  ClientConfigFile client(Path("client.xml")), clientIn(Path("client.xml"));
  client.SetUpdateUrl(L"http://u/list");
  client.SetMainVersionUrl(L"http://u/main");
  ASSERT_TRUE(client.Write() && clientIn.Read());
  EXPECT_EQ(clientIn.GetUpdateUrl() + L"|" + clientIn.GetMainVersionUrl(), L"http://u/list|http://u/main");

  // a writer that cannot save says so
  EXPECT_FALSE(UpdateVersionManifest(Path("no\\such\\folder\\list.xml")).Write());
  EXPECT_FALSE(PluginConfigFile(Path("no\\such\\folder\\p.xml")).Write());
}

TEST_F(Manifest, ReaderRulesForModulesDetailAndMainVersion) {
  UpdateVersionManifest m(Put("u.xml",
                              "<Mivo><Module name=\"dup\" version=\"1\"/><Module name=\"core\"/><Module name=\"Core\"/>"
                              "<Module name=\"dup\" version=\"2\"/><VersionDetail detail=\"d1\"/>"
                              "<MainVersion version=\"m1\"/></Mivo>"));
  m.GetModules()[L"stale"] = Record(L"stale");
  ASSERT_TRUE(m.Read());
  EXPECT_EQ(Keys(m.GetModules()), (std::vector<CString>{L"Core", L"core", L"dup"}));  // "stale" is gone
  EXPECT_EQ(m.GetModules().at(L"dup").version, L"2");                                 // the later one wins
  EXPECT_EQ(m.GetModules().at(L"core").group, L"");                                   // missing reads empty
  // a list without VersionDetail and MainVersion keeps what the object held
  Put("u.xml", "<?xml version=\"1.0\" encoding=\"GB2312\"?><Mivo><Module name=\"n\"/></Mivo>");
  ASSERT_TRUE(m.Read());
  EXPECT_EQ(Keys(m.GetModules()), (std::vector<CString>{L"n"}));
  EXPECT_EQ(m.GetDetail(), L"d1");
  EXPECT_EQ(m.GetMainVersion(), L"m1");
  EXPECT_TRUE(m.RemoveModule(L"n"));
  EXPECT_FALSE(m.RemoveModule(L"N"));
  EXPECT_TRUE(m.GetModules().empty());
}

TEST_F(Manifest, ReleaseNotesOfTheCurrentLanguage) {
  const std::string both =
      "<VersionDetail detail=\"base\"><zh_CN detail=\"zh\"/><en_US detail=\"en\"/></VersionDetail>";
  const struct {
    const wchar_t* language;
    std::string notes;
    const wchar_t* expected;
  } rows[] = {
      {L"zh_CN", both, L"zh"},
      {L"en_US", both, L"en"},
      {L"zh_TW", both, L"base"},
      {L"", both, L"zh"},  // before lang.xml is read the default language applies
      {L"en_US", "<VersionDetail detail=\"base\"><zh_CN detail=\"zh\"/></VersionDetail>", L"base"},
      {L"en_US", "<VersionDetail detail=\"base\"><en_US/></VersionDetail>", L""},
      {L"zh_cn", both, L"base"},  // tags are case-sensitive
  };
  for (const auto& row : rows) {
    SetLanguage(row.language);
    ServerVersionManifest m(Put("s.xml", "<Mivo>" + row.notes + "</Mivo>"));
    ASSERT_TRUE(m.Read());
    EXPECT_EQ(m.GetDetail(), row.expected) << testing::PrintToString(std::wstring(row.language));
  }
}

const CString kZh(L"\u4e2d\u6587");  // GBK d6d0 cec4, UTF-8 e4b8ad e69687

TEST_F(Manifest, AttributesAreReadAsCodePage936) {
  UpdateVersionManifest gbk(Put("gbk.xml",
                                "<Mivo><Module name=\"\xd6\xd0\xce\xc4\" version=\"1\"/>"
                                "<VersionDetail detail=\"\xbb\xb6\xd3\xad\"/></Mivo>"));
  ASSERT_TRUE(gbk.Read());
  EXPECT_EQ(Keys(gbk.GetModules()), std::vector<CString>{kZh});
  EXPECT_EQ(gbk.GetDetail(), L"\u6b22\u8fce");

  // bytes that code page 936 cannot decode spoil only their own characters
  ServerVersionManifest bad(Put("bad.xml",
                                "<Mivo><Module name=\"n\" version=\"a\xff\xd6\xd0z\" detail=\"x\x81\" "
                                "url=\"\xd6\xd0\"/></Mivo>"));
  ASSERT_TRUE(bad.Read());
  const ModuleVersionRecord& r = bad.GetModules().at(L"n");
  EXPECT_EQ(r.version.Left(1), L"a");
  EXPECT_EQ(r.version.Right(2), L"\u4e2dz");
  EXPECT_GE(r.version.GetLength(), 4);
  EXPECT_EQ(r.detail.Left(1), L"x");
  EXPECT_EQ(r.url, L"\u4e2d");
}

// Only where the ANSI code page is 936 does Chinese text read back unchanged.
TEST_F(Manifest, AttributesAreWrittenInTheAnsiCodePage) {
  UpdateVersionManifest out(Path("out.xml"));
  out.GetModules()[kZh] = Record(kZh);
  UpdateVersionManifest back(Path("out.xml"));
#if defined(_WIN32)
  ASSERT_TRUE(out.Write());
  EXPECT_NE(Get("out.xml").find("name=\"" + mivo::common::CString2MBCS(kZh, 0) + "\""), std::string::npos);
  ASSERT_TRUE(back.Read());
  EXPECT_EQ(back.GetModules().count(kZh), toolkit::GetAnsiCodePage() == 936 ? 1u : 0u);
#else
  toolkit::SetAnsiCodePage(65001);
  ASSERT_TRUE(out.Write());
  EXPECT_NE(Get("out.xml").find("name=\"\xe4\xb8\xad\xe6\x96\x87\""), std::string::npos);
  ASSERT_TRUE(back.Read());
  EXPECT_EQ(back.GetModules().count(kZh), 0u);
  toolkit::SetAnsiCodePage(936);
  ASSERT_TRUE(out.Write());
  EXPECT_NE(Get("out.xml").find("name=\"\xd6\xd0\xce\xc4\""), std::string::npos);
  ASSERT_TRUE(back.Read());
  EXPECT_EQ(back.GetModules(), out.GetModules());
#endif
}

// A document every reader accepts; the bad rows are broken forms of it.
std::string Universal(const std::string& root) {
  return "<" + root +
         "><Module name=\"m\" version=\"v\"/><VersionDetail detail=\"d\"/>"
         "<MainVersion version=\"mv\" url=\"mu\"/><Update url=\"uu\"/><Info name=\"n\" detail=\"nd\" id=\"i\"/></" +
         root + ">";
}

std::string Utf16(const std::string& ascii, bool bigEndian, bool mark) {
  std::string out = mark ? (bigEndian ? "\xfe\xff" : "\xff\xfe") : "";
  for (char c : ascii) out += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
  return out;
}

// Runs every reader over the file. Those whose root is `readable` must read it; the others
// must leave their objects as documented for a file that does not load.
void ExpectReaders(const CString& path, const std::string& readable, const std::string& label) {
  SCOPED_TRACE(label);
  bool good = readable == "Mivo";
  for (bool updateList : {false, true}) {
    UpdateVersionManifest update(path);
    ServerVersionManifest server(path);
    ModuleManifest& m = updateList ? static_cast<ModuleManifest&>(update) : server;
    m.GetModules()[L"old"] = Record(L"old");
    m.SetDetail(L"old detail");
    m.SetMainVersion(L"old main");
    EXPECT_EQ(m.Read(), good);
    EXPECT_EQ(Keys(m.GetModules()), good ? std::vector<CString>{L"m"} : std::vector<CString>{L"old"});
    EXPECT_EQ(m.GetDetail(), good ? L"d" : L"old detail");
    EXPECT_EQ(m.GetMainVersion(), good ? L"mv" : L"old main");
  }
  LocalVersionList list(path);
  list.GetModules()[L"old"] = Record(L"old");
  EXPECT_EQ(list.Read(), good);
  EXPECT_EQ(Keys(list.GetModules()), good ? std::vector<CString>{L"m"} : std::vector<CString>{});
  MainVersionFile main(path);
  main.SetMainVersion(L"old");
  EXPECT_EQ(main.Read(), good);
  EXPECT_EQ(main.GetMainVersion(), good ? L"mv" : L"old");
  good = readable == "Plugin-Config";
  PluginConfigFile plugin(path);
  plugin.SetName(L"old");
  EXPECT_EQ(plugin.Read(), good);
  EXPECT_EQ(plugin.GetName() + plugin.GetDetail() + plugin.GetId() + plugin.GetUpdateUrl(), good ? L"nndiuu" : L"old");
  good = readable == "Mivo-Config";
  ClientConfigFile client(path);
  client.SetUpdateUrl(L"old");
  EXPECT_EQ(client.Read(), good);
  EXPECT_EQ(client.GetUpdateUrl() + client.GetMainVersionUrl(), good ? L"uumu" : L"old");
}

TEST_F(Manifest, EveryReaderAcceptsWellFormedFilesAndRejectsBrokenOnes) {
  for (std::string root : {"Mivo", "Plugin-Config", "Mivo-Config"}) {
    const std::string doc = Universal(root);
    std::string lower = root;
    for (char& c : lower) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    const struct {
      const char* label;
      std::string bytes;
      bool good;
    } rows[] = {
        {"plain", doc, true},
        {"declaration", "<?xml version=\"1.0\" ?>\r\n" + doc + "\r\n", true},
        {"utf-8 mark and declaration", "\xef\xbb\xbf<?xml version=\"1.0\" encoding=\"utf-8\"?>" + doc, true},
        {"utf-8 mark", "\xef\xbb\xbf" + doc, true},
        {"utf-16le with mark", Utf16(doc, false, true), false},
        {"utf-16le", Utf16(doc, false, false), false},
        {"utf-16be with mark", Utf16(doc, true, true), false},
        {"empty", "", false},
        {"not xml", "MainVersion=6.0", false},
        {"mismatched end tag", doc.substr(0, doc.size() - 1) + "x>", false},
        {"unclosed quote", "<" + root + "><Module name=\"m/></" + root + ">", false},
        {"lower-case root", Universal(lower), false},
        {"nul inside", doc.substr(0, 10) + std::string(1, '\0') + doc.substr(10), false},
    };
    for (const auto& row : rows) ExpectReaders(Put("f.xml", row.bytes), row.good ? root : "", root + ": " + row.label);
  }
  ExpectReaders(Path("missing.xml"), "", "missing file");
  // a file cut anywhere before its end tag closes
  const std::string doc = Universal("Mivo");
  for (size_t n = 0; n < doc.size(); ++n) ExpectReaders(Put("cut.xml", doc.substr(0, n)), "", doc.substr(0, n));
}

}  // namespace
