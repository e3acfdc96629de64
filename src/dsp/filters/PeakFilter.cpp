#include "dsp/filters/PeakFilter.h"

#include "dsp/FilterProductInfo.h"
#include "dsp/filters/BiquadRamp.h"
#include "dsp/filters/SectionFormulas.h"

namespace Lathe::Audio::DSP::Filters {

using DataModel::Objects::EParamType;

namespace {

const CParamInfos& GetPeakParams() {
    static const CParamInfos params = [] {
        CParamInfos infos(3);
        infos[0] = CParamInfo(EParamType::Float, 20.0, 16000.0, 500.0, "Frequency", "Hz", "",
                              nullptr, nullptr);
        infos[1] = CParamInfo(EParamType::Float, static_cast<double>(0.01f), 5.0, 1.0, "Bandwidth",
                              "Octave", "", nullptr, nullptr);
        infos[2] =
            CParamInfo(EParamType::Float, -40.0, 40.0, 0.0, "Gain", "dB", "", nullptr, nullptr);
        return infos;
    }();
    return params;
}

} // namespace

inline void CPeakFilter::SValues::Store(SPairRamp& to, int index) const {
    to.m_Omega[index] = m_Omega;
    to.m_HalfBandwidth[index] = m_HalfBandwidth;
    to.m_Root[index] = m_A;
}

inline void CPeakFilter::SValues::Step(const SValues& rates) {
    m_Omega += rates.m_Omega;
    m_HalfBandwidth += rates.m_HalfBandwidth;
    m_A *= rates.m_A;
}

CPeakFilter::CPeakFilter(int channels) : CBiquadFilter(channels) {
    m_InputParamsInfo = GetPeakParams();
}

const IConstFilterProductInfo& CPeakFilter::GetProductInfo() const {
    static const CFilterProductInfo info("Marrow Sound", "Peak Filter", "1.0", "", "", 9, "");
    return info;
}

void CPeakFilter::OnInputParamsChanged(const IConstParamsValues& values) {
    CParams params;
    if (CopyAll(values, params))
        SetParams(params, *this);
}

void CPeakFilter::SetParams(const CParams& params, const CPeakFilter& known) {
    if (m_SampleRate == 0.0)
        return;
    const SValues v = Convert(0, params, known);
    const Math::SSinCos& turn = m_KeptTurn.Get(v.m_Omega, known.m_KeptTurn);
    SetCoefficients(ComputePeak(turn.m_Sin, turn.m_Cos, v.m_HalfBandwidth, v.m_A));
    m_Ramp[0] = v;
}

void CPeakFilter::SetRampOrder(int order, const IConstParamsValues& rates) {
    CParams params;
    if (CopyAll(rates, params))
        SetRamp(order, params, *this);
    else
        m_Ramp[static_cast<std::size_t>(order)] = SValues();
}

void CPeakFilter::SetRamp(int order, const CParams& rates, const CPeakFilter& known) {
    m_Ramp[static_cast<std::size_t>(order)] = Convert(order, rates, known);
}

CPeakFilter::SValues CPeakFilter::Convert(int order, const CParams& params,
                                          const CPeakFilter& known) {
    const auto o = static_cast<std::size_t>(order);
    return {params[0] * m_InvSampleRate * 6.283185307179586, params[1] * 0.5,
            m_KeptGains[o].Get(0.5 * params[2], known.m_KeptGains[o])};
}

void CPeakFilter::ComputeRamp(const SCoefficientsRoom& room, int count, int rampOrders) {
    FillRamp(m_Ramp, m_KeptTurn, room, count, rampOrders,
             [](const Math::SSinCos& turn, const SValues& v) {
                 return ComputePeak(turn.m_Sin, turn.m_Cos, v.m_HalfBandwidth, v.m_A);
             });
}

ESectionFormula CPeakFilter::MovePair(CBiquadFilter& other, SPairRamp& to, int count,
                                      int rampOrders) {
    auto& right = static_cast<CPeakFilter&>(other);
    FillPairRamp(m_Ramp, m_KeptTurn, right.m_Ramp, right.m_KeptTurn, to, count, rampOrders);
    return ESectionFormula::Peak;
}

} // namespace Lathe::Audio::DSP::Filters
