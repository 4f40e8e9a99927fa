#include "duilib/Core/GlobalManager.h"

#include <cstdint>

#include "duilib/Core/AttributeValue.h"

namespace mivo::duilib {

namespace {

struct Shared {
  std::wstring resourceRoot;
  std::wstring skinFolder;
  std::map<std::wstring, std::wstring> classes;
  std::map<int, FontInfo> fonts;
  std::map<std::wstring, std::wstring> textColors;
  std::function<std::wstring(const std::wstring&)> textResolver;
  bool dpiScaleEnabled = false;
  int dpiPercent = 100;
};

Shared& State() {
  static Shared shared;
  return shared;
}

std::wstring Backslashed(std::wstring path) {
  for (wchar_t& c : path)
    if (c == L'/') c = L'\\';
  return path;
}

}  // namespace

void GlobalManager::Startup(const std::wstring& resourceRoot, const std::wstring& skinFolder) {
  State().resourceRoot = Backslashed(resourceRoot);
  if (!State().resourceRoot.empty() && State().resourceRoot.back() != L'\\') State().resourceRoot += L'\\';
  std::wstring skin = Backslashed(skinFolder);
  while (!skin.empty() && skin.back() == L'\\') skin.pop_back();
  State().skinFolder = skin;
}

const std::wstring& GlobalManager::GetResourceRoot() { return State().resourceRoot; }

const std::wstring& GlobalManager::GetSkinFolder() { return State().skinFolder; }

std::wstring GlobalManager::GetResourcePath() {
  if (State().skinFolder.empty()) return State().resourceRoot;
  return State().resourceRoot + State().skinFolder + L'\\';
}

void GlobalManager::AddClass(const std::wstring& name, const std::wstring& attributeList) {
  State().classes[name] = attributeList;
}

std::wstring GlobalManager::GetClassAttributes(const std::wstring& name) {
  auto found = State().classes.find(name);
  return found == State().classes.end() ? std::wstring() : found->second;
}

void GlobalManager::RemoveAllClasses() { State().classes.clear(); }

void GlobalManager::AddFont(int id, const FontInfo& font) { State().fonts[id] = font; }

const FontInfo* GlobalManager::GetFont(int id) {
  auto found = State().fonts.find(id);
  return found == State().fonts.end() ? nullptr : &found->second;
}

void GlobalManager::RemoveAllFonts() { State().fonts.clear(); }

void GlobalManager::AddTextColor(const std::wstring& name, const std::wstring& value) {
  State().textColors[name] = value;
}

std::wstring GlobalManager::GetTextColor(const std::wstring& name) {
  auto found = State().textColors.find(name);
  return found == State().textColors.end() ? std::wstring() : found->second;
}

void GlobalManager::RemoveAllTextColors() { State().textColors.clear(); }

uint32_t GlobalManager::ResolveColor(const std::wstring& name) {
  uint32_t argb = 0;
  auto found = State().textColors.find(name);
  if (found != State().textColors.end()) return attr::ParseColor(found->second, argb) ? argb : 0;
  return attr::ParseColor(name, argb) ? argb : 0;
}

void GlobalManager::SetTextResolver(std::function<std::wstring(const std::wstring&)> resolver) {
  State().textResolver = std::move(resolver);
}

std::wstring GlobalManager::GetTextById(const std::wstring& id) {
  return State().textResolver ? State().textResolver(id) : id;
}

void GlobalManager::SetDpiScale(bool enabled, int percent) {
  State().dpiScaleEnabled = enabled;
  State().dpiPercent = percent;
}

bool GlobalManager::IsDpiScaleEnabled() { return State().dpiScaleEnabled; }

int GlobalManager::GetDpiScalePercent() { return State().dpiPercent; }

int GlobalManager::ScaleByDpi(int value) {
  int64_t product = static_cast<int64_t>(value) * State().dpiPercent;
  int64_t half = product >= 0 ? 50 : -50;
  return static_cast<int>((product + half) / 100);
}

}  // namespace mivo::duilib
