// Skins from arbitrary bytes, through the window builder as a window builds them, and every
// attribute the controls know set to arbitrary values. The input is up to three parts split
// at NUL bytes: the skin, a second file of the skin folder ("inc.xml", for <Include>), and
// lines whose first byte picks an attribute name and whose rest is its value.
// Checks: no tree is deeper than the builder's limit; the same skin builds the same tree from
// its file and from its text, and again.
#include <cctype>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "duilib/Core/Box.h"
#include "duilib/Core/Button.h"
#include "duilib/Core/CheckBox.h"
#include "duilib/Core/GlobalManager.h"
#include "duilib/Core/Label.h"
#include "duilib/Core/ListBox.h"
#include "duilib/Core/Option.h"
#include "duilib/Core/Window.h"
#include "duilib/Core/WindowBuilder.h"
#include "fuzz/FuzzTemp.h"
#include "toolkit/Utf8.h"

using namespace mivo::duilib;

namespace {

void Check(bool ok, const char* what) { fuzz::Check(ok, "skin_fuzz", what); }

// The names the controls, their boxes and layouts read; the rest are passed over.
const wchar_t* const kNames[] = {
    L"class",
    L"halign",
    L"valign",
    L"margin",
    L"bkcolor",
    L"bkcolor1",
    L"normalcolor",
    L"hotcolor",
    L"pushedcolor",
    L"disabledcolor",
    L"bordercolor",
    L"isgradient",
    L"begingradientcolor",
    L"endgradientcolor",
    L"isgradientvertical",
    L"nSteps",
    L"bordersize",
    L"leftbordersize",
    L"topbordersize",
    L"rightbordersize",
    L"bottombordersize",
    L"borderround",
    L"drawgdiplus",
    L"drawgdipulsround",
    L"gdipenroundcolor",
    L"width",
    L"height",
    L"maxwidth",
    L"maxheight",
    L"bkimage",
    L"minwidth",
    L"minheight",
    L"name",
    L"tooltiptext",
    L"tooltiptextid",
    L"dataid",
    L"enabled",
    L"mouse",
    L"keyboard",
    L"visible",
    L"fadevisible",
    L"float",
    L"menu",
    L"nofocus",
    L"alpha",
    L"state",
    L"cursortype",
    L"normalimage",
    L"hotimage",
    L"pushedimage",
    L"disabledimage",
    L"forenormalimage",
    L"forehotimage",
    L"forepushedimage",
    L"foredisabledimage",
    L"renderoffset",
    L"fadealpha",
    L"fadehot",
    L"fadewidth",
    L"fadeheight",
    L"fadeinoutxfromleft",
    L"fadeinoutxfromright",
    L"fadeinoutyfromtop",
    L"fadeinoutyfrombottom",
    L"gifmaxplaylimit",
    L"gifstoptype",
    L"emptycenter",
    L"imagelayout",
    L"padding",
    L"childmargin",
    L"mousechild",
    L"align",
    L"endellipsis",
    L"linelimit",
    L"text",
    L"textid",
    L"font",
    L"normaltextcolor",
    L"hottextcolor",
    L"pushedtextcolor",
    L"disabledtextcolor",
    L"textpadding",
    L"singleline",
    L"TextRenderingHint",
    L"selected",
    L"selectednormalimage",
    L"selectedhotimage",
    L"selectedpushedimage",
    L"selecteddisabledimage",
    L"selectedtextcolor",
    L"selectednormalcolor",
    L"selectedhotcolor",
    L"selectedpushedcolor",
    L"selecteddisabledcolor",
    L"selectedforenormalimage",
    L"selectedforehotimage",
    L"selectedforepushedimage",
    L"selectedforedisabledimage",
    L"group",
    L"size",
    L"caption",
    L"roundcorner",
    L"mininfo",
};

// Controls in the tree and its depth (the root is level 1).
void Measure(Control* control, int level, int& count, int& depth) {
  ++count;
  if (level > depth) depth = level;
  if (auto* box = dynamic_cast<Box*>(control))
    for (Control* child : box->GetItems()) Measure(child, level + 1, count, depth);
}

void ResetResources() {
  GlobalManager::RemoveAllClasses();
  GlobalManager::RemoveAllFonts();
  GlobalManager::RemoveAllTextColors();
}

struct Built {
  int count = 0, depth = 0;
  bool operator==(const Built&) const = default;
};

// Builds as a window does: the root control joins the window and is laid out in its client
// area, then goes before the window does.
Built Build(const fuzz::TempFolder& folder, const std::string* text) {
  ResetResources();
  Window window;
  WindowBuilder builder;
  const std::wstring skinFolder = CString(folder.Path("")).str();
  std::unique_ptr<Control> root(text ? builder.CreateFromString(*text, nullptr, &window, nullptr, skinFolder)
                                     : builder.Create(skinFolder, L"main.xml", nullptr, &window));
  Built built;
  if (!root) return built;
  Measure(root.get(), 1, built.count, built.depth);
  Check(built.depth <= WindowBuilder::kMaxNesting, "a tree deeper than the builder's limit");
  root->SetPos(UiRect{0, 0, 800, 600});
  return built;
}

template <class T>
std::unique_ptr<Control> Make() {
  return std::make_unique<T>();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static fuzz::TempFolder folder("skin_fuzz");
  std::vector<std::string> parts = fuzz::SplitAtNul(std::string(reinterpret_cast<const char*>(data), size), 3);
  folder.Write("main.xml", parts[0]);
  folder.Write("inc.xml", parts[1]);

  Built fromText = Build(folder, &parts[0]);
  Built fromFile = Build(folder, nullptr);
  // The file's own name is known when it is built from the file, so an include of itself is
  // left out there but read once from the text; such trees are not comparable. Names are
  // compared without case, and an entity may spell any of them.
  std::string both = parts[0] + '\n' + parts[1];
  for (char& c : both) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (both.find("main") == std::string::npos && both.find('&') == std::string::npos)
    Check(fromText == fromFile, "a skin builds differently from its file and its text");
  Check(Build(folder, &parts[0]) == fromText, "a skin builds differently a second time");

  // Attributes straight onto every kind of control, inside a box of a window.
  ResetResources();
  GlobalManager::AddClass(L"c", L"width=\"10\" bkcolor=\"#FF00FF00\"");
  std::vector<std::pair<std::wstring, std::wstring>> attributes;
  const std::string& lines = parts[2];
  for (size_t at = 0; at < lines.size();) {
    size_t end = lines.find('\n', at);
    if (end == std::string::npos) end = lines.size();
    if (end > at) {
      std::wstring value;
      toolkit::Utf8ToWide(lines.data() + at + 1, end - at - 1, value);
      attributes.emplace_back(kNames[static_cast<unsigned char>(lines[at]) % std::size(kNames)], value);
    }
    at = end + 1;
  }
  if (attributes.empty()) return 0;
  Window window;
  std::unique_ptr<Control> kinds[] = {Make<Control>(),   Make<VBox>(),     Make<HBox>(),
                                      Make<Label>(),     Make<LabelBox>(), Make<Button>(),
                                      Make<ButtonBox>(), Make<CheckBox>(), Make<Option>(),
                                      Make<OptionBox>(), Make<ListBox>(),  Make<ListContainerElement>()};
  auto holder = std::make_unique<Box>();
  holder->SetWindow(&window, nullptr);
  for (auto& control : kinds) {
    Control* c = control.get();
    if (holder->Add(c)) control.release();
    for (const auto& [name, value] : attributes) c->SetAttribute(name, value);
  }
  holder->SetPos(UiRect{0, 0, 800, 600});
  return 0;
}
