#include "dsp/filters/ShelfFilter.h"

#include "dsp/FilterProductInfo.h"
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

CShelfFilter::CShelfFilter(int channels, ESectionFormula formula)
    : CBiquadFilter(channels, formula) {
    m_InputParamsInfo = GetShelfParams();
}

void CShelfFilter::OnInputParamsChanged(const IConstParamsValues& values) {
    CParams params;
    if (CopyAll(values, params))
        SetParams(params, *this);
}

void CShelfFilter::SetParams(const CParams& params, const CShelfFilter& known) {
    if (m_SampleRate != 0.0)
        SetValues(Convert(0, params, known), known);
}

void CShelfFilter::SetRampOrder(int order, const IConstParamsValues& rates) {
    CParams params;
    if (CopyAll(rates, params))
        SetRamp(order, params, *this);
    else
        m_Ramp[static_cast<std::size_t>(order)] = SSectionValues();
}

void CShelfFilter::SetRamp(int order, const CParams& rates, const CShelfFilter& known) {
    m_Ramp[static_cast<std::size_t>(order)] = Convert(order, rates, known);
}

SSectionValues CShelfFilter::Convert(int order, const CParams& params, const CShelfFilter& known) {
    const auto o = static_cast<std::size_t>(order);
    return {params[0] * m_InvSampleRate * 6.283185307179586,
            m_KeptGains[o].Get(params[1] * 0.25, known.m_KeptGains[o])};
}

CLowShelfFilter::CLowShelfFilter(int channels)
    : CShelfFilter(channels, ESectionFormula::LowShelf) {}

const IConstFilterProductInfo& CLowShelfFilter::GetProductInfo() const {
    static const CFilterProductInfo info("Marrow Sound", "Low Shelf Filter", "1.0", "", "", 9, "");
    return info;
}

CHighShelfFilter::CHighShelfFilter(int channels)
    : CShelfFilter(channels, ESectionFormula::HighShelf) {}

const IConstFilterProductInfo& CHighShelfFilter::GetProductInfo() const {
    static const CFilterProductInfo info("Marrow Sound", "High Shelf Filter", "1.0", "", "", 9, "");
    return info;
}

} // namespace Lathe::Audio::DSP::Filters
