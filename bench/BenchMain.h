#pragma once

// What every benchmark program's main does.

#include <benchmark/benchmark.h>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace veksgbench {

// Large tables would come from mmap and go back to the kernel when freed, so that every
// iteration paid the first-touch page faults of fresh memory (on a virtual machine several
// times the cost of the writes themselves) for the library and its baseline alike. Keeping
// freed memory in the heap measures the work instead of the kernel.
inline void keepFreedMemory() {
#if defined(__GLIBC__)
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, -1);
#endif
}

inline int runBenchmarks(int argc, char** argv) {
    keepFreedMemory();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

} // namespace veksgbench
