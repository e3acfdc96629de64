// The peaking section. Parameters: frequency in Hz, bandwidth in octaves, gain in dB.
#pragma once

#include "dsp/filters/BiquadFilter.h"

#include <array>

namespace Lathe::Audio::DSP::Filters {

class CPeakFilter : public CBiquadFilter {
public:
    explicit CPeakFilter(int channels);

    CPeakFilter* Clone() const override { return new CPeakFilter(*this); }
    const IConstFilterProductInfo& GetProductInfo() const override;
    void OnInputParamsChanged(const IConstParamsValues& values) LATHE_REALTIME override;

protected:
    void SetRampOrder(int order, const IConstParamsValues& rates) LATHE_REALTIME override;
    void ProcessRampedFrames(int samples, int rampOrders) LATHE_REALTIME override;

private:
    struct SValues {
        // Radians per sample.
        double m_Omega = 0.0;
        double m_HalfBandwidth = 0.0;
        // The square root of the linear gain; in a ramp, its ratio per sample.
        double m_A = 1.0;
    };

    // The current values, followed by their ramp by order.
    struct SRamp {
        void Advance(int orders) LATHE_REALTIME;
        SBiquadCoefficients ComputeCoefficients() const LATHE_REALTIME;

        std::array<SValues, 1 + MaxRampOrders> m_Values;
    };

    SValues Convert(const IConstParamsValues& values) const LATHE_REALTIME;

    SRamp m_Ramp;
};

} // namespace Lathe::Audio::DSP::Filters
