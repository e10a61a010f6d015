#pragma once

// veksg_io is built with hidden visibility; VEKSG_IO_API marks what a host may use. Only the
// library's own build defines VEKSG_IO_BUILDING_LIBRARY.
#if defined(_WIN32)
#if defined(VEKSG_IO_BUILDING_LIBRARY)
#define VEKSG_IO_API __declspec(dllexport)
#else
#define VEKSG_IO_API __declspec(dllimport)
#endif
#else
#define VEKSG_IO_API __attribute__((visibility("default")))
#endif
