#include "dsp/filters/ShelfFilter.h"

#include "dsp/FilterProductInfo.h"
#include "dsp/filters/BiquadRamp.h"
#include "dsp/filters/SectionFormulas.h"

namespace Lathe::Audio::DSP::Filters {

using DataModel::Objects::EParamType;

namespace {

const CParamInfos& GetShelfParams() {
    static const CParamInfos params = [] {
        CParamInfos infos(2);
        infos[0] = CParamInfo(EParamType::Float, 10.0, 22000.0, 500.0, "Frequency", "Hz", "",
                              nullptr, nullptr);
        infos[1] =
            CParamInfo(EParamType::Float, -40.0, 40.0, 0.0, "Gain", "dB", "", nullptr, nullptr);
        return infos;
    }();
    return params;
}

} // namespace

inline void CShelfFilter::SValues::Store(SPairRamp& to, int index) const {
    to.m_Omega[index] = m_Omega;
    to.m_Root[index] = m_SqrtA;
}

CShelfFilter::CShelfFilter(int channels) : CBiquadFilter(channels) {
    m_InputParamsInfo = GetShelfParams();
}

void CShelfFilter::OnInputParamsChanged(const IConstParamsValues& values) {
    CParams params;
    if (CopyAll(values, params))
        SetParams(params, *this);
}

void CShelfFilter::SetParams(const CParams& params, const CShelfFilter& known) {
    if (m_SampleRate == 0.0)
        return;
    const SValues v = Convert(0, params, known);
    SetCoefficients(ComputeCoefficients(m_KeptTurn.Get(v.m_Omega, known.m_KeptTurn), v.m_SqrtA));
    m_Ramp[0] = v;
}

void CShelfFilter::SetRampOrder(int order, const IConstParamsValues& rates) {
    CParams params;
    if (CopyAll(rates, params))
        SetRamp(order, params, *this);
    else
        m_Ramp[static_cast<std::size_t>(order)] = SValues();
}

void CShelfFilter::SetRamp(int order, const CParams& rates, const CShelfFilter& known) {
    m_Ramp[static_cast<std::size_t>(order)] = Convert(order, rates, known);
}

CShelfFilter::SValues CShelfFilter::Convert(int order, const CParams& params,
                                            const CShelfFilter& known) {
    const auto o = static_cast<std::size_t>(order);
    return {params[0] * m_InvSampleRate * 6.283185307179586,
            m_KeptGains[o].Get(params[1] * 0.25, known.m_KeptGains[o])};
}

void CShelfFilter::MoveShelves(CBiquadFilter& other, SPairRamp& to, int count, int rampOrders) {
    auto& right = static_cast<CShelfFilter&>(other);
    FillPairRamp(m_Ramp, m_KeptTurn, right.m_Ramp, right.m_KeptTurn, to, count, rampOrders);
}

const IConstFilterProductInfo& CLowShelfFilter::GetProductInfo() const {
    static const CFilterProductInfo info("Marrow Sound", "Low Shelf Filter", "1.0", "", "", 9, "");
    return info;
}

SBiquadCoefficients CLowShelfFilter::ComputeCoefficients(const Math::SSinCos& turn,
                                                         double sqrtA) const {
    return ComputeLowShelf(turn.m_Sin, turn.m_Cos, sqrtA);
}

void CLowShelfFilter::ComputeRamp(const SCoefficientsRoom& room, int count, int rampOrders) {
    FillRamp(m_Ramp, m_KeptTurn, room, count, rampOrders,
             [](const Math::SSinCos& turn, const SValues& v) {
                 return ComputeLowShelf(turn.m_Sin, turn.m_Cos, v.m_SqrtA);
             });
}

ESectionFormula CLowShelfFilter::MovePair(CBiquadFilter& other, SPairRamp& to, int count,
                                          int rampOrders) {
    MoveShelves(other, to, count, rampOrders);
    return ESectionFormula::LowShelf;
}

const IConstFilterProductInfo& CHighShelfFilter::GetProductInfo() const {
    static const CFilterProductInfo info("Marrow Sound", "High Shelf Filter", "1.0", "", "", 9, "");
    return info;
}

SBiquadCoefficients CHighShelfFilter::ComputeCoefficients(const Math::SSinCos& turn,
                                                          double sqrtA) const {
    return ComputeHighShelf(turn.m_Sin, turn.m_Cos, sqrtA);
}

void CHighShelfFilter::ComputeRamp(const SCoefficientsRoom& room, int count, int rampOrders) {
    FillRamp(m_Ramp, m_KeptTurn, room, count, rampOrders,
             [](const Math::SSinCos& turn, const SValues& v) {
                 return ComputeHighShelf(turn.m_Sin, turn.m_Cos, v.m_SqrtA);
             });
}

ESectionFormula CHighShelfFilter::MovePair(CBiquadFilter& other, SPairRamp& to, int count,
                                           int rampOrders) {
    MoveShelves(other, to, count, rampOrders);
    return ESectionFormula::HighShelf;
}

} // namespace Lathe::Audio::DSP::Filters
