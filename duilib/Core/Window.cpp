#include "duilib/Core/Window.h"

#include <algorithm>

#include "duilib/Core/Box.h"

namespace mivo::duilib {

Window::~Window() { delete m_root; }

void Window::AttachRoot(Box* root) {
  if (root == m_root) return;
  delete m_root;
  m_root = root;
  if (m_root) m_root->SetWindow(this, nullptr);
}

Control* Window::FindControl(const std::wstring& name) const { return m_root ? m_root->FindSubControl(name) : nullptr; }

void Window::SetAttribute(const std::wstring& name, const std::wstring& value) { m_attributes[name] = value; }

std::wstring Window::GetAttribute(const std::wstring& name) const {
  auto found = m_attributes.find(name);
  return found == m_attributes.end() ? std::wstring() : found->second;
}

bool Window::AddOptionGroup(const std::wstring& group, Control* control) {
  if (group.empty() || !control) return false;
  auto& members = m_optionGroups[group];
  if (std::find(members.begin(), members.end(), control) != members.end()) return false;
  members.push_back(control);
  return true;
}

void Window::RemoveOptionGroup(const std::wstring& group, Control* control) {
  auto found = m_optionGroups.find(group);
  if (found == m_optionGroups.end()) return;
  auto& members = found->second;
  members.erase(std::remove(members.begin(), members.end(), control), members.end());
  if (members.empty()) m_optionGroups.erase(found);
}

const std::vector<Control*>* Window::GetOptionGroup(const std::wstring& group) const {
  auto found = m_optionGroups.find(group);
  return found == m_optionGroups.end() ? nullptr : &found->second;
}

}  // namespace mivo::duilib
