#pragma once

#include <cstdio>
#include <cstdlib>

namespace vantle::fuzz {

// Stops the run when a property that must hold for every input does not: libFuzzer takes the
// abort for a crash and keeps the input that caused it.
inline void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "fuzz check failed: %s\n", what);
        std::abort();
    }
}

}  // namespace vantle::fuzz
