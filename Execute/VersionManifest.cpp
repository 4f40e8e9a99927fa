#include "Execute/VersionManifest.h"

#include <tinyxml.h>

#include <cstddef>
#include <exception>
#include <iterator>
#include <string>
#include <utility>

#include "common/Conversion.h"
#include "common/FileUtil.h"
#include "common/MutiLanSupport.h"
#include "common/XmlLoader.h"
#include "toolkit/Exception.h"

namespace {

constexpr int kReadCodePage = 936;
constexpr int kWriteCodePage = 0;

// The attributes of a module in the order they are written. The server format stops after
// "size", the compact format after "version".
struct ModuleAttribute {
  const char* name;
  CString ModuleVersionRecord::*field;
};
constexpr ModuleAttribute kModuleAttributes[] = {
    {"name", &ModuleVersionRecord::name},
    {"version", &ModuleVersionRecord::version},
    {"group", &ModuleVersionRecord::group},
    {"type", &ModuleVersionRecord::type},
    {"dest_dir", &ModuleVersionRecord::dest_dir},
    {"detail", &ModuleVersionRecord::detail},
    {"url", &ModuleVersionRecord::url},
    {"md5", &ModuleVersionRecord::md5},
    {"size", &ModuleVersionRecord::size},
    {"oldversion", &ModuleVersionRecord::oldversion},
    {"currentversion", &ModuleVersionRecord::currentversion},
    {"local", &ModuleVersionRecord::local},
    {"package", &ModuleVersionRecord::package},
    {"backup", &ModuleVersionRecord::backup},
};
constexpr size_t kCompactAttributes = 2;
constexpr size_t kServerAttributes = 9;
constexpr size_t kUpdateListAttributes = std::size(kModuleAttributes);

// Runs a reader or writer so that nothing escapes it (TinyXML and std::string can run out of
// memory, the toolkit raises pointers); a failure is false.
template <typename Body>
bool Guarded(Body&& body) {
  try {
    return body();
  } catch (CException* e) {
    e->Delete();
  } catch (const std::exception&) {
  }
  return false;
}

// Loads and parses the file and hands its root element to `use`; false when the file is
// missing, malformed, nested too deeply, or rooted elsewhere. The values are code page 936
// bytes whatever the declaration says, so TinyXML reads them as bytes (its legacy encoding),
// never stepping over a quote or a '<' as its UTF-8 mode can.
template <typename Use>
bool WithRoot(const CString& path, const char* rootName, Use&& use) {
  TiXmlDocument doc;
  if (!mivo::common::LoadXmlFile(path, doc, mivo::common::XmlEncoding::kLegacy)) return false;
  const TiXmlElement* root = doc.RootElement();
  if (!root || root->ValueStr() != rootName) return false;
  use(root);
  return true;
}

CString ReadAttribute(const TiXmlElement* element, const char* name) {
  const char* value = element->Attribute(name);
  return value ? mivo::common::MBCS2CString(value, kReadCodePage) : CString();
}

void WriteAttribute(TiXmlElement* element, const char* name, const CString& value) {
  element->SetAttribute(name, mivo::common::CString2MBCS(value, kWriteCodePage));
}

TiXmlElement* AddChild(TiXmlNode* parent, const char* name) {
  return parent->LinkEndChild(new TiXmlElement(name))->ToElement();
}

// A new document with the declaration; the caller adds the root.
void StartDocument(TiXmlDocument& doc) { doc.LinkEndChild(new TiXmlDeclaration("1.0", "", "")); }

// Prints the document and replaces the file in one step, so a crash never leaves half of it.
bool SaveDocument(const TiXmlDocument& doc, const CString& path) {
  TiXmlPrinter printer;  // TinyXML's own layout: four-space indents, "\n" line ends
  doc.Accept(&printer);
  return mivo::common::SaveFile(path, printer.Str()) == 1;
}

void ReadModules(const TiXmlElement* root, size_t attributeCount, ModuleVersionMap& modules) {
  for (const TiXmlElement* e = root->FirstChildElement("Module"); e; e = e->NextSiblingElement("Module")) {
    ModuleVersionRecord record;
    for (size_t i = 0; i < attributeCount; ++i)
      record.*kModuleAttributes[i].field = ReadAttribute(e, kModuleAttributes[i].name);
    // a later module of the same name replaces the earlier one
    modules.insert_or_assign(record.name, std::move(record));
  }
}

void WriteModules(TiXmlElement* root, size_t attributeCount, const ModuleVersionMap& modules) {
  for (const auto& [name, record] : modules) {
    TiXmlElement* e = AddChild(root, "Module");
    for (size_t i = 0; i < attributeCount; ++i)
      WriteAttribute(e, kModuleAttributes[i].name, record.*kModuleAttributes[i].field);
  }
}

// lang.xml may not have been read yet; the library's default language applies until it is.
std::string CurrentLanguageTag() {
  CString code = CMutiLanSupport::GetInstance()->GetLangSetting().strLangInUse;
  if (code.IsEmpty()) code = L"zh_CN";
  return mivo::common::CString_to_utf8(code);
}

// Reads the one element `child` of `parent`, if present, into `value`.
void ReadChildAttribute(const TiXmlElement* parent, const char* child, const char* name, CString& value) {
  if (const TiXmlElement* e = parent->FirstChildElement(child)) value = ReadAttribute(e, name);
}

}  // namespace

bool OrdinalLess::operator()(const CString& a, const CString& b) const {
  // With 32-bit wchar_t, U+E000..U+FFFF must sort after the characters beyond U+FFFF, as
  // their UTF-16 form (surrogates D800..DFFF) does on Windows.
  auto weight = [](wchar_t c) {
    auto u = static_cast<unsigned long>(c);
    if constexpr (sizeof(wchar_t) > 2) {
      if (u >= 0xE000 && u <= 0xFFFF) u += 0x110000;
    }
    return u;
  };
  const std::wstring& x = a.str();
  const std::wstring& y = b.str();
  size_t n = x.size() < y.size() ? x.size() : y.size();
  for (size_t i = 0; i < n; ++i) {
    if (x[i] != y[i]) return weight(x[i]) < weight(y[i]);
  }
  return x.size() < y.size();
}

bool ModuleManifest::Read() {
  return Guarded([&] {
    // filled aside, so that a file that does not load changes nothing
    ModuleVersionMap modules;
    CString detail = m_detail;
    CString mainVersion = m_mainVersion;
    std::string language = CurrentLanguageTag();
    size_t attributes = m_updateList ? kUpdateListAttributes : kServerAttributes;
    bool read = WithRoot(m_path, "Mivo", [&](const TiXmlElement* root) {
      ReadModules(root, attributes, modules);
      if (const TiXmlElement* notes = root->FirstChildElement("VersionDetail")) {
        detail = ReadAttribute(notes, "detail");
        ReadChildAttribute(notes, language.c_str(), "detail", detail);
      }
      ReadChildAttribute(root, "MainVersion", "version", mainVersion);
    });
    if (!read) return false;
    m_modules.swap(modules);
    m_detail = detail;
    m_mainVersion = mainVersion;
    return true;
  });
}

bool ModuleManifest::Write() const {
  return Guarded([&] {
    TiXmlDocument doc;
    StartDocument(doc);
    TiXmlElement* root = AddChild(&doc, "Mivo");
    WriteModules(root, m_updateList ? kUpdateListAttributes : kServerAttributes, m_modules);
    WriteAttribute(AddChild(root, "VersionDetail"), "detail", m_detail);
    WriteAttribute(AddChild(root, "MainVersion"), "version", m_mainVersion);
    return SaveDocument(doc, m_path);
  });
}

bool LocalVersionList::Read() {
  m_modules.clear();
  return Guarded([&] {
    ModuleVersionMap modules;
    if (!WithRoot(m_path, "Mivo", [&](const TiXmlElement* root) { ReadModules(root, kCompactAttributes, modules); }))
      return false;
    m_modules.swap(modules);
    return true;
  });
}

bool LocalVersionList::Write() const {
  return Guarded([&] {
    TiXmlDocument doc;
    StartDocument(doc);
    WriteModules(AddChild(&doc, "Mivo"), kCompactAttributes, m_modules);
    return SaveDocument(doc, m_path);
  });
}

bool MainVersionFile::Read() {
  return Guarded([&] {
    CString mainVersion = m_mainVersion;
    if (!WithRoot(m_path, "Mivo",
                  [&](const TiXmlElement* root) { ReadChildAttribute(root, "MainVersion", "version", mainVersion); }))
      return false;
    m_mainVersion = mainVersion;
    return true;
  });
}

bool MainVersionFile::Write() const {
  return Guarded([&] {
    TiXmlDocument doc;
    StartDocument(doc);
    WriteAttribute(AddChild(AddChild(&doc, "Mivo"), "MainVersion"), "version", m_mainVersion);
    return SaveDocument(doc, m_path);
  });
}

bool PluginConfigFile::Read() {
  return Guarded([&] {
    PluginConfigFile read(*this);
    if (!WithRoot(m_path, "Plugin-Config", [&](const TiXmlElement* root) {
          ReadChildAttribute(root, "Update", "url", read.m_updateUrl);
          if (const TiXmlElement* info = root->FirstChildElement("Info")) {
            read.m_name = ReadAttribute(info, "name");
            read.m_detail = ReadAttribute(info, "detail");
            read.m_id = ReadAttribute(info, "id");
          }
        }))
      return false;
    *this = read;
    return true;
  });
}

bool PluginConfigFile::Write() const {
  return Guarded([&] {
    TiXmlDocument doc;
    StartDocument(doc);
    TiXmlElement* root = AddChild(&doc, "Plugin-Config");
    WriteAttribute(AddChild(root, "Update"), "url", m_updateUrl);
    TiXmlElement* info = AddChild(root, "Info");
    WriteAttribute(info, "name", m_name);
    WriteAttribute(info, "detail", m_detail);
    WriteAttribute(info, "id", m_id);
    return SaveDocument(doc, m_path);
  });
}

bool ClientConfigFile::Read() {
  return Guarded([&] {
    ClientConfigFile read(*this);
    if (!WithRoot(m_path, "Mivo-Config", [&](const TiXmlElement* root) {
          ReadChildAttribute(root, "Update", "url", read.m_updateUrl);
          ReadChildAttribute(root, "MainVersion", "url", read.m_mainVersionUrl);
        }))
      return false;
    *this = read;
    return true;
  });
}

bool ClientConfigFile::Write() const {
  return Guarded([&] {
    TiXmlDocument doc;
    StartDocument(doc);
    TiXmlElement* root = AddChild(&doc, "Mivo-Config");
    WriteAttribute(AddChild(root, "Update"), "url", m_updateUrl);
    WriteAttribute(AddChild(root, "MainVersion"), "url", m_mainVersionUrl);
    return SaveDocument(doc, m_path);
  });
}
