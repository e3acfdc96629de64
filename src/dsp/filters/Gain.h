// The gain stage: one multiplication a sample, with a ramp in ratios.
#pragma once

#include "core/containers/ValueVector.h"
#include "dsp/BaseCoreDSPFilter.h"
#include "dsp/filters/ChannelCursors.h"
#include "math/Constant.h"
#include "math/FunctionsLibrary.h"
#include "math/KeptResult.h"

#include <array>

namespace Lathe::Audio::DSP::Filters {

class CGain final : public CBaseCoreDSPFilter {
public:
    explicit CGain(int channels);
    CGain(const CGain& other);
    CGain& operator=(const CGain&) = delete;

    CGain* Clone() const override { return new CGain(*this); }
    const IConstFilterProductInfo& GetProductInfo() const override;
    const IProcessInfo& GetProcessInfo() const LATHE_REALTIME override { return m_ProcessInfo; }
    bool UpdateOutputs() LATHE_REALTIME override;
    // Linear gain, phase.
    const IConstCurves& GetOutputCurves() const LATHE_REALTIME override { return m_OutputCurves; }
    IDirtyFlags& GetOutputCurvesDirty() LATHE_REALTIME override { return m_OutputCurvesDirty; }

    // One value, the gain in dB; ignored before Init and with any other number of values.
    void OnInputParamsChanged(const IConstParamsValues& values) LATHE_REALTIME override;

    // A block whose frames another walks through: SetParams of the start, if it is new, and the
    // ramp, then for some samples after the others either the gains or ScaleSamples, then SetParams
    // of the end, if it is new.

    using CParams = std::array<double, 1>;
    // Room for so many orders of ramp.
    static constexpr int MaxRampOrders = 2;
    // As OnInputParamsChanged. What another gain has computed already is taken from there; it may
    // be this one.
    void SetParams(const CParams& params, const CGain& known) LATHE_REALTIME;
    // Orders count from 1.
    void SetRamp(int order, const CParams& rates, const CGain& known) LATHE_REALTIME;
    // The gain factors of the next samples, of this and of another channel with as many orders.
    // What they scale to zero or denormal is zero.
    void FillPairGains(CGain& other, float* gains, float* otherGains, int count, int rampOrders)
        LATHE_REALTIME;
    // The next samples of one channel; the output may be the input.
    void ScaleSamples(const float* input, float* output, int samples, int rampOrders)
        LATHE_REALTIME;

protected:
    void ProcessBlock(const CFilterProcessData& data) LATHE_REALTIME override;

private:
    using CKeptGain = Math::TKeptResult<double, &Math::FunctionsLibrary::FromdB>;
    using CRamp = std::array<float, 1 + MaxRampOrders>;

    void WireOutputs();
    float ConvertGain(int order, double dB, const CGain& known) LATHE_REALTIME;
    // Applies the start values. Returns the orders of the ramp.
    int StartBlock(const IConstFilterPropertiesVariations& variations) LATHE_REALTIME;
    void ProcessFrames(int samples, int rampOrders) LATHE_REALTIME;

    CChannelCursors m_Cursors;
    int m_InputChannels;
    int m_OutputChannels;
    CProcessInfo m_ProcessInfo;
    // The linear gain, followed by the ratio per sample of each ramp order.
    CRamp m_Gain{1.0f, 1.0f, 1.0f};
    // Of the last values of each order: a gain that rests is asked for again at each end of each
    // block.
    std::array<CKeptGain, 1 + MaxRampOrders> m_KeptGains;

    Math::CConstantFunction m_GainFunction{1.0};
    Math::CConstantFunction m_PhaseFunction{0.0};
    CoreUtilities::TCollection<Core::CDirty, Core::IDirty> m_OutputCurvesDirty{2};
    CoreUtilities::TPointersValueVector<Math::IFunction> m_OutputCurves{2};
};

} // namespace Lathe::Audio::DSP::Filters
