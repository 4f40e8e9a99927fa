#include "duilib/Core/PlaceHolder.h"

#include <memory>
#include <utility>
#include <vector>

#include "base/synchronization/lock.h"
#include "duilib/Core/Box.h"
#include "duilib/Core/Window.h"

namespace mivo::duilib {

namespace {

// Layout records are handed out in order from chunks that never move, and taken back onto a
// free list: controls made one after another get neighbouring records. Controls may be made
// on any thread, hence the lock. The pool lives as long as the process (controls may outlive
// any static object).
class RecordPool {
 public:
  LayoutRecord* Take() {
    nbase::AutoLock hold(m_lock);
    if (!m_free.empty()) {
      LayoutRecord* record = m_free.back();
      m_free.pop_back();
      *record = LayoutRecord();
      return record;
    }
    if (m_used == kChunk) {
      m_chunks.push_back(std::make_unique<LayoutRecord[]>(kChunk));
      m_used = 0;
    }
    return &m_chunks.back()[m_used++];
  }
  void Give(LayoutRecord* record) {
    nbase::AutoLock hold(m_lock);
    m_free.push_back(record);
  }

 private:
  static constexpr size_t kChunk = 4096;
  nbase::Lock m_lock;
  std::vector<std::unique_ptr<LayoutRecord[]>> m_chunks;
  size_t m_used = kChunk;
  std::vector<LayoutRecord*> m_free;
};

RecordPool& Pool() {
  static RecordPool* pool = new RecordPool();
  return *pool;
}

}  // namespace

PlaceHolder::PlaceHolder() : m_geo(Pool().Take()) {}

PlaceHolder::~PlaceHolder() { Pool().Give(m_geo); }

void PlaceHolder::SetWindow(Window* window, Box* parent) {
  m_window = window;
  m_parent = parent;
  m_geo->Set(LayoutRecord::kInWindow, window != nullptr);
}

void PlaceHolder::SetVisible(bool visible) {
  if (m_geo->Has(LayoutRecord::kVisible) == visible) return;
  Invalidate();  // what it covered shows again when it hides
  m_geo->Set(LayoutRecord::kVisible, visible);
  LayoutInputChanged();
  ArrangeAncestor();
}

void PlaceHolder::SetFloat(bool isFloat) {
  if (m_geo->Has(LayoutRecord::kFloat) == isFloat) return;
  m_geo->Set(LayoutRecord::kFloat, isFloat);
  LayoutInputChanged();
  ArrangeAncestor();
}

#define MIVO_SIZE_SETTER(Name, field) \
  void PlaceHolder::Name(int value) { \
    if (field == value) return;       \
    field = value;                    \
    LayoutInputChanged();             \
    ArrangeAncestor();                \
  }
MIVO_SIZE_SETTER(SetFixedWidth, m_geo->fixedWidth)
MIVO_SIZE_SETTER(SetFixedHeight, m_geo->fixedHeight)
MIVO_SIZE_SETTER(SetMinWidth, m_geo->minWidth)
MIVO_SIZE_SETTER(SetMinHeight, m_geo->minHeight)
MIVO_SIZE_SETTER(SetMaxWidth, m_geo->maxWidth)
MIVO_SIZE_SETTER(SetMaxHeight, m_geo->maxHeight)
#undef MIVO_SIZE_SETTER

void PlaceHolder::SetMargin(const UiRect& margin) {
  if (m_geo->margin == margin) return;
  m_geo->margin = margin;
  LayoutInputChanged();
  ArrangeAncestor();
}

void PlaceHolder::SetPlacementPredicate(std::function<bool()> predicate) {
  m_placementPredicate = std::move(predicate);
  m_geo->Set(LayoutRecord::kPredicate, static_cast<bool>(m_placementPredicate));
  LayoutInputChanged();
}

void PlaceHolder::LayoutInputChanged() {
  if (m_parent) m_parent->GetLayout()->ChildrenChanged();
}

UiSize PlaceHolder::EstimateSize(UiSize) { return UiSize{m_geo->fixedWidth, m_geo->fixedHeight}; }

const UiRect& PlaceHolder::GetPos() const {
  Box::ArrangeWaitingAbove(this);
  return m_geo->pos;
}

void PlaceHolder::SetPos(UiRect pos) {
  // A layout that waits above comes first, as it came before this when boxes laid out at once.
  Box::ArrangeWaitingAbove(this);
  if (pos == m_geo->pos) return;
  Invalidate();  // where it was and where it goes
  m_geo->pos = pos;
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
