// The seed of a random test: --gtest_random_seed, or else a fixed one. A test shows it on failure.
#pragma once

#include <gtest/gtest.h>

inline unsigned GetSeed() {
    const int given = GTEST_FLAG_GET(random_seed);
    return given > 0 ? static_cast<unsigned>(given) : 4711U;
}
