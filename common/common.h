#pragma once
// The one header a module includes: every family the launcher exports.
#include "toolkit/CString.h"
#include "toolkit/Collections.h"
#include "toolkit/Exception.h"
#include "toolkit/File.h"
#include "toolkit/FileFind.h"

#include "common/AppPath.h"
#include "common/CodepageMap.h"
#include "common/Conversion.h"
#include "common/Dialogs.h"
#include "common/FileUtil.h"
#include "common/FormatUtil.h"
#include "common/Md5.h"
#include "common/ModuleManager.h"
#include "common/MutiLanSupport.h"
#include "common/PathUtil.h"
#include "common/StdioFileEx.h"
#include "common/StringUtil.h"
#include "common/Trace.h"
#include "common/XmlDocument.h"

#include "base/log/Log_Impl.h"
