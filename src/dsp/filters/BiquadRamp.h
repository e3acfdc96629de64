// The loop of a section whose parameters move, for the sources of the sections.
#pragma once

#include "dsp/filters/BiquadFilter.h"
#include "dsp/filters/BiquadSample.h"

namespace Lathe::Audio::DSP::Filters {

// Everything that moves stays in registers for contiguous mono; the results are those of the
// general loop to the bit.
template <class TRamp>
void CBiquadFilter::ProcessRamped(TRamp& ramp, int samples, int rampOrders) LATHE_REALTIME {
    SBiquadCoefficients coefficients = m_Coefficients;
    TRamp moving = ramp;
    const auto advance = [&](int index) {
        moving.Advance(rampOrders);
        if ((m_RecomputeMask & static_cast<unsigned>(index)) == 0)
            coefficients = moving.ComputeCoefficients();
    };
    if (m_Cursors.IsContiguousMono()) {
        const float* input = m_Cursors.m_Inputs[0];
        float* output = m_Cursors.m_Outputs[0];
        SBiquadHistory history = m_History[0];
        for (int i = 0; i < samples; ++i) {
            output[i] = ProcessSample(coefficients, history, input[i]);
            advance(i);
        }
        m_History[0] = history;
    } else {
        for (int i = 0; i < samples; ++i) {
            m_Cursors.ReadFrame();
            for (std::size_t c = 0; c < m_History.size(); ++c)
                m_Cursors.m_Frame[c] =
                    ProcessSample(coefficients, m_History[c], m_Cursors.m_Frame[c]);
            m_Cursors.WriteFrame();
            advance(i);
        }
    }
    ramp = moving;
    SetCoefficients(coefficients);
}

} // namespace Lathe::Audio::DSP::Filters
