#pragma once
// Existence and size tests, folder walks, whole-file reading and writing.
// Walks never descend into a symbolic link or junction: a walk that deletes removes the
// link itself and leaves its target alone. Nothing here throws.
#include <list>
#include <string>

#include "toolkit/CString.h"
#include "toolkit/export.h"
#include "toolkit/platform.h"

namespace mivo::common {

MIVO_COMMON_API bool IsFileExist(const CString& path);  // a file, not a folder
MIVO_COMMON_API bool IsFolderExist(CString path);       // a folder (a trailing "\" is allowed)
MIVO_COMMON_API unsigned __int64 GetFileSize(const CString& path);  // 0 when missing
MIVO_COMMON_API unsigned __int64 GetDiskFree(CString path);
MIVO_COMMON_API bool IsEmptyFoler(const CString& folder);  // nothing but "." and ".."

// Collect "%s\%s" for the files of "%s\*.*" (a trailing "\" of the folder is dropped first),
// optionally only those with the extension `ext` (no dot, any case). The T form walks
// sub-folders too. Both append to `files` and return how many they added.
MIVO_COMMON_API int GetAllFilesInFolder(const CString& folder, std::list<CString>& files, const CString& ext = CString());
MIVO_COMMON_API int GetAllFilesInFolderT(const CString& folder, std::list<CString>& files, const CString& ext = CString());

// Deletes the files of the folder (read-only ones too); with `recurse` also empties and
// removes sub-folders.
// With `removeSelf` the folder itself goes too and the result says whether that worked;
// otherwise 1. 0 when the folder cannot be listed.
MIVO_COMMON_API int EmptyFolder(const CString& folder, int removeSelf, int recurse);
MIVO_COMMON_API bool SafeDeleteFile(const wchar_t* path);

// Appends the file's bytes to `data`; 0 for an empty path or a file that cannot be opened.
MIVO_COMMON_API int LoadFile(const CString& path, std::string& data);
// Replaces the file with `data` in one step (written beside it, then renamed over it),
// so a failure leaves the old content. 1 on success.
MIVO_COMMON_API int SaveFile(const CString& path, const std::string& data);

}  // namespace mivo::common
