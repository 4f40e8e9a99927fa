// The launcher's named events, created and held through this process's own table of handles.
#include <windows.h>

#include <map>

#include "Execute/NamedEvent.h"
#include "base/synchronization/lock.h"

const wchar_t* const kStartRunningEvent = L"MIVO6 Start Running Event";
const wchar_t* const kUpdateExecutedEvent = L"MIVO6 Do Update Executed Event";

namespace {

struct NamedEventTable {
  nbase::Lock lock;
  volatile BYTE busy = 0;  // informational: 1 while the section is held
  std::map<CString, HANDLE> events;
};

NamedEventTable& Table() {
  static NamedEventTable table;
  return table;
}

// The busy byte is cleared before the lock is given up (members go after the destructor's body).
class Guard {
 public:
  Guard() : m_hold(Table().lock) { Table().busy = 1; }
  ~Guard() { Table().busy = 0; }

 private:
  nbase::AutoLock m_hold;
};

}  // namespace

bool CreateNamedEventOnce(const CString& name) {
  HANDLE h = CreateEventW(nullptr, TRUE, FALSE, name);
  if (GetLastError() == ERROR_ALREADY_EXISTS) {
    if (h) CloseHandle(h);
    return false;
  }
  if (!h) return false;
  Guard guard;
  Table().events[name] = h;
  return true;
}

void ReleaseNamedEvent(const CString& name) {
  Guard guard;
  auto it = Table().events.find(name);
  if (it == Table().events.end()) return;
  CloseHandle(it->second);
  Table().events.erase(it);
}
