#pragma once

// The library is built with hidden visibility; VEKSG_API marks what a host may use.
// The library's own build defines VEKSG_BUILDING_LIBRARY; hosts never do.
#if defined(_WIN32)
#if defined(VEKSG_BUILDING_LIBRARY)
#define VEKSG_API __declspec(dllexport)
#else
#define VEKSG_API __declspec(dllimport)
#endif
#else
#define VEKSG_API __attribute__((visibility("default")))
#endif
