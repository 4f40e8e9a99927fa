// The store's lock on Windows: a named mutex of the session, named after the store's path.
#include <windows.h>

#include "common/Conversion.h"
#include "common/Md5.h"
#include "common/StatStore.h"

namespace mivo::common::detail {

struct StatLock {
  HANDLE mutex;
};

StatLock* LockStatFile(const CString& path) {
  CString lower = path;
  lower.MakeLower();  // Windows paths ignore case, so must the name
  std::string utf8 = CString_to_utf8(lower);
  CString name = L"Local\\MivoStatStore.";
  name += MBCS2CString(MakeMD5Value(utf8.data(), static_cast<unsigned int>(utf8.size())), 65001);
  HANDLE mutex = CreateMutexW(nullptr, FALSE, name.GetString());
  if (!mutex) return nullptr;
  // an abandoned mutex is ours too: its owner died, and the store it saved is whole
  DWORD wait = WaitForSingleObject(mutex, CStatStore::kLockTimeoutMs);
  if (wait != WAIT_OBJECT_0 && wait != WAIT_ABANDONED) {
    CloseHandle(mutex);
    return nullptr;
  }
  return new StatLock{mutex};
}

void UnlockStatFile(StatLock* lock) {
  ReleaseMutex(lock->mutex);
  CloseHandle(lock->mutex);
  delete lock;
}

}  // namespace mivo::common::detail
