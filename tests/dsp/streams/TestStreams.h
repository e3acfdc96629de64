// A block of channels in memory of its own, of any stride, with gaps and an end that nobody may
// touch.
#pragma once

#include "dsp/streams/AudioStream.h"

#include <algorithm>
#include <vector>

namespace Lathe::Audio::DSP {

class CTestStreams : public IAudioStreams {
public:
    static constexpr float s_Untouched = -99.0f;

    CTestStreams(int channels, int stride, int samples) : m_Stride(stride) {
        m_Memory.resize(static_cast<std::size_t>(channels));
        for (std::vector<float>& memory : m_Memory) {
            memory.assign(static_cast<std::size_t>(samples * std::max(stride, 1) + 1), s_Untouched);
            m_Channels.emplace_back(memory.data(), 0, samples * std::max(stride, 1), stride, false);
        }
    }

    int GetCount() const LATHE_REALTIME override { return static_cast<int>(m_Channels.size()); }
    const IAudioStream& GetElement(int channel) const LATHE_REALTIME override {
        return m_Channels[static_cast<std::size_t>(channel)];
    }
    IAudioStream& GetElement(int channel) LATHE_REALTIME override {
        return m_Channels[static_cast<std::size_t>(channel)];
    }
    float& Get(int channel, int sample) {
        return m_Memory[static_cast<std::size_t>(channel)]
                       [static_cast<std::size_t>(sample * m_Stride)];
    }

    // The samples become get(channel, sample).
    template <class TGet>
    void Fill(TGet get) {
        for (int c = 0; c < GetCount(); ++c) {
            for (int i = 0; i < GetElement(c).GetSize(); ++i)
                Get(c, i) = get(c, i);
        }
    }
    // Whether what lies between the samples and after them is as it was.
    bool AreGapsUntouched() const {
        for (const std::vector<float>& memory : m_Memory) {
            for (std::size_t i = 0; i < memory.size(); ++i) {
                const auto stride = static_cast<std::size_t>(m_Stride);
                const bool isSample =
                    stride == 0 ? i == 0 : i % stride == 0 && i + 1 < memory.size();
                if (!isSample && memory[i] != s_Untouched)
                    return false;
            }
        }
        return true;
    }

private:
    int m_Stride;
    std::vector<std::vector<float>> m_Memory;
    std::vector<CAudioStream> m_Channels;
};

} // namespace Lathe::Audio::DSP
