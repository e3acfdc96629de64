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

protected:
    void SetRampOrder(int order, const IConstParamsValues& rates) LATHE_REALTIME override;

private:
    // Order 0 for the parameters themselves.
    SSectionValues Convert(int order, const CParams& params, const CPeakFilter& known)
        LATHE_REALTIME;
};

} // namespace Lathe::Audio::DSP::Filters
