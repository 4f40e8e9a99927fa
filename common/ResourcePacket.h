#pragma once
// A packet of named resources (skins, images, texts) in one structured-storage (OLE compound)
// file: streams are the entries, storages the folders. Entry paths use "\" between names, as
// "skins\default\a.png". The same files are read and written on Windows and natively.
//
// Names: 1 to 31 UTF-16 characters, none of '\', '/', ':', '!' or a control character, and not
// "." or "..". ASCII letters compare without case, as in the compound file itself.
// Entries whose names a path cannot express (such as "\005SummaryInformation", which other
// writers add) are left out of List and cannot be read.
//
// Updates are transacted: nothing written, replaced or removed reaches the file before Commit,
// and a process that ends (or is killed) before Commit leaves the packet as it was.
//  - Windows: the system's compound files opened with STGM_TRANSACTED; changes wait in the
//    system's scratch space and Commit is IStorage::Commit. An update holds the file
//    exclusively; readers share it with each other.
//  - Natively (libgsf, which has no transactions): the directory is read once at Open, changes
//    are kept in memory, and Commit writes a whole new packet beside the file and renames it
//    over the old one (SaveFile). Nothing locks the file: of two updaters, the last Commit wins.
//
// Bounds, enforced at Open (a packet past them fails to open, as a damaged one does) and at
// Commit (which refuses to write such a packet): kMaxPacketEntries entries (folders count),
// kMaxPacketDepth names in a path. Read refuses an entry larger than its `maxBytes`. A damaged
// file is a failure, never a crash; what counts as damage beyond that is the reader's: libgsf's
// complaints (a directory loop, a block past the end) fail the call natively, while Wine's
// reader shows a folder that contains itself as empty.
//
// Every call returns true on success and false otherwise; nothing throws. One object belongs to
// one thread at a time; separate objects may be used on separate threads.
#include <string>
#include <vector>

#include "toolkit/CString.h"
#include "toolkit/export.h"

namespace mivo::common {

constexpr int kMaxPacketNameChars = 31;                 // UTF-16 characters of one name
constexpr int kMaxPacketDepth = 32;                     // names in one entry path
constexpr int kMaxPacketEntries = 16384;                // entries and folders in one packet
constexpr ULONGLONG kMaxPacketReadBytes = 64ull << 20;  // Read's default size bound

namespace detail {
class PacketStore;
}

struct ResourcePacketEntry {
  CString path;         // "skins\default\a.png"
  bool folder = false;  // a storage; its contents follow it in the list
  ULONGLONG size = 0;   // bytes of a stream; 0 for a folder
};

// Whether `name` may be one name of an entry path (the rules above).
MIVO_COMMON_API bool IsValidPacketName(const CString& name);

class MIVO_COMMON_API CResourcePacket {
 public:
  CResourcePacket();
  ~CResourcePacket();  // closes; what was not committed is dropped
  CResourcePacket(const CResourcePacket&) = delete;
  CResourcePacket& operator=(const CResourcePacket&) = delete;

  // Makes a new, empty packet and opens it for update. Fails when the file exists.
  bool Create(const CString& path);
  // Opens an existing packet, read-only or for update. Fails on a file that is not a packet,
  // is damaged or is past the bounds.
  bool Open(const CString& path, bool forUpdate);
  // Drops uncommitted changes and closes. Safe to call when nothing is open.
  void Close();
  bool IsOpen() const { return m_store != nullptr; }
  bool IsUpdating() const { return m_store != nullptr && m_update; }

  // Every folder and entry, folders before their contents, sorted by path. Shows the
  // uncommitted changes of this object.
  bool List(std::vector<ResourcePacketEntry>& entries) const;
  // Replaces `data` with the entry's bytes. Fails for a folder, a missing entry, or an entry
  // larger than `maxBytes` (then `data` is untouched).
  bool Read(const CString& entry, std::string& data, ULONGLONG maxBytes = kMaxPacketReadBytes) const;

  // Update mode only. Write adds or replaces an entry, making the folders on its path; it fails
  // when a name on the path is taken by an entry of the other kind. Remove takes an entry or a
  // folder with all it holds. Commit makes every change so far part of the file.
  bool Write(const CString& entry, const std::string& data);
  bool Remove(const CString& entry);
  bool Commit();

 private:
  detail::PacketStore* m_store = nullptr;
  bool m_update = false;
};

}  // namespace mivo::common
