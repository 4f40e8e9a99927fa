#pragma once
// The Win32 types that appear in portable signatures. On Windows they are the real ones;
// elsewhere they are stand-ins of the same size (LONG and DWORD are 32 bits, as on Windows), so
// portable code compiles unchanged and means the same. The one exception is wide text: WCHAR is
// the platform's wchar_t, 32 bits here (UTF-32). 64-bit integers are written LONGLONG and
// ULONGLONG, never the compiler-specific __int64.
#if defined(_WIN32)
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <cstdint>
#include <cwchar>

typedef int BOOL;
typedef unsigned char BYTE;
typedef unsigned short WORD;
typedef uint32_t DWORD;
typedef unsigned int UINT;
typedef int32_t LONG;
typedef uint32_t ULONG;
typedef long long LONGLONG;  // the types Windows uses, so that overloads resolve alike
typedef unsigned long long ULONGLONG;
typedef unsigned long long DWORD64;
typedef wchar_t WCHAR;
typedef wchar_t TCHAR;
typedef const wchar_t* LPCTSTR;
typedef wchar_t* LPTSTR;
typedef const wchar_t* LPCWSTR;
typedef wchar_t* LPWSTR;
typedef const char* LPCSTR;
typedef char* LPSTR;
typedef void* LPVOID;
typedef void* HANDLE;
typedef uintptr_t WPARAM;
typedef intptr_t LPARAM;
typedef intptr_t LRESULT;
typedef intptr_t INT_PTR;
typedef uintptr_t UINT_PTR;

#define FILE_ATTRIBUTE_READONLY 0x00000001
#define FILE_ATTRIBUTE_HIDDEN 0x00000002
#define FILE_ATTRIBUTE_SYSTEM 0x00000004
#define FILE_ATTRIBUTE_DIRECTORY 0x00000010
#define FILE_ATTRIBUTE_ARCHIVE 0x00000020
#define FILE_ATTRIBUTE_NORMAL 0x00000080
#define FILE_ATTRIBUTE_REPARSE_POINT 0x00000400

struct HWND__;
typedef HWND__* HWND;
struct HINSTANCE__;
typedef HINSTANCE__* HINSTANCE;
typedef HINSTANCE HMODULE;
struct tagMSG {
  HWND hwnd;
  UINT message;
  WPARAM wParam;
  LPARAM lParam;
  DWORD time;
};
typedef tagMSG MSG;

#ifndef TRUE
#define TRUE 1
#define FALSE 0
#endif
#ifndef MAX_PATH
#define MAX_PATH 260
#endif
#ifndef _T
#define _T(x) L##x
#endif
#endif

static_assert(sizeof(LONG) == 4 && sizeof(DWORD) == 4 && sizeof(LONGLONG) == 8, "Win32 sizes");

// The framework's opaque iterator of its lists and maps.
struct __POSITION {};
typedef __POSITION* POSITION;
