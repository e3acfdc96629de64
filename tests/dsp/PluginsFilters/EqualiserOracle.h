// One channel of the equaliser as its sections in long double, and the curves that it must draw.
#pragma once

#include "dsp/FilterTestSupport.h"

namespace PluginsFilters {

// The user's six parameters: gain, frequency, bandwidth, low, mid, high.
using CChannelValues = Lathe::Audio::DSP::Testing::CValues;

class CEqualiserOracle {
public:
    CEqualiserOracle(double rate, const CChannelValues& p, double lowFrequency,
                     double highFrequency)
        : m_Rate(rate),
          m_Gain(std::pow(10.0, p[0] / 20.0)),
          m_Sections{Lathe::Audio::DSP::Testing::MakeShelf(1, rate, lowFrequency, p[3]),
                     Lathe::Audio::DSP::Testing::MakePeak(rate, p[1], p[2], p[4]),
                     Lathe::Audio::DSP::Testing::MakeShelf(-1, rate, highFrequency, p[5])} {}
    // Where the high shelf stays below the Nyquist frequency.
    CEqualiserOracle(double rate, const CChannelValues& p)
        : CEqualiserOracle(rate, p, p[1] / std::exp2(p[2] / 2.0), p[1] * std::exp2(p[2] / 2.0)) {}

    // Of the six curves, in their order.
    double EvaluateCurve(int curve, double frequency) const {
        using namespace Lathe::Audio::DSP::Testing;
        const long double w = GetOmega(m_Rate, frequency);
        double gain = m_Gain;
        double phase = 0.0;
        for (const SPolynomials& section : m_Sections) {
            gain *= EvaluateGain(section, w);
            phase += EvaluatePhase(section, w);
        }
        switch (curve) {
        case 0:
            return gain;
        case 1:
            return 20.0 * std::log10(gain);
        case 5:
            return phase;
        default:
            return 20.0 * std::log10(EvaluateGain(m_Sections[curve - 2], w));
        }
    }
    Lathe::Audio::DSP::Testing::CSignal
    Run(const Lathe::Audio::DSP::Testing::CSignal& input) const {
        using namespace Lathe::Audio::DSP::Testing;
        CNaiveSection naive[3];
        CSignal output;
        for (float sample : input) {
            long double x = static_cast<long double>(m_Gain * static_cast<double>(sample));
            for (int i : {1, 0, 2})
                x = naive[i].Run(m_Sections[i], x);
            output.push_back(static_cast<float>(x));
        }
        return output;
    }

private:
    double m_Rate;
    double m_Gain;
    Lathe::Audio::DSP::Testing::SPolynomials m_Sections[3];
};

} // namespace PluginsFilters
