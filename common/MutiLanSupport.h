#pragma once
// The process-wide string table: user-visible text is looked up by ids "STRID_...".
#include "toolkit/CString.h"
#include "toolkit/Collections.h"
#include "toolkit/export.h"

struct LANG_SETTING {
  CString strLangInUse;   // the code in force, read from "lang.xml"
  CString strLangToSave;  // the code SaveLangSetting writes
};

class MIVO_COMMON_API CMutiLanSupport {
 public:
  virtual ~CMutiLanSupport() = default;
  static CMutiLanSupport* GetInstance();

  LANG_SETTING GetLangSetting() const { return m_setting; }
  void SetLangSetting(const LANG_SETTING& setting) { m_setting = setting; }

  // Loads a table file (UTF-8, or UTF-16 with its mark) and merges its entries; 1, or 0
  // after telling the user that the file is missing.
  int LoadStringTable(const CString& path);
  // The text for the id with "\r" and "\n" pairs turned into real line ends; "" if unknown.
  CString GetStringViaID(const CString& id) const;
  void ClearAll() { m_table.RemoveAll(); }

 private:
  friend class CMutiLanSupportTestAccess;
  // id=text lines; unlike the free AnalyzeStringTable a text keeps its further "=".
  int AnalyzeStringTable(const CStringList& lines);

  CMapStringToString m_table;
  LANG_SETTING m_setting;
};
