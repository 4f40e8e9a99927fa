// The store's lock natively: flock on "<store file>.lock", beside the store.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "common/StatStore.h"
#include "toolkit/FileSys.h"

namespace mivo::common::detail {

struct StatLock {
  int fd;
};

StatLock* LockStatFile(const CString& path) {
  std::string native = toolkit::sys::ToNativePath((path + L".lock").GetString());
  int fd = open(native.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (fd < 0) return nullptr;
  int rc;
  while ((rc = flock(fd, LOCK_EX)) != 0 && errno == EINTR) {
  }
  if (rc != 0) {
    close(fd);
    return nullptr;
  }
  return new StatLock{fd};
}

void UnlockStatFile(StatLock* lock) {
  flock(lock->fd, LOCK_UN);
  close(lock->fd);
  delete lock;
}

}  // namespace mivo::common::detail
