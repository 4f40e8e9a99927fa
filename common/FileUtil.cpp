#include "common/FileUtil.h"

#include <atomic>

#include "toolkit/File.h"
#include "toolkit/FileFind.h"
#include "toolkit/FileSystem.h"
#include "toolkit/OpenFolder.h"

namespace mivo::common {
namespace {

CString WithoutTrailingSlash(CString folder) {
  while (folder.GetLength() > 1 && folder[folder.GetLength() - 1] == L'\\')
    folder = folder.Left(folder.GetLength() - 1);
  return folder;
}

bool HasExt(const CString& name, const CString& ext) {
  if (ext.IsEmpty()) return true;
  int dot = name.ReverseFind(L'.');
  return dot >= 0 && name.Mid(dot + 1).CompareNoCase(ext) == 0;
}

// Calls visit(finder, "%s\\%s") for each entry of "%s\\*.*" but "." and ".."; stops when
// visit returns false.
template <typename Visit>
void ForEachEntry(const CString& folder, Visit&& visit) {
  CString base = WithoutTrailingSlash(folder);
  CString pattern;
  pattern.Format(L"%s\\*.*", base.GetString());
  CFileFind finder;
  BOOL more = finder.FindFile(pattern);
  while (more) {
    more = finder.FindNextFile();
    if (finder.IsDots()) continue;
    CString full;
    full.Format(L"%s\\%s", base.GetString(), finder.GetFileName().GetString());
    if (!visit(finder, full)) break;
  }
}

int CollectFiles(const CString& folder, std::list<CString>& files, const CString& ext, bool recurse, int depth) {
  int added = 0;
  ForEachEntry(folder, [&](const CFileFind& entry, const CString& full) {
    if (entry.IsDirectory()) {
      if (recurse && !entry.IsReparsePoint() && depth < kMaxFolderDepth)
        added += CollectFiles(full, files, ext, true, depth + 1);
    } else if (HasExt(entry.GetFileName(), ext)) {
      files.push_back(full);
      ++added;
    }
    return true;
  });
  return added;
}

}  // namespace

bool IsFileExist(const CString& path) {
  DWORD a = toolkit::GetAttributes(path);
  return a != toolkit::kInvalidAttributes && !(a & FILE_ATTRIBUTE_DIRECTORY);
}

bool IsFolderExist(CString path) {
  path = WithoutTrailingSlash(path);
  DWORD a = toolkit::GetAttributes(path);
  return a != toolkit::kInvalidAttributes && (a & FILE_ATTRIBUTE_DIRECTORY);
}

ULONGLONG GetFileSize(const CString& path) {
  ULONGLONG length = 0;
  return toolkit::GetFileLength(path, length) ? length : 0;
}

ULONGLONG GetDiskFree(CString path) {
  ULONGLONG bytes = 0;
  return toolkit::GetDiskFreeBytes(path, bytes) ? bytes : 0;
}

bool IsEmptyFoler(const CString& folder) {
  bool empty = true;
  ForEachEntry(folder, [&](const CFileFind&, const CString&) { return empty = false; });
  return empty;
}

int GetAllFilesInFolder(const CString& folder, std::list<CString>& files, const CString& ext) {
  return CollectFiles(folder, files, ext, false, 0);
}

int GetAllFilesInFolderT(const CString& folder, std::list<CString>& files, const CString& ext) {
  return CollectFiles(folder, files, ext, true, 0);
}

namespace {

// Empties an open folder: files go (read-only ones too), links go as links (their targets
// stay untouched), and with `recurse` sub-folders are emptied and removed, down to
// kMaxFolderDepth. Everything is named inside the open folder, never by a path that a link
// could redirect.
void EmptyOpenFolder(toolkit::OpenFolder& folder, int recurse, int depth) {
  for (size_t i = 0; i < folder.Count(); ++i) {
    DWORD a = folder.Attributes(i);
    bool isFolder = (a & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (a & FILE_ATTRIBUTE_REPARSE_POINT) {
      if (recurse || !isFolder) isFolder ? folder.RemoveFolderEntry(i) : folder.DeleteEntry(i);
    } else if (isFolder) {
      if (recurse && depth < kMaxFolderDepth) {
        {
          toolkit::OpenFolder sub(folder, i);
          if (sub.IsOpen()) EmptyOpenFolder(sub, recurse, depth + 1);
        }
        folder.RemoveFolderEntry(i);
      }
    } else {
      if (a & FILE_ATTRIBUTE_READONLY) folder.ClearReadOnly(i);
      folder.DeleteEntry(i);
    }
  }
}

// The links inside an open folder are removed; returns how many could not be (a folder
// too deep to look into counts as one).
int RemoveLinksIn(toolkit::OpenFolder& folder, int depth) {
  int left = 0;
  for (size_t i = 0; i < folder.Count(); ++i) {
    DWORD a = folder.Attributes(i);
    bool isFolder = (a & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (a & FILE_ATTRIBUTE_REPARSE_POINT) {
      if (!(isFolder ? folder.RemoveFolderEntry(i) : folder.DeleteEntry(i))) ++left;
    } else if (isFolder) {
      // a folder too deep to look into may hold anything: it counts as a link left
      if (depth >= kMaxFolderDepth) {
        ++left;
        continue;
      }
      toolkit::OpenFolder sub(folder, i);
      if (sub.IsOpen()) left += RemoveLinksIn(sub, depth + 1);
    }
  }
  return left;
}

}  // namespace

int EmptyFolder(const CString& folder, int removeSelf, int recurse) {
  CString base = WithoutTrailingSlash(folder);
  if (!IsFolderExist(base)) return 0;
  {
    toolkit::OpenFolder open(base);
    if (open.IsOpen()) EmptyOpenFolder(open, recurse, 0);
  }
  if (removeSelf) return toolkit::RemoveFolder(base) ? 1 : 0;
  return 1;
}

int RemoveFolderLinks(const CString& folder) {
  CString base = WithoutTrailingSlash(folder);
  DWORD a = toolkit::GetAttributes(base);
  if (a == toolkit::kInvalidAttributes) return 0;
  if (a & FILE_ATTRIBUTE_REPARSE_POINT) {  // the folder is itself a link: it goes, as a link
    bool removed = (a & FILE_ATTRIBUTE_DIRECTORY) ? toolkit::RemoveFolder(base) : toolkit::DeleteFileAt(base);
    return removed ? 0 : 1;
  }
  if (!(a & FILE_ATTRIBUTE_DIRECTORY)) return 0;
  toolkit::OpenFolder open(base);
  return open.IsOpen() ? RemoveLinksIn(open, 0) : 0;
}

bool SafeDeleteFile(const wchar_t* path) {
  if (path && toolkit::DeleteFileAt(path)) return true;
  CString line;
  line.Format(L"---------------cant delete file:%s\n", path ? path : L"");
  toolkit::OutputDebugText(line);
  return false;
}

int LoadFile(const CString& path, std::string& data) { return LoadFileWithin(path, data, ~0ull); }

int LoadFileWithin(const CString& path, std::string& data, ULONGLONG maxBytes) {
  if (path.IsEmpty()) return 0;
  const size_t before = data.size();
  try {
    CFile file;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone | CFile::typeBinary)) return 0;
    // counted as it is read, so a file that grows meanwhile is caught too
    char chunk[4096];
    while (UINT n = file.Read(chunk, sizeof chunk)) {
      if (n > maxBytes - (data.size() - before)) {
        data.resize(before);
        return 0;
      }
      data.append(chunk, n);
    }
    file.Close();
    return 1;
  } catch (CException* e) {
    e->Delete();
  } catch (const std::exception&) {  // out of memory
  }
  data.resize(before);
  return 0;
}

int SaveFile(const CString& path, const std::string& data) {
  if (path.IsEmpty()) return 0;
  static std::atomic<unsigned> counter{0};
  CString temp;
  // the process id keeps two processes rewriting the same file off each other's temporary file
  temp.Format(L"%s.%lu.%u.mivo-new", path.GetString(), toolkit::CurrentProcessId(), counter++);
  try {
    CFile file;
    if (!file.Open(temp, CFile::modeCreate | CFile::modeWrite | CFile::shareExclusive | CFile::typeBinary)) return 0;
    size_t done = 0;
    while (done < data.size()) {
      size_t n = data.size() - done;
      if (n > 0x40000000) n = 0x40000000;
      file.Write(data.data() + done, static_cast<UINT>(n));
      done += n;
    }
    file.Close();
  } catch (CException* e) {
    e->Delete();
    toolkit::DeleteFileAt(temp);
    return 0;
  }
  if (!toolkit::ReplaceFileWith(temp, path)) {
    toolkit::DeleteFileAt(temp);
    return 0;
  }
  return 1;
}

}  // namespace mivo::common
