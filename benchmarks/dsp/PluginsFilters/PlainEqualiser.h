// The equaliser as a plain loop, written from the difference equations: what the filter's speed is
// measured against, and what its samples must equal to the bit.
#pragma once

#include <array>
#include <vector>

namespace CairnBench {

// The user's six parameters of one channel.
struct SSettings {
    // dB, Hz, octaves.
    double m_Gain;
    double m_Frequency;
    double m_Bandwidth;
    double m_Low;
    double m_Mid;
    double m_High;
};

using CStereoSettings = std::array<SSettings, 2>;
using CBuffer = std::vector<float>;

class CPlainEqualiser {
public:
    CPlainEqualiser(double sampleRate, const CStereoSettings& settings, bool midSide);

    void Set(const CStereoSettings& settings);
    // The buffers of a pair have one size, and are not those of the other pair.
    void ProcessSteady(const CBuffer (&inputs)[2], CBuffer (&outputs)[2]);
    // All parameters move from the first to the second settings.
    void ProcessRamped(const CBuffer (&inputs)[2], CBuffer (&outputs)[2],
                       const CStereoSettings& start, const CStereoSettings& end);

private:
    enum class EBand { Peak, LowShelf, HighShelf };

    struct SSection {
        // Radians per sample; half the bandwidth in octaves; the square root (the fourth root of a
        // shelf) of the linear gain.
        double m_Omega = 0.0;
        double m_HalfBandwidth = 0.0;
        double m_Root = 1.0;
        double b0 = 1.0, b1 = 0.0, b2 = 0.0, a1 = 0.0, a2 = 0.0;
        double x1 = 0.0, x2 = 0.0, y1 = 0.0, y2 = 0.0;
    };

    SSection Translate(EBand band, const SSettings& settings) const;
    static void Compute(EBand band, SSection& section);
    static void RunSteady(SSection& section, float* samples, std::size_t count);
    static void RunRamped(EBand band, SSection& section, const SSection& rate, float* samples,
                          std::size_t count);
    static void RunSample(SSection& section, float& sample);

    double m_SampleRate;
    bool m_MidSide;
    std::array<float, 2> m_Gain{};
    std::array<std::array<SSection, 3>, 2> m_Sections;
};

} // namespace CairnBench
