// The two shelving sections. Parameters: frequency in Hz, gain in dB. The Q is fixed at 1/sqrt(2).
#pragma once

#include "dsp/filters/BiquadFilter.h"

#include <array>

namespace Lathe::Audio::DSP::Filters {

class CShelfFilter : public CBiquadFilter {
public:
    void OnInputParamsChanged(const IConstParamsValues& values) LATHE_REALTIME override;

protected:
    struct SValues {
        // Radians per sample.
        double m_Omega = 0.0;
        // The fourth root of the linear gain; in a ramp, its ratio per sample.
        double m_SqrtA = 1.0;
    };

    // The current values, followed by their ramp by order.
    struct SRamp {
        void Advance(int orders) LATHE_REALTIME {
            for (auto order = static_cast<std::size_t>(orders); order > 0; --order) {
                m_Values[order - 1].m_Omega += m_Values[order].m_Omega;
                m_Values[order - 1].m_SqrtA *= m_Values[order].m_SqrtA;
            }
        }

        std::array<SValues, 1 + MaxRampOrders> m_Values;
    };

    explicit CShelfFilter(int channels);

    void SetRampOrder(int order, const IConstParamsValues& rates) LATHE_REALTIME override;
    // From the current values.
    virtual SBiquadCoefficients ComputeCoefficients() const LATHE_REALTIME = 0;

    SRamp m_Ramp;

private:
    SValues Convert(const IConstParamsValues& values) const LATHE_REALTIME;
};

class CLowShelfFilter : public CShelfFilter {
public:
    explicit CLowShelfFilter(int channels) : CShelfFilter(channels) {}

    CLowShelfFilter* Clone() const override { return new CLowShelfFilter(*this); }
    const IConstFilterProductInfo& GetProductInfo() const override;

protected:
    SBiquadCoefficients ComputeCoefficients() const LATHE_REALTIME override;
    void ProcessRampedFrames(int samples, int rampOrders) LATHE_REALTIME override;
};

class CHighShelfFilter : public CShelfFilter {
public:
    explicit CHighShelfFilter(int channels) : CShelfFilter(channels) {}

    CHighShelfFilter* Clone() const override { return new CHighShelfFilter(*this); }
    const IConstFilterProductInfo& GetProductInfo() const override;

protected:
    SBiquadCoefficients ComputeCoefficients() const LATHE_REALTIME override;
    void ProcessRampedFrames(int samples, int rampOrders) LATHE_REALTIME override;
};

} // namespace Lathe::Audio::DSP::Filters
