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
        // Moves by a sample: the angle by adding, the gain by its ratio.
        void Step(const SValues& rates) LATHE_REALTIME {
            m_Omega += rates.m_Omega;
            m_SqrtA *= rates.m_SqrtA;
        }

        // Radians per sample.
        double m_Omega = 0.0;
        // The fourth root of the linear gain; in a ramp, its ratio per sample.
        double m_SqrtA = 1.0;
    };

    explicit CShelfFilter(int channels);

    void SetRampOrder(int order, const IConstParamsValues& rates) LATHE_REALTIME override;
    // From the current values.
    virtual SBiquadCoefficients ComputeCoefficients() const LATHE_REALTIME = 0;

    // The current values, followed by their ramp by order.
    std::array<SValues, 1 + MaxRampOrders> m_Ramp;

private:
    SValues Convert(const IConstParamsValues& values) const LATHE_REALTIME;
};

class CLowShelfFilter final : public CShelfFilter {
public:
    explicit CLowShelfFilter(int channels) : CShelfFilter(channels) {}

    CLowShelfFilter* Clone() const override { return new CLowShelfFilter(*this); }
    const IConstFilterProductInfo& GetProductInfo() const override;
    void ComputeRamp(const SCoefficientsRoom& room, int count, int rampOrders)
        LATHE_REALTIME override;
    void ComputePairRamp(CBiquadFilter& other, const SCoefficientsRoom& room, int count,
                         int rampOrders) LATHE_REALTIME override;

protected:
    SBiquadCoefficients ComputeCoefficients() const LATHE_REALTIME override;
};

class CHighShelfFilter final : public CShelfFilter {
public:
    explicit CHighShelfFilter(int channels) : CShelfFilter(channels) {}

    CHighShelfFilter* Clone() const override { return new CHighShelfFilter(*this); }
    const IConstFilterProductInfo& GetProductInfo() const override;
    void ComputeRamp(const SCoefficientsRoom& room, int count, int rampOrders)
        LATHE_REALTIME override;
    void ComputePairRamp(CBiquadFilter& other, const SCoefficientsRoom& room, int count,
                         int rampOrders) LATHE_REALTIME override;

protected:
    SBiquadCoefficients ComputeCoefficients() const LATHE_REALTIME override;
};

} // namespace Lathe::Audio::DSP::Filters
