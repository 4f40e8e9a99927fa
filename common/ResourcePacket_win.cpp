// Packets over the system's compound files (IStorage, IStream); an update is a transacted root
// storage, so nothing reaches the file before IStorage::Commit.
#include <objbase.h>
#include <windows.h>

#include "common/ResourcePacket.h"
#include "common/ResourcePacketStore.h"

namespace mivo::common::detail {

namespace {

// Owns one interface pointer.
template <class T>
class Com {
 public:
  Com() = default;
  explicit Com(T* p) : m_p(p) {}
  ~Com() { Reset(); }
  Com(const Com&) = delete;
  Com& operator=(const Com&) = delete;
  Com(Com&& other) noexcept : m_p(other.m_p) { other.m_p = nullptr; }
  Com& operator=(Com&& other) noexcept {
    if (this != &other) {
      Reset();
      m_p = other.m_p;
      other.m_p = nullptr;
    }
    return *this;
  }
  void Reset() {
    if (m_p) m_p->Release();
    m_p = nullptr;
  }
  T* operator->() const { return m_p; }
  T* Get() const { return m_p; }
  T** Out() {
    Reset();
    return &m_p;
  }

 private:
  T* m_p = nullptr;
};

// Child storages and streams are always opened exclusively: the compound file allows nothing else.
constexpr DWORD kChildRead = STGM_READ | STGM_SHARE_EXCLUSIVE;
constexpr DWORD kChildWrite = STGM_READWRITE | STGM_SHARE_EXCLUSIVE;
constexpr ULONG kChunk = 1u << 20;

class StorageStore final : public PacketStore {
 public:
  StorageStore(IStorage* root, bool update) : m_root(root), m_update(update) {}

  bool Children(const PacketPath& folder, std::vector<PacketChild>& out, size_t limit) override {
    Chain storage = OpenFolder(folder, folder.size(), false, false);
    Com<IEnumSTATSTG> list;
    if (!storage || FAILED(storage->EnumElements(0, nullptr, 0, list.Out()))) return false;
    while (out.size() < limit) {
      STATSTG stat{};
      ULONG got = 0;
      const HRESULT hr = list->Next(1, &stat, &got);
      if (hr != S_OK || got != 1) return SUCCEEDED(hr);
      if (stat.pwcsName && (stat.type == STGTY_STORAGE || stat.type == STGTY_STREAM))
        out.push_back({stat.pwcsName, stat.type == STGTY_STORAGE, stat.cbSize.QuadPart});
      CoTaskMemFree(stat.pwcsName);
    }
    return true;
  }

  bool Read(const PacketPath& entry, std::string& data, unsigned long long maxBytes) override {
    Chain folder = OpenFolder(entry, entry.size() - 1, false, false);
    Com<IStream> stream;
    if (!folder || FAILED(folder->OpenStream(entry.back().c_str(), nullptr, kChildRead, 0, stream.Out()))) return false;
    STATSTG stat{};
    if (FAILED(stream->Stat(&stat, STATFLAG_NONAME)) || stat.cbSize.QuadPart > maxBytes) return false;
    // grown as the bytes arrive: a damaged size must not make a huge allocation
    unsigned long long left = stat.cbSize.QuadPart;
    std::string chunk;
    while (left > 0) {
      const ULONG want = left > kChunk ? kChunk : static_cast<ULONG>(left);
      chunk.resize(want);
      ULONG got = 0;
      if (FAILED(stream->Read(chunk.data(), want, &got)) || got != want) return false;
      data.append(chunk);
      left -= got;
    }
    return true;
  }

  bool Write(const PacketPath& entry, const std::string& data) override {
    Chain folder = OpenFolder(entry, entry.size() - 1, true, true);
    if (!folder) return false;
    const wchar_t* name = entry.back().c_str();
    Com<IStorage> taken;
    if (SUCCEEDED(folder->OpenStorage(name, nullptr, kChildRead, nullptr, 0, taken.Out()))) return false;  // a folder
    Com<IStream> stream;
    if (FAILED(folder->CreateStream(name, kChildWrite | STGM_CREATE, 0, 0, stream.Out()))) return false;
    const char* at = data.data();
    size_t left = data.size();
    while (left > 0) {
      const ULONG want = left > kChunk ? kChunk : static_cast<ULONG>(left);
      ULONG put = 0;
      if (FAILED(stream->Write(at, want, &put)) || put != want) return false;
      at += put;
      left -= put;
    }
    return true;
  }

  bool Remove(const PacketPath& entry) override {
    Chain folder = OpenFolder(entry, entry.size() - 1, true, false);
    return folder && SUCCEEDED(folder->DestroyElement(entry.back().c_str()));
  }

  bool Commit() override { return m_update && SUCCEEDED(m_root->Commit(STGC_DEFAULT)); }

 private:
  // The storages down to the first `count` names of `path`, made on the way with `create`; the
  // folder is the last. The whole chain stays open: releasing a storage reverts what was opened
  // below it.
  class Chain {
   public:
    std::vector<Com<IStorage>> links;
    IStorage* operator->() const { return links.back().Get(); }
    explicit operator bool() const { return !links.empty(); }
  };
  Chain OpenFolder(const PacketPath& path, size_t count, bool write, bool create) {
    Chain chain;
    m_root->AddRef();
    chain.links.emplace_back(m_root.Get());
    for (size_t i = 0; i < count; ++i) {
      const wchar_t* name = path[i].c_str();
      Com<IStorage> next;
      HRESULT hr = chain->OpenStorage(name, nullptr, write ? kChildWrite : kChildRead, nullptr, 0, next.Out());
      if (FAILED(hr) && create && hr == STG_E_FILENOTFOUND)
        hr = chain->CreateStorage(name, kChildWrite | STGM_FAILIFTHERE, 0, 0, next.Out());  // fails on a stream
      if (FAILED(hr)) return Chain();
      chain.links.push_back(std::move(next));
    }
    return chain;
  }

  Com<IStorage> m_root;
  bool m_update;
};

}  // namespace

std::unique_ptr<PacketStore> CreatePacketStore(const CString& path) {
  if (path.IsEmpty()) return nullptr;
  IStorage* root = nullptr;
  const DWORD mode = STGM_READWRITE | STGM_SHARE_EXCLUSIVE | STGM_TRANSACTED | STGM_FAILIFTHERE;
  if (FAILED(StgCreateStorageEx(path.GetString(), mode, STGFMT_DOCFILE, 0, nullptr, nullptr, IID_IStorage,
                                reinterpret_cast<void**>(&root))))
    return nullptr;
  return std::make_unique<StorageStore>(root, true);
}

std::unique_ptr<PacketStore> OpenPacketStore(const CString& path, bool forUpdate) {
  if (path.IsEmpty()) return nullptr;
  IStorage* root = nullptr;
  // readers share the file with each other; an updater keeps it to itself until it closes
  const DWORD mode =
      forUpdate ? STGM_READWRITE | STGM_SHARE_EXCLUSIVE | STGM_TRANSACTED : STGM_READ | STGM_SHARE_DENY_WRITE;
  if (FAILED(StgOpenStorageEx(path.GetString(), mode, STGFMT_DOCFILE, 0, nullptr, nullptr, IID_IStorage,
                              reinterpret_cast<void**>(&root))))
    return nullptr;
  return std::make_unique<StorageStore>(root, forUpdate);
}

}  // namespace mivo::common::detail
