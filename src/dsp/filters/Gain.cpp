#include "dsp/filters/Gain.h"

#include "core/Differs.h"
#include "datamodel/objects/text/ParamValueToText.h"
#include "dsp/FilterProductInfo.h"
#include "dsp/filters/Denormal.h"
#include "dsp/filters/ResponseCurves.h"
#include "dsp/properties/FilterPropertiesVariations.h"

#include <algorithm>

namespace Lathe::Audio::DSP::Filters {

using DataModel::Objects::CParamValueToText;
using DataModel::Objects::EParamType;

namespace {

const CParamInfos& GetGainParams() {
    static const CParamInfos params = [] {
        CParamInfos infos(1);
        infos[0] = CParamInfo(EParamType::Float, -60.0, 60.0, 0.0, "Gain", "dB", "",
                              new CParamValueToText("%+.1f", false, "{value}"), nullptr);
        return infos;
    }();
    return params;
}

const CCurveInfos& GetGainCurves() {
    static const CCurveInfos curves = [] {
        CCurveInfos infos(2);
        DescribeResponse(infos[0], "Frequency Response (Gain)", GetFrequencyAxis(), EResponse::Gain,
                         "dB");
        DescribeResponse(infos[1], "Frequency Response (Phase)", GetFrequencyAxis(),
                         EResponse::Phase);
        return infos;
    }();
    return curves;
}

// The gain of a sample; moves on to the next.
template <class TRamp>
inline float TakeGain(TRamp& ramp, int orders) {
    const float gain = ramp[0];
    if (orders > 1)
        ramp[1] *= ramp[2];
    if (orders > 0)
        ramp[0] *= ramp[1];
    return gain;
}

float Scale(float gain, float sample) {
    const float scaled = gain * sample;
    return IsZeroOrDenormal(scaled) ? 0.0f : scaled;
}

} // namespace

CGain::CGain(int channels)
    : m_Cursors(channels),
      m_InputChannels(channels),
      m_OutputChannels(channels),
      m_ProcessInfo(channels, channels) {
    m_InputParamsInfo = GetGainParams();
    m_OutputCurvesInfo = GetGainCurves();
    WireOutputs();
}

CGain::CGain(const CGain& other)
    : CBaseCoreDSPFilter(other),
      m_Cursors(other.m_Cursors),
      m_InputChannels(other.m_InputChannels),
      m_OutputChannels(other.m_OutputChannels),
      m_ProcessInfo(other.m_ProcessInfo),
      m_Gain(other.m_Gain),
      m_KeptGains(other.m_KeptGains),
      m_GainFunction(other.m_GainFunction),
      m_PhaseFunction(other.m_PhaseFunction),
      m_OutputCurvesDirty(other.m_OutputCurvesDirty) {
    WireOutputs();
}

void CGain::WireOutputs() {
    m_OutputCurves.SetPointer(0, &m_GainFunction);
    m_OutputCurves.SetPointer(1, &m_PhaseFunction);
}

const IConstFilterProductInfo& CGain::GetProductInfo() const {
    static const CFilterProductInfo info("Marrow Sound", "Marrow's Gain", "2.0", "", "", 9, "");
    return info;
}

bool CGain::UpdateOutputs() {
    m_PhaseFunction.SetValue(0.0);
    const double gain = m_Gain[0];
    if (!Core::Differs(gain, m_GainFunction.GetValue()))
        return false;
    m_GainFunction.SetValue(gain);
    m_OutputCurvesDirty[0].SetDirty();
    return true;
}

void CGain::OnInputParamsChanged(const IConstParamsValues& values) {
    CParams params;
    if (CopyAll(values, params))
        SetParams(params, *this);
}

void CGain::SetParams(const CParams& params, const CGain& known) {
    if (m_SampleRate != 0.0)
        m_Gain[0] = ConvertGain(0, params[0], known);
}

// A slope in dB is a ratio per sample.
void CGain::SetRamp(int order, const CParams& rates, const CGain& known) {
    m_Gain[static_cast<std::size_t>(order)] = ConvertGain(order, rates[0], known);
}

float CGain::ConvertGain(int order, double dB, const CGain& known) {
    const auto o = static_cast<std::size_t>(order);
    return static_cast<float>(m_KeptGains[o].Get(dB, known.m_KeptGains[o]));
}

void CGain::ProcessBlock(const CFilterProcessData& data) {
    if (!HasChannels(data, m_InputChannels, m_OutputChannels))
        return;
    const int rampOrders = data.m_pVariations ? StartBlock(*data.m_pVariations) : 0;
    m_Cursors.Gather(*data.m_pInputs, *data.m_pOutputs);
    ProcessFrames(data.m_SamplesCount, rampOrders);
    if (data.m_pVariations)
        SetInputValues(data.m_pVariations->GetEnd());
}

int CGain::StartBlock(const IConstFilterPropertiesVariations& variations) {
    SetInputValues(variations.GetStart());
    const IConstRates& rates = variations.GetVariations(Params);
    const int orders = std::min(rates.GetCount(), MaxRampOrders);
    for (int order = 1; order <= orders; ++order) {
        CParams rate;
        if (CopyAll(rates.GetElement(order - 1), rate))
            SetRamp(order, rate, *this);
    }
    return orders;
}

void CGain::ProcessFrames(int samples, int rampOrders) {
    if (m_Cursors.IsContiguousMono()) {
        ScaleSamples(m_Cursors.m_Inputs[0], m_Cursors.m_Outputs[0], samples, rampOrders);
        return;
    }
    for (int i = 0; i < samples; ++i) {
        m_Cursors.ReadFrame();
        const float gain = TakeGain(m_Gain, rampOrders);
        for (float& sample : m_Cursors.m_Frame)
            sample = Scale(gain, sample);
        m_Cursors.WriteFrame();
    }
}

// Side by side, since each gain waits for the one before.
void CGain::FillPairGains(CGain& other, float* gains, float* otherGains, int count,
                          int rampOrders) {
    CRamp first = m_Gain;
    CRamp second = other.m_Gain;
    for (int i = 0; i < count; ++i) {
        gains[i] = TakeGain(first, rampOrders);
        otherGains[i] = TakeGain(second, rampOrders);
    }
    m_Gain = first;
    other.m_Gain = second;
}

// As the loop over frames, with the gains ahead of the samples, which then go side by side.
void CGain::ScaleSamples(const float* input, float* output, int samples, int rampOrders) {
    constexpr int chunk = 64;
    float gains[chunk];
    for (int at = 0; at < samples; at += chunk) {
        const int count = std::min(chunk, samples - at);
        CRamp ramp = m_Gain;
        for (int i = 0; i < count; ++i)
            gains[i] = TakeGain(ramp, rampOrders);
        m_Gain = ramp;
        for (int i = 0; i < count; ++i)
            output[at + i] = Scale(gains[i], input[at + i]);
    }
}

} // namespace Lathe::Audio::DSP::Filters
