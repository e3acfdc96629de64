#include "dsp/filters/PeakFilter.h"

#include "dsp/FilterProductInfo.h"
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

CPeakFilter::CPeakFilter(int channels) : CBiquadFilter(channels, ESectionFormula::Peak) {
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
    if (m_SampleRate != 0.0)
        SetValues(Convert(0, params, known), known);
}

void CPeakFilter::SetRampOrder(int order, const IConstParamsValues& rates) {
    CParams params;
    if (CopyAll(rates, params))
        SetRamp(order, params, *this);
    else
        m_Ramp[static_cast<std::size_t>(order)] = SSectionValues();
}

void CPeakFilter::SetRamp(int order, const CParams& rates, const CPeakFilter& known) {
    m_Ramp[static_cast<std::size_t>(order)] = Convert(order, rates, known);
}

SSectionValues CPeakFilter::Convert(int order, const CParams& params, const CPeakFilter& known) {
    const auto o = static_cast<std::size_t>(order);
    return {params[0] * m_InvSampleRate * 6.283185307179586,
            m_KeptGains[o].Get(0.5 * params[2], known.m_KeptGains[o]), params[1] * 0.5};
}

} // namespace Lathe::Audio::DSP::Filters
