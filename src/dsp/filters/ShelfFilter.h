// The two shelving sections. Parameters: frequency in Hz, gain in dB. The Q is fixed at 1/sqrt(2).
#pragma once

#include "dsp/filters/BiquadFilter.h"

#include <array>

namespace Lathe::Audio::DSP::Filters {

class CShelfFilter : public CBiquadFilter {
public:
    using CParams = std::array<double, 2>;

    void OnInputParamsChanged(const IConstParamsValues& values) LATHE_REALTIME override;
    // As OnInputParamsChanged. What another section has computed already is taken from there; it
    // may be this one.
    void SetParams(const CParams& params, const CShelfFilter& known) LATHE_REALTIME;
    // Orders count from 1.
    void SetRamp(int order, const CParams& rates, const CShelfFilter& known) LATHE_REALTIME;

protected:
    struct SValues {
        // Moves by a sample: the angle by adding, the gain by its ratio.
        void Step(const SValues& rates) LATHE_REALTIME {
            m_Omega += rates.m_Omega;
            m_SqrtA *= rates.m_SqrtA;
        }
        void Store(SPairRamp& to, int index) const LATHE_REALTIME;

        // Radians per sample.
        double m_Omega = 0.0;
        // The fourth root of the linear gain; in a ramp, its ratio per sample.
        double m_SqrtA = 1.0;
    };

    explicit CShelfFilter(int channels);

    void SetRampOrder(int order, const IConstParamsValues& rates) LATHE_REALTIME override;
    // From the sine and cosine of the angle.
    virtual SBiquadCoefficients ComputeCoefficients(const Math::SSinCos& turn, double sqrtA) const
        LATHE_REALTIME = 0;

    // MovePair's work.
    void MoveShelves(CBiquadFilter& other, SPairRamp& to, int count, int rampOrders) LATHE_REALTIME;

    // The current values, followed by their ramp by order.
    std::array<SValues, 1 + MaxRampOrders> m_Ramp;
    CKeptTurn m_KeptTurn;

private:
    SValues Convert(int order, const CParams& params, const CShelfFilter& known) LATHE_REALTIME;

    // Of the last parameters, and of their rates by order: those that rest are asked for again at
    // each end of each block.
    std::array<CKeptGain, 1 + MaxRampOrders> m_KeptGains;
};

class CLowShelfFilter final : public CShelfFilter {
public:
    explicit CLowShelfFilter(int channels) : CShelfFilter(channels) {}

    CLowShelfFilter* Clone() const override { return new CLowShelfFilter(*this); }
    const IConstFilterProductInfo& GetProductInfo() const override;
    void ComputeRamp(const SCoefficientsRoom& room, int count, int rampOrders)
        LATHE_REALTIME override;
    ESectionFormula MovePair(CBiquadFilter& other, SPairRamp& to, int count, int rampOrders)
        LATHE_REALTIME override;

protected:
    SBiquadCoefficients ComputeCoefficients(const Math::SSinCos& turn, double sqrtA) const
        LATHE_REALTIME override;
};

class CHighShelfFilter final : public CShelfFilter {
public:
    explicit CHighShelfFilter(int channels) : CShelfFilter(channels) {}

    CHighShelfFilter* Clone() const override { return new CHighShelfFilter(*this); }
    const IConstFilterProductInfo& GetProductInfo() const override;
    void ComputeRamp(const SCoefficientsRoom& room, int count, int rampOrders)
        LATHE_REALTIME override;
    ESectionFormula MovePair(CBiquadFilter& other, SPairRamp& to, int count, int rampOrders)
        LATHE_REALTIME override;

protected:
    SBiquadCoefficients ComputeCoefficients(const Math::SSinCos& turn, double sqrtA) const
        LATHE_REALTIME override;
};

} // namespace Lathe::Audio::DSP::Filters
