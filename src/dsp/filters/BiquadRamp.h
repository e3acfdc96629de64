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

// From the angles; those of the first frame are there already. An angle that rests, and one that is
// the other channel's too, is not computed again.
inline void FillTurns(SPairRamp& ramp, int count) LATHE_REALTIME {
    for (int i = 2; i < 2 * (count + 1); ++i) {
        const double omega = ramp.m_Omega[i];
        int known = i;
        if (Core::SameBits(omega, ramp.m_Omega[i - 2]))
            known = i - 2;
        else if (i % 2 == 1 && Core::SameBits(omega, ramp.m_Omega[i - 1]))
            known = i - 1;
        else
            Math::SinCos(omega, ramp.m_Sin[i], ramp.m_Cos[i]);
        ramp.m_Sin[i] = ramp.m_Sin[known];
        ramp.m_Cos[i] = ramp.m_Cos[known];
    }
}

// The work of MovePair. The turns are those of the angles that the ramps begin and end with.
template <class TRamp>
void FillPairRamp(TRamp& ramp, CKeptTurn& turn, TRamp& otherRamp, CKeptTurn& otherTurn,
                  SPairRamp& to, int count, int rampOrders) LATHE_REALTIME {
    TRamp left = ramp;
    TRamp right = otherRamp;
    left[0].Store(to, 0);
    right[0].Store(to, 1);
    for (int i = 1; i <= count; ++i) {
        StepRamp(left, rampOrders);
        left[0].Store(to, 2 * i);
        StepRamp(right, rampOrders);
        right[0].Store(to, 2 * i + 1);
    }
    ramp = left;
    otherRamp = right;
    CKeptTurn* const turns[] = {&turn, &otherTurn};
    for (int channel = 0; channel < 2; ++channel) {
        const Math::SSinCos& first = turns[channel]->Get(to.m_Omega[channel]);
        to.m_Sin[channel] = first.m_Sin;
        to.m_Cos[channel] = first.m_Cos;
    }
    FillTurns(to, count);
    for (int channel = 0; channel < 2; ++channel) {
        const int last = 2 * count + channel;
        turns[channel]->Set(to.m_Omega[last], {to.m_Sin[last], to.m_Cos[last]});
    }
}

} // namespace Lathe::Audio::DSP::Filters
