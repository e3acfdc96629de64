// The one comparison of doubles that decides whether a value is new.
#pragma once

namespace Lathe::Core {

// False when one is NaN: it never counts as a change.
constexpr bool Differs(double a, double b) {
    return a < b || a > b;
}

} // namespace Lathe::Core
