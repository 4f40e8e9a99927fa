#pragma once
// One macro marks everything MivoStart.exe exports to the client's modules.
// MIVO_COMMON_BUILD is defined while the library itself is compiled.
#if defined(_WIN32)
#if defined(MIVO_COMMON_BUILD)
#define MIVO_COMMON_API __declspec(dllexport)
#else
#define MIVO_COMMON_API __declspec(dllimport)
#endif
#else
#define MIVO_COMMON_API __attribute__((visibility("default")))
#endif
