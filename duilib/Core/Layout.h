#pragma once
// How a box places its children. The plain layout places each child on its own (the float
// rule); VLayout stacks them top to bottom, HLayout left to right, sharing the space that is
// left among "stretch" children.
#include <string>
#include <vector>

#include "duilib/Core/UiTypes.h"
#include "toolkit/export.h"

namespace mivo::duilib {

class Box;
class Control;
struct LayoutRecord;

class MIVO_COMMON_API Layout {
 public:
  Layout() = default;
  virtual ~Layout() = default;
  Layout(const Layout&) = delete;
  Layout& operator=(const Layout&) = delete;

  void SetOwner(Box* owner) { m_owner = owner; }
  Box* GetOwner() const { return m_owner; }

  // "padding" (rect) and "childmargin" (int); false for every other name.
  virtual bool SetAttribute(const std::wstring& name, const std::wstring& value);

  const UiRect& GetPadding() const { return m_padding; }
  void SetPadding(const UiRect& padding);
  int GetChildMargin() const { return m_childMargin; }
  void SetChildMargin(int margin);

  // Gives every visible child its rectangle inside `rc` (the box's rectangle less padding);
  // returns the size used.
  virtual UiSize ArrangeChild(const std::vector<Control*>& items, UiRect rc);
  // The size the children need within `available`, padding included.
  virtual UiSize AjustSizeByChild(const std::vector<Control*>& items, UiSize available);

  // What the first pass of a stacking layout found over the owner's children when all of
  // them were plain (their sizes then do not depend on the space), kept until one changes.
  struct FirstPass {
    bool valid = false;
    int count = 0, stretches = 0, fixed = 0;
  };
  // A child of the owner changed what the layouts read of it, or children came or went.
  void ChildrenChanged() { m_firstPass.valid = false; }

  // The float rule: the child at its estimated size (stretch fills the container less its
  // margin), placed by its alignment and margin inside `container`. Returns the size given.
  static UiSize SetFloatPos(Control* child, UiRect container);

 protected:
  // The layout records of `items` when they are the owner's own children (the owner lays
  // them out), else null.
  static const std::vector<LayoutRecord*>* RecordsFor(const Box* owner, const std::vector<Control*>& items);

  FirstPass m_firstPass;
  Box* m_owner = nullptr;
  UiRect m_padding;
  int m_childMargin = 0;
};

class MIVO_COMMON_API VLayout : public Layout {
 public:
  UiSize ArrangeChild(const std::vector<Control*>& items, UiRect rc) override;
  UiSize AjustSizeByChild(const std::vector<Control*>& items, UiSize available) override;
};

class MIVO_COMMON_API HLayout : public Layout {
 public:
  UiSize ArrangeChild(const std::vector<Control*>& items, UiRect rc) override;
  UiSize AjustSizeByChild(const std::vector<Control*>& items, UiSize available) override;
};

}  // namespace mivo::duilib
