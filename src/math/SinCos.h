// Sine and cosine of one angle together.
#pragma once

#include "core/Realtime.h"

#include <cmath>

namespace Lathe::Math {

// Of an angle in radians the C library's results, to the bit; together they cost little more than
// one alone.
inline void SinCos(double angle, double& sine, double& cosine) LATHE_REALTIME {
#if defined(__GLIBC__) && defined(_GNU_SOURCE)
    ::sincos(angle, &sine, &cosine);
#else
    sine = std::sin(angle);
    cosine = std::cos(angle);
#endif
}

struct SSinCos {
    double m_Sin;
    double m_Cos;
};
inline SSinCos SinCos(double angle) LATHE_REALTIME {
    SSinCos result{};
    SinCos(angle, result.m_Sin, result.m_Cos);
    return result;
}

} // namespace Lathe::Math
