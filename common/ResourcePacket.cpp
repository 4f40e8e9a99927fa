// The packet's rules, the same on every platform: names and paths, the bounded walk of the
// folders, and the update-only calls. The store beneath (ResourcePacket_win/_posix) does the I/O.
#include "common/ResourcePacket.h"

#include <algorithm>
#include <exception>

#include "common/ResourcePacketStore.h"

namespace mivo::common {

namespace {

using detail::PacketPath;

bool ValidName(const std::wstring& name) {
  if (name.empty() || name == L"." || name == L"..") return false;
  size_t units = 0;
  for (wchar_t c : name) {
    if (c < 0x20 || c == L'\\' || c == L'/' || c == L':' || c == L'!') return false;
    units += 1 + ((static_cast<unsigned long>(c) >> 16) != 0);  // a surrogate pair where wchar_t is 32 bits
  }
  return units <= static_cast<size_t>(kMaxPacketNameChars);
}

// "a\b\c" to {"a","b","c"}; false for an empty name anywhere, an invalid name or a path too deep.
bool SplitPath(const CString& path, PacketPath& parts) {
  parts.clear();
  const std::wstring text(path.GetString(), path.GetLength());
  size_t start = 0;
  for (;;) {
    const size_t end = text.find(L'\\', start);
    std::wstring name = text.substr(start, end == std::wstring::npos ? std::wstring::npos : end - start);
    if (!ValidName(name) || parts.size() >= static_cast<size_t>(kMaxPacketDepth)) return false;
    parts.push_back(std::move(name));
    if (end == std::wstring::npos) return true;
    start = end + 1;
  }
}

CString JoinPath(const PacketPath& parts) {
  std::wstring text;
  for (const auto& name : parts) {
    if (!text.empty()) text += L'\\';
    text += name;
  }
  return CString(text.c_str());
}

// Breadth first with a queue, so neither a deep nor a looping directory reaches the stack; every
// child counts toward the entry bound, listed or not, so a loop ends at the bound.
bool Walk(detail::PacketStore& store, std::vector<ResourcePacketEntry>& out) {
  std::vector<PacketPath> folders{PacketPath{}};
  size_t seen = 0;
  std::vector<detail::PacketChild> children;
  for (size_t i = 0; i < folders.size(); ++i) {
    children.clear();
    const size_t limit = static_cast<size_t>(kMaxPacketEntries) - seen + 1;
    if (!store.Children(folders[i], children, limit)) return false;
    seen += children.size();
    if (seen > static_cast<size_t>(kMaxPacketEntries)) return false;
    for (auto& child : children) {
      if (!ValidName(child.name)) continue;
      PacketPath path = folders[i];
      path.push_back(std::move(child.name));
      if (path.size() > static_cast<size_t>(kMaxPacketDepth)) return false;
      out.push_back({JoinPath(path), child.folder, child.folder ? 0 : child.size});
      if (child.folder) folders.push_back(std::move(path));
    }
  }
  std::sort(out.begin(), out.end(), [](const ResourcePacketEntry& a, const ResourcePacketEntry& b) {
    return wcscmp(a.path.GetString(), b.path.GetString()) < 0;  // a folder sorts before what it holds
  });
  return true;
}

}  // namespace

bool IsValidPacketName(const CString& name) { return ValidName(std::wstring(name.GetString(), name.GetLength())); }

CResourcePacket::CResourcePacket() = default;

CResourcePacket::~CResourcePacket() { Close(); }

void CResourcePacket::Close() {
  delete m_store;
  m_store = nullptr;
  m_update = false;
}

bool CResourcePacket::Create(const CString& path) {
  Close();
  try {
    auto store = detail::CreatePacketStore(path);
    // committed at once, so the new file is a valid empty packet whatever happens next
    if (!store || !store->Commit()) return false;
    m_store = store.release();
    m_update = true;
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool CResourcePacket::Open(const CString& path, bool forUpdate) {
  Close();
  try {
    auto store = detail::OpenPacketStore(path, forUpdate);
    std::vector<ResourcePacketEntry> all;
    if (!store || !Walk(*store, all)) return false;  // damaged or past the bounds: refused now
    m_store = store.release();
    m_update = forUpdate;
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool CResourcePacket::List(std::vector<ResourcePacketEntry>& entries) const {
  if (!m_store) return false;
  try {
    std::vector<ResourcePacketEntry> all;
    if (!Walk(*m_store, all)) return false;
    entries = std::move(all);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool CResourcePacket::Read(const CString& entry, std::string& data, ULONGLONG maxBytes) const {
  PacketPath parts;
  if (!m_store || !SplitPath(entry, parts)) return false;
  try {
    std::string bytes;
    if (!m_store->Read(parts, bytes, maxBytes)) return false;
    data = std::move(bytes);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool CResourcePacket::Write(const CString& entry, const std::string& data) {
  PacketPath parts;
  if (!IsUpdating() || !SplitPath(entry, parts)) return false;
  try {
    return m_store->Write(parts, data);
  } catch (const std::exception&) {
    return false;
  }
}

bool CResourcePacket::Remove(const CString& entry) {
  PacketPath parts;
  if (!IsUpdating() || !SplitPath(entry, parts)) return false;
  try {
    return m_store->Remove(parts);
  } catch (const std::exception&) {
    return false;
  }
}

bool CResourcePacket::Commit() {
  if (!IsUpdating()) return false;
  try {
    std::vector<ResourcePacketEntry> all;
    return Walk(*m_store, all) && m_store->Commit();  // never makes a packet that would not open
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace mivo::common
