// The last result of an expensive function of one number, given again where the number is the same.
#pragma once

#include "core/SameBits.h"

namespace Lathe::Math {

// Not shared between threads. In a block in which few parameters of a filter move most arguments
// are those of the block before: a comparison then stands for a call of pow or of sine and cosine,
// which take 10 to 20 ns each.
template <class TResult, TResult (*Function)(double)>
class TKeptResult {
public:
    const TResult& Get(double x) LATHE_REALTIME { return Get(x, *this); }
    // Another that is likely to hold the result is looked into before it is computed; it may be
    // this one.
    const TResult& Get(double x, const TKeptResult& other) LATHE_REALTIME {
        if (Core::SameBits(x, m_Argument))
            return m_Result;
        if (Core::SameBits(x, other.m_Argument))
            *this = other;
        else
            Compute(x);
        return m_Result;
    }

private:
    // Apart, so that the callers stay small.
    [[gnu::noinline]] void Compute(double x) LATHE_REALTIME {
        m_Argument = x;
        m_Result = Function(x);
    }

    double m_Argument = 0.0;
    TResult m_Result = Function(0.0);
};

} // namespace Lathe::Math
