// Adds 1 to a tag of the store "stats.dat" in a folder, a given number of times: one of the
// writer processes of the statistics store's two-process test under Wine.
//   stat_store_adder.exe <folder> <tag> <times>      exit 0 when every add succeeded
#include <cwchar>
#include <string>

#include "common/StatStore.h"

int wmain(int argc, wchar_t** argv) {
  if (argc != 4) return 2;
  std::wstring folder = std::wstring(argv[1]) + L"\\";
  mivo::common::CStatStore store(L"stats.dat", folder.c_str());
  int failed = 0;
  for (long i = 0, n = std::wcstol(argv[3], nullptr, 10); i < n; ++i) failed += store.Add(argv[2]) <= 0;
  return failed ? 1 : 0;
}
