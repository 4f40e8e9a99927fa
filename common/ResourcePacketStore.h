#pragma once
// The platform half beneath CResourcePacket: one open compound file. The portable part has
// checked every name and path before a call reaches it, and walks the folders itself.
// Not exported.
#include <memory>
#include <string>
#include <vector>

#include "toolkit/CString.h"

namespace mivo::common::detail {

using PacketPath = std::vector<std::wstring>;  // the names of an entry path, outermost first

struct PacketChild {
  std::wstring name;
  bool folder = false;
  unsigned long long size = 0;
};

class PacketStore {
 public:
  virtual ~PacketStore() = default;
  // At most `limit` children of a folder ({} is the root) in `out`; false when the folder is
  // missing or cannot be read.
  virtual bool Children(const PacketPath& folder, std::vector<PacketChild>& out, size_t limit) = 0;
  virtual bool Read(const PacketPath& entry, std::string& data, unsigned long long maxBytes) = 0;
  virtual bool Write(const PacketPath& entry, const std::string& data) = 0;
  virtual bool Remove(const PacketPath& entry) = 0;
  virtual bool Commit() = 0;
};

// A new file (false when it exists) open for update, or an existing one; null on failure.
std::unique_ptr<PacketStore> CreatePacketStore(const CString& path);
std::unique_ptr<PacketStore> OpenPacketStore(const CString& path, bool forUpdate);

}  // namespace mivo::common::detail
