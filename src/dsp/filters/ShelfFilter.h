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
    CShelfFilter(int channels, ESectionFormula formula);

    void SetRampOrder(int order, const IConstParamsValues& rates) LATHE_REALTIME override;

private:
    // Order 0 for the parameters themselves.
    SSectionValues Convert(int order, const CParams& params, const CShelfFilter& known)
        LATHE_REALTIME;
};

class CLowShelfFilter final : public CShelfFilter {
public:
    explicit CLowShelfFilter(int channels);

    CLowShelfFilter* Clone() const override { return new CLowShelfFilter(*this); }
    const IConstFilterProductInfo& GetProductInfo() const override;
};

class CHighShelfFilter final : public CShelfFilter {
public:
    explicit CHighShelfFilter(int channels);

    CHighShelfFilter* Clone() const override { return new CHighShelfFilter(*this); }
    const IConstFilterProductInfo& GetProductInfo() const override;
};

} // namespace Lathe::Audio::DSP::Filters
