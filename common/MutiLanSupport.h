#pragma once
// The process-wide string table: user-visible text is looked up by ids "STRID_...".
#include "toolkit/CString.h"
#include "toolkit/Collections.h"
#include "toolkit/export.h"

struct LANG_SETTING {
  CString strLangInUse;   // the code in force, read from "lang.xml"
  CString strLangToSave;  // the code SaveLangSetting writes
};

extern MIVO_COMMON_API const wchar_t* const g_szLangSettingFile;  // "lang.xml"
extern MIVO_COMMON_API const wchar_t* const g_szLangSettingPath;  // "LangSetting"
extern MIVO_COMMON_API const wchar_t* const g_szLangSettingAttr;  // "lang"
extern MIVO_COMMON_API const wchar_t* const g_szDefaultLang;      // "zh_CN"

class MIVO_COMMON_API CMutiLanSupport {
 public:
  virtual ~CMutiLanSupport() = default;
  static CMutiLanSupport* GetInstance();

  // Reads "lang.xml" in the install folder, or creates it with "zh_CN"; true when a
  // language code is in force afterwards.
  bool LoadLangSetting();
  // Writes the code to save into an existing "lang.xml"; non-zero on success.
  int SaveLangSetting();
  LANG_SETTING GetLangSetting() const { return m_setting; }
  void SetLangSetting(const LANG_SETTING& setting) { m_setting = setting; }

  // Loads a table file (UTF-8, or UTF-16 with its mark) and merges its entries; 1, or 0
  // after telling the user that the file is missing (or larger than kMaxStringTableBytes).
  static constexpr unsigned long long kMaxStringTableBytes = 32ull << 20;
  int LoadStringTable(const CString& path);
  // The text for the id with "\r" and "\n" pairs turned into real line ends; "" if unknown.
  CString GetStringViaID(const CString& id) const;
  void ClearAll() { m_table.RemoveAll(); }
  // The setting file's folder; the install folder unless a test or tool says otherwise.
  void SetSettingFolder(const CString& folder) { m_settingFolder = folder; }

 private:
  // id=text lines; unlike the free AnalyzeStringTable a text keeps its further "=".
  int AnalyzeStringTable(const CStringList& lines);

  CString SettingPath() const;

  CMapStringToString m_table;
  LANG_SETTING m_setting;
  CString m_settingFolder;
};
