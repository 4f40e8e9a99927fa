// Packets over libgsf: the directory is read into memory at open, changes are kept there, and
// Commit writes a complete new compound file beside the old one and renames it over it.
#include <gsf/gsf.h>

#include <cstring>
#include <mutex>

#include "common/FileUtil.h"
#include "common/ResourcePacket.h"
#include "common/ResourcePacketStore.h"
#include "toolkit/FileSys.h"
#include "toolkit/FileSystem.h"
#include "toolkit/Utf8.h"

namespace mivo::common::detail {

namespace {

// libgsf reports much of what it finds wrong (a directory loop, a block past the end) only as
// a warning or a failed check on the log, and then goes on with part of the file. Such a
// complaint, counted per thread, makes the call that caused it fail.
thread_local unsigned t_complaints = 0;

void OnComplaint(const gchar*, GLogLevelFlags, const gchar*, gpointer) { ++t_complaints; }

class Complaints {
 public:
  Complaints() : m_before(t_complaints) {}
  bool None() const { return t_complaints == m_before; }

 private:
  unsigned m_before;
};

// ASCII letters without case, as the compound file compares names
bool SameName(const std::wstring& a, const std::wstring& b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    wchar_t x = a[i], y = b[i];
    if (x >= L'a' && x <= L'z') x -= 32;
    if (y >= L'a' && y <= L'z') y -= 32;
    if (x != y) return false;
  }
  return true;
}

struct Node {
  std::wstring name;
  bool folder = false;
  unsigned long long size = 0;
  GsfInput* source = nullptr;  // the stream in the opened file, until the entry is rewritten
  std::string data;            // the new bytes once it is
  std::vector<std::unique_ptr<Node>> children;

  Node() = default;
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;
  ~Node() {
    if (source) g_object_unref(source);
  }
  Node* Child(const std::wstring& wanted) const {
    for (const auto& child : children)
      if (SameName(child->name, wanted)) return child.get();
    return nullptr;
  }
};

// Appends the source's bytes; false when libgsf cannot read them (a damaged file).
bool ReadSource(GsfInput* source, unsigned long long size, std::string& out) {
  if (gsf_input_seek(source, 0, G_SEEK_SET)) return false;
  guint8 buffer[65536];
  while (size > 0) {
    const size_t n = size > sizeof(buffer) ? sizeof(buffer) : static_cast<size_t>(size);
    if (!gsf_input_read(source, n, buffer)) return false;
    out.append(reinterpret_cast<const char*>(buffer), n);
    size -= n;
  }
  return true;
}

class GsfStore final : public PacketStore {
 public:
  explicit GsfStore(CString path) : m_path(std::move(path)) { m_root.folder = true; }

  // Reads the whole directory, iteratively and within the bounds of the portable part.
  bool Load(GsfInfile* file) {
    struct Pending {
      GsfInfile* dir;
      Node* node;
      int depth;
    };
    std::vector<Pending> stack{{GSF_INFILE(g_object_ref(file)), &m_root, 0}};
    int entries = 0;
    bool ok = true;
    while (!stack.empty()) {
      Pending top = stack.back();
      stack.pop_back();
      const int count = ok ? gsf_infile_num_children(top.dir) : 0;
      for (int i = 0; ok && i < count; ++i) {
        GsfInput* input = gsf_infile_child_by_index(top.dir, i);
        const char* name = input ? gsf_input_name(input) : nullptr;
        if (!name || ++entries > kMaxPacketEntries || top.depth >= kMaxPacketDepth) {
          if (input) g_object_unref(input);
          ok = false;
          break;
        }
        auto node = std::make_unique<Node>();
        toolkit::Utf8ToWide(name, strlen(name), node->name);
        node->folder = GSF_IS_INFILE(input) && gsf_infile_num_children(GSF_INFILE(input)) >= 0;
        if (node->folder) {
          stack.push_back({GSF_INFILE(input), node.get(), top.depth + 1});
        } else {
          const gsf_off_t size = gsf_input_size(input);
          if (size < 0) ok = false;
          node->size = static_cast<unsigned long long>(size);
          node->source = input;
        }
        top.node->children.push_back(std::move(node));
      }
      g_object_unref(top.dir);
    }
    return ok;
  }

  bool Children(const PacketPath& folder, std::vector<PacketChild>& out, size_t limit) override {
    const Node* node = Find(folder);
    if (!node || !node->folder) return false;
    for (const auto& child : node->children) {
      if (out.size() >= limit) break;
      out.push_back({child->name, child->folder, child->size});
    }
    return true;
  }

  bool Read(const PacketPath& entry, std::string& data, unsigned long long maxBytes) override {
    const Node* node = Find(entry);
    if (!node || node->folder || node->size > maxBytes) return false;
    if (!node->source) {
      data = node->data;
      return true;
    }
    const Complaints complaints;
    return ReadSource(node->source, node->size, data) && complaints.None();
  }

  bool Write(const PacketPath& entry, const std::string& data) override {
    Node* parent = &m_root;
    for (size_t i = 0; i + 1 < entry.size(); ++i) {
      Node* next = parent->Child(entry[i]);
      if (!next) {
        auto made = std::make_unique<Node>();
        made->name = entry[i];
        made->folder = true;
        next = made.get();
        parent->children.push_back(std::move(made));
      }
      if (!next->folder) return false;
      parent = next;
    }
    Node* node = parent->Child(entry.back());
    if (node && node->folder) return false;
    if (!node) {
      auto made = std::make_unique<Node>();
      made->name = entry.back();
      node = made.get();
      parent->children.push_back(std::move(made));
    }
    if (node->source) g_object_unref(node->source);
    node->source = nullptr;
    node->data = data;
    node->size = data.size();
    return true;
  }

  bool Remove(const PacketPath& entry) override {
    PacketPath folder(entry.begin(), entry.end() - 1);
    Node* parent = Find(folder);
    if (!parent || !parent->folder) return false;
    auto& list = parent->children;
    for (auto it = list.begin(); it != list.end(); ++it) {
      if (SameName((*it)->name, entry.back())) {
        list.erase(it);
        return true;
      }
    }
    return false;
  }

  bool Commit() override {
    const Complaints complaints;
    GsfOutput* memory = gsf_output_memory_new();
    GsfOutfile* out = gsf_outfile_msole_new(memory);
    bool ok = out && WriteFolder(out, m_root, 0);
    if (out) {
      ok = gsf_output_close(GSF_OUTPUT(out)) && ok;
      g_object_unref(out);
    }
    if (ok && complaints.None()) {
      const guint8* bytes = gsf_output_memory_get_bytes(GSF_OUTPUT_MEMORY(memory));
      ok = bytes && SaveFile(m_path, std::string(reinterpret_cast<const char*>(bytes),
                                                 static_cast<size_t>(gsf_output_size(memory))));
    } else {
      ok = false;
    }
    g_object_unref(memory);
    return ok;
  }

 private:
  Node* Find(const PacketPath& path) {
    Node* node = &m_root;
    for (const auto& name : path) {
      if (!node->folder || !(node = node->Child(name))) return nullptr;
    }
    return node;
  }

  // Recursion is bounded by kMaxPacketDepth: deeper trees are never loaded or written.
  static bool WriteFolder(GsfOutfile* dir, const Node& folder, int depth) {
    if (depth > kMaxPacketDepth) return false;
    for (const auto& child : folder.children) {
      std::string name;
      toolkit::WideToUtf8(child->name.data(), child->name.size(), name);
      GsfOutput* out = gsf_outfile_new_child(dir, name.c_str(), child->folder);
      if (!out) return false;
      bool ok;
      if (child->folder) {
        ok = WriteFolder(GSF_OUTFILE(out), *child, depth + 1);
      } else if (child->source) {
        std::string bytes;
        ok = ReadSource(child->source, child->size, bytes) &&
             gsf_output_write(out, bytes.size(), reinterpret_cast<const guint8*>(bytes.data()));
      } else {
        ok = gsf_output_write(out, child->data.size(), reinterpret_cast<const guint8*>(child->data.data()));
      }
      ok = gsf_output_close(out) && ok;
      g_object_unref(out);
      if (!ok) return false;
    }
    return true;
  }

  CString m_path;
  Node m_root;
};

void InitGsf() {
  static std::once_flag once;
  std::call_once(once, [] {
    gsf_init();
    const auto levels = static_cast<GLogLevelFlags>(G_LOG_LEVEL_CRITICAL | G_LOG_LEVEL_WARNING);
    for (const char* domain : {"libgsf", "libgsf:msole"}) g_log_set_handler(domain, levels, OnComplaint, nullptr);
  });
}

}  // namespace

std::unique_ptr<PacketStore> CreatePacketStore(const CString& path) {
  if (path.IsEmpty() || toolkit::GetAttributes(path) != toolkit::kInvalidAttributes) return nullptr;
  InitGsf();
  return std::make_unique<GsfStore>(path);
}

std::unique_ptr<PacketStore> OpenPacketStore(const CString& path, bool /*forUpdate*/) {
  if (path.IsEmpty()) return nullptr;
  InitGsf();
  const std::string native = toolkit::sys::ToNativePath(path);
  const Complaints complaints;
  GError* error = nullptr;
  GsfInput* input = gsf_input_stdio_new(native.c_str(), &error);
  if (error) g_error_free(error);
  if (!input) return nullptr;
  error = nullptr;
  GsfInfile* file = gsf_infile_msole_new(input, &error);
  if (error) g_error_free(error);
  g_object_unref(input);
  if (!file) return nullptr;
  auto store = std::make_unique<GsfStore>(path);
  const bool loaded = store->Load(file) && complaints.None();
  g_object_unref(file);
  if (!loaded) return nullptr;
  return store;
}

}  // namespace mivo::common::detail
