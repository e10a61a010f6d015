#pragma once

// The library is built with hidden visibility; VEKSG_API marks what a host may use.
// CMake defines data_EXPORTS while it builds the shared library itself.
#if defined(_WIN32)
#if defined(data_EXPORTS)
#define VEKSG_API __declspec(dllexport)
#else
#define VEKSG_API __declspec(dllimport)
#endif
#else
#define VEKSG_API __attribute__((visibility("default")))
#endif
