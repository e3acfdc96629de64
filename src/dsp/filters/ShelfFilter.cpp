#include "dsp/filters/ShelfFilter.h"

#include "dsp/FilterProductInfo.h"
#include "dsp/filters/BiquadRamp.h"
#include "math/FunctionsLibrary.h"

namespace Lathe::Audio::DSP::Filters {

using DataModel::Objects::EParamType;

namespace {

constexpr int s_ParamsCount = 2;
constexpr double s_Sqrt2 = 1.4142135623730951;

const CParamInfos& GetShelfParams() {
    static const CParamInfos params = [] {
        CParamInfos infos(s_ParamsCount);
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
    if (m_SampleRate == 0.0 || values.GetCount() != s_ParamsCount)
        return;
    m_Ramp[0] = Convert(values);
    SetCoefficients(ComputeCoefficients());
}

void CShelfFilter::SetRampOrder(int order, const IConstParamsValues& rates) {
    m_Ramp[static_cast<std::size_t>(order)] =
        rates.GetCount() == s_ParamsCount ? Convert(rates) : SValues();
}

CShelfFilter::SValues CShelfFilter::Convert(const IConstParamsValues& values) const {
    return {values.GetValue(0) * m_InvSampleRate * 6.283185307179586,
            Math::FunctionsLibrary::FromdB(values.GetValue(1) * 0.25)};
}

const IConstFilterProductInfo& CLowShelfFilter::GetProductInfo() const {
    static const CFilterProductInfo info("Marrow Sound", "Low Shelf Filter", "1.0", "", "", 9, "");
    return info;
}

SBiquadCoefficients CLowShelfFilter::ComputeCoefficients() const {
    CTurn turn;
    turn.Set(m_Ramp[0].m_Omega);
    return ComputeLowShelf(turn.GetSin(), turn.GetCos(), m_Ramp[0].m_SqrtA);
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

SBiquadCoefficients CHighShelfFilter::ComputeCoefficients() const {
    CTurn turn;
    turn.Set(m_Ramp[0].m_Omega);
    return ComputeHighShelf(turn.GetSin(), turn.GetCos(), m_Ramp[0].m_SqrtA);
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
