// Pointers, strides and running positions of a block's channels, in flat arrays that exist from
// construction, so that inner loops step integers and nothing else.
#pragma once

#include "core/Realtime.h"
#include "dsp/streams/AudioStream.h"

#include <cstddef>
#include <vector>

namespace Lathe::Audio::DSP::Filters {

class CChannelCursors {
public:
    explicit CChannelCursors(int channels)
        : m_Frame(static_cast<std::size_t>(channels)),
          m_Inputs(m_Frame.size()),
          m_InputStrides(m_Frame.size()),
          m_InputPositions(m_Frame.size()),
          m_Outputs(m_Frame.size()),
          m_OutputStrides(m_Frame.size()),
          m_OutputPositions(m_Frame.size()) {}

    // Positions go back to 0. Both vectors have at least as many channels as this. A stream without
    // data reads as zeros and swallows what is written.
    void Gather(const IConstAudioStreams& inputs, IAudioStreams& outputs) LATHE_REALTIME {
        for (std::size_t c = 0; c < m_Frame.size(); ++c) {
            const IAudioStream& input = inputs.GetElement(static_cast<int>(c));
            IAudioStream& output = outputs.GetElement(static_cast<int>(c));
            const float* from = input.GetData();
            m_Inputs[c] = from ? from : &s_Zero;
            m_InputStrides[c] = from ? input.GetStride() : 0;
            m_InputPositions[c] = 0;
            float* to = output.GetData();
            m_Outputs[c] = to ? to : &m_Swallowed;
            m_OutputStrides[c] = to ? output.GetStride() : 0;
            m_OutputPositions[c] = 0;
        }
    }

    // One channel of contiguous samples: the case with loops of its own.
    bool IsContiguousMono() const LATHE_REALTIME {
        return m_Frame.size() == 1 && m_InputStrides[0] == 1 && m_OutputStrides[0] == 1;
    }

    // Copies the current sample of each input into the frame and moves on.
    void ReadFrame() LATHE_REALTIME {
        for (std::size_t c = 0; c < m_Frame.size(); ++c) {
            m_Frame[c] = m_Inputs[c][m_InputPositions[c]];
            m_InputPositions[c] += m_InputStrides[c];
        }
    }
    void WriteFrame() LATHE_REALTIME {
        for (std::size_t c = 0; c < m_Frame.size(); ++c) {
            m_Outputs[c][m_OutputPositions[c]] = m_Frame[c];
            m_OutputPositions[c] += m_OutputStrides[c];
        }
    }

    std::vector<float> m_Frame;
    std::vector<const float*> m_Inputs;
    std::vector<int> m_InputStrides;
    std::vector<int> m_InputPositions;
    std::vector<float*> m_Outputs;
    std::vector<int> m_OutputStrides;
    std::vector<int> m_OutputPositions;

private:
    static constexpr float s_Zero = 0.0f;
    float m_Swallowed = 0.0f;
};

} // namespace Lathe::Audio::DSP::Filters
