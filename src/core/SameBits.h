// Whether two doubles, or two objects of nothing but doubles, are the same to the bit: a NaN is the
// same as itself, and the zeros differ. What a formula makes of them then is the same too.
#pragma once

#include "core/Realtime.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace Lathe::Core {

template <class T>
bool SameBits(const T& a, const T& b) LATHE_REALTIME {
    static_assert(std::is_trivially_copyable_v<T> && sizeof(T) % sizeof(std::uint64_t) == 0);
    const char* const first = reinterpret_cast<const char*>(&a);
    const char* const second = reinterpret_cast<const char*>(&b);
    // One after the other: most differ in the first, and what has just been written a double at a
    // time isn't read at once in larger pieces.
    for (std::size_t at = 0; at < sizeof(T); at += sizeof(std::uint64_t)) {
        std::uint64_t one = 0;
        std::uint64_t other = 0;
        std::memcpy(&one, first + at, sizeof one);
        std::memcpy(&other, second + at, sizeof other);
        if (one != other)
            return false;
    }
    return true;
}

} // namespace Lathe::Core
