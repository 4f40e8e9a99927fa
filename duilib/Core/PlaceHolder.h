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

class MIVO_COMMON_API PlaceHolder : public virtual nbase::SupportWeakCallback {
 public:
  PlaceHolder() = default;
  ~PlaceHolder() override = default;
  PlaceHolder(const PlaceHolder&) = delete;
  PlaceHolder& operator=(const PlaceHolder&) = delete;

  Box* GetParent() const { return m_parent; }
  Window* GetWindow() const { return m_window; }
  virtual void SetWindow(Window* window, Box* parent);

  const std::wstring& GetName() const { return m_name; }
  void SetName(const std::wstring& name) { m_name = name; }

  virtual bool IsVisible() const { return m_visible; }
  virtual void SetVisible(bool visible);
  bool IsFloat() const { return m_float; }
  void SetFloat(bool isFloat);

  // Pixels, DUI_LENGTH_STRETCH or DUI_LENGTH_AUTO. Setting a size lays the ancestors out again.
  int GetFixedWidth() const { return m_fixedWidth; }
  int GetFixedHeight() const { return m_fixedHeight; }
  void SetFixedWidth(int width);
  void SetFixedHeight(int height);
  int GetMinWidth() const { return m_minWidth; }
  int GetMinHeight() const { return m_minHeight; }
  int GetMaxWidth() const { return m_maxWidth; }
  int GetMaxHeight() const { return m_maxHeight; }
  void SetMinWidth(int width);
  void SetMinHeight(int height);
  void SetMaxWidth(int width);
  void SetMaxHeight(int height);

  HorAlignType GetHorAlignType() const { return m_horAlign; }
  VerAlignType GetVerAlignType() const { return m_verAlign; }
  void SetHorAlignType(HorAlignType align) { m_horAlign = align; }
  void SetVerAlignType(VerAlignType align) { m_verAlign = align; }

  // The outer margin: the space its box keeps free around it.
  const UiRect& GetMargin() const { return m_margin; }
  void SetMargin(const UiRect& margin);

  // The size the control would like, given the space available: by default its fixed size
  // (stretch and auto stay as they are; controls with content resolve auto themselves).
  virtual UiSize EstimateSize(UiSize available);
  // The rectangle its box gave it. Boxes lay their children out only when something needs
  // their places, so a box above that still waits to do so does it first.
  const UiRect& GetPos() const;
  virtual void SetPos(UiRect pos);

  // An optional test a vertical layout asks before it places the control; false skips it.
  void SetPlacementPredicate(std::function<bool()> predicate) { m_placementPredicate = std::move(predicate); }
  const std::function<bool()>& GetPlacementPredicate() const { return m_placementPredicate; }

  // Asks its window for a repaint of the control's rectangle.
  virtual void Invalidate();
  // Asks for the control to be laid out again (its own content).
  virtual void Arrange();
  // Asks the box that holds the control to lay out again, since its size may have changed.
  virtual void ArrangeAncestor();

 private:
  friend class Box;

  // What a layout reads and writes for every child comes first, in the object's first two
  // cache lines: arranging thousands of children is bound by how much of each it touches.
  Window* m_window = nullptr;
  Box* m_parent = nullptr;
  int m_fixedWidth = DUI_LENGTH_STRETCH;
  int m_fixedHeight = DUI_LENGTH_STRETCH;
  int m_minWidth = 0;
  int m_minHeight = 0;
  int m_maxWidth = DUI_LENGTH_NOLIMIT;
  int m_maxHeight = DUI_LENGTH_NOLIMIT;
  UiRect m_margin;
  UiRect m_pos;
  HorAlignType m_horAlign = kHorAlignLeft;
  VerAlignType m_verAlign = kVerAlignTop;
  bool m_visible = true;
  bool m_float = false;
  // Kept here for Box (set by its constructor and its layout scheduling; see Box::Arrange).
  bool m_isBox = false;
  bool m_needsArrange = false;  // its children wait to be laid out in its rectangle
  bool m_pendingBelow = false;  // a box below it may wait to be laid out
  std::function<bool()> m_placementPredicate;
  std::wstring m_name;
};

}  // namespace mivo::duilib
