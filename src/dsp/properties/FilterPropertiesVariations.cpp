#include "dsp/properties/FilterPropertiesVariations.h"

#include <algorithm>

namespace Lathe::Audio::DSP {

CFilterPropertiesVariations::CFilterPropertiesVariations(const CFilterPropertiesVariations& other)
    : IConstFilterPropertiesVariations() {
    *this = other;
}

CFilterPropertiesVariations&
CFilterPropertiesVariations::operator=(const CFilterPropertiesVariations& other) {
    if (this == &other)
        return *this;
    m_Room = other.m_Room;
    m_MaxOrder = other.m_MaxOrder;
    Reserve();
    m_Start = other.m_Start;
    m_End = other.m_End;
    m_Rates = other.m_Rates;
    const bool swapped = other.m_pStart == &other.m_End;
    m_pStart = swapped ? &m_End : &m_Start;
    m_pEnd = swapped ? &m_Start : &m_End;
    return *this;
}

void CFilterPropertiesVariations::Setup(const IFilter& filter, int maxOrder) {
    m_Start.Setup(filter);
    m_End.Setup(filter);
    for (int kind = 0; kind < InputKinds; ++kind)
        m_Room[static_cast<std::size_t>(kind)] = m_pEnd->GetCount(kind);
    m_MaxOrder = std::max(maxOrder, 0);
    Reserve();
}

void CFilterPropertiesVariations::Reserve() {
    m_Start.SetParamsCount(m_Room[Params]);
    m_End.SetParamsCount(m_Room[Params]);
    // ComputeRates uses one order whatever the filter was promised.
    const int orders = std::max(m_MaxOrder, 1);
    for (int kind = 0; kind < InputKinds; ++kind) {
        CRates& rates = GetRates(kind);
        rates.SetCount(orders);
        for (int order = 0; order < orders; ++order)
            rates[order].SetCount(m_Room[static_cast<std::size_t>(kind)]);
        rates.SetCount(m_MaxOrder);
    }
}

void CFilterPropertiesVariations::ComputeRates(int samples) {
    const double perSample = samples != 0 ? 1.0 / samples : 0.0;
    for (int kind = 0; kind < InputKinds; ++kind) {
        CRates& rates = GetRates(kind);
        if (!IsAnyDirty(kind)) {
            rates.SetCount(0);
            continue;
        }
        const int count = m_pEnd->GetCount(kind);
        rates.SetCount(1);
        rates[0].SetCount(count);
        for (int i = 0; i < count; ++i)
            rates[0].SetValue(i, m_pEnd->IsDirty(kind, i) ? GetRate(kind, i, perSample) : 0.0);
    }
}

bool CFilterPropertiesVariations::IsAnyDirty(int kind) const {
    const int count = m_pEnd->GetCount(kind);
    for (int i = 0; i < count; ++i) {
        if (m_pEnd->IsDirty(kind, i))
            return true;
    }
    return false;
}

double CFilterPropertiesVariations::GetRate(int kind, int index, double perSample) const {
    return kind == Params ? (m_pEnd->GetParam(index) - m_pStart->GetParam(index)) * perSample
                          : perSample;
}

void CFilterPropertiesVariations::Commit() {
    for (int kind = 0; kind < InputKinds; ++kind)
        m_pStart->AssignDirty(*m_pEnd, kind);
    m_pEnd->ClearDirty();
}

} // namespace Lathe::Audio::DSP
