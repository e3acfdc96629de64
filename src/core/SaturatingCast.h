// The one way from a double to an int that is defined for every double.
#pragma once

#include <limits>

namespace Lathe::Core {

// Truncates towards zero; what lies beyond the range of int gives the nearest int, a NaN gives 0.
inline int TruncateToInt(double value) {
    using Limits = std::numeric_limits<int>;
    if (value >= static_cast<double>(Limits::max()))
        return Limits::max();
    if (value <= static_cast<double>(Limits::min()))
        return Limits::min();
    return value < 0.0 || value > 0.0 ? static_cast<int>(value) : 0;
}

} // namespace Lathe::Core
