#include "duilib/Core/Window.h"

#include <algorithm>

#include "duilib/Core/AttributeValue.h"
#include "duilib/Core/Box.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Render/IRender.h"

namespace mivo::duilib {

Window::~Window() {
  ReleaseNative();
  delete m_root;
}

void Window::AttachRoot(Box* root) {
  if (root == m_root) return;
  delete m_root;  // the hot and pushed controls die with it, and their flags with them
  m_root = root;
  if (!m_root) return;
  m_root->SetWindow(this, nullptr);
  if (m_clientArea.GetWidth() > 0 || m_clientArea.GetHeight() > 0) m_root->SetPos(m_clientArea);
  Invalidate(m_clientArea);
  ScheduleArrange();  // boxes the root's layout did not reach (hidden ones) may still wait
}

Control* Window::FindControl(const std::wstring& name) const { return m_root ? m_root->FindSubControl(name) : nullptr; }

void Window::SetAttribute(const std::wstring& name, const std::wstring& value) { m_attributes[name] = value; }

std::wstring Window::GetAttribute(const std::wstring& name) const {
  auto found = m_attributes.find(name);
  return found == m_attributes.end() ? std::wstring() : found->second;
}

UiSize Window::GetInitialSize() const {
  UiSize size = attr::ParsePair(GetAttribute(L"size"));
  if (GlobalManager::IsDpiScaleEnabled()) {
    size.cx = GlobalManager::ScaleByDpi(size.cx);
    size.cy = GlobalManager::ScaleByDpi(size.cy);
  }
  return UiSize{std::max(size.cx, 0), std::max(size.cy, 0)};
}

void Window::ApplyDpiScale(int percent) {
  GlobalManager::SetDpiScale(true, percent);
  std::vector<Control*> todo;
  if (m_root) todo.push_back(m_root);
  while (!todo.empty()) {
    Control* control = todo.back();
    todo.pop_back();
    control->RescaleForDpi();
    if (auto* box = dynamic_cast<Box*>(control))
      todo.insert(todo.end(), box->GetItems().begin(), box->GetItems().end());
  }
  ArrangeRoot(m_clientArea);
}

bool Window::IsCaptionAt(UiPoint pt) const {
  const std::wstring caption = GetAttribute(L"caption");
  if (caption.empty()) return false;
  UiRect inset = attr::ParseRect(caption);
  if (GlobalManager::IsDpiScaleEnabled())
    inset = UiRect{GlobalManager::ScaleByDpi(inset.left), GlobalManager::ScaleByDpi(inset.top),
                   GlobalManager::ScaleByDpi(inset.right), GlobalManager::ScaleByDpi(inset.bottom)};
  const UiRect band{m_clientArea.left + inset.left, m_clientArea.top + inset.top, m_clientArea.right - inset.right,
                    m_clientArea.top + inset.bottom};
  if (!band.Contains(pt)) return false;
  const Control* control = ControlAt(pt);
  return !control || !control->WantsClicks();
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

void Window::ArrangeRoot(const UiRect& client) {
  m_clientArea = client;
  if (m_root) m_root->SetPos(client);
  Invalidate(client);
}

void Window::ScheduleArrange() {
  m_arrangeScheduled = true;
  if (!m_arrangePosted) m_arrangePosted = ScheduleArrangeNative();
}

void Window::ArrangeWaiting() {
  m_arrangeScheduled = false;
  if (m_root) m_root->ArrangeNow();
}

bool Window::IsUpdateNeeded() const {
  if (m_arrangeScheduled) const_cast<Window*>(this)->ArrangeWaiting();
  return m_needUpdate;
}

const UiRect& Window::GetUpdateRect() const {
  if (m_arrangeScheduled) const_cast<Window*>(this)->ArrangeWaiting();
  return m_updateRect;
}

void Window::Invalidate(const UiRect& rc) {
  if (rc.GetWidth() <= 0 || rc.GetHeight() <= 0) return;
  if (!m_needUpdate) {
    m_updateRect = rc;
  } else {
    m_updateRect = UiRect{std::min(m_updateRect.left, rc.left), std::min(m_updateRect.top, rc.top),
                          std::max(m_updateRect.right, rc.right), std::max(m_updateRect.bottom, rc.bottom)};
  }
  m_needUpdate = true;
  InvalidateNative(rc);
}

void Window::Paint(IRenderContext& render) {
  ArrangeWaiting();
  if (!m_root || !m_root->IsVisible()) return;
  if (render.PushClip(m_root->GetPos())) m_root->Paint(render);
  render.PopClip();
  PaintFocusMark(render);
}

UiRect Window::CenterRect(const UiRect& window, const UiRect& around, const UiRect& workArea) {
  const int width = window.GetWidth(), height = window.GetHeight();
  int left = around.left + (around.GetWidth() - width) / 2;
  int top = around.top + (around.GetHeight() - height) / 2;
  // Keep it on the screen; a window larger than the work area shows its top left.
  left = std::max(workArea.left, std::min(left, workArea.right - width));
  top = std::max(workArea.top, std::min(top, workArea.bottom - height));
  return UiRect{left, top, left + width, top + height};
}

}  // namespace mivo::duilib
