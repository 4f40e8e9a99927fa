#pragma once
// The one header a module includes: every family the launcher exports.
#include "toolkit/CString.h"
#include "toolkit/Collections.h"
#include "toolkit/Exception.h"
#include "toolkit/File.h"
#include "toolkit/FileFind.h"

#include "common/CodepageMap.h"
#include "common/Conversion.h"
#include "common/StringUtil.h"
