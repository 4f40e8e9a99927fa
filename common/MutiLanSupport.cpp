#include "common/MutiLanSupport.h"

#include <mutex>

#include "common/AppPath.h"
#include "common/Conversion.h"
#include "common/FileUtil.h"
#include "common/MessageBox.h"
#include "common/StdioFileEx.h"
#include "common/StringUtil.h"
#include "common/Trace.h"
#include "common/XmlDocument.h"

const wchar_t* const g_szLangSettingFile = L"lang.xml";
const wchar_t* const g_szLangSettingPath = L"LangSetting";
const wchar_t* const g_szLangSettingAttr = L"lang";
const wchar_t* const g_szDefaultLang = L"zh_CN";

namespace {
const wchar_t kLangTemplate[] =
    L"<?xml version=\"1.0\" encoding=\"utf-8\" ?>\r\n"
    L"<LangSetting lang=\"%s\">\r\n"
    L"<SelectedLang />\r\n"
    L"</LangSetting>\r\n";
}  // namespace

CString CMutiLanSupport::SettingPath() const {
  CString path;
  path.Format(L"%s%s", (m_settingFolder.IsEmpty() ? mivo::common::GetAppPath() : m_settingFolder).GetString(),
              g_szLangSettingFile);
  return path;
}

bool CMutiLanSupport::LoadLangSetting() {
  CString path = SettingPath();
  if (!mivo::common::IsFileExist(path)) {
    m_setting.strLangInUse = g_szDefaultLang;
    CString text;
    text.Format(kLangTemplate, g_szDefaultLang);
    mivo::common::SaveFile(path, mivo::common::CString_to_utf8(text));
  } else {
    CXmlDocument doc;
    if (doc.LoadFile(path)) {
      if (TiXmlNode* node = doc.PathWalk(g_szLangSettingPath))
        m_setting.strLangInUse = CXmlDocument::GetNodeAttribute(node, g_szLangSettingAttr);
    }
  }
  return !m_setting.strLangInUse.IsEmpty();
}

int CMutiLanSupport::SaveLangSetting() {
  CXmlDocument doc;
  if (!doc.LoadFile(SettingPath())) return 0;
  TiXmlNode* node = doc.PathWalk(g_szLangSettingPath);
  if (!node) return 0;
  CXmlDocument::SetNodeAttribute(node, g_szLangSettingAttr, m_setting.strLangToSave);
  return doc.SaveFile();
}

CMutiLanSupport* CMutiLanSupport::GetInstance() {
  static CMutiLanSupport* instance = new CMutiLanSupport();  // lives until the process ends
  return instance;
}

int CMutiLanSupport::LoadStringTable(const CString& path) {
  CStringList lines;
  bool opened = false;
  // A table is some kilobytes; one past the bound is not one, and is refused unread.
  bool tooLarge = mivo::common::GetFileSize(path) > kMaxStringTableBytes;
  if (tooLarge && g_ITrace)
    g_ITrace->Trace(3, true, L"CMutiLanSupport::LoadStringTable %s is larger than 32 MiB", path.GetString());
  if (!path.IsEmpty() && !tooLarge) {
    try {
      CStdioFileEx file;
      file.SetCodePage(65001);
      if (file.Open(path, CFile::modeRead | CFile::shareDenyNone | CFile::typeText, nullptr)) {
        opened = true;
        CString line;
        while (file.ReadString(line)) {
          line.Trim();
          if (!line.IsEmpty()) lines.AddTail(line);
        }
        file.Close();
      }
    } catch (CException* e) {
      e->Delete();
    }
  }
  if (!opened) {
    CString text;
    text.Format(L"Cannot open required file %s! Please reinstall MIVO to fix this problem.", path.GetString());
    mivo::common::ShowInformationBox(text, L"Load file error!");
    return 0;
  }
  AnalyzeStringTable(lines);
  return 1;
}

int CMutiLanSupport::AnalyzeStringTable(const CStringList& lines) {
  if (lines.IsEmpty()) return 0;
  CStringArray pieces;
  for (POSITION pos = lines.GetHeadPosition(); pos;) {
    mivo::common::AnalyzeString(lines.GetNext(pos), L'=', pieces);
    if (pieces.GetSize() < 2) continue;
    CString id = pieces[0];
    id.Trim();
    CString text = pieces[1];
    for (INT_PTR i = 2; i < pieces.GetSize(); ++i) text += L"=" + pieces[i];
    text.Trim();
    int comment = text.Find(L';');
    if (comment >= 0) text = text.Left(comment);
    m_table.SetAt(id, text);
  }
  return 1;
}

CString CMutiLanSupport::GetStringViaID(const CString& id) const {
  if (id.IsEmpty()) return CString();
  CString text;
  if (!m_table.Lookup(id, text)) return CString();
  text.Replace(L"\\r", L"\r");
  text.Replace(L"\\n", L"\n");
  return text;
}
