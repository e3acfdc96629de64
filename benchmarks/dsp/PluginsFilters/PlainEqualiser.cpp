#include "dsp/PluginsFilters/PlainEqualiser.h"

#include "math/SinCos.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace CairnBench {

namespace {

double FromdB(double x) {
    return std::pow(10.0, 0.05 * x);
}

bool IsZeroOrDenormal(float value) {
    return (std::bit_cast<std::uint32_t>(value) & 0x7f800000u) == 0;
}

void Scale(const CBuffer& input, CBuffer& output, float gain, float ratio) {
    for (std::size_t i = 0; i < input.size(); ++i) {
        const float scaled = gain * input[i];
        output[i] = IsZeroOrDenormal(scaled) ? 0.0f : scaled;
        gain *= ratio;
    }
}

} // namespace

CPlainEqualiser::CPlainEqualiser(double sampleRate, const CStereoSettings& settings, bool midSide)
    : m_SampleRate(sampleRate), m_MidSide(midSide) {
    Set(settings);
}

void CPlainEqualiser::Set(const CStereoSettings& settings) {
    for (std::size_t channel = 0; channel < 2; ++channel) {
        m_Gain[channel] = static_cast<float>(FromdB(settings[channel].m_Gain));
        for (std::size_t band = 0; band < 3; ++band) {
            SSection& section = m_Sections[channel][band];
            const SSection target = Translate(static_cast<EBand>(band), settings[channel]);
            section.m_Omega = target.m_Omega;
            section.m_HalfBandwidth = target.m_HalfBandwidth;
            section.m_Root = target.m_Root;
            Compute(static_cast<EBand>(band), section);
        }
    }
}

void CPlainEqualiser::ProcessSteady(const CBuffer (&inputs)[2], CBuffer (&outputs)[2]) {
    const std::size_t count = inputs[0].size();
    if (m_MidSide) {
        for (std::size_t i = 0; i < count; ++i) {
            outputs[0][i] = (inputs[1][i] + inputs[0][i]) * 0.5f;
            outputs[1][i] = (inputs[1][i] - inputs[0][i]) * 0.5f;
        }
    }
    for (std::size_t channel = 0; channel < 2; ++channel) {
        Scale(m_MidSide ? outputs[channel] : inputs[channel], outputs[channel], m_Gain[channel],
              1.0f);
        for (SSection& section : m_Sections[channel])
            RunSteady(section, outputs[channel].data(), count);
    }
    if (m_MidSide) {
        for (std::size_t i = 0; i < count; ++i) {
            const float mid = outputs[0][i];
            const float side = outputs[1][i];
            outputs[0][i] = mid - side;
            outputs[1][i] = side + mid;
        }
    }
}

void CPlainEqualiser::ProcessRamped(const CBuffer (&inputs)[2], CBuffer (&outputs)[2],
                                    const CStereoSettings& start, const CStereoSettings& end) {
    const std::size_t count = inputs[0].size();
    const double perSample = 1.0 / static_cast<double>(count);
    Set(start);
    for (std::size_t channel = 0; channel < 2; ++channel) {
        const SSettings& from = start[channel];
        const SSettings& to = end[channel];
        Scale(inputs[channel], outputs[channel], m_Gain[channel],
              static_cast<float>(FromdB((to.m_Gain - from.m_Gain) * perSample)));
        const double gains[3] = {to.m_Mid - from.m_Mid, to.m_Low - from.m_Low,
                                 to.m_High - from.m_High};
        for (std::size_t band = 0; band < 3; ++band) {
            const EBand which = static_cast<EBand>(band);
            SSection& section = m_Sections[channel][band];
            SSection rate;
            rate.m_Omega = (Translate(which, to).m_Omega - section.m_Omega) * perSample;
            rate.m_HalfBandwidth = (to.m_Bandwidth - from.m_Bandwidth) * perSample * 0.5;
            rate.m_Root = FromdB(gains[band] * perSample * (which == EBand::Peak ? 0.5 : 0.25));
            RunRamped(which, section, rate, outputs[channel].data(), count);
        }
    }
    Set(end);
}

CPlainEqualiser::SSection CPlainEqualiser::Translate(EBand band, const SSettings& s) const {
    SSection section;
    double frequency = s.m_Frequency;
    if (band == EBand::Peak) {
        section.m_Root = FromdB(0.5 * s.m_Mid);
    } else if (band == EBand::LowShelf) {
        frequency *= std::pow(2.0, -0.5 * s.m_Bandwidth);
        section.m_Root = FromdB(s.m_Low * 0.25);
    } else {
        frequency *= std::pow(2.0, 0.5 * s.m_Bandwidth);
        section.m_Root = FromdB(s.m_High * 0.25);
    }
    section.m_Omega = frequency * (1.0 / m_SampleRate) * 6.283185307179586;
    section.m_HalfBandwidth = s.m_Bandwidth * 0.5;
    return section;
}

void CPlainEqualiser::Compute(EBand band, SSection& s) {
    double sinW = 0.0;
    double c = 1.0;
    Lathe::Math::SinCos(s.m_Omega, sinW, c);
    if (band == EBand::Peak) {
        const double A = s.m_Root;
        const double alpha = sinW * s.m_HalfBandwidth;
        const double r = 1.0 / (alpha / A + 1.0);
        s.b0 = (A * alpha + 1.0) * r;
        s.b1 = -2.0 * c * r;
        s.b2 = (1.0 - A * alpha) * r;
        s.a1 = -s.b1;
        s.a2 = (alpha / A - 1.0) * r;
        return;
    }
    const double A = s.m_Root * s.m_Root;
    const double beta = sinW * s.m_Root * 1.4142135623730951;
    if (band == EBand::LowShelf) {
        const double r = 1.0 / ((A + 1.0) + (A - 1.0) * c + beta);
        s.b0 = A * ((A + 1.0) - (A - 1.0) * c + beta) * r;
        s.b1 = 2.0 * A * ((A - 1.0) - (A + 1.0) * c) * r;
        s.b2 = A * ((A + 1.0) - (A - 1.0) * c - beta) * r;
        s.a1 = 2.0 * ((A - 1.0) + (A + 1.0) * c) * r;
        s.a2 = -((A + 1.0) + (A - 1.0) * c - beta) * r;
    } else {
        const double r = 1.0 / ((A + 1.0) - (A - 1.0) * c + beta);
        s.b0 = A * ((A + 1.0) + (A - 1.0) * c + beta) * r;
        s.b1 = -2.0 * A * ((A - 1.0) + (A + 1.0) * c) * r;
        s.b2 = A * ((A + 1.0) + (A - 1.0) * c - beta) * r;
        s.a1 = -2.0 * ((A - 1.0) - (A + 1.0) * c) * r;
        s.a2 = -((A + 1.0) - (A - 1.0) * c - beta) * r;
    }
}

inline void CPlainEqualiser::RunSample(SSection& s, float& sample) {
    const double x = static_cast<double>(sample);
    double y = s.b1 * s.x1 + s.b2 * s.x2 + s.b0 * x + s.a1 * s.y1 + s.a2 * s.y2;
    float f = static_cast<float>(y);
    if (IsZeroOrDenormal(f)) [[unlikely]] {
        f = 0.0f;
        y = 0.0;
    }
    s.x2 = s.x1;
    s.x1 = x;
    s.y2 = s.y1;
    s.y1 = y;
    sample = f;
}

void CPlainEqualiser::RunSteady(SSection& section, float* samples, std::size_t count) {
    SSection local = section;
    for (std::size_t i = 0; i < count; ++i)
        RunSample(local, samples[i]);
    section = local;
}

void CPlainEqualiser::RunRamped(EBand band, SSection& section, const SSection& rate, float* samples,
                                std::size_t count) {
    SSection local = section;
    for (std::size_t i = 0; i < count; ++i) {
        RunSample(local, samples[i]);
        local.m_Omega += rate.m_Omega;
        local.m_HalfBandwidth += rate.m_HalfBandwidth;
        local.m_Root *= rate.m_Root;
        Compute(band, local);
    }
    section = local;
}

} // namespace CairnBench
