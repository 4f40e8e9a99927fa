#pragma once
// What every element of a skin is before it draws anything: a place in the tree (window,
// parent box, name) and the geometry boxes lay out (fixed, minimum and maximum sizes, margin,
// alignment, visibility, float) plus the rectangle it was given.
#include <functional>
#include <string>

#include "base/callback/SupportWeakCallback.h"
#include "duilib/Core/UiTypes.h"
#include "toolkit/export.h"

namespace mivo::duilib {

class Box;
class Window;

// What a box's layout reads and writes of a child. It lives apart from the control, in a pool
// where controls made one after another have theirs side by side, and the box keeps a list of
// its children's records: it lays thousands of children out from these without touching the
// controls themselves, which are large and lie far apart.
struct alignas(64) LayoutRecord {
  // An alignment as the layout uses it: 0, 1, 2, or 3 for any other value (placed at 0 to 0).
  static signed char AlignCode(int align) { return static_cast<signed char>(align >= 0 && align <= 2 ? align : 3); }

  int fixedWidth = DUI_LENGTH_STRETCH;
  int fixedHeight = DUI_LENGTH_STRETCH;
  int minWidth = 0;
  int minHeight = 0;
  int maxWidth = DUI_LENGTH_NOLIMIT;
  int maxHeight = DUI_LENGTH_NOLIMIT;
  UiRect margin;
  UiRect pos;
  signed char horAlign = kHorAlignLeft;
  signed char verAlign = kVerAlignTop;
  // One byte, so that a layout decides how to treat a child with one test.
  enum Flag : unsigned char {
    // Its class keeps PlaceHolder's IsVisible, EstimateSize, SetPos and Invalidate, so the
    // layout may do what they would do without calling them (decided when it joins a box).
    kPlain = 1,
    kVisible = 2,
    kFloat = 4,
    kPredicate = 8,  // a placement predicate is set
    kInWindow = 16,
  };
  unsigned char flags = kVisible;
  bool Has(Flag flag) const { return (flags & flag) != 0; }
  void Set(Flag flag, bool on) { flags = static_cast<unsigned char>(on ? flags | flag : flags & ~flag); }
};
static_assert(sizeof(LayoutRecord) == 64, "a record is one cache line");

class MIVO_COMMON_API PlaceHolder : public virtual nbase::SupportWeakCallback {
 public:
  PlaceHolder();
  ~PlaceHolder() override;
  PlaceHolder(const PlaceHolder&) = delete;
  PlaceHolder& operator=(const PlaceHolder&) = delete;

  Box* GetParent() const { return m_parent; }
  Window* GetWindow() const { return m_window; }
  virtual void SetWindow(Window* window, Box* parent);

  const std::wstring& GetName() const { return m_name; }
  void SetName(const std::wstring& name) { m_name = name; }

  virtual bool IsVisible() const { return m_geo->Has(LayoutRecord::kVisible); }
  virtual void SetVisible(bool visible);
  bool IsFloat() const { return m_geo->Has(LayoutRecord::kFloat); }
  void SetFloat(bool isFloat);

  // Pixels, DUI_LENGTH_STRETCH or DUI_LENGTH_AUTO. Setting a size lays the ancestors out again.
  int GetFixedWidth() const { return m_geo->fixedWidth; }
  int GetFixedHeight() const { return m_geo->fixedHeight; }
  void SetFixedWidth(int width);
  void SetFixedHeight(int height);
  int GetMinWidth() const { return m_geo->minWidth; }
  int GetMinHeight() const { return m_geo->minHeight; }
  int GetMaxWidth() const { return m_geo->maxWidth; }
  int GetMaxHeight() const { return m_geo->maxHeight; }
  void SetMinWidth(int width);
  void SetMinHeight(int height);
  void SetMaxWidth(int width);
  void SetMaxHeight(int height);

  HorAlignType GetHorAlignType() const { return m_horAlign; }
  VerAlignType GetVerAlignType() const { return m_verAlign; }
  void SetHorAlignType(HorAlignType align) {
    m_horAlign = align;
    m_geo->horAlign = LayoutRecord::AlignCode(align);
  }
  void SetVerAlignType(VerAlignType align) {
    m_verAlign = align;
    m_geo->verAlign = LayoutRecord::AlignCode(align);
  }

  // The outer margin: the space its box keeps free around it.
  const UiRect& GetMargin() const { return m_geo->margin; }
  void SetMargin(const UiRect& margin);

  // The size the control would like, given the space available: by default its fixed size
  // (stretch and auto stay as they are; controls with content resolve auto themselves).
  virtual UiSize EstimateSize(UiSize available);
  // The rectangle its box gave it. Boxes lay their children out only when something needs
  // their places, so a box above that still waits to do so does it first.
  const UiRect& GetPos() const;
  virtual void SetPos(UiRect pos);

  // An optional test a vertical layout asks before it places the control; false skips it.
  void SetPlacementPredicate(std::function<bool()> predicate);
  const std::function<bool()>& GetPlacementPredicate() const { return m_placementPredicate; }

  // Asks its window for a repaint of the control's rectangle.
  virtual void Invalidate();
  // Asks for the control to be laid out again (its own content).
  virtual void Arrange();
  // Asks the box that holds the control to lay out again, since its size may have changed.
  virtual void ArrangeAncestor();

 private:
  friend class Box;
  friend class Layout;

  // Tells the box holding the control that what its layout reads of it changed.
  void LayoutInputChanged();

  LayoutRecord* m_geo;  // from the pool, for the control's whole life
  Window* m_window = nullptr;
  Box* m_parent = nullptr;
  HorAlignType m_horAlign = kHorAlignLeft;
  VerAlignType m_verAlign = kVerAlignTop;
  // Kept here for Box (set by its constructor and its layout scheduling; see Box::Arrange).
  bool m_isBox = false;
  bool m_needsArrange = false;  // its children wait to be laid out in its rectangle
  bool m_pendingBelow = false;  // a box below it may wait to be laid out
  std::function<bool()> m_placementPredicate;
  std::wstring m_name;
};

}  // namespace mivo::duilib
