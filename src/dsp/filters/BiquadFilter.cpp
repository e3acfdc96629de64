#include "dsp/filters/BiquadFilter.h"

#include "core/Differs.h"
#include "dsp/filters/BiquadSample.h"
#include "dsp/filters/ResponseCurves.h"
#include "dsp/filters/SectionFormulas.h"
#include "dsp/properties/FilterPropertiesVariations.h"
#include "math/PlainFunction.h"

#include <algorithm>

namespace Lathe::Audio::DSP::Filters {

namespace {

const CCurveInfos& GetBiquadCurves() {
    static const CCurveInfos curves = [] {
        CCurveInfos infos(3);
        const CParamInfo& axis = GetFrequencyAxis();
        DescribeResponse(infos[0], "Frequency Response (Gain)", axis, EResponse::Gain, "dB");
        DescribeResponse(infos[1], "Frequency Response (Gain dB)", axis, EResponse::GaindB);
        DescribeResponse(infos[2], "Frequency Response (Phase)", axis, EResponse::Phase);
        return infos;
    }();
    return curves;
}

template <ESectionFormula Formula>
void ComputeFrames(const SRampFrames& frames, int count, SBiquadCoefficients* to) {
    for (int i = 0; i < count; ++i)
        to[i] = ComputeSection<Formula>(frames.m_Sin[i], frames.m_Cos[i], frames.m_Root[i],
                                        frames.m_HalfBandwidth[i]);
}

} // namespace

CBiquadFilter::CBiquadFilter(int channels, ESectionFormula formula)
    : m_Cursors(channels),
      m_InputChannels(channels),
      m_OutputChannels(channels),
      m_ProcessInfo(channels, channels),
      m_History(static_cast<std::size_t>(channels)),
      m_Formula(formula) {
    m_OutputCurvesInfo = GetBiquadCurves();
    WireOutputs();
}

CBiquadFilter::CBiquadFilter(const CBiquadFilter& other)
    : CBaseCoreDSPFilter(other),
      m_Cursors(other.m_Cursors),
      m_InputChannels(other.m_InputChannels),
      m_OutputChannels(other.m_OutputChannels),
      m_ProcessInfo(other.m_ProcessInfo),
      m_Coefficients(other.m_Coefficients),
      m_History(other.m_History),
      m_InvSampleRate(other.m_InvSampleRate),
      m_Ramp(other.m_Ramp),
      m_KeptGains(other.m_KeptGains),
      m_Formula(other.m_Formula),
      m_KeptTurn(other.m_KeptTurn),
      m_GainResponse(other.m_GainResponse),
      m_PhaseResponse(other.m_PhaseResponse),
      m_CoefficientsChanged(other.m_CoefficientsChanged),
      m_OutputCurvesDirty(other.m_OutputCurvesDirty) {
    WireOutputs();
}

void CBiquadFilter::WireOutputs() {
    m_GainResponsedB.SetCount(2);
    m_GainResponsedB.SetFunction(0, &m_GainResponse, false);
    m_GainResponsedB.SetFunction(1, &Math::TFunction<&Math::FunctionsLibrary::TodB>::GetInstance(),
                                 false);
    m_OutputCurves.SetPointer(0, &m_GainResponse);
    m_OutputCurves.SetPointer(1, &m_GainResponsedB);
    m_OutputCurves.SetPointer(2, &m_PhaseResponse);
}

bool CBiquadFilter::UpdateOutputs() {
    if (!m_CoefficientsChanged)
        return false;
    m_CoefficientsChanged = false;
    const bool gainChanged = UpdateResponse(m_GainResponse);
    const bool phaseChanged = UpdateResponse(m_PhaseResponse);
    if (gainChanged) {
        m_OutputCurvesDirty[0].SetDirty();
        m_OutputCurvesDirty[1].SetDirty();
    }
    if (phaseChanged)
        m_OutputCurvesDirty[2].SetDirty();
    return gainChanged || phaseChanged;
}

bool CBiquadFilter::UpdateResponse(Algorithm::CBiquadFrequencyResponse& response) {
    response.m_InvSampleRate = m_InvSampleRate;
    const SBiquadCoefficients& c = m_Coefficients;
    if (!Core::Differs(c.m_b0, response.m_InputCoeff0) &&
        !Core::Differs(c.m_b1, response.m_InputCoeff1) &&
        !Core::Differs(c.m_b2, response.m_InputCoeff2) &&
        !Core::Differs(c.m_a1, response.m_OutputCoeff1) &&
        !Core::Differs(c.m_a2, response.m_OutputCoeff2))
        return false;
    response.m_InputCoeff0 = c.m_b0;
    response.m_InputCoeff1 = c.m_b1;
    response.m_InputCoeff2 = c.m_b2;
    response.m_OutputCoeff1 = c.m_a1;
    response.m_OutputCoeff2 = c.m_a2;
    return true;
}

void CBiquadFilter::OnSilence(int samples) {
    if (samples > 0)
        CBiquadFilter::OnReset();
}

void CBiquadFilter::OnInit(const CFilterInitInfo&) {
    m_InvSampleRate = m_SampleRate != 0.0 ? 1.0 / m_SampleRate : 0.0;
}

void CBiquadFilter::OnReset() {
    std::fill(m_History.begin(), m_History.end(), SBiquadHistory());
}

void CBiquadFilter::ProcessBlock(const CFilterProcessData& data) {
    if (!HasChannels(data, m_InputChannels, m_OutputChannels))
        return;
    const int rampOrders = data.m_pVariations ? StartBlock(*data.m_pVariations) : 0;
    m_Cursors.Gather(*data.m_pInputs, *data.m_pOutputs);
    if (m_Cursors.IsContiguousMono())
        FilterSamples(m_Cursors.m_Inputs[0], m_Cursors.m_Outputs[0], data.m_SamplesCount,
                      rampOrders);
    else
        ProcessFrames(data.m_SamplesCount, rampOrders);
    if (data.m_pVariations)
        SetInputValues(data.m_pVariations->GetEnd());
}

int CBiquadFilter::StartBlock(const IConstFilterPropertiesVariations& variations) {
    SetInputValues(variations.GetStart());
    const IConstRates& rates = variations.GetVariations(Params);
    // Without a rate nothing moves, as in OnInputParamsChanged.
    const int rampOrders = m_SampleRate != 0.0 ? std::min(rates.GetCount(), MaxRampOrders) : 0;
    for (int order = 1; order <= rampOrders; ++order)
        SetRampOrder(order, rates.GetElement(order - 1));
    return rampOrders;
}

// Coefficients that move are computed for a chunk of frames ahead, so that the calls of sine and
// cosine don't break up the recursion.
template <class TProcess>
void CBiquadFilter::ForFrames(int samples, int rampOrders, TProcess process) {
    if (rampOrders == 0) {
        process(samples, [coefficients = m_Coefficients](int) { return coefficients; });
        return;
    }
    static_assert(m_RecomputeMask == 0);
    constexpr int chunk = 16;
    // With those of the frame behind.
    SBiquadCoefficients coefficients[chunk + 1];
    for (int at = 0; at < samples; at += chunk) {
        const int count = std::min(chunk, samples - at);
        ComputeRamp(coefficients, count, rampOrders);
        process(count, [&coefficients](int i) { return coefficients[i]; });
    }
}

void CBiquadFilter::ComputeRamp(SBiquadCoefficients* to, int count, int rampOrders) {
    SRampFrames frames;
    FillFrames(GetMoving(), frames, count, rampOrders);
    to[0] = m_Coefficients;
    switch (m_Formula) {
    case ESectionFormula::Peak:
        ComputeFrames<ESectionFormula::Peak>(frames, count, to + 1);
        break;
    case ESectionFormula::LowShelf:
        ComputeFrames<ESectionFormula::LowShelf>(frames, count, to + 1);
        break;
    case ESectionFormula::HighShelf:
        ComputeFrames<ESectionFormula::HighShelf>(frames, count, to + 1);
        break;
    }
    SetCoefficients(to[count]);
}

SMovingSection CBiquadFilter::GetMoving() {
    return {m_Ramp, m_KeptTurn, m_Formula == ESectionFormula::Peak};
}

void CBiquadFilter::MovePair(CBiquadFilter& other, SRampFrames& to, int count, int rampOrders) {
    FillFrames(GetMoving(), other.GetMoving(), to, count, rampOrders);
}

void CBiquadFilter::SetValues(const SSectionValues& values, const CBiquadFilter& known) {
    SetCoefficients(Compute(values, m_KeptTurn.Get(values.m_Omega, known.m_KeptTurn)));
    m_Ramp[0] = values;
}

SBiquadCoefficients CBiquadFilter::Compute(const SSectionValues& values,
                                           const Math::SSinCos& turn) const {
    const auto& [sine, cosine] = turn;
    switch (m_Formula) {
    case ESectionFormula::Peak:
        return ComputePeak(sine, cosine, values.m_HalfBandwidth, values.m_Root);
    case ESectionFormula::LowShelf:
        return ComputeLowShelf(sine, cosine, values.m_Root);
    case ESectionFormula::HighShelf:
        break;
    }
    return ComputeHighShelf(sine, cosine, values.m_Root);
}

void CBiquadFilter::ProcessFrames(int samples, int rampOrders) {
    ForFrames(samples, rampOrders, [this](int count, auto getCoefficients) {
        for (int i = 0; i < count; ++i) {
            m_Cursors.ReadFrame();
            for (std::size_t c = 0; c < m_History.size(); ++c)
                m_Cursors.m_Frame[c] =
                    ProcessSample(getCoefficients(i), m_History[c], m_Cursors.m_Frame[c]);
            m_Cursors.WriteFrame();
        }
    });
}

// As the loop over frames, with the history in registers.
void CBiquadFilter::FilterSamples(const float* input, float* output, int count, int rampOrders) {
    ForFrames(count, rampOrders, [&](int part, auto getCoefficients) {
        SBiquadHistory history = m_History[0];
        for (int i = 0; i < part; ++i)
            output[i] = ProcessSample(getCoefficients(i), history, input[i]);
        m_History[0] = history;
        input += part;
        output += part;
    });
}

} // namespace Lathe::Audio::DSP::Filters
