// POSIX half of OpenFolder: an O_DIRECTORY descriptor, readdir's d_type, and the *at calls.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "toolkit/FileSys.h"
#include "toolkit/OpenFolder.h"

namespace toolkit {
namespace {

DWORD AttributesOf(int dirFd, const char* name, unsigned char type) {
  if (type == DT_UNKNOWN) {  // some file systems do not tell: one look-up
    struct stat st;
    if (::fstatat(dirFd, name, &st, AT_SYMLINK_NOFOLLOW) != 0) return FILE_ATTRIBUTE_ARCHIVE;
    type = S_ISLNK(st.st_mode) ? DT_LNK : S_ISDIR(st.st_mode) ? DT_DIR : DT_REG;
  }
  DWORD a = 0;
  if (type == DT_LNK) {
    a = FILE_ATTRIBUTE_REPARSE_POINT;
    struct stat target;  // links are rare: whether one points at a folder costs a look-up
    if (::fstatat(dirFd, name, &target, 0) == 0 && S_ISDIR(target.st_mode)) a |= FILE_ATTRIBUTE_DIRECTORY;
  } else if (type == DT_DIR) {
    a = FILE_ATTRIBUTE_DIRECTORY;
  } else {
    a = FILE_ATTRIBUTE_ARCHIVE;
  }
  if (name[0] == '.') a |= FILE_ATTRIBUTE_HIDDEN;  // a dot-name is what a hidden file looks like here
  return a;
}

}  // namespace

OpenFolder::OpenFolder(const wchar_t* path) {
  if (!path || !*path) return;
  std::string native = sys::ToNativePath(path);
  m_fd = ::open(native.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  List();
}

OpenFolder::OpenFolder(const OpenFolder& parent, size_t entry) {
  if (!parent.m_open || entry >= parent.m_entries.size()) return;
  m_fd = ::openat(parent.m_fd, parent.m_entries[entry].name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  List();
}

void OpenFolder::List() {
  if (m_fd < 0) return;
  DIR* dir = ::fdopendir(m_fd);
  if (!dir) {
    ::close(m_fd);
    m_fd = -1;
    return;
  }
  m_dir = dir;
  m_open = true;
  while (dirent* d = ::readdir(dir)) {
    const char* n = d->d_name;
    if (n[0] == '.' && (n[1] == 0 || (n[1] == '.' && n[2] == 0))) continue;
    m_entries.push_back({n, AttributesOf(m_fd, n, d->d_type)});
  }
}

OpenFolder::~OpenFolder() {
  if (m_dir) ::closedir(static_cast<DIR*>(m_dir));  // closes m_fd too
}

bool OpenFolder::DeleteEntry(size_t entry) {
  // unlinkat refuses a folder, as DeleteFile does
  return m_open && ::unlinkat(m_fd, m_entries[entry].name.c_str(), 0) == 0;
}

bool OpenFolder::RemoveFolderEntry(size_t entry) {
  if (!m_open) return false;
  const Entry& e = m_entries[entry];
  bool link = (e.attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  return ::unlinkat(m_fd, e.name.c_str(), link ? 0 : AT_REMOVEDIR) == 0;
}

bool OpenFolder::ClearReadOnly(size_t entry) {
  if (!m_open) return false;
  struct stat st;
  const char* name = m_entries[entry].name.c_str();
  if (::fstatat(m_fd, name, &st, AT_SYMLINK_NOFOLLOW) != 0 || S_ISLNK(st.st_mode)) return false;
  return ::fchmodat(m_fd, name, (st.st_mode & 07777) | S_IWUSR, 0) == 0;
}

}  // namespace toolkit
