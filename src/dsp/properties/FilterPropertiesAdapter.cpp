#include "dsp/properties/FilterPropertiesAdapter.h"

#include <algorithm>

namespace Lathe::Audio::DSP {

namespace {

// How many inputs of a kind a filter has.
int GetInputsCount(const IFilter& filter, int kind) {
    switch (kind) {
    case Params:
        return filter.GetInputParamsInfo().GetCount();
    case Strings:
        return filter.GetInputStringsInfo().GetCount();
    case Curves:
        return filter.GetInputCurvesInfo().GetCount();
    case Surfaces:
        return filter.GetInputSurfacesInfo().GetCount();
    default:
        return filter.GetInputCustomPropertiesInfo().GetCount();
    }
}

template <class TAdapter>
void SetChannelRanges(TAdapter& adapter, const IFilter& filter, int channel) {
    for (int kind = 0; kind < InputKinds; ++kind) {
        const int count = GetInputsCount(filter, kind);
        adapter.SetRange(kind, count * channel, count);
    }
}

} // namespace

void CFilterPropertiesAdapter::Attach(const IConstFilterProperties& source) {
    m_Params.Attach(source.GetParams());
    m_Strings.Attach(source.GetStrings());
    m_Curves.Attach(source.GetCurves());
    m_Surfaces.Attach(source.GetSurfaces());
    m_CustomProperties.Attach(source.GetCustomProperties());
    for (int kind = 0; kind < InputKinds; ++kind) {
        m_Dirty[static_cast<std::size_t>(kind)].Attach(source.GetDirty(kind));
        SetRange(kind, 0, -1);
    }
}

void CFilterPropertiesAdapter::SetRange(int kind, int first, int count) {
    m_Dirty[static_cast<std::size_t>(kind)].SetRange(first, count);
    switch (kind) {
    case Params:
        m_Params.SetRange(first, count);
        break;
    case Strings:
        m_Strings.SetRange(first, count);
        break;
    case Curves:
        m_Curves.SetRange(first, count);
        break;
    case Surfaces:
        m_Surfaces.SetRange(first, count);
        break;
    default:
        m_CustomProperties.SetRange(first, count);
        break;
    }
}

void CFilterPropertiesAdapter::SetChannel(const IFilter& filter, int channel) {
    SetChannelRanges(*this, filter, channel);
}

CFilterPropertiesVariationsAdapter::CFilterPropertiesVariationsAdapter(
    const CFilterPropertiesVariationsAdapter& other)
    : IConstFilterPropertiesVariations() {
    Reserve(other.m_MaxOrder);
}

void CFilterPropertiesVariationsAdapter::Reserve(int maxOrder) {
    // A source computes one order whatever it was promised.
    m_MaxOrder = std::max(maxOrder, 1);
    for (CRateViews& rates : m_Rates)
        rates.SetCount(m_MaxOrder);
}

void CFilterPropertiesVariationsAdapter::Attach(const IConstFilterPropertiesVariations& source) {
    m_Start.Attach(source.GetStart());
    m_End.Attach(source.GetEnd());
    for (int kind = 0; kind < InputKinds; ++kind) {
        const IConstRates& rates = source.GetVariations(kind);
        CRateViews& views = m_Rates[static_cast<std::size_t>(kind)];
        const int orders = rates.GetCount();
        views.SetCount(orders);
        for (int order = 0; order < orders; ++order) {
            views[order].Attach(rates.GetElement(order));
            views[order].SetRange(0, -1);
        }
    }
}

void CFilterPropertiesVariationsAdapter::SetRange(int kind, int first, int count) {
    m_Start.SetRange(kind, first, count);
    m_End.SetRange(kind, first, count);
    CRateViews& views = m_Rates[static_cast<std::size_t>(kind)];
    const int orders = views.GetCount();
    for (int order = 0; order < orders; ++order)
        views[order].SetRange(first, count);
}

void CFilterPropertiesVariationsAdapter::SetChannel(const IFilter& filter, int channel) {
    SetChannelRanges(*this, filter, channel);
}

} // namespace Lathe::Audio::DSP
