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

// How deep the walks below go. Windows paths end long before this; deeper folders are left
// alone (a walk that deletes leaves them in place) rather than recursed into.
constexpr int kMaxFolderDepth = 128;

MIVO_COMMON_API bool IsFileExist(const CString& path);       // a file, not a folder
MIVO_COMMON_API bool IsFolderExist(CString path);            // a folder (a trailing "\" is allowed)
MIVO_COMMON_API ULONGLONG GetFileSize(const CString& path);  // 0 when missing
MIVO_COMMON_API ULONGLONG GetDiskFree(CString path);
MIVO_COMMON_API bool IsEmptyFoler(const CString& folder);  // nothing but "." and ".."

// Collect "%s\%s" for the files of "%s\*.*" (a trailing "\" of the folder is dropped first),
// optionally only those with the extension `ext` (no dot, any case). The T form walks
// sub-folders too. Both append to `files` and return how many they added.
MIVO_COMMON_API int GetAllFilesInFolder(const CString& folder, std::list<CString>& files,
                                        const CString& ext = CString());
MIVO_COMMON_API int GetAllFilesInFolderT(const CString& folder, std::list<CString>& files,
                                         const CString& ext = CString());

// Deletes the files of the folder (read-only ones too); with `recurse` also empties and
// removes sub-folders.
// With `removeSelf` the folder itself goes too and the result says whether that worked;
// otherwise 1. 0 when the folder cannot be listed.
MIVO_COMMON_API int EmptyFolder(const CString& folder, int removeSelf, int recurse);
// Removes the links (symbolic links, junctions) inside the folder, and the folder itself when
// it is one, without touching what they point at. Returns how many could not be removed (a
// folder beyond kMaxFolderDepth counts as one): only at 0 may a tool that follows links, such
// as "rd /s", be let loose on the folder. 0 for a missing folder.
MIVO_COMMON_API int RemoveFolderLinks(const CString& folder);
MIVO_COMMON_API bool SafeDeleteFile(const wchar_t* path);

// Appends the file's bytes to `data`; 0 for an empty path or a file that cannot be opened.
MIVO_COMMON_API int LoadFile(const CString& path, std::string& data);
// The same for a file of at most `maxBytes` bytes: 0, with `data` untouched, for a larger one.
MIVO_COMMON_API int LoadFileWithin(const CString& path, std::string& data, ULONGLONG maxBytes);
// Replaces the file with `data` in one step (written beside it, then renamed over it),
// so a failure leaves the old content. 1 on success.
MIVO_COMMON_API int SaveFile(const CString& path, const std::string& data);

}  // namespace mivo::common
