#pragma once
// Builds a control tree from a skin: XML in UTF-8 whose root element "Window" carries the
// window's own attributes, its resources (Class, Font, TextColor) and then its controls, one
// element per control with the control's attributes. A file whose root is a control instead
// (a row template, say) builds that control. Skins come from disk and may be damaged: what
// cannot be read gives null, never a crash.
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "toolkit/export.h"

class TiXmlDocument;

namespace mivo::duilib {

class Box;
class Control;
class Window;

// Makes the control for a tag the builder does not know, or null to leave the element out
// with everything inside it.
using CreateControlCallback = std::function<Control*(const std::wstring& tag)>;

class MIVO_COMMON_API WindowBuilder {
 public:
  // Elements nested deeper than this, includes counted in, make a skin unreadable.
  static constexpr int kMaxNesting = 256;
  // Includes inside includes, at most.
  static constexpr int kMaxIncludeDepth = 8;

  // Builds the skin `xmlFile`, a path relative to `skinFolder` (backslash paths). The root
  // control is the caller's, unless `parent` is given: then it is added to that box. Without
  // a parent the tree is told of `window` (its option groups live there); the Window element's
  // attributes are given to `window` too. Null for a missing, malformed or too deeply nested
  // file, or one without any control.
  // <Include source="x.xml"/> stands for the controls of another file of the skin folder (the
  // root control, or the controls of its Window element). An include that names a path out of
  // the folder, a file already being included, or lies more than kMaxIncludeDepth includes
  // deep is left out, like one that cannot be read.
  Control* Create(const std::wstring& skinFolder, const std::wstring& xmlFile, CreateControlCallback callback = nullptr,
                  Window* window = nullptr, Box* parent = nullptr);
  // The same from text. Includes are read from `skinFolder`; with none given they are left out.
  Control* CreateFromString(const std::string& utf8Xml, CreateControlCallback callback = nullptr,
                            Window* window = nullptr, Box* parent = nullptr,
                            const std::wstring& skinFolder = std::wstring());

  // The attributes of the Window element of the skin built last, as written.
  const std::map<std::wstring, std::wstring>& WindowAttributes() const { return m_windowAttributes; }

 private:
  Control* Build(std::unique_ptr<TiXmlDocument> doc, const std::wstring& skinFolder, const std::wstring& fileKey,
                 CreateControlCallback callback, Window* window, Box* parent);

  std::map<std::wstring, std::wstring> m_windowAttributes;
};

}  // namespace mivo::duilib
