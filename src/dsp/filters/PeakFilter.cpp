#include "dsp/filters/PeakFilter.h"

#include "dsp/FilterProductInfo.h"
#include "dsp/filters/BiquadRamp.h"

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

// The peaking section of the audio EQ cookbook (R. Bristow-Johnson), with 1/Q taken straight from
// the bandwidth; from the square root of the linear gain.
template <class T>
inline TBiquadCoefficients<T> ComputePeak(T sinW, T cosW, T halfBandwidth, T a) {
    const T alpha = sinW * halfBandwidth;
    const T r = 1.0 / (alpha / a + 1.0);
    TBiquadCoefficients<T> c;
    c.m_b0 = (a * alpha + 1.0) * r;
    c.m_b1 = -2.0 * cosW * r;
    c.m_b2 = (1.0 - a * alpha) * r;
    c.m_a1 = -c.m_b1;
    c.m_a2 = (alpha / a - 1.0) * r;
    return c;
}

// For CBiquadFilter::FillRamp.
template <class SValues>
constexpr auto PeakFormula = [](auto sinW, auto cosW, auto value) {
    return ComputePeak(sinW, cosW, value(&SValues::m_HalfBandwidth), value(&SValues::m_A));
};

} // namespace

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
    FillRamp(m_Ramp, room, count, rampOrders, PeakFormula<SValues>);
}

void CPeakFilter::ComputePairRamp(CBiquadFilter& other, const SCoefficientsRoom& room, int count,
                                  int rampOrders) {
    FillPairRamp(m_Ramp, other, static_cast<CPeakFilter&>(other).m_Ramp, room, count, rampOrders,
                 PeakFormula<SValues>);
}

} // namespace Lathe::Audio::DSP::Filters
