// Sine and cosine of one angle together.
#pragma once

#include "core/Realtime.h"

#include <cmath>

namespace Lathe::Math {

struct SSinCos {
    double m_Sin;
    double m_Cos;
};

// In radians. The C library's results, to the bit; together they cost little more than one alone.
inline SSinCos SinCos(double angle) LATHE_REALTIME {
    SSinCos result;
#if defined(__GLIBC__) && defined(_GNU_SOURCE)
    ::sincos(angle, &result.m_Sin, &result.m_Cos);
#else
    result.m_Sin = std::sin(angle);
    result.m_Cos = std::cos(angle);
#endif
    return result;
}

} // namespace Lathe::Math
