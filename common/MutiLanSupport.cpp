#include "common/MutiLanSupport.h"

#include <mutex>

#include "common/MessageBox.h"
#include "common/StdioFileEx.h"
#include "common/StringUtil.h"

CMutiLanSupport* CMutiLanSupport::GetInstance() {
  static CMutiLanSupport* instance = new CMutiLanSupport();  // lives until the process ends
  return instance;
}

int CMutiLanSupport::LoadStringTable(const CString& path) {
  CStringList lines;
  bool opened = false;
  if (!path.IsEmpty()) {
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
