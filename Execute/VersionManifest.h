#pragma once
// The version manifests: small XML files in which the launcher and the update executor record
// what is installed, what the server offers and how far an update has got.
//
// Attribute values are read as code page 936 and written in the ANSI code page (0), so a file
// written on a machine whose ANSI page is 936 reads back unchanged. Versions are opaque
// strings: two are the same only when they are equal, case included.
// Nothing here throws. A file that is missing, does not parse or nests elements more than 256
// deep leaves a server or update-list manifest as it was, leaves a local list empty, and makes
// the other readers return false.
#include <map>

#include "toolkit/CString.h"

// One installable component. A missing attribute reads as "".
struct ModuleVersionRecord {
  CString name;
  CString version;
  CString group;  // "common" and "core" carry meaning for the update check
  CString type;
  CString dest_dir;
  CString detail;
  CString url;
  CString md5;
  CString size;  // text, never parsed
  // update list only
  CString oldversion;
  CString currentversion;
  CString local;
  CString package;
  CString backup;

  bool operator==(const ModuleVersionRecord&) const = default;
};

// Case-sensitive ordinal order of wide strings by UTF-16 code units, the order Windows uses,
// so maps iterate and files are written in the same order on every platform.
struct OrdinalLess {
  bool operator()(const CString& a, const CString& b) const;
};

using ModuleVersionMap = std::map<CString, ModuleVersionRecord, OrdinalLess>;

// Root "Mivo" with "Module" elements, a "VersionDetail" (release notes, optionally one child
// per language code with its own "detail") and a "MainVersion". The server and update-list
// formats differ only in the five update-list attributes of each module.
class ModuleManifest {
 public:
  const CString& GetPath() const { return m_path; }
  ModuleVersionMap& GetModules() { return m_modules; }
  const ModuleVersionMap& GetModules() const { return m_modules; }
  bool RemoveModule(const CString& name) { return m_modules.erase(name) > 0; }
  const CString& GetDetail() const { return m_detail; }
  void SetDetail(const CString& detail) { m_detail = detail; }
  const CString& GetMainVersion() const { return m_mainVersion; }
  void SetMainVersion(const CString& version) { m_mainVersion = version; }

  // Replaces the modules; detail and main version only where the file has their elements.
  // The release notes of the current language (CMutiLanSupport's code in use, "zh_CN" while
  // none is set) win over the general ones. False, with nothing changed, when the file
  // cannot be loaded or parsed or its root is not "Mivo".
  bool Read();
  // Rewrites the whole file (atomically); every attribute is written, empty ones too.
  bool Write() const;

 protected:
  ModuleManifest(const CString& path, bool updateList) : m_path(path), m_updateList(updateList) {}

 private:
  CString m_path;
  bool m_updateList;
  ModuleVersionMap m_modules;
  CString m_detail;
  CString m_mainVersion;
};

// "ServerVersion.xml" as the server publishes it.
class ServerVersionManifest : public ModuleManifest {
 public:
  explicit ServerVersionManifest(const CString& path) : ModuleManifest(path, false) {}
};

// "UpdateTemp\StaticUpdateVersion.xml": the server format plus oldversion, currentversion,
// local, package and backup on every module.
class UpdateVersionManifest : public ModuleManifest {
 public:
  explicit UpdateVersionManifest(const CString& path) : ModuleManifest(path, true) {}
};

// Root "Mivo" with "Module" elements carrying only name and version.
class LocalVersionList {
 public:
  explicit LocalVersionList(const CString& path) : m_path(path) {}
  const CString& GetPath() const { return m_path; }
  ModuleVersionMap& GetModules() { return m_modules; }
  const ModuleVersionMap& GetModules() const { return m_modules; }

  // Empties the list first, so a file that does not load leaves it empty.
  bool Read();
  bool Write() const;

 private:
  CString m_path;
  ModuleVersionMap m_modules;
};

// Root "Mivo" with one "MainVersion" element.
class MainVersionFile {
 public:
  explicit MainVersionFile(const CString& path) : m_path(path) {}
  const CString& GetPath() const { return m_path; }
  const CString& GetMainVersion() const { return m_mainVersion; }
  void SetMainVersion(const CString& version) { m_mainVersion = version; }

  // True when the file loads with its root, even without the inner element.
  bool Read();
  bool Write() const;

 private:
  CString m_path;
  CString m_mainVersion;
};

// "PluginConfig.xml": root "Plugin-Config", "Update" with url, "Info" with name, detail, id.
class PluginConfigFile {
 public:
  explicit PluginConfigFile(const CString& path) : m_path(path) {}
  const CString& GetPath() const { return m_path; }
  const CString& GetUpdateUrl() const { return m_updateUrl; }
  const CString& GetName() const { return m_name; }
  const CString& GetDetail() const { return m_detail; }
  const CString& GetId() const { return m_id; }
  void SetUpdateUrl(const CString& url) { m_updateUrl = url; }
  void SetName(const CString& name) { m_name = name; }
  void SetDetail(const CString& detail) { m_detail = detail; }
  void SetId(const CString& id) { m_id = id; }

  // True when the file loads with its root; values are taken only where their elements exist.
  bool Read();
  bool Write() const;

 private:
  CString m_path;
  CString m_updateUrl;
  CString m_name;
  CString m_detail;
  CString m_id;
};

// Root "Mivo-Config": "Update" with url, "MainVersion" with url.
class ClientConfigFile {
 public:
  explicit ClientConfigFile(const CString& path) : m_path(path) {}
  const CString& GetPath() const { return m_path; }
  const CString& GetUpdateUrl() const { return m_updateUrl; }
  const CString& GetMainVersionUrl() const { return m_mainVersionUrl; }
  void SetUpdateUrl(const CString& url) { m_updateUrl = url; }
  void SetMainVersionUrl(const CString& url) { m_mainVersionUrl = url; }

  // True when the file loads with its root; values are taken only where their elements exist.
  bool Read();
  bool Write() const;

 private:
  CString m_path;
  CString m_updateUrl;
  CString m_mainVersionUrl;
};
