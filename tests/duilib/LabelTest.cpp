// Labels, check boxes and options as skins set them up: their own attributes, what they hand
// down to the control and the layout, what repaints, and how option groups stay exclusive.
#include "duilib/Core/Label.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "duilib/Core/CheckBox.h"
#include "duilib/Core/Option.h"
#include "duilib/Core/Window.h"

#ifdef _WIN32
#include <windows.h>
// The painter hands the style straight to DrawText.
static_assert(mivo::duilib::DUI_DT_CENTER == DT_CENTER && mivo::duilib::DUI_DT_RIGHT == DT_RIGHT &&
              mivo::duilib::DUI_DT_VCENTER == DT_VCENTER && mivo::duilib::DUI_DT_BOTTOM == DT_BOTTOM &&
              mivo::duilib::DUI_DT_SINGLELINE == DT_SINGLELINE && mivo::duilib::DUI_DT_END_ELLIPSIS == DT_END_ELLIPSIS);
#endif

namespace {

using namespace mivo::duilib;

constexpr uint32_t kCenter = DUI_DT_CENTER, kRight = DUI_DT_RIGHT, kVCenter = DUI_DT_VCENTER, kBottom = DUI_DT_BOTTOM,
                   kSingle = DUI_DT_SINGLELINE, kEllipsis = DUI_DT_END_ELLIPSIS;

// Counts the repaint and re-layout requests a control makes.
template <typename T>
class Counting : public T {
 public:
  using T::T;
  void Invalidate() override { ++invalidates; }
  void ArrangeAncestor() override { ++arranges; }
  void Reset() { invalidates = arranges = 0; }
  int invalidates = 0;
  int arranges = 0;
};

TEST(LabelAlign, KeywordsApplyAsSubstringsInTheirOrder) {
  struct Row {
    const char* what;
    std::vector<const wchar_t*> before;  // "align" values applied first
    const wchar_t* align;
    uint32_t expected;
  };
  // A fresh label is vcenter | singleline (left-aligned).
  const Row rows[] = {
      {"initial style", {}, L"", kVCenter | kSingle},
      {"center adds only DT_CENTER", {}, L"center", kCenter | kVCenter | kSingle},
      {"right on a centred label", {L"vcenter"}, L"right", kRight},
      {"vcenter centres both ways", {L"left"}, L"vcenter", kCenter | kVCenter | kSingle},
      {"vcenter clears bottom", {L"bottom"}, L"vcenter", kCenter | kVCenter | kSingle},
      {"left vcenter ends centred", {L"right"}, L"left vcenter", kCenter | kVCenter | kSingle},
      {"left clears everything", {L"vcenter"}, L"left", 0},
      {"center after right", {L"right"}, L"center", kCenter},
      {"top", {L"bottom"}, L"top", kSingle},
      {"bottom on a vcentred label", {L"vcenter"}, L"bottom", kCenter | kBottom | kSingle},
      {"right bottom", {}, L"right bottom", kRight | kBottom | kSingle},
      {"vcenter sets DT_CENTER after right cleared it", {}, L"right vcenter", kRight | kCenter | kVCenter | kSingle},
      {"keywords inside other text", {}, L"xxrightyy", kRight},
      {"keywords are case-sensitive", {}, L"Right Bottom", kVCenter | kSingle},
      {"no keyword leaves the style", {L"right"}, L"middle", kRight}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    Label label;
    for (const wchar_t* value : row.before) label.SetAttribute(L"align", value);
    label.SetAttribute(L"align", row.align);
    EXPECT_EQ(label.GetTextStyle(), row.expected);
  }
}

TEST(LabelAttributes, EllipsisHintAndTextId) {
  Label label;
  label.ApplyAttributeList(L"align=\"right\" endellipsis=\"true\"");
  EXPECT_EQ(label.GetTextStyle(), kRight | kEllipsis);
  label.SetAttribute(L"endellipsis", L"TRUE");  // only exactly "true" is true
  EXPECT_EQ(label.GetTextStyle(), kRight);

  const wchar_t* const hints[] = {L"TextRenderingHintSystemDefault",     L"TextRenderingHintSingleBitPerPixelGridFit",
                                  L"TextRenderingHintSingleBitPerPixel", L"TextRenderingHintAntiAliasGridFit",
                                  L"TextRenderingHintAntiAlias",         L"TextRenderingHintClearTypeGridFit"};
  for (int hint = 5; hint >= 0; --hint) {
    label.SetAttribute(L"TextRenderingHint", hints[hint]);
    EXPECT_EQ(label.GetTextRenderingHint(), hint) << hint;
  }
  label.SetAttribute(L"TextRenderingHint", hints[4]);
  for (const wchar_t* unknown : {L"TextRenderingHintAntiAlias ", L"4", L""})
    label.SetAttribute(L"TextRenderingHint", unknown);
  label.SetAttribute(L"textrenderinghint", hints[5]);  // the name is case-sensitive
  EXPECT_EQ(label.GetTextRenderingHint(), 4);

  GlobalManager::SetTextResolver([](const std::wstring& id) { return id == L"STRID_OK" ? L"OK" : L"?"; });
  label.SetAttribute(L"textid", L"STRID_OK");
  GlobalManager::SetTextResolver(nullptr);
  EXPECT_EQ(label.GetTextId(), L"STRID_OK");
  EXPECT_EQ(label.GetText(), L"OK");
  label.SetAttribute(L"textid", L"STRID_NONE");  // without a resolver the id stays
  EXPECT_EQ(label.GetText(), L"STRID_NONE");
}

TEST(LabelRepaint, FontAndColoursAlwaysLineLimitOnlyOnChangeTextArrangesWhenAutoSized) {
  Counting<Label> label;
  label.ApplyAttributeList(L"font=\"1\" font=\"1\" hottextcolor=\"red\" disabledtextcolor=\"red\" text=\"a\"");
  EXPECT_EQ(label.invalidates, 5);
  label.Reset();
  label.SetAttribute(L"linelimit", L"false");  // already false
  label.SetAttribute(L"linelimit", L"true");
  label.SetAttribute(L"linelimit", L"true");
  EXPECT_EQ(label.invalidates, 1);
  EXPECT_EQ(label.arranges, 0);
  label.SetAttribute(L"width", L"auto");
  label.Reset();
  label.SetAttribute(L"text", L"longer");
  label.SetAttribute(L"text", L"longer");  // unchanged: nothing to do
  EXPECT_EQ(label.arranges, 1);
  EXPECT_EQ(label.invalidates, 0);
}

// Names a template does not know reach the one below it, three templates deep.
TEST(LabelFallThrough, OtherNamesReachTheControlAndTheLayout) {
  LabelBox box(new VLayout());
  box.ApplyAttributeList(L"padding=\"1,2,3,4\" childmargin=\"5\" height=\"auto\" text=\"caption\"");
  EXPECT_EQ(box.GetLayout()->GetPadding(), (UiRect{1, 2, 3, 4}));
  EXPECT_EQ(box.GetLayout()->GetChildMargin(), 5);
  EXPECT_EQ(box.GetFixedHeight(), DUI_LENGTH_AUTO);
  EXPECT_EQ(box.GetText(), L"caption");
  OptionBox option(new HLayout());
  option.ApplyAttributeList(L"padding=\"4,3,2,1\" width=\"12\" align=\"right\" selected=\"true\"");
  EXPECT_EQ(option.GetLayout()->GetPadding(), (UiRect{4, 3, 2, 1}));
  EXPECT_EQ(option.GetFixedWidth(), 12);
  EXPECT_EQ(option.GetTextStyle(), kRight);
  EXPECT_TRUE(option.IsSelected());
}

TEST(CheckBoxSelected, OnlyExactlyTrueSelectsAndChangesNotify) {
  struct Row {
    bool initially;
    const wchar_t* value;
    bool selected;
    int notifications;
  } rows[] = {{false, L"true", true, 1},  {true, L"True", false, 1}, {true, L"1", false, 1},
              {true, L"false", false, 1}, {true, L"true", true, 0},  {false, L"false", false, 0}};
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << row.initially << " " << row.value);
    CheckBox box;
    box.Selected(row.initially, false);
    std::vector<bool> heard;
    box.AttachSelectChanged([&heard](bool selected) { heard.push_back(selected); });
    box.SetAttribute(L"selected", row.value);
    EXPECT_EQ(box.IsSelected(), row.selected);
    EXPECT_EQ(heard, std::vector<bool>(row.notifications, row.selected));
  }
  Counting<CheckBox> box;  // without notification nobody hears, but it repaints
  int heard = 0;
  box.AttachSelectChanged([&heard](bool) { ++heard; });
  box.Selected(true, false);
  EXPECT_EQ(heard, 0);
  EXPECT_EQ(box.invalidates, 1);
}

TEST(CheckBoxAttributes, SelectedColoursAndImagesPerState) {
  CheckBox box;
  const std::wstring states[] = {L"normal", L"hot", L"pushed", L"disabled"};
  for (int state = 0; state < kControlStateCount; ++state) {
    box.SetAttribute(L"selected" + states[state] + L"image", L"bk" + states[state]);
    box.SetAttribute(L"selectedfore" + states[state] + L"image", L"fore" + states[state]);
    box.SetAttribute(L"selected" + states[state] + L"color", L"c" + states[state]);
  }
  box.SetAttribute(L"normalimage", L"plain.png");
  for (int state = 0; state < kControlStateCount; ++state) {
    auto s = static_cast<ControlStateType>(state);
    EXPECT_EQ(box.GetImage(kImageSetSelected, s), L"bk" + states[state]);
    EXPECT_EQ(box.GetImage(kImageSetSelectedFore, s), L"fore" + states[state]);
    EXPECT_EQ(box.GetSelectedStateColor(s), L"c" + states[state]);
    EXPECT_EQ(box.GetStateColor(s), L"");
  }
  EXPECT_EQ(box.GetImage(kImageSetBackground, kControlStateNormal), L"plain.png");  // the control's own
}

TEST(CheckBoxRepaint, SelectedImagesArrangeWhenAutoSizedElseRepaint) {
  struct Row {
    const wchar_t *width, *height;
    bool arranges;
  } rows[] = {{L"20", L"20", false}, {L"auto", L"20", true}, {L"20", L"auto", true}, {L"stretch", L"20", false}};
  for (const Row& row : rows) {
    for (const wchar_t* name : {L"selectedhotimage", L"selectedforedisabledimage"}) {
      SCOPED_TRACE(testing::Message() << row.width << "x" << row.height << " " << name);
      Counting<CheckBoxBox> box;
      box.SetAttribute(L"width", row.width);
      box.SetAttribute(L"height", row.height);
      box.Reset();
      box.SetAttribute(name, L"file='x.png'");
      EXPECT_EQ(box.arranges, row.arranges ? 1 : 0);
      EXPECT_EQ(box.invalidates, row.arranges ? 0 : 1);
    }
  }
}

// A window whose root holds the options under test.
class OptionGroupTest : public ::testing::Test {
 protected:
  void SetUp() override { window.AttachRoot(new VBox()); }
  template <typename T = Option>
  T* AddOption(const wchar_t* group) {
    auto* option = new T();
    if (group) option->SetAttribute(L"group", group);
    window.GetRoot()->Add(option);
    return option;
  }
  std::vector<Control*> Members(const std::wstring& group) const {
    const std::vector<Control*>* members = window.GetOptionGroup(group);
    return members ? *members : std::vector<Control*>();
  }
  Window window;
};

TEST_F(OptionGroupTest, JoiningLeavingAndSwitchingGroups) {
  Option* a = AddOption(L"g");
  Option* b = AddOption(L"g");
  EXPECT_EQ(a->GetGroup(), L"g");
  EXPECT_EQ(Members(L"g"), (std::vector<Control*>{a, b}));

  a->SetAttribute(L"group", L"g");  // the same name again: not left and re-joined (order kept)
  EXPECT_EQ(Members(L"g"), (std::vector<Control*>{a, b}));

  a->SetAttribute(L"group", L"other");
  EXPECT_EQ(Members(L"g"), (std::vector<Control*>{b}));
  EXPECT_EQ(Members(L"other"), (std::vector<Control*>{a}));

  a->SetAttribute(L"group", L"");
  EXPECT_EQ(a->GetGroup(), L"");
  EXPECT_EQ(window.GetOptionGroup(L"other"), nullptr);
  a->SetAttribute(L"group", L"");  // not in any group: nothing to leave
  EXPECT_EQ(Members(L"g"), (std::vector<Control*>{b}));

  window.GetRoot()->Remove(b);  // a deleted option leaves its group
  EXPECT_EQ(window.GetOptionGroup(L"g"), nullptr);
}

// Select handlers may delete options: the one being selected (nothing touches it afterwards)
// or another member still waiting to be deselected (it is skipped).
TEST_F(OptionGroupTest, HandlersMayDeleteOptionsOfTheGroup) {
  Option* a = AddOption(L"g");
  Option* b = AddOption(L"g");
  Option* c = AddOption(L"g");
  b->Selected(true, false);
  b->AttachEvent(kEventUnSelect, [this, c](EventArgs*) {
    window.GetRoot()->Remove(c);
    return true;
  });
  a->Selected(true, true);
  EXPECT_EQ(Members(L"g"), (std::vector<Control*>{a, b}));
  EXPECT_FALSE(b->IsSelected());
  Option* d = AddOption(L"g");
  d->AttachEvent(kEventSelect, [this, d](EventArgs*) {
    window.GetRoot()->Remove(d);
    return true;
  });
  d->Selected(true, true);
  EXPECT_EQ(Members(L"g"), (std::vector<Control*>{a, b}));
  EXPECT_TRUE(a->IsSelected());
}

TEST_F(OptionGroupTest, GroupNamedBeforeTheWindowIsJoinedWithIt) {
  auto* box = new HBox();
  auto* option = new Option();
  option->SetAttribute(L"group", L"tabs");
  box->Add(option);
  EXPECT_EQ(window.GetOptionGroup(L"tabs"), nullptr);
  window.GetRoot()->Add(box);
  EXPECT_EQ(Members(L"tabs"), (std::vector<Control*>{option}));

  Window other;
  other.AttachRoot(new VBox());
  window.GetRoot()->SetWindow(&other, nullptr);  // the tree moves: so does the membership
  EXPECT_EQ(window.GetOptionGroup(L"tabs"), nullptr);
  EXPECT_EQ(other.GetOptionGroup(L"tabs")->size(), 1u);
  window.GetRoot()->SetWindow(&window, nullptr);
  EXPECT_EQ(other.GetOptionGroup(L"tabs"), nullptr);
  EXPECT_EQ(Members(L"tabs"), (std::vector<Control*>{option}));
}

TEST_F(OptionGroupTest, SelectingOneDeselectsTheOthersOfItsGroupOnly) {
  Option* a = AddOption(L"g");
  auto* b = AddOption<OptionBox>(L"g");  // both instantiations share a group
  Option* c = AddOption(L"g");
  Option* elsewhere = AddOption(L"h");
  Option* loose = AddOption(nullptr);
  std::vector<std::wstring> heard;
  auto listen = [&heard](Option* option, const wchar_t* name) {
    option->AttachSelectChanged([&heard, name](bool on) { heard.push_back(name + std::wstring(on ? L"+" : L"-")); });
  };
  listen(a, L"a");
  listen(c, L"c");
  elsewhere->Selected(true, false);
  loose->Selected(true, false);

  a->SetAttribute(L"selected", L"true");
  b->Selected(true, false);
  EXPECT_FALSE(a->IsSelected());
  EXPECT_TRUE(b->IsSelected());
  c->Selected(true, true);
  EXPECT_FALSE(b->IsSelected());
  EXPECT_TRUE(c->IsSelected());
  EXPECT_EQ(heard, (std::vector<std::wstring>{L"a+", L"c+"}));  // b was selected silently, so a was deselected silently

  a->Selected(true, true);  // the deselected member hears of it with the same request
  EXPECT_EQ(heard, (std::vector<std::wstring>{L"a+", L"c+", L"a+", L"c-"}));
  EXPECT_TRUE(elsewhere->IsSelected());
  EXPECT_TRUE(loose->IsSelected());
}

TEST_F(OptionGroupTest, SelectedOptionJoiningAGroupWinsOverItsMembers) {
  Option* first = AddOption(L"g");
  first->Selected(true, true);
  auto* late = new Option();
  late->ApplyAttributeList(L"selected=\"true\" group=\"g\"");  // no window yet: nothing to deselect
  EXPECT_TRUE(first->IsSelected());
  window.GetRoot()->Add(late);
  EXPECT_TRUE(late->IsSelected());
  EXPECT_FALSE(first->IsSelected());
}

}  // namespace
