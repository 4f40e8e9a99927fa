// CXmlDocument from arbitrary bytes. The input is up to three parts split at NUL bytes: the
// document, a second file for merging and inclusion, and steps that walk and change the tree.
// Checks: a file and the same text as a stream load alike; a node's path leads back to a node
// of that path; merging never removes an element and including adds some; what is saved
// loads again with as many elements.
#include <tinyxml.h>

#include <cstdint>
#include <string>
#include <vector>

#include "common/Conversion.h"
#include "common/XmlDocument.h"
#include "fuzz/FuzzTemp.h"

namespace {

void Check(bool ok, const char* what) { fuzz::Check(ok, "xml_document_fuzz", what); }

// Elements and depth of the tree, without recursion.
void Measure(TiXmlNode* top, int& elements, int& depth) {
  elements = depth = 0;
  if (!top) return;
  int level = 0;
  TiXmlNode* node = top->FirstChild();
  while (node) {
    if (node->ToElement()) {
      ++elements;
      if (level + 1 > depth) depth = level + 1;
    }
    if (node->FirstChild()) {
      node = node->FirstChild();
      ++level;
      continue;
    }
    while (node && node != top && !node->NextSibling()) {
      node = node->Parent();
      --level;
    }
    node = (node && node != top) ? node->NextSibling() : nullptr;
  }
}

int Elements(const CXmlDocument& doc) {
  int elements, depth;
  Measure(doc.GetDocument(), elements, depth);
  return elements;
}

// A path can only lead back when every name survives the trip through CString.
bool NamesRoundTrip(TiXmlNode* node) {
  for (; node && node->ToElement(); node = node->Parent())
    if (mivo::common::CString_to_utf8(mivo::common::utf8_to_CString(node->ValueStr())) != node->ValueStr())
      return false;
  return true;
}

void CheckPath(const CXmlDocument& doc, TiXmlNode* node) {
  if (!node || !node->ToElement() || !NamesRoundTrip(node)) return;
  CString path = CXmlDocument::GetNodePath(node);
  TiXmlNode* found = doc.PathWalk(path);
  Check(found != nullptr, "a node's path leads nowhere");
  Check(CXmlDocument::GetNodePath(found) == path, "a node's path leads to another path");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static fuzz::TempFolder folder("xml_document_fuzz");
  static const CString first = folder.Path("a.xml"), second = folder.Path("b.xml"), saved = folder.Path("c.xml");
  std::vector<std::string> parts = fuzz::SplitAtNul(std::string(reinterpret_cast<const char*>(data), size), 3);
  folder.Write("a.xml", parts[0]);
  folder.Write("b.xml", parts[1]);

  CXmlDocument doc;
  int fromStream = doc.LoadStream(parts[0]);
  int streamElements = fromStream ? Elements(doc) : 0;
  int fromFile = doc.LoadFile(first);  // may convert a.xml to UTF-8 in place
  Check(fromStream == fromFile, "a file and its text load differently");
  Check(!fromFile || Elements(doc) == streamElements, "a file and its text hold different trees");
  if (!fromFile) doc.InsertEndChild(L"Root");

  TiXmlNode* node = CXmlDocument::GetFirstChild(doc.GetDocument());
  const std::string& steps = parts[2];
  for (size_t i = 0; i < steps.size() && i < 64; ++i) {
    unsigned char step = static_cast<unsigned char>(steps[i]);
    TiXmlNode* next = nullptr;
    CString path = CXmlDocument::GetNodePath(node);
    int before = Elements(doc);
    switch (step % 8) {
      case 0:
        next = CXmlDocument::GetFirstChild(node);
        break;
      case 1:
        next = CXmlDocument::GetNextSibling(node);
        break;
      case 2:
        next = node ? node->Parent() : nullptr;
        break;
      case 3:
        next = CXmlDocument::FindChild(doc.GetDocument(), CXmlDocument::GetNodeName(node));
        break;
      case 4:
        next = doc.InsertEndChild(path + L" n" + CString(wchar_t(L'a' + step % 26)));
        break;
      case 5:
        CXmlDocument::SetNodeAttribute(node, L"a", CXmlDocument::GetNodeText(node) + path);
        CXmlDocument::GetNodeAttribute(node, L"a");
        break;
      case 6:
        if (doc.MergeNodes(second, path, CXmlDocument::GetNodeName(node)) || doc.MergeNodes(second, path, L"Root"))
          Check(Elements(doc) >= before, "merging removed elements");
        break;
      case 7:
        if (doc.Include(second, path, step & 8)) Check(Elements(doc) > before, "an include added nothing");
        break;
    }
    if (next && next->ToElement()) node = next;
    if (!node || !node->ToElement() || node->GetDocument() != doc.GetDocument())
      node = CXmlDocument::GetFirstChild(doc.GetDocument());
    CheckPath(doc, node);
  }

  int elements, depth;
  Measure(doc.GetDocument(), elements, depth);
  if (depth < 200 && doc.SaveFile(saved)) {
    CXmlDocument again;
    Check(again.LoadFile(saved) == 1, "a saved document does not load");
    Check(Elements(again) == elements, "a saved document loads with other elements");
  }
  return 0;
}
