#pragma once
// Named events the launcher holds, by name, in one table guarded by a critical section
// (Windows only).
#include "toolkit/CString.h"

// False when an event of that name exists already (another launcher holds it) or cannot be made.
bool CreateNamedEventOnce(const CString& name);
void ReleaseNamedEvent(const CString& name);

extern const wchar_t* const kStartRunningEvent;    // "MIVO6 Start Running Event"
extern const wchar_t* const kUpdateExecutedEvent;  // "MIVO6 Do Update Executed Event"
