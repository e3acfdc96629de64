#include "dsp/filters/ShelfFilter.h"

#include "dsp/FilterProductInfo.h"
#include "dsp/filters/BiquadRamp.h"

namespace Lathe::Audio::DSP::Filters {

using DataModel::Objects::EParamType;

namespace {

constexpr double s_Sqrt2 = 1.4142135623730951;

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

// Formulas of the audio EQ cookbook (R. Bristow-Johnson) with a slope of 1, from the angle and
// the fourth root of the linear gain.

template <class T>
inline TBiquadCoefficients<T> ComputeLowShelf(T sinW, T cosW, T sqrtA) {
    const T a = sqrtA * sqrtA;
    const T beta = sinW * sqrtA * s_Sqrt2;
    const T r = 1.0 / ((a + 1.0) + (a - 1.0) * cosW + beta);
    TBiquadCoefficients<T> c;
    c.m_b0 = a * ((a + 1.0) - (a - 1.0) * cosW + beta) * r;
    c.m_b1 = 2.0 * a * ((a - 1.0) - (a + 1.0) * cosW) * r;
    c.m_b2 = a * ((a + 1.0) - (a - 1.0) * cosW - beta) * r;
    c.m_a1 = 2.0 * ((a - 1.0) + (a + 1.0) * cosW) * r;
    c.m_a2 = -((a + 1.0) + (a - 1.0) * cosW - beta) * r;
    return c;
}

template <class T>
inline TBiquadCoefficients<T> ComputeHighShelf(T sinW, T cosW, T sqrtA) {
    const T a = sqrtA * sqrtA;
    const T beta = sinW * sqrtA * s_Sqrt2;
    const T r = 1.0 / ((a + 1.0) - (a - 1.0) * cosW + beta);
    TBiquadCoefficients<T> c;
    c.m_b0 = a * ((a + 1.0) + (a - 1.0) * cosW + beta) * r;
    c.m_b1 = -2.0 * a * ((a - 1.0) + (a + 1.0) * cosW) * r;
    c.m_b2 = a * ((a + 1.0) + (a - 1.0) * cosW - beta) * r;
    c.m_a1 = -2.0 * ((a - 1.0) - (a + 1.0) * cosW) * r;
    c.m_a2 = -((a + 1.0) - (a - 1.0) * cosW - beta) * r;
    return c;
}

// For CBiquadFilter::FillRamp.
template <class SValues>
constexpr auto LowShelfFormula = [](auto sinW, auto cosW, auto value) {
    return ComputeLowShelf(sinW, cosW, value(&SValues::m_SqrtA));
};
template <class SValues>
constexpr auto HighShelfFormula = [](auto sinW, auto cosW, auto value) {
    return ComputeHighShelf(sinW, cosW, value(&SValues::m_SqrtA));
};

} // namespace

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

const IConstFilterProductInfo& CLowShelfFilter::GetProductInfo() const {
    static const CFilterProductInfo info("Marrow Sound", "Low Shelf Filter", "1.0", "", "", 9, "");
    return info;
}

SBiquadCoefficients CLowShelfFilter::ComputeCoefficients(const Math::SSinCos& turn,
                                                         double sqrtA) const {
    return ComputeLowShelf(turn.m_Sin, turn.m_Cos, sqrtA);
}

void CLowShelfFilter::ComputeRamp(const SCoefficientsRoom& room, int count, int rampOrders) {
    FillRamp(m_Ramp, room, count, rampOrders, LowShelfFormula<SValues>);
}

void CLowShelfFilter::ComputePairRamp(CBiquadFilter& other, const SCoefficientsRoom& room,
                                      int count, int rampOrders) {
    FillPairRamp(m_Ramp, other, static_cast<CLowShelfFilter&>(other).m_Ramp, room, count,
                 rampOrders, LowShelfFormula<SValues>);
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
    FillRamp(m_Ramp, room, count, rampOrders, HighShelfFormula<SValues>);
}

void CHighShelfFilter::ComputePairRamp(CBiquadFilter& other, const SCoefficientsRoom& room,
                                       int count, int rampOrders) {
    FillPairRamp(m_Ramp, other, static_cast<CHighShelfFilter&>(other).m_Ramp, room, count,
                 rampOrders, HighShelfFormula<SValues>);
}

} // namespace Lathe::Audio::DSP::Filters
