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

    explicit CShelfFilter(int channels);

    void SetRampOrder(int order, const IConstParamsValues& rates) LATHE_REALTIME override;
    void AdvanceRamp(int orders) LATHE_REALTIME;
    virtual void RecomputeCoefficients() LATHE_REALTIME = 0;

    std::array<SValues, 1 + MaxRampOrders> m_Values;

private:
    SValues Convert(const IConstParamsValues& values) const LATHE_REALTIME;
};

class CLowShelfFilter : public CShelfFilter {
public:
    explicit CLowShelfFilter(int channels) : CShelfFilter(channels) {}

    CLowShelfFilter* Clone() const override { return new CLowShelfFilter(*this); }
    const IConstFilterProductInfo& GetProductInfo() const override;

protected:
    void RecomputeCoefficients() LATHE_REALTIME override;
    void ProcessRampedFrames(int samples, int rampOrders) LATHE_REALTIME override;

private:
    friend class CBiquadFilter;
    SBiquadCoefficients ComputeCoefficients() const LATHE_REALTIME;
};

class CHighShelfFilter : public CShelfFilter {
public:
    explicit CHighShelfFilter(int channels) : CShelfFilter(channels) {}

    CHighShelfFilter* Clone() const override { return new CHighShelfFilter(*this); }
    const IConstFilterProductInfo& GetProductInfo() const override;

protected:
    void RecomputeCoefficients() LATHE_REALTIME override;
    void ProcessRampedFrames(int samples, int rampOrders) LATHE_REALTIME override;

private:
    friend class CBiquadFilter;
    SBiquadCoefficients ComputeCoefficients() const LATHE_REALTIME;
};

} // namespace Lathe::Audio::DSP::Filters
