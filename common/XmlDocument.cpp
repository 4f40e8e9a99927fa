#include "common/XmlDocument.h"

#include <tinyxml.h>

#include <memory>

#include "common/Conversion.h"
#include "common/FileUtil.h"
#include "common/StringUtil.h"
#include "common/XmlLoader.h"

namespace {

using mivo::common::CString_to_utf8;
using mivo::common::utf8_to_CString;

TiXmlElement* AsElement(TiXmlNode* node) { return node ? node->ToElement() : nullptr; }

std::string DeclaredEncoding(TiXmlDocument& doc) {
  for (TiXmlNode* n = doc.FirstChild(); n; n = n->NextSibling())
    if (TiXmlDeclaration* decl = n->ToDeclaration()) return decl->Encoding();
  return std::string();
}

// The node after `node` in document order (depth first) below `top`; null at the end. A walk
// with it keeps no stack, so a tree of any depth costs none.
TiXmlNode* NextInTree(const TiXmlNode* top, TiXmlNode* node) {
  if (TiXmlNode* child = node->FirstChild()) return child;
  for (; node && node != top; node = node->Parent())
    if (TiXmlNode* next = node->NextSibling()) return next;
  return nullptr;
}

// The first top-level element.
TiXmlElement* Root(TiXmlDocument* doc) { return doc ? doc->RootElement() : nullptr; }

}  // namespace

const wchar_t* const CXmlDocument::kBackupSuffix = L".mivo.bak";

CXmlDocument::CXmlDocument() = default;

CXmlDocument::CXmlDocument(const CString& path) { LoadFile(path); }

CXmlDocument::~CXmlDocument() { Clear(); }

void CXmlDocument::Clear() {
  delete m_doc;
  m_doc = nullptr;
}

int CXmlDocument::LoadFile(const CString& path) {
  Clear();
  auto doc = std::make_unique<TiXmlDocument>();
  if (!mivo::common::LoadXmlFile(path, *doc, mivo::common::XmlEncoding::kDeclared)) return 0;
  m_doc = doc.release();
  m_path = path;
  std::string encoding = DeclaredEncoding(*m_doc);
  if (!encoding.empty() && mivo::common::string_compare_no_case(encoding, "utf-8") != 0 &&
      mivo::common::string_compare_no_case(encoding, "utf8") != 0) {
    TranslateXmlToUtf8(path);
  }
  return 1;
}

int CXmlDocument::LoadStream(std::string text) {
  Clear();
  auto doc = std::make_unique<TiXmlDocument>();
  if (!mivo::common::ParseXml(text, *doc, mivo::common::XmlEncoding::kDeclared)) return 0;
  m_doc = doc.release();
  return 1;
}

int CXmlDocument::SaveFile() { return SaveFile(m_path); }

int CXmlDocument::SaveFile(const CString& path) {
  if (!m_doc || path.IsEmpty()) return 0;
  TiXmlPrinter printer;
  if (!m_doc->Accept(&printer)) return 0;
  return mivo::common::SaveFile(path, std::string(printer.CStr(), printer.Size()));
}

void CXmlDocument::TranslateXmlToUtf8(const CString& path) {
  std::string original;
  if (mivo::common::LoadFile(path, original)) mivo::common::SaveFile(path + kBackupSuffix, original);  // best effort
  TiXmlDeclaration utf8("1.0", "utf-8", "");
  TiXmlNode* old = nullptr;
  for (TiXmlNode* n = m_doc->FirstChild(); n; n = n->NextSibling())
    if (n->ToDeclaration()) {
      old = n;
      break;
    }
  if (old) {
    m_doc->ReplaceChild(old, utf8);
  } else if (m_doc->FirstChild()) {
    m_doc->InsertBeforeChild(m_doc->FirstChild(), utf8);
  } else {
    m_doc->InsertEndChild(utf8);
  }
  TranslateXmlNodes(m_doc);
  SaveFile(path);
}

// Every text and attribute value below `top`, in document order, without recursion.
void CXmlDocument::TranslateXmlNodes(TiXmlNode* top) {
  for (TiXmlNode* node = top->FirstChild(); node; node = NextInTree(top, node)) {
    if (TiXmlText* text = node->ToText()) {
      text->SetValue(mivo::common::String2UTF8(text->ValueStr()));
    } else if (TiXmlElement* element = node->ToElement()) {
      for (TiXmlAttribute* a = element->FirstAttribute(); a; a = a->Next())
        a->SetValue(mivo::common::String2UTF8(a->ValueStr()));
    }
  }
}

TiXmlNode* CXmlDocument::PathWalk(const CString& path) const {
  if (!m_doc) return nullptr;
  CStringArray names;
  if (!mivo::common::AnalyzeString(path, L' ', names)) return nullptr;
  TiXmlNode* node = m_doc->FirstChildElement(CString_to_utf8(names[0]));
  for (INT_PTR i = 1; node && i < names.GetSize(); ++i) node = node->FirstChildElement(CString_to_utf8(names[i]));
  return node;
}

TiXmlNode* CXmlDocument::InsertEndChild(const CString& path) {
  CStringArray names;
  if (!mivo::common::AnalyzeString(path, L' ', names)) return nullptr;
  // a path deeper than a loaded file may be would build what TinyXML cannot print or free
  if (names.GetSize() > mivo::common::kMaxXmlNesting) return nullptr;
  for (const CString& name : names)
    if (name.IsEmpty()) return nullptr;  // "A  B" names no element
  if (!m_doc) m_doc = new TiXmlDocument();
  TiXmlNode* parent = m_doc;
  for (INT_PTR i = 0; i + 1 < names.GetSize(); ++i) {
    TiXmlNode* next = parent->FirstChildElement(CString_to_utf8(names[i]));
    if (!next) next = parent->LinkEndChild(new TiXmlElement(CString_to_utf8(names[i])));
    parent = next;
  }
  return parent->LinkEndChild(new TiXmlElement(CString_to_utf8(names[names.GetUpperBound()])));
}

CString CXmlDocument::GetNodePath(TiXmlNode* node) {
  CString path;
  for (TiXmlNode* n = node; n && n->ToElement(); n = n->Parent())
    path = path.IsEmpty() ? utf8_to_CString(n->ValueStr()) : utf8_to_CString(n->ValueStr()) + L" " + path;
  return path;
}

CString CXmlDocument::GetNodeName(TiXmlNode* node) { return node ? utf8_to_CString(node->ValueStr()) : CString(); }

CString CXmlDocument::GetNodeText(TiXmlNode* node) {
  TiXmlElement* e = AsElement(node);
  const char* text = e ? e->GetText() : nullptr;
  return text ? utf8_to_CString(text) : CString();
}

CString CXmlDocument::GetNodeAttribute(TiXmlNode* node, const CString& name) {
  TiXmlElement* e = AsElement(node);
  const char* value = e ? e->Attribute(CString_to_utf8(name).c_str()) : nullptr;
  return value ? utf8_to_CString(value) : CString();
}

TiXmlNode* CXmlDocument::SetNodeAttribute(TiXmlNode* node, const CString& name, const CString& value) {
  if (TiXmlElement* e = AsElement(node)) e->SetAttribute(CString_to_utf8(name), CString_to_utf8(value));
  return node;
}

TiXmlNode* CXmlDocument::FindChild(TiXmlNode* node, const CString& name) {
  if (!node) return nullptr;
  std::string wanted = CString_to_utf8(name);
  for (TiXmlNode* n = node->FirstChild(); n; n = NextInTree(node, n))
    if (n->ToElement() && n->ValueStr() == wanted) return n;
  return nullptr;
}

TiXmlNode* CXmlDocument::GetFirstChild(TiXmlNode* node) { return node ? node->FirstChildElement() : nullptr; }

TiXmlNode* CXmlDocument::GetFirstChild(TiXmlNode* node, CString name) {
  return node ? node->FirstChildElement(CString_to_utf8(name)) : nullptr;
}

TiXmlNode* CXmlDocument::GetNextSibling(TiXmlNode* node) { return node ? node->NextSiblingElement() : nullptr; }

TiXmlNode* CXmlDocument::CreateNode(const CString& name) { return new TiXmlElement(CString_to_utf8(name)); }

TiXmlNode* CXmlDocument::InsertEndChild(TiXmlNode* parent, TiXmlNode* child) {
  if (!parent || !child) return nullptr;
  return parent->LinkEndChild(child);
}

bool CXmlDocument::DeleteNode(TiXmlNode* node) {
  if (!node) return false;
  if (TiXmlNode* parent = node->Parent()) return parent->RemoveChild(node);
  delete node;
  return true;
}

int CXmlDocument::Merge(TiXmlNode* dst, TiXmlNode* src) {
  if (!dst || !src) return 0;
  TiXmlNode* existing = dst->FirstChildElement(src->ValueStr());
  if (existing) {
    for (TiXmlElement* child = src->FirstChildElement(); child; child = child->NextSiblingElement())
      Merge(existing, child);
  } else {
    dst->InsertEndChild(*src);
  }
  return 1;
}

int CXmlDocument::MergeNodes(const CString& file, const CString& dstPath, const CString& srcPath) {
  TiXmlNode* dst = PathWalk(dstPath);
  if (!dst) return 0;
  CXmlDocument other;
  if (!other.LoadFile(file)) return 0;
  TiXmlNode* src = other.PathWalk(srcPath);
  return src ? Merge(dst, src) : 0;
}

int CXmlDocument::Include(const CString& file, const CString& path, int flag) {
  CXmlDocument other;
  if (!other.LoadFile(file)) return 0;
  TiXmlNode* at = PathWalk(path);
  TiXmlElement* root = Root(other.m_doc);
  if (!at || !root) return 0;
  if (flag != 0 && root->FirstChildElement()) {
    for (TiXmlElement* e = root->FirstChildElement(); e; e = e->NextSiblingElement())
      if (!at->InsertEndChild(*e)) return 0;
    return 1;
  }
  return at->InsertEndChild(*root) ? 1 : 0;
}
