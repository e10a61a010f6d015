#pragma once

// VEKHOST_LSAN is defined when AddressSanitizer, and with it LeakSanitizer, watches the
// process; code that keeps a third party's allocations out of the leak report uses
// __lsan::ScopedDisabler under it.
#if defined(__SANITIZE_ADDRESS__)
#define VEKHOST_LSAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VEKHOST_LSAN 1
#endif
#endif
#ifdef VEKHOST_LSAN
#include <sanitizer/lsan_interface.h>
#endif
