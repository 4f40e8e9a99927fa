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
      {"no keyword leaves the style", {L"right"}, L"middle", kRight},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    Label label;
    for (const wchar_t* value : row.before) label.SetAttribute(L"align", value);
    label.SetAttribute(L"align", row.align);
    EXPECT_EQ(label.GetTextStyle(), row.expected);
  }
}

TEST(LabelAttributes, EndEllipsisSetsAndClearsOnlyItsBit) {
  Label label;
  label.SetAttribute(L"align", L"right");
  label.SetAttribute(L"endellipsis", L"true");
  EXPECT_EQ(label.GetTextStyle(), kRight | kEllipsis);
  label.SetAttribute(L"endellipsis", L"TRUE");  // only exactly "true" is true
  EXPECT_EQ(label.GetTextStyle(), kRight);
}

TEST(LabelAttributes, TextRenderingHintByNameUnknownLeavesIt) {
  const wchar_t* const names[] = {L"TextRenderingHintSystemDefault",     L"TextRenderingHintSingleBitPerPixelGridFit",
                                  L"TextRenderingHintSingleBitPerPixel", L"TextRenderingHintAntiAliasGridFit",
                                  L"TextRenderingHintAntiAlias",         L"TextRenderingHintClearTypeGridFit"};
  Label label;
  EXPECT_EQ(label.GetTextRenderingHint(), 0);
  for (int hint = 5; hint >= 0; --hint) {
    label.SetAttribute(L"TextRenderingHint", names[hint]);
    EXPECT_EQ(label.GetTextRenderingHint(), hint) << hint;
  }
  label.SetAttribute(L"TextRenderingHint", L"TextRenderingHintAntiAlias");
  EXPECT_EQ(label.GetTextRenderingHint(), 4);
  for (const wchar_t* unknown : {L"texturerenderinghintantialias", L"TextRenderingHintAntiAlias ", L"4", L""}) {
    label.SetAttribute(L"TextRenderingHint", unknown);
    EXPECT_EQ(label.GetTextRenderingHint(), 4) << unknown;
  }
  label.SetAttribute(L"textrenderinghint", L"TextRenderingHintClearTypeGridFit");  // the name is case-sensitive
  EXPECT_EQ(label.GetTextRenderingHint(), 4);
}

TEST(LabelAttributes, StoresTextFontColoursPaddingAndFlags) {
  Label label;
  label.ApplyAttributeList(
      L"text=\"Sign in\" font=\"3\" normaltextcolor=\"black\" hottextcolor=\"blue\" pushedtextcolor=\"navy\" "
      L"disabledtextcolor=\"gray\" textpadding=\"1,2,3,4\" singleline=\"false\" linelimit=\"true\"");
  EXPECT_EQ(label.GetText(), L"Sign in");
  EXPECT_EQ(label.GetFont(), 3);
  const wchar_t* const colours[] = {L"black", L"blue", L"navy", L"gray"};
  for (int state = 0; state < kControlStateCount; ++state)
    EXPECT_EQ(label.GetStateTextColor(static_cast<ControlStateType>(state)), colours[state]);
  EXPECT_EQ(label.GetTextPadding(), (UiRect{1, 2, 3, 4}));
  EXPECT_FALSE(label.IsSingleLine());
  EXPECT_TRUE(label.IsLineLimit());
  // the text colours are the label's own, not the control's background colours
  EXPECT_EQ(label.GetStateColor(kControlStateNormal), L"");
}

TEST(LabelAttributes, TextIdResolvesThroughTheStringTable) {
  GlobalManager::SetTextResolver([](const std::wstring& id) { return id == L"STRID_OK" ? L"OK" : L"?"; });
  Label label;
  label.SetAttribute(L"textid", L"STRID_OK");
  GlobalManager::SetTextResolver(nullptr);
  EXPECT_EQ(label.GetTextId(), L"STRID_OK");
  EXPECT_EQ(label.GetText(), L"OK");
  label.SetAttribute(L"textid", L"STRID_NONE");  // without a resolver the id stays
  EXPECT_EQ(label.GetText(), L"STRID_NONE");
}

TEST(LabelRepaint, FontAndColoursAlwaysLineLimitOnlyOnChange) {
  Counting<Label> label;
  label.SetAttribute(L"font", L"1");
  label.SetAttribute(L"font", L"1");
  EXPECT_EQ(label.invalidates, 2);
  label.Reset();
  for (const wchar_t* name : {L"normaltextcolor", L"hottextcolor", L"pushedtextcolor", L"disabledtextcolor"})
    label.SetAttribute(name, L"red");
  EXPECT_EQ(label.invalidates, 4);
  label.Reset();
  label.SetAttribute(L"linelimit", L"false");  // already false
  EXPECT_EQ(label.invalidates, 0);
  label.SetAttribute(L"linelimit", L"true");
  label.SetAttribute(L"linelimit", L"true");
  EXPECT_EQ(label.invalidates, 1);
  EXPECT_EQ(label.arranges, 0);
}

TEST(LabelRepaint, NewTextOfAnAutoSizedLabelLaysTheAncestorsOut) {
  Counting<Label> label;
  label.SetAttribute(L"text", L"a");
  EXPECT_EQ(label.invalidates, 1);
  label.SetAttribute(L"width", L"auto");
  label.Reset();
  label.SetAttribute(L"text", L"longer");
  label.SetAttribute(L"text", L"longer");  // unchanged: nothing to do
  EXPECT_EQ(label.arranges, 1);
  EXPECT_EQ(label.invalidates, 0);
}

TEST(LabelFallThrough, OtherNamesReachTheControlAndTheLayout) {
  Label label;
  label.ApplyAttributeList(L"width=\"40\" name=\"title\" bkcolor=\"white\" padding=\"1,1,1,1\"");
  EXPECT_EQ(label.GetFixedWidth(), 40);
  EXPECT_EQ(label.GetName(), L"title");
  EXPECT_EQ(label.GetBkColor(), L"white");

  LabelBox box(new VLayout());
  box.ApplyAttributeList(L"padding=\"1,2,3,4\" childmargin=\"5\" height=\"auto\" text=\"caption\"");
  EXPECT_NE(dynamic_cast<VLayout*>(box.GetLayout()), nullptr);
  EXPECT_EQ(box.GetLayout()->GetPadding(), (UiRect{1, 2, 3, 4}));
  EXPECT_EQ(box.GetLayout()->GetChildMargin(), 5);
  EXPECT_EQ(box.GetFixedHeight(), DUI_LENGTH_AUTO);
  EXPECT_EQ(box.GetText(), L"caption");

  // three templates deep, the box's layout still hears its names
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
  };
  const Row rows[] = {
      {false, L"true", true, 1},  {true, L"True", false, 1}, {true, L"1", false, 1},
      {true, L"false", false, 1}, {true, L"true", true, 0},  {false, L"false", false, 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << row.initially << " " << row.value);
    CheckBox box;
    box.Selected(row.initially, false);
    std::vector<bool> heard;
    box.AttachSelectChanged([&heard](bool selected) { heard.push_back(selected); });
    box.SetAttribute(L"selected", row.value);
    EXPECT_EQ(box.IsSelected(), row.selected);
    ASSERT_EQ(static_cast<int>(heard.size()), row.notifications);
    if (!heard.empty()) {
      EXPECT_EQ(heard[0], row.selected);
    }
  }
}

TEST(CheckBoxSelected, WithoutNotificationNobodyHears) {
  Counting<CheckBox> box;
  int heard = 0;
  box.AttachSelectChanged([&heard](bool) { ++heard; });
  box.Selected(true, false);
  EXPECT_TRUE(box.IsSelected());
  EXPECT_EQ(heard, 0);
  EXPECT_EQ(box.invalidates, 1);
}

TEST(CheckBoxAttributes, SelectedColoursAndImagesPerState) {
  CheckBox box;
  const wchar_t* const states[] = {L"normal", L"hot", L"pushed", L"disabled"};
  for (int state = 0; state < kControlStateCount; ++state) {
    std::wstring suffix = std::to_wstring(state);
    box.SetAttribute(std::wstring(L"selected") + states[state] + L"image", L"bk" + suffix + L".png");
    box.SetAttribute(std::wstring(L"selectedfore") + states[state] + L"image", L"fore" + suffix + L".png");
    box.SetAttribute(std::wstring(L"selected") + states[state] + L"color", L"c" + suffix);
  }
  box.SetAttribute(L"selectedtextcolor", L"white");
  box.SetAttribute(L"normalimage", L"plain.png");
  for (int state = 0; state < kControlStateCount; ++state) {
    auto s = static_cast<ControlStateType>(state);
    std::wstring suffix = std::to_wstring(state);
    EXPECT_EQ(box.GetImage(kImageSetSelected, s), L"bk" + suffix + L".png");
    EXPECT_EQ(box.GetImage(kImageSetSelectedFore, s), L"fore" + suffix + L".png");
    EXPECT_EQ(box.GetSelectedStateColor(s), L"c" + suffix);
    EXPECT_EQ(box.GetStateColor(s), L"");
  }
  EXPECT_EQ(box.GetSelectedTextColor(), L"white");
  EXPECT_EQ(box.GetImage(kImageSetBackground, kControlStateNormal), L"plain.png");  // the control's own
}

TEST(CheckBoxRepaint, SelectedImagesArrangeWhenAutoSizedElseRepaint) {
  struct Row {
    const wchar_t* width;
    const wchar_t* height;
    bool arranges;
  };
  const Row rows[] = {
      {L"20", L"20", false}, {L"auto", L"20", true}, {L"20", L"auto", true}, {L"stretch", L"20", false}};
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
