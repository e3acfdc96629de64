// The peaking section. Parameters: frequency in Hz, bandwidth in octaves, gain in dB.
#pragma once

#include "dsp/filters/BiquadFilter.h"

#include <array>

namespace Lathe::Audio::DSP::Filters {

class CPeakFilter final : public CBiquadFilter {
public:
    using CParams = std::array<double, 3>;

    explicit CPeakFilter(int channels);

    CPeakFilter* Clone() const override { return new CPeakFilter(*this); }
    const IConstFilterProductInfo& GetProductInfo() const override;
    void OnInputParamsChanged(const IConstParamsValues& values) LATHE_REALTIME override;
    // As OnInputParamsChanged. What another section has computed already is taken from there; it
    // may be this one.
    void SetParams(const CParams& params, const CPeakFilter& known) LATHE_REALTIME;
    // Orders count from 1.
    void SetRamp(int order, const CParams& rates, const CPeakFilter& known) LATHE_REALTIME;
    void ComputeRamp(const SCoefficientsRoom& room, int count, int rampOrders)
        LATHE_REALTIME override;
    ESectionFormula MovePair(CBiquadFilter& other, SPairRamp& to, int count, int rampOrders)
        LATHE_REALTIME override;

protected:
    void SetRampOrder(int order, const IConstParamsValues& rates) LATHE_REALTIME override;

private:
    struct SValues {
        // Moves by a sample: the angle and the bandwidth by adding, the gain by its ratio.
        void Step(const SValues& rates) LATHE_REALTIME;
        void Store(SPairRamp& to, int index) const LATHE_REALTIME;

        // Radians per sample.
        double m_Omega = 0.0;
        double m_HalfBandwidth = 0.0;
        // The square root of the linear gain; in a ramp, its ratio per sample.
        double m_A = 1.0;
    };

    SValues Convert(int order, const CParams& params, const CPeakFilter& known) LATHE_REALTIME;

    // The current values, followed by their ramp by order.
    std::array<SValues, 1 + MaxRampOrders> m_Ramp;
    // Of the last parameters, and of their rates by order: those that rest are asked for again at
    // each end of each block.
    std::array<CKeptGain, 1 + MaxRampOrders> m_KeptGains;
    CKeptTurn m_KeptTurn;
};

} // namespace Lathe::Audio::DSP::Filters
