#include "dsp/algorithm/BiquadFrequencyResponse.h"

#include "serialization/DataStream.h"

#include <cmath>

namespace Lathe::Audio::DSP::Algorithm {

namespace {

struct SField {
    const char* m_Key;
    double CBiquadFrequencyResponse::*m_Field;
    double m_Default;
};

constexpr SField s_Fields[] = {
    {"inputCoeff0", &CBiquadFrequencyResponse::m_InputCoeff0, 1.0},
    {"inputCoeff1", &CBiquadFrequencyResponse::m_InputCoeff1, 0.0},
    {"inputCoeff2", &CBiquadFrequencyResponse::m_InputCoeff2, 0.0},
    {"outputCoeff1", &CBiquadFrequencyResponse::m_OutputCoeff1, 0.0},
    {"outputCoeff2", &CBiquadFrequencyResponse::m_OutputCoeff2, 0.0},
    {"invSampleRate", &CBiquadFrequencyResponse::m_InvSampleRate, 0.0},
};

// The section's transfer function on the unit circle: b(z) / a(z) at z = exp(iw), with the sign of
// the feedback coefficients turned back to that of the polynomial.
struct STransfer {
    double m_NumeratorRe;
    double m_NumeratorIm;
    double m_DenominatorRe;
    double m_DenominatorIm;
};

bool IsAboveNyquist(const CBiquadFrequencyResponse& response, double frequency) {
    return frequency * response.m_InvSampleRate > 0.5;
}

STransfer EvaluateTransfer(const CBiquadFrequencyResponse& r, double frequency) {
    const double w = 6.283185307179586 * (frequency * r.m_InvSampleRate);
    const double w2 = w + w;
    const double cos1 = std::cos(w);
    const double sin1 = std::sin(w);
    const double cos2 = std::cos(w2);
    const double sin2 = std::sin(w2);
    return {r.m_InputCoeff0 + r.m_InputCoeff1 * cos1 + r.m_InputCoeff2 * cos2,
            r.m_InputCoeff1 * sin1 + r.m_InputCoeff2 * sin2,
            1.0 - r.m_OutputCoeff1 * cos1 - r.m_OutputCoeff2 * cos2,
            -r.m_OutputCoeff1 * sin1 - r.m_OutputCoeff2 * sin2};
}

double Modulus(double re, double im) {
    return std::sqrt(re * re + im * im);
}

// The angle of a complex number in turns, from 0 to 1; 0.0 for zero.
double Turn(double re, double im) {
    const double modulus = Modulus(re, im);
    if (modulus == 0.0)
        return 0.0;
    const double turn = std::acos(re / modulus) * 0.15915494309189535;
    return im >= 0.0 ? turn : 1.0 - turn;
}

} // namespace

bool CBiquadFrequencyResponse::Serialize(Serialization::IWriteDataStream& output) const {
    bool success = true;
    for (const SField& field : s_Fields)
        success = output.WriteDouble(field.m_Key, &(this->*field.m_Field)) && success;
    return success;
}

bool CBiquadFrequencyResponse::DeSerialize(const Serialization::IReadDataStream& input) {
    bool complete = true;
    for (const SField& field : s_Fields) {
        if (input.ReadDouble(field.m_Key, &(this->*field.m_Field)))
            continue;
        complete = false;
        if (!input.IsIncremental())
            this->*field.m_Field = field.m_Default;
    }
    return complete || input.IsIncremental();
}

double CBiquadGain::Evaluate(double frequency) const {
    if (IsAboveNyquist(*this, frequency))
        return 0.0;
    const STransfer h = EvaluateTransfer(*this, frequency);
    return Modulus(h.m_NumeratorRe, h.m_NumeratorIm) /
           Modulus(h.m_DenominatorRe, h.m_DenominatorIm);
}

double CBiquadPhaseShift::Evaluate(double frequency) const {
    if (IsAboveNyquist(*this, frequency))
        return 0.0;
    const STransfer h = EvaluateTransfer(*this, frequency);
    return Turn(h.m_NumeratorRe, h.m_NumeratorIm) - Turn(h.m_DenominatorRe, h.m_DenominatorIm);
}

} // namespace Lathe::Audio::DSP::Algorithm
