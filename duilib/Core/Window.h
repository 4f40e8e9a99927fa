#pragma once
// The window as the controls see it: the root of their tree, the lookup of controls by name,
// and the registry of option groups (at most one option of a group is selected). The Win32
// window that shows it comes with the window layer.
#include <map>
#include <string>
#include <vector>

#include "toolkit/export.h"

namespace mivo::duilib {

class Box;
class Control;

class MIVO_COMMON_API Window {
 public:
  Window() = default;
  virtual ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  // Takes ownership of the root and tells the whole tree which window it is in.
  void AttachRoot(Box* root);
  Box* GetRoot() const { return m_root; }
  Control* FindControl(const std::wstring& name) const;

  // The skin's attributes for the window itself (size, caption, roundcorner, sizebox, ...),
  // kept as written; the Win32 window interprets them.
  virtual void SetAttribute(const std::wstring& name, const std::wstring& value);
  std::wstring GetAttribute(const std::wstring& name) const;  // "" when not set
  const std::map<std::wstring, std::wstring>& GetAttributes() const { return m_attributes; }

  // Option groups: the members of each group in the order they joined.
  bool AddOptionGroup(const std::wstring& group, Control* control);
  void RemoveOptionGroup(const std::wstring& group, Control* control);
  const std::vector<Control*>* GetOptionGroup(const std::wstring& group) const;

 private:
  Box* m_root = nullptr;
  std::map<std::wstring, std::wstring> m_attributes;
  std::map<std::wstring, std::vector<Control*>> m_optionGroups;
};

}  // namespace mivo::duilib
