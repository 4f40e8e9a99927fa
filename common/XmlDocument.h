#pragma once
// CXmlDocument: a TinyXML document with blank-separated element paths, CString access,
// merging and inclusion of other files, and a one-time conversion of files declared in
// another encoding to UTF-8 (the original is kept as "<file>.mivo.bak").
//
// Paths: "A B C" is the first element C under the first B under the top element A. A path
// names the first match at every step, so GetNodePath of a node below repeated names leads
// PathWalk to the first element with those names.
// Node handles belong to the document and die with it. Nothing here throws.
#include <string>

#include "toolkit/CString.h"
#include "toolkit/export.h"

class TiXmlDocument;
class TiXmlNode;

class MIVO_COMMON_API CXmlDocument {
 public:
  CXmlDocument();
  explicit CXmlDocument(const CString& path);
  CXmlDocument(const CXmlDocument&) = delete;
  CXmlDocument& operator=(const CXmlDocument&) = delete;
  virtual ~CXmlDocument();

  // A file whose declaration names an encoding other than UTF-8 is converted once (the
  // texts and attribute values taken as ANSI); a file without one is UTF-8, as XML says.
  int LoadFile(const CString& path);
  int LoadStream(std::string text);
  // Replaces the file in one step; 1 or 0.
  int SaveFile();
  int SaveFile(const CString& path);
  void Clear();
  TiXmlDocument* GetDocument() const { return m_doc; }

  TiXmlNode* PathWalk(const CString& path) const;
  // Walks the path, adding every missing element at the end of its parent, and appends a
  // new element named by the last step; returns it (null for an empty path, or one of more
  // than 256 steps, the nesting limit of a loaded file).
  TiXmlNode* InsertEndChild(const CString& path);
  static CString GetNodePath(TiXmlNode* node);

  static CString GetNodeName(TiXmlNode* node);
  static CString GetNodeText(TiXmlNode* node);
  static CString GetNodeAttribute(TiXmlNode* node, const CString& name);
  static TiXmlNode* SetNodeAttribute(TiXmlNode* node, const CString& name, const CString& value);
  // The first element of that name anywhere below the node, depth first.
  static TiXmlNode* FindChild(TiXmlNode* node, const CString& name);
  static TiXmlNode* GetFirstChild(TiXmlNode* node);                // first child element
  static TiXmlNode* GetFirstChild(TiXmlNode* node, CString name);  // first child element so named
  static TiXmlNode* GetNextSibling(TiXmlNode* node);               // next sibling element
  static TiXmlNode* CreateNode(const CString& name);               // owned by the caller until inserted
  // Attaches `child` (taking ownership) as the last child; null, with the child still the
  // caller's, when either is null.
  static TiXmlNode* InsertEndChild(TiXmlNode* parent, TiXmlNode* child);
  static bool DeleteNode(TiXmlNode* node);

  // Puts the root element of `file` as the last child of the element at `path` (flag 0),
  // or, with a non-zero flag, the root's child elements one after another (a root without
  // child elements is put as a whole). 1 or 0.
  int Include(const CString& file, const CString& path, int flag);
  // Merges the subtree at `srcPath` of `file` into the element at `dstPath`: adds what is
  // missing, never replaces or removes. This document is not saved.
  int MergeNodes(const CString& file, const CString& dstPath, const CString& srcPath);

  static const wchar_t* const kBackupSuffix;  // ".mivo.bak"

 private:
  int Merge(TiXmlNode* dst, TiXmlNode* src);
  void TranslateXmlToUtf8(const CString& path);
  static void TranslateXmlNodes(TiXmlNode* top);

  TiXmlDocument* m_doc = nullptr;
  CString m_path;
};
