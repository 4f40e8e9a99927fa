// There is no cacls here: the commands are not started, so grants never happen and probes
// find no result file unless a test provides one.
#include "Execute/PathTool.h"

namespace launcher_platform {

void StartHidden(const CString&, const CString&, const CString&) {}

}  // namespace launcher_platform
