#include "duilib/Core/PlaceHolder.h"

#include "duilib/Core/Box.h"
#include "duilib/Core/Window.h"

namespace mivo::duilib {

void PlaceHolder::SetWindow(Window* window, Box* parent) {
  m_window = window;
  m_parent = parent;
}

void PlaceHolder::SetVisible(bool visible) {
  if (m_visible == visible) return;
  Invalidate();  // what it covered shows again when it hides
  m_visible = visible;
  ArrangeAncestor();
}

void PlaceHolder::SetFloat(bool isFloat) {
  if (m_float == isFloat) return;
  m_float = isFloat;
  ArrangeAncestor();
}

#define MIVO_SIZE_SETTER(Name, field) \
  void PlaceHolder::Name(int value) { \
    if (field == value) return;       \
    field = value;                    \
    ArrangeAncestor();                \
  }
MIVO_SIZE_SETTER(SetFixedWidth, m_fixedWidth)
MIVO_SIZE_SETTER(SetFixedHeight, m_fixedHeight)
MIVO_SIZE_SETTER(SetMinWidth, m_minWidth)
MIVO_SIZE_SETTER(SetMinHeight, m_minHeight)
MIVO_SIZE_SETTER(SetMaxWidth, m_maxWidth)
MIVO_SIZE_SETTER(SetMaxHeight, m_maxHeight)
#undef MIVO_SIZE_SETTER

void PlaceHolder::SetMargin(const UiRect& margin) {
  if (m_margin == margin) return;
  m_margin = margin;
  ArrangeAncestor();
}

UiSize PlaceHolder::EstimateSize(UiSize) { return UiSize{m_fixedWidth, m_fixedHeight}; }

const UiRect& PlaceHolder::GetPos() const {
  Box::ArrangeWaitingAbove(this);
  return m_pos;
}

void PlaceHolder::SetPos(UiRect pos) {
  // A layout that waits above comes first, as it came before this when boxes laid out at once.
  Box::ArrangeWaitingAbove(this);
  if (pos == m_pos) return;
  Invalidate();  // where it was and where it goes
  m_pos = pos;
  Invalidate();
}

void PlaceHolder::Invalidate() {
  if (m_window) m_window->Invalidate(GetPos());  // where it is, once a waiting layout has run
}

void PlaceHolder::Arrange() {}

void PlaceHolder::ArrangeAncestor() {
  if (m_parent) m_parent->Arrange();
}

}  // namespace mivo::duilib
