// Root is the administrator, and a process running as root is elevated.
#include <unistd.h>

#include "common/AdminCheck.h"

namespace mivo::common {

bool IsUserAdministrator() { return geteuid() == 0; }
bool IsProcessElevated() { return geteuid() == 0; }

}  // namespace mivo::common
