#pragma once

#include <cstdio>
#include <cstdlib>

// A mismatch between the library and the model is a finding: report it and stop, so the
// fuzzer saves the input that led there.
#define FUZZ_CHECK(condition)                                                                      \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "mismatch: %s (%s:%d)\n", #condition, __FILE__, __LINE__);        \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)
