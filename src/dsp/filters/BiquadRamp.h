// The coefficients of sections whose parameters move, for the sources of the sections.
//
// A section's values are a struct of doubles with an angle m_Omega, Step(rates) and
// Store(to, index). Its formula is called as formula(turn, values).
#pragma once

#include "core/SameBits.h"
#include "dsp/filters/BiquadFilter.h"
#include "dsp/filters/PairRamp.h"
#include "math/SinCos.h"

namespace Lathe::Audio::DSP::Filters {

// The sine and cosine of an angle, which are computed when it moves.
class CTurn {
public:
    CTurn(double angle, const CKeptTurn& known) LATHE_REALTIME {
        if (const Math::SSinCos* turn = known.Find(angle)) {
            m_IsSet = true;
            m_Angle = angle;
            m_Turn = *turn;
        }
    }
    const Math::SSinCos& Get(double angle) LATHE_REALTIME {
        if (!m_IsSet || !Core::SameBits(angle, m_Angle)) {
            m_IsSet = true;
            m_Angle = angle;
            // By way of a result of its own, so that this object needs no place in memory.
            m_Turn = Math::SinCos(angle);
        }
        return m_Turn;
    }

private:
    bool m_IsSet = false;
    double m_Angle = 0.0;
    Math::SSinCos m_Turn{};
};

// Moves on by a frame. Written out and not as a loop over the orders, which would keep the values
// in memory.
template <class TRamp>
void StepRamp(TRamp& ramp, int rampOrders) LATHE_REALTIME {
    if (rampOrders > 1)
        ramp[1].Step(ramp[2]);
    ramp[0].Step(ramp[1]);
}

template <class TRamp, class TFormula>
void CBiquadFilter::FillRamp(TRamp& ramp, const CKeptTurn& known, SCoefficientsRoom room, int count,
                             int rampOrders, TFormula formula) LATHE_REALTIME {
    SBiquadCoefficients coefficients = m_Coefficients;
    TRamp moving = ramp;
    CTurn turn(moving[0].m_Omega, known);
    for (int i = 0; i < count; ++i) {
        room.Write(i, coefficients);
        StepRamp(moving, rampOrders);
        coefficients = formula(turn.Get(moving[0].m_Omega), moving[0]);
    }
    ramp = moving;
    SetCoefficients(coefficients);
}

// Whether the angle stays where it is: what one order of ramp leaves in its place once, it leaves
// there.
template <class TRamp>
bool RestsInPlace(TRamp ramp, int rampOrders) LATHE_REALTIME {
    const double omega = ramp[0].m_Omega;
    StepRamp(ramp, rampOrders);
    return rampOrders == 1 && Core::SameBits(ramp[0].m_Omega, omega);
}

// Of an angle that is that of the frame before, or the other channel's too, they are there already.
inline void FillTurn(SPairRamp& ramp, int i) LATHE_REALTIME {
    const auto isAngleOf = [&](int other) {
        return Core::SameBits(ramp.m_Omega[i], ramp.m_Omega[other]);
    };
    if (!isAngleOf(i - 2) && !(i % 2 == 1 && isAngleOf(i - 1))) {
        Math::SinCos(ramp.m_Omega[i], ramp.m_Sin[i], ramp.m_Cos[i]);
        return;
    }
    const int known = isAngleOf(i - 2) ? i - 2 : i - 1;
    ramp.m_Sin[i] = ramp.m_Sin[known];
    ramp.m_Cos[i] = ramp.m_Cos[known];
}

// The work of MovePair. The turns are those of the angles that the ramps begin and end with.
template <class TRamp>
void FillPairRamp(TRamp& ramp, CKeptTurn& turn, TRamp& otherRamp, CKeptTurn& otherTurn,
                  SPairRamp& to, int count, int rampOrders) LATHE_REALTIME {
    TRamp left = ramp;
    TRamp right = otherRamp;
    const Math::SSinCos turns[] = {turn.Get(left[0].m_Omega), otherTurn.Get(right[0].m_Omega)};
    left[0].Store(to, 0);
    right[0].Store(to, 1);
    to.StoreTurns(0, turns);
    if (RestsInPlace(left, rampOrders) && RestsInPlace(right, rampOrders)) {
        for (int i = 2; i < 2 * (count + 1); i += 2) {
            StepRamp(left, rampOrders);
            StepRamp(right, rampOrders);
            left[0].Store(to, i);
            right[0].Store(to, i + 1);
            to.StoreTurns(i, turns);
        }
    } else {
        for (int i = 2; i < 2 * (count + 1); i += 2) {
            StepRamp(left, rampOrders);
            left[0].Store(to, i);
            FillTurn(to, i);
            StepRamp(right, rampOrders);
            right[0].Store(to, i + 1);
            FillTurn(to, i + 1);
        }
    }
    ramp = left;
    otherRamp = right;
    const int last = 2 * count;
    turn.Set(left[0].m_Omega, {to.m_Sin[last], to.m_Cos[last]});
    otherTurn.Set(right[0].m_Omega, {to.m_Sin[last + 1], to.m_Cos[last + 1]});
}

} // namespace Lathe::Audio::DSP::Filters
