// The frequency response of a second-order section, as functions of the frequency in hertz.
//
// They hold a copy of the section's coefficients and compute on the thread that draws: they can be
// plotted at any resolution, stored, and kept after the section has moved on.
#pragma once

#include "math/Function.h"

namespace Lathe::Audio::DSP::Algorithm {

class CBiquadFrequencyResponse : public Math::IFunction {
public:
    bool Serialize(Serialization::IWriteDataStream& output) const override;
    bool DeSerialize(const Serialization::IReadDataStream& input) override;

    // Written by the section between two blocks, and by DeSerialize. A fresh object is the
    // identity. The output coefficients are added in the recursion.
    double m_InputCoeff0 = 1.0;
    double m_InputCoeff1 = 0.0;
    double m_InputCoeff2 = 0.0;
    double m_OutputCoeff1 = 0.0;
    double m_OutputCoeff2 = 0.0;
    // Seconds.
    double m_InvSampleRate = 0.0;
};

// The linear gain; 0.0 above the Nyquist frequency.
class CBiquadGain : public CBiquadFrequencyResponse {
public:
    static const char* ClassId() { return "{F5A5C4CC-51D6-49ec-A269-A3B2B1E8037E}"; }
    const char* GetClassId() const override { return ClassId(); }
    double Evaluate(double frequency) const LATHE_REALTIME override;
    CBiquadGain* Clone() const override { return new CBiquadGain(*this); }
};

// The phase in turns, numerator minus denominator, not wrapped; 0.0 above the Nyquist frequency.
class CBiquadPhaseShift : public CBiquadFrequencyResponse {
public:
    static const char* ClassId() { return "{EAC674E4-4C25-46bd-8D83-F9BB83604BA7}"; }
    const char* GetClassId() const override { return ClassId(); }
    double Evaluate(double frequency) const LATHE_REALTIME override;
    CBiquadPhaseShift* Clone() const override { return new CBiquadPhaseShift(*this); }
};

} // namespace Lathe::Audio::DSP::Algorithm
