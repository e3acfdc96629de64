// What the tests of filters share: seeded noise, buffers of any stride, and a rig that drives a
// filter as its owner does.
#pragma once

#include "core/Fixtures.h"
#include "dsp/properties/FilterPropertiesVariations.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Lathe::Audio::DSP::Testing {

using CSignal = std::vector<float>;
using CSignals = std::vector<CSignal>;
using CValues = std::vector<double>;

// A failure prints the seed.
class CRandom {
public:
    double Between(double min, double max) {
        return std::uniform_real_distribution<double>(min, max)(m_Engine);
    }
    CSignals Noise(int channels, int samples) {
        CSignals signals(static_cast<std::size_t>(channels));
        for (CSignal& signal : signals)
            std::generate_n(std::back_inserter(signal), samples,
                            [this] { return static_cast<float>(Between(-1.0, 1.0)); });
        return signals;
    }

private:
    std::mt19937 m_Engine{GetSeed()};
    testing::ScopedTrace m_Trace{__FILE__, __LINE__, "seed " + std::to_string(GetSeed())};
};

// Streams over memory of their own, which can be aimed at a part of it.
class CBuffers : public IAudioStreams {
public:
    CBuffers(int channels, int samples, float value, int stride = 1)
        : CBuffers(CSignals(static_cast<std::size_t>(channels),
                            CSignal(static_cast<std::size_t>(samples), value)),
                   stride) {}
    explicit CBuffers(const CSignals& signals, int stride = 1)
        : m_Stride(stride), m_Memory(signals), m_Streams(signals.size()) {
        m_Samples = static_cast<int>(signals.at(0).size());
        for (int c = 0; c < GetCount(); ++c) {
            m_Memory.data()[c].resize(signals[0].size() * static_cast<std::size_t>(stride) + 1);
            for (int i = m_Samples - 1; i >= 0; --i)
                At(c, i) = signals.data()[c].data()[i];
        }
        Aim(0, m_Samples);
    }

    void Aim(int first, int samples) {
        for (int c = 0; c < GetCount(); ++c)
            m_Streams.data()[c] =
                CAudioStream(&At(c, 0), first * m_Stride, samples * m_Stride, m_Stride, false);
    }
    float& At(int channel, int sample) {
        return m_Memory.data()[channel].data()[sample * m_Stride];
    }
    CSignals Read() {
        CSignals signals(m_Memory.size());
        for (int c = 0; c < GetCount(); ++c) {
            for (int i = 0; i < m_Samples; ++i)
                signals.data()[c].push_back(At(c, i));
        }
        return signals;
    }

    int GetCount() const override { return static_cast<int>(m_Streams.size()); }
    const IAudioStream& GetElement(int index) const override { return m_Streams.data()[index]; }
    IAudioStream& GetElement(int index) override { return m_Streams.data()[index]; }

private:
    int m_Stride;
    int m_Samples = 0;
    CSignals m_Memory;
    std::vector<CAudioStream> m_Streams;
};

// Drives a filter, which it doesn't own, from its default values on.
class CRig {
public:
    // Initialises the filter, unless the rate is 0.
    explicit CRig(IFilter& filter, double sampleRate = 44100.0, int maxBlockSize = 20000)
        : m_Filter(filter) {
        if (sampleRate > 0.0)
            filter.Init(sampleRate, {.m_ResetToDefaults = true,
                                     .m_MaxBlockSize = maxBlockSize,
                                     .m_MaxVariationsOrder = 2});
        m_Variations.Setup(filter, 1);
        m_Variations.GetEnd().SetDefaults(filter);
        m_Variations.Commit();
    }
    // Drives a copy of the other's filter onwards.
    CRig(IFilter& filter, const CRig& other)
        : m_Filter(filter), m_Variations(other.m_Variations), m_Moves(other.m_Moves) {}

    // Without a ramp.
    void Set(const CValues& values, int first = 0) {
        Move(values, first);
        m_Filter.SetInputValues(m_Variations.GetEnd());
        Commit();
    }
    // Over the next block.
    void Move(const CValues& values, int first = 0) {
        for (double value : values) {
            m_Variations.GetEnd().GetParams().SetValue(first, value);
            m_Variations.GetEnd().GetDirty(Params).GetElement(first++).SetDirty();
        }
        m_Moves = true;
    }
    // The next block starts elsewhere than where the last one has ended.
    void Jump(const CValues& values, int first) {
        for (double value : values) {
            m_Variations.GetStart().GetParams().SetValue(first, value);
            m_Variations.GetStart().GetDirty(Params).GetElement(first++).SetDirty();
        }
        m_Moves = true;
    }
    // Of the parameters that move over the next block.
    void Accelerate(double secondRate) { m_SecondRate = secondRate; }
    // Without inputs, of silence, with the filter's answer.
    bool Process(const IConstAudioStreams* inputs, IAudioStreams& outputs, int samples) {
        CFilterProcessData data;
        data.m_pInputs = inputs;
        data.m_pOutputs = &outputs;
        data.m_SamplesCount = samples;
        m_Variations.ComputeRates(samples);
        if (m_SecondRate != 0.0)
            AddSecondOrder();
        data.m_pVariations = m_Moves ? &m_Variations : nullptr;
        const bool hasSignal = !inputs && m_Filter.ProcessSilence(data);
        if (inputs)
            m_Filter.Process(data);
        Commit();
        return hasSignal;
    }
    // The whole input in blocks of these sizes, what is left in one. An output stride of 0 is in
    // place.
    CSignals Run(const CSignals& input, std::vector<int> blocks = {}, int inputStride = 1,
                 int outputStride = 1) {
        const int total = static_cast<int>(input[0].size());
        CBuffers inputs(input, inputStride);
        CBuffers others(inputs.GetCount(), total, NAN, outputStride);
        CBuffers& outputs = outputStride == 0 ? inputs : others;
        blocks.push_back(total);
        int first = 0;
        for (int block : blocks) {
            const int samples = std::min(block, total - first);
            inputs.Aim(first, samples);
            others.Aim(first, samples);
            Process(&inputs, outputs, samples);
            first += samples;
        }
        return outputs.Read();
    }

private:
    void Commit() {
        m_Variations.Commit();
        m_Variations.GetStart().ClearDirty();
        m_Moves = false;
        m_SecondRate = 0.0;
    }
    void AddSecondOrder() {
        CFilterPropertiesVariations::CRates& rates = m_Variations.GetRates(Params);
        if (rates.GetCount() == 0)
            return;
        rates.SetCount(2);
        const int count = rates[0].GetCount();
        rates[1].SetCount(count);
        for (int i = 0; i < count; ++i)
            rates[1].SetValue(i, rates[0].GetValue(i) != 0.0 ? m_SecondRate : 0.0);
    }

    IFilter& m_Filter;
    CFilterPropertiesVariations m_Variations;
    bool m_Moves = false;
    double m_SecondRate = 0.0;
};

// The tolerance is relative to the highest sample of the channel. NaN fails.
inline void CheckClose(const CSignals& actual, const CSignals& expected, double tolerance) {
    for (std::size_t c = 0; c < expected.size(); ++c) {
        const float peak =
            std::max(1.0f, *std::max_element(expected[c].begin(), expected[c].end()));
        for (std::size_t i = 0; i < expected[c].size(); ++i)
            ASSERT_NEAR(actual[c].at(i), expected[c][i], tolerance * static_cast<double>(peak))
                << i;
    }
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
