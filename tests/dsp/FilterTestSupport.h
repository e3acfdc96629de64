// What the tests of filters share: seeded noise, buffers of any stride, a rig that drives a filter
// as its owner does, and second-order sections written as polynomials, in long double.
#pragma once

#include "dsp/properties/FilterPropertiesVariations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdlib>
#include <numbers>
#include <random>
#include <string>
#include <vector>

namespace Lathe::Audio::DSP::Testing {

using CSignal = std::vector<float>;
using CSignals = std::vector<CSignal>;
using CValues = std::vector<double>;

// CAIRN_TEST_SEED repeats a run that failed.
inline unsigned GetSeed() {
    const char* text = std::getenv("CAIRN_TEST_SEED");
    return text ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : 20240607u;
}

class CRandom {
public:
    // The salt tells the sequences of one test apart.
    explicit CRandom(unsigned salt = 0) : m_Engine(GetSeed() + salt) {}

    double Between(double min, double max) {
        return std::uniform_real_distribution<double>(min, max)(m_Engine);
    }
    int Between(int min, int max) { return std::uniform_int_distribution<int>(min, max)(m_Engine); }
    CSignal Noise(int samples) {
        CSignal signal(static_cast<std::size_t>(samples));
        for (float& sample : signal)
            sample = static_cast<float>(Between(-1.0, 1.0));
        return signal;
    }

private:
    std::mt19937 m_Engine;
};

// Streams over memory of their own, which can be aimed at a part of it.
class CBuffers : public IAudioStreams {
public:
    explicit CBuffers(const CSignals& signals, int stride = 1)
        : m_Stride(stride), m_Samples(static_cast<int>(signals.at(0).size())) {
        for (const CSignal& signal : signals) {
            CSignal& memory = m_Memory.emplace_back(signal.size() * static_cast<unsigned>(stride));
            for (std::size_t i = 0; i < signal.size(); ++i)
                memory[i * static_cast<unsigned>(stride)] = signal[i];
        }
        m_Streams.resize(signals.size());
        Aim(0, m_Samples);
    }
    CBuffers(int channels, int samples, float value = 0.0f, int stride = 1)
        : CBuffers(CSignals(static_cast<std::size_t>(channels),
                            CSignal(static_cast<std::size_t>(samples), value)),
                   stride) {}

    void Aim(int first, int samples) {
        for (std::size_t c = 0; c < m_Streams.size(); ++c)
            m_Streams[c] = CAudioStream(m_Memory[c].data(), first * m_Stride, samples * m_Stride,
                                        m_Stride, false);
    }
    CSignals Read() const {
        CSignals signals(m_Memory.size());
        for (std::size_t c = 0; c < signals.size(); ++c) {
            for (int i = 0; i < m_Samples; ++i)
                signals[c].push_back(m_Memory[c][static_cast<std::size_t>(i * m_Stride)]);
        }
        return signals;
    }

    int GetCount() const override { return static_cast<int>(m_Streams.size()); }
    const IAudioStream& GetElement(int index) const override {
        return m_Streams[static_cast<std::size_t>(index)];
    }
    IAudioStream& GetElement(int index) override {
        return m_Streams[static_cast<std::size_t>(index)];
    }

private:
    int m_Stride;
    int m_Samples;
    std::vector<CSignal> m_Memory;
    std::vector<CAudioStream> m_Streams;
};

inline CFilterInitInfo MakeInitInfo(int maxBlockSize) {
    CFilterInitInfo info;
    info.m_ResetToDefaults = true;
    info.m_MaxBlockSize = maxBlockSize;
    return info;
}

// Drives a filter, which it doesn't own, from its default values on.
class CRig {
public:
    // Initialises the filter, unless the rate is 0.
    explicit CRig(IFilter& filter, double sampleRate = 44100.0, int maxBlockSize = 4096)
        : m_Filter(filter) {
        if (sampleRate > 0.0)
            filter.Init(sampleRate, MakeInitInfo(maxBlockSize));
        m_Variations.Setup(filter, 1);
        for (CFilterProperties* values : {&m_Variations.GetStart(), &m_Variations.GetEnd()}) {
            values->SetDefaults(filter);
            values->ClearDirty();
        }
    }
    // Drives a copy of the other's filter onwards.
    CRig(IFilter& filter, const CRig& other)
        : m_Filter(filter), m_Variations(other.m_Variations), m_Moves(other.m_Moves) {}

    // Without a ramp.
    void Set(int param, double value) {
        Mark(param, value);
        m_Filter.SetInputValues(m_Variations.GetEnd());
        m_Variations.Commit();
    }
    void Set(const CValues& values, int first = 0) {
        for (std::size_t i = 0; i < values.size(); ++i)
            Mark(first + static_cast<int>(i), values[i]);
        m_Filter.SetInputValues(m_Variations.GetEnd());
        m_Variations.Commit();
    }
    // Over the next block.
    void Move(int param, double value) {
        Mark(param, value);
        m_Moves = true;
    }
    void Move(const CValues& values, int first = 0) {
        for (std::size_t i = 0; i < values.size(); ++i)
            Move(first + static_cast<int>(i), values[i]);
    }

    void Process(const IConstAudioStreams& inputs, IAudioStreams& outputs, int samples) {
        m_Filter.Process(Begin(&inputs, outputs, samples));
        End();
    }
    bool ProcessSilence(IAudioStreams& outputs, int samples) {
        const bool hasSignal = m_Filter.ProcessSilence(Begin(nullptr, outputs, samples));
        End();
        return hasSignal;
    }
    // The whole input in blocks of these sizes, what is left in one. The outputs start as NaN.
    CSignals Run(const CSignals& input, const std::vector<int>& blocks = {}) {
        CBuffers inputs(input);
        const int total = static_cast<int>(input[0].size());
        CBuffers outputs(inputs.GetCount(), total, std::nanf(""));
        int first = 0;
        const auto run = [&](int samples) {
            inputs.Aim(first, samples);
            outputs.Aim(first, samples);
            Process(inputs, outputs, samples);
            first += samples;
        };
        for (int samples : blocks)
            run(std::min(samples, total - first));
        if (first < total)
            run(total - first);
        return outputs.Read();
    }

private:
    void Mark(int param, double value) {
        m_Variations.GetEnd().GetParams().SetValue(param, value);
        m_Variations.GetEnd().GetDirty(Params).GetElement(param).SetDirty();
    }
    CFilterProcessData Begin(const IConstAudioStreams* inputs, IAudioStreams& outputs,
                             int samples) {
        CFilterProcessData data;
        data.m_pInputs = inputs;
        data.m_pOutputs = &outputs;
        data.m_SamplesCount = samples;
        if (m_Moves) {
            m_Variations.ComputeRates(samples);
            data.m_pVariations = &m_Variations;
        }
        return data;
    }
    void End() {
        m_Variations.Commit();
        m_Moves = false;
    }

    IFilter& m_Filter;
    CFilterPropertiesVariations m_Variations;
    bool m_Moves = false;
};

// b(z) / a(z) in powers of 1/z, not normalised.
struct SPolynomials {
    long double m_b[3];
    long double m_a[3];
};

inline long double GetOmega(double sampleRate, double frequency) {
    return 2 * std::numbers::pi_v<long double> * static_cast<long double>(frequency) /
           static_cast<long double>(sampleRate);
}

// The sections as the audio EQ cookbook prints them; 1/Q of the peak is its bandwidth.
inline SPolynomials MakePeak(double sampleRate, double frequency, double bandwidth, double gain) {
    const long double w = GetOmega(sampleRate, frequency);
    const long double a = std::pow(10.0L, static_cast<long double>(gain) / 40);
    const long double alpha = std::sin(w) / 2 * static_cast<long double>(bandwidth);
    return {{1 + alpha * a, -2 * std::cos(w), 1 - alpha * a},
            {1 + alpha / a, -2 * std::cos(w), 1 - alpha / a}};
}

// sign 1: the low shelf, -1: the high shelf, with a slope of 1.
inline SPolynomials MakeShelf(int sign, double sampleRate, double frequency, double gain) {
    const long double w = GetOmega(sampleRate, frequency);
    const long double a = std::pow(10.0L, static_cast<long double>(gain) / 40);
    const long double alpha = std::sin(w) / std::numbers::sqrt2_v<long double>;
    const long double beta = 2 * std::sqrt(a) * alpha;
    const long double c = sign * std::cos(w);
    return {{a * (a + 1 - (a - 1) * c + beta), sign * 2 * a * (a - 1 - (a + 1) * c),
             a * (a + 1 - (a - 1) * c - beta)},
            {a + 1 + (a - 1) * c + beta, sign * -2 * (a - 1 + (a + 1) * c),
             a + 1 + (a - 1) * c - beta}};
}

inline std::complex<long double> Evaluate(const long double (&p)[3], long double w) {
    return p[0] + p[1] * std::polar(1.0L, -w) + p[2] * std::polar(1.0L, -2 * w);
}
inline double EvaluateGain(const SPolynomials& p, long double w) {
    return static_cast<double>(std::abs(Evaluate(p.m_b, w)) / std::abs(Evaluate(p.m_a, w)));
}
// Turns by which the output lags behind the input.
inline double EvaluatePhase(const SPolynomials& p, long double w) {
    const auto lag = [w](const long double(&polynomial)[3]) {
        const long double turns =
            -std::arg(Evaluate(polynomial, w)) / (2 * std::numbers::pi_v<long double>);
        return turns < 0 ? turns + 1 : turns;
    };
    return static_cast<double>(lag(p.m_b) - lag(p.m_a));
}

// The difference equation, with the textbook's signs and no rounding to float.
class CNaiveSection {
public:
    long double Run(const SPolynomials& p, long double x) {
        const long double y = (p.m_b[0] * x + p.m_b[1] * m_x[0] + p.m_b[2] * m_x[1] -
                               p.m_a[1] * m_y[0] - p.m_a[2] * m_y[1]) /
                              p.m_a[0];
        m_x[1] = m_x[0];
        m_x[0] = x;
        m_y[1] = m_y[0];
        m_y[0] = y;
        return y;
    }

private:
    long double m_x[2] = {0, 0};
    long double m_y[2] = {0, 0};
};

inline double GetPeakLevel(const CSignal& signal) {
    double peak = 0.0;
    for (float sample : signal)
        peak = std::max(peak, static_cast<double>(std::abs(sample)));
    return peak;
}

// The tolerance is relative to the loudest sample. NaN fails.
inline void CheckClose(const CSignal& actual, const CSignal& expected, double tolerance,
                       std::size_t first = 0) {
    ASSERT_EQ(actual.size(), expected.size());
    const double bound = tolerance * std::max(1.0, GetPeakLevel(expected));
    for (std::size_t i = first; i < actual.size(); ++i)
        ASSERT_NEAR(actual[i], expected[i], bound) << "at sample " << i;
}

inline CSignal Rest(const CSignal& signal, std::size_t first) {
    return CSignal(signal.begin() + static_cast<std::ptrdiff_t>(first), signal.end());
}

// The indices of the flags that are set; clears them.
inline std::vector<int> TakeDirty(IDirtyFlags& flags) {
    std::vector<int> dirty;
    for (int i = 0; i < flags.GetCount(); ++i) {
        if (flags.GetElement(i).IsDirty())
            dirty.push_back(i);
        flags.GetElement(i).ClearDirty();
    }
    return dirty;
}

} // namespace Lathe::Audio::DSP::Testing
