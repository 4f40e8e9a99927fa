#pragma once
// Path and file-name helpers over backslash paths.
#include "toolkit/CString.h"
#include "toolkit/Collections.h"
#include "toolkit/export.h"

namespace mivo::common {

// "/" to "\", then runs of two backslashes to one in a single left-to-right pass (three
// become two); a result that starts with exactly one backslash gets a second one in front,
// so "\\server\share" survives.
MIVO_COMMON_API CString ReparsePath(const CString& path);
MIVO_COMMON_API CString GetFileDirFromPath(const CString& path);   // up to and with the last "\"
MIVO_COMMON_API CString GetFileNameFromPath(const CString& path);  // after the last "\"
MIVO_COMMON_API CString GetFileExtFromPath(const CString& path);   // extension, without the dot
// On a bare name. withDot true: the name keeps its final dot ("a."), the extension gets
// its dot (".txt"); false: "a" and "txt". A name without a dot has no extension.
MIVO_COMMON_API CString GetFileNameFromString(const CString& name, bool withDot);
MIVO_COMMON_API CString GetFileExtFromString(const CString& name, bool withDot);
// A file dialog's multi-selection buffer of `length` characters: the folder, then the
// NUL-separated names, ended by an empty name. Each name becomes "%s\%s" with the folder;
// a buffer with one entry is a single full path. Returns the number of names.
MIVO_COMMON_API int ParseFileName(wchar_t* buffer, unsigned int length, CArray<CString, CString&>& names);

}  // namespace mivo::common
