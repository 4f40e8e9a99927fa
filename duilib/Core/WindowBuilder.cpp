#include "duilib/Core/WindowBuilder.h"

#include <tinyxml.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "base/util/string_util.h"
#include "common/XmlLoader.h"
#include "duilib/Core/AttributeValue.h"
#include "duilib/Core/Box.h"
#include "duilib/Core/Button.h"
#include "duilib/Core/CheckBox.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/Label.h"
#include "duilib/Core/ListBox.h"
#include "duilib/Core/Option.h"
#include "duilib/Core/SkinPath.h"
#include "duilib/Core/TileLayout.h"
#include "duilib/Core/TreeView.h"
#include "duilib/Core/Window.h"
#include "toolkit/Utf8.h"

namespace mivo::duilib {

namespace {

using ControlList = std::vector<std::unique_ptr<Control>>;

std::wstring Wide(const char* utf8) {
  std::wstring out;
  if (utf8) toolkit::Utf8ToWide(utf8, std::char_traits<char>::length(utf8), out);
  return out;
}

std::wstring AttributeOf(const TiXmlElement& element, const char* name) { return Wide(element.Attribute(name)); }

// Reads and parses a skin file (UTF-8, at most the loader's size) or text; null when it is
// malformed, has no root element, or nests deeper than `limit`.
std::unique_ptr<TiXmlDocument> ReadSkin(const std::wstring& path, int limit) {
  auto doc = std::make_unique<TiXmlDocument>();
  if (!common::LoadXmlFile(CString(path.c_str()), *doc, common::XmlEncoding::kUtf8, limit) || !doc->RootElement())
    return nullptr;
  return doc;
}

std::unique_ptr<TiXmlDocument> ParseSkin(const std::string& bytes, int limit) {
  auto doc = std::make_unique<TiXmlDocument>();
  if (!common::ParseXml(bytes, *doc, common::XmlEncoding::kUtf8, limit) || !doc->RootElement()) return nullptr;
  return doc;
}

// The path inside the skin folder that `relative` names, "\"-separated with "." and ".."
// resolved; false for an absolute path, a drive, a stream name, or one that climbs out.
// Segments of dots and blanks only are refused too: Windows trims those into ".." and "".
bool InsideFolder(const std::wstring& relative, std::wstring& normalized) {
  if (relative.empty() || relative[0] == L'\\' || relative[0] == L'/' || relative.find(L':') != std::wstring::npos)
    return false;
  std::vector<std::wstring> parts;
  if (!detail::AppendPathParts(relative, parts)) return false;
  if (parts.empty()) return false;
  normalized.clear();
  for (const std::wstring& part : parts) normalized += (normalized.empty() ? L"" : L"\\") + part;
  return true;
}

std::wstring JoinPath(const std::wstring& folder, const std::wstring& file) {
  if (folder.empty() || folder.back() == L'\\' || folder.back() == L'/') return folder + file;
  return folder + L'\\' + file;
}

// File names compare as Windows compares them, without regard to case.
std::wstring FileKey(std::wstring path) {
  std::replace(path.begin(), path.end(), L'/', L'\\');
  nbase::MakeLower(path);
  return path;
}

Control* MakeControl(const std::string& tag) {
  struct Maker {
    const char* tag;
    Control* (*make)();
  };
  static const Maker kMakers[] = {
      {"Control", []() -> Control* { return new Control(); }},
      {"Box", []() -> Control* { return new Box(); }},
      {"VBox", []() -> Control* { return new VBox(); }},
      {"HBox", []() -> Control* { return new HBox(); }},
      {"TileBox", []() -> Control* { return new TileBox(); }},
      {"Label", []() -> Control* { return new Label(); }},
      {"LabelBox", []() -> Control* { return new LabelBox(); }},
      {"Button", []() -> Control* { return new Button(); }},
      {"ButtonBox", []() -> Control* { return new ButtonBox(); }},
      {"CheckBox", []() -> Control* { return new CheckBox(); }},
      {"CheckBoxBox", []() -> Control* { return new CheckBoxBox(); }},
      {"Option", []() -> Control* { return new Option(); }},
      {"OptionBox", []() -> Control* { return new OptionBox(); }},
      {"ListBox", []() -> Control* { return new ListBox(); }},
      {"ListContainerElement", []() -> Control* { return new ListContainerElement(); }},
      {"TreeView", []() -> Control* { return new TreeView(); }},
      {"TreeNode", []() -> Control* { return new TreeNode(); }},
  };
  for (const Maker& maker : kMakers)
    if (tag == maker.tag) return maker.make();
  return nullptr;
}

bool IsResourceTag(const std::string& tag) { return tag == "Class" || tag == "Font" || tag == "TextColor"; }

// One skin being built: the state its includes share.
class SkinReader {
 public:
  SkinReader(const std::wstring& folder, const CreateControlCallback& callback)
      : m_folder(folder), m_callback(callback) {}

  std::vector<std::wstring>& OpenFiles() { return m_openFiles; }

  // The controls a document's root element stands for, at `depth` (the root's own level).
  void BuildDocument(const TiXmlElement& root, int depth, ControlList& out) {
    if (root.ValueStr() != "Window") {
      AddControl(root, depth, out);
      return;
    }
    // Resources first: the controls' "class" and "font" attributes refer to them.
    for (const TiXmlElement* e = root.FirstChildElement(); e; e = e->NextSiblingElement()) LoadResource(*e);
    BuildChildren(root, depth + 1, out);
  }

 private:
  void LoadResource(const TiXmlElement& e) {
    const std::string& tag = e.ValueStr();
    if (tag == "Class") {
      std::wstring name = AttributeOf(e, "name");
      if (!name.empty()) GlobalManager::AddClass(name, AttributeOf(e, "value"));
    } else if (tag == "Font") {
      FontInfo font;
      font.name = AttributeOf(e, "name");
      if (e.Attribute("size")) font.size = attr::ParseInt(AttributeOf(e, "size"));
      font.bold = attr::ParseBool(AttributeOf(e, "bold"));
      font.underline = attr::ParseBool(AttributeOf(e, "underline"));
      font.italic = attr::ParseBool(AttributeOf(e, "italic"));
      // A font without a number takes its place among the fonts of the skin.
      int id = e.Attribute("id") ? attr::ParseInt(AttributeOf(e, "id")) : m_fontsSeen;
      ++m_fontsSeen;
      GlobalManager::AddFont(id, font);
    } else if (tag == "TextColor") {
      std::wstring name = AttributeOf(e, "name");
      if (!name.empty()) GlobalManager::AddTextColor(name, AttributeOf(e, "value"));
    }
  }

  // Resources belong to the Window element; anywhere else they are passed over.
  void BuildChildren(const TiXmlElement& parent, int depth, ControlList& out) {
    for (const TiXmlElement* e = parent.FirstChildElement(); e; e = e->NextSiblingElement()) {
      if (e->ValueStr() == "Include")
        Include(*e, depth, out);
      else if (!IsResourceTag(e->ValueStr()))
        AddControl(*e, depth, out);
    }
  }

  void AddControl(const TiXmlElement& e, int depth, ControlList& out) {
    if (depth > WindowBuilder::kMaxNesting) return;
    std::unique_ptr<Control> control(MakeControl(e.ValueStr()));
    if (!control && m_callback) control.reset(m_callback(Wide(e.Value())));
    if (!control) return;
    for (const TiXmlAttribute* a = e.FirstAttribute(); a; a = a->Next())
      control->ApplySkinAttribute(Wide(a->Name()), Wide(a->Value()));
    if (auto* box = dynamic_cast<Box*>(control.get())) {
      ControlList children;
      BuildChildren(e, depth + 1, children);
      for (auto& child : children)
        if (box->Add(child.get())) child.release();
    }
    out.push_back(std::move(control));
  }

  void Include(const TiXmlElement& e, int depth, ControlList& out) {
    std::wstring relative;
    if (m_folder.empty() || m_includeDepth >= WindowBuilder::kMaxIncludeDepth ||
        !InsideFolder(AttributeOf(e, "source"), relative))
      return;
    std::wstring key = FileKey(relative);
    for (const std::wstring& open : m_openFiles)
      if (open == key) return;  // a file that includes itself, directly or not
    // The included root takes the Include element's place, and its level.
    std::unique_ptr<TiXmlDocument> doc = ReadSkin(JoinPath(m_folder, relative), WindowBuilder::kMaxNesting - depth + 1);
    if (!doc) return;
    m_openFiles.push_back(key);
    ++m_includeDepth;
    BuildDocument(*doc->RootElement(), depth, out);
    --m_includeDepth;
    m_openFiles.pop_back();
  }

  const std::wstring& m_folder;
  const CreateControlCallback& m_callback;
  std::vector<std::wstring> m_openFiles;
  int m_includeDepth = 0;
  int m_fontsSeen = 0;
};

}  // namespace

Control* WindowBuilder::Create(const std::wstring& skinFolder, const std::wstring& xmlFile,
                               CreateControlCallback callback, Window* window, Box* parent) {
  m_windowAttributes.clear();
  std::wstring relative;
  if (!InsideFolder(xmlFile, relative)) relative = xmlFile;
  std::unique_ptr<TiXmlDocument> doc = ReadSkin(JoinPath(skinFolder, relative), kMaxNesting);
  if (!doc) return nullptr;
  return Build(std::move(doc), skinFolder, FileKey(relative), std::move(callback), window, parent);
}

Control* WindowBuilder::CreateFromString(const std::string& utf8Xml, CreateControlCallback callback, Window* window,
                                         Box* parent, const std::wstring& skinFolder) {
  m_windowAttributes.clear();
  std::unique_ptr<TiXmlDocument> doc = ParseSkin(utf8Xml, kMaxNesting);
  if (!doc) return nullptr;
  return Build(std::move(doc), skinFolder, std::wstring(), std::move(callback), window, parent);
}

Control* WindowBuilder::Build(std::unique_ptr<TiXmlDocument> doc, const std::wstring& skinFolder,
                              const std::wstring& fileKey, CreateControlCallback callback, Window* window,
                              Box* parent) {
  const TiXmlElement& root = *doc->RootElement();
  if (root.ValueStr() == "Window") {
    for (const TiXmlAttribute* a = root.FirstAttribute(); a; a = a->Next()) {
      m_windowAttributes[Wide(a->Name())] = Wide(a->Value());
      if (window) window->SetAttribute(Wide(a->Name()), Wide(a->Value()));
    }
  }
  SkinReader reader(skinFolder, callback);
  if (!fileKey.empty()) reader.OpenFiles().push_back(fileKey);
  ControlList controls;
  reader.BuildDocument(root, 1, controls);
  // A window has one root control; any later ones go with the document.
  if (controls.empty()) return nullptr;
  Control* result = controls.front().release();
  if (parent) {
    if (!parent->Add(result)) {
      delete result;
      return nullptr;
    }
  } else if (window) {
    result->SetWindow(window, nullptr);
  }
  return result;
}

}  // namespace mivo::duilib
