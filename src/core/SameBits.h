// Whether two doubles, or two objects of nothing but doubles, are the same to the bit: a NaN is the
// same as itself, and the zeros differ. What a formula makes of them then is the same too.
#pragma once

#include "core/Realtime.h"

#include <array>
#include <bit>
#include <cstdint>

namespace Lathe::Core {

template <class T>
bool SameBits(const T& a, const T& b) LATHE_REALTIME {
    static_assert(sizeof(T) % sizeof(std::uint64_t) == 0);
    using Bits = std::array<std::uint64_t, sizeof(T) / sizeof(std::uint64_t)>;
    return std::bit_cast<Bits>(a) == std::bit_cast<Bits>(b);
}

} // namespace Lathe::Core
