// The coefficients of sections whose parameters move, for the sources of the sections.
//
// A section's values are a struct of doubles with an angle m_Omega and Step(rates). Its formula is
// called as formula(sine, cosine, value), where value(member) is a member of the values: doubles
// for one channel, pairs for two.
#pragma once

#include "core/SameBits.h"
#include "dsp/filters/BiquadFilter.h"
#include "math/SinCos.h"

namespace Lathe::Audio::DSP::Filters {

// The sine and cosine of an angle, which are computed when it moves.
class CTurn {
public:
    void Set(double angle) LATHE_REALTIME {
        if (m_IsSet && Core::SameBits(angle, m_Angle))
            return;
        m_IsSet = true;
        m_Angle = angle;
        Math::SinCos(angle, m_Sin, m_Cos);
    }
    double GetSin() const LATHE_REALTIME { return m_Sin; }
    double GetCos() const LATHE_REALTIME { return m_Cos; }

private:
    bool m_IsSet = false;
    double m_Angle = 0.0;
    double m_Sin = 0.0;
    double m_Cos = 1.0;
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
void CBiquadFilter::FillRamp(TRamp& ramp, SCoefficientsRoom room, int count, int rampOrders,
                             TFormula formula) LATHE_REALTIME {
    SBiquadCoefficients coefficients = m_Coefficients;
    TRamp moving = ramp;
    CTurn turn;
    for (int i = 0; i < count; ++i) {
        room.Write(i, coefficients);
        StepRamp(moving, rampOrders);
        turn.Set(moving[0].m_Omega);
        coefficients =
            formula(turn.GetSin(), turn.GetCos(), [&](auto member) { return moving[0].*member; });
    }
    ramp = moving;
    SetCoefficients(coefficients);
}

template <class TRamp, class TFormula>
void CBiquadFilter::FillPairRamp(TRamp& ramp, CBiquadFilter& other, TRamp& otherRamp,
                                 SCoefficientsRoom room, int count, int rampOrders,
                                 TFormula formula) LATHE_REALTIME {
    // Channels that are the same to the bit stay so.
    if (Core::SameBits(ramp, otherRamp) && Core::SameBits(m_Coefficients, other.m_Coefficients)) {
        FillAlikeRamp(ramp, room, count, rampOrders, formula);
        otherRamp = ramp;
        other.SetCoefficients(m_Coefficients);
        return;
    }
    auto coefficients = JoinCoefficients(m_Coefficients, other.m_Coefficients);
    TRamp left = ramp;
    TRamp right = otherRamp;
    CTurn leftTurn;
    CTurn rightTurn;
    for (int i = 0; i < count; ++i) {
        room.Write(i, coefficients);
        StepRamp(left, rampOrders);
        leftTurn.Set(left[0].m_Omega);
        StepRamp(right, rampOrders);
        rightTurn.Set(right[0].m_Omega);
        coefficients =
            formula(CDoublePair{leftTurn.GetSin(), rightTurn.GetSin()},
                    CDoublePair{leftTurn.GetCos(), rightTurn.GetCos()}, [&](auto member) {
                        return CDoublePair{left[0].*member, right[0].*member};
                    });
    }
    ramp = left;
    otherRamp = right;
    SetCoefficients(GetChannel(coefficients, 0));
    other.SetCoefficients(GetChannel(coefficients, 1));
}

// Two frames at once take the places of the two channels in the formula.
template <class TRamp, class TFormula>
void CBiquadFilter::FillAlikeRamp(TRamp& ramp, SCoefficientsRoom room, int count, int rampOrders,
                                  TFormula formula) LATHE_REALTIME {
    TRamp moving = ramp;
    CTurn turn;
    TBiquadCoefficients<CDoublePair> coefficients =
        JoinCoefficients(m_Coefficients, m_Coefficients);
    for (int i = 0; i < count; i += 2) {
        room.Write(i, SpreadFrame<1>(coefficients));
        StepRamp(moving, rampOrders);
        turn.Set(moving[0].m_Omega);
        const auto first = moving[0];
        const double firstSin = turn.GetSin();
        const double firstCos = turn.GetCos();
        StepRamp(moving, rampOrders);
        turn.Set(moving[0].m_Omega);
        coefficients = formula(CDoublePair{firstSin, turn.GetSin()},
                               CDoublePair{firstCos, turn.GetCos()}, [&](auto member) {
                                   return CDoublePair{first.*member, moving[0].*member};
                               });
        room.Write(i + 1, SpreadFrame<0>(coefficients));
    }
    ramp = moving;
    SetCoefficients(GetChannel(coefficients, 1));
}

} // namespace Lathe::Audio::DSP::Filters
