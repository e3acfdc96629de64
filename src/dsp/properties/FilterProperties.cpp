#include "dsp/properties/FilterProperties.h"

#include "dsp/FilterInfos.h"

namespace Lathe::Audio::DSP {

namespace {

// Flags that come in are clear, even where a longer vector once had them set.
template <class TFlags>
void SetFlagsCount(TFlags& flags, int count) {
    const int old = flags.GetCount();
    flags.SetCount(count);
    for (int i = old; i < count; ++i)
        flags[i].ClearDirty();
}

template <class TInfos, class TValues>
void SetToDefaults(const TInfos& infos, TValues& values) {
    const int count = infos.GetCount();
    for (int i = 0; i < count; ++i)
        values.SetValue(i, infos.GetElement(i).GetDefaultValue());
}

template <class V>
void AssignValues(const Containers::IConstValueVector<V>& source, TRefCountValues<V>& values) {
    const int count = source.GetCount();
    values.SetCount(count);
    // A snapshot of the same class shares its items; other vectors are copied value by value.
    const auto* shared = dynamic_cast<const TRefCountValues<V>*>(&source);
    for (int i = 0; i < count; ++i) {
        if (shared)
            values.SetItem(i, shared->GetItem(i));
        else
            values.SetValue(i, source.GetValue(i));
    }
}

template <class V>
void AssignDirtyItems(const TRefCountValues<V>& source, const IConstDirtyFlags& dirty,
                      TRefCountValues<V>& values) {
    const int count = dirty.GetCount();
    for (int i = 0; i < count; ++i) {
        if (dirty.GetElement(i).IsDirty())
            values.SetItem(i, source.GetItem(i));
    }
}

} // namespace

unsigned IConstFilterProperties::ReadParams(int first, int count, double* values) const {
    const IConstParamsValues& params = GetParams();
    const IConstDirtyFlags& flags = GetDirty(Params);
    unsigned dirty = 0;
    for (int i = 0; i < count; ++i) {
        values[i] = params.GetValue(first + i);
        dirty |= static_cast<unsigned>(flags.GetElement(first + i).IsDirty()) << i;
    }
    return dirty;
}

bool IsAnyDirty(const IConstFilterProperties& properties, int kind) {
    const IConstDirtyFlags& flags = properties.GetDirty(kind);
    const int count = flags.GetCount();
    for (int i = 0; i < count; ++i) {
        if (flags.GetElement(i).IsDirty())
            return true;
    }
    return false;
}

// As the base, on the vectors themselves, where no call is virtual.
unsigned CFilterProperties::ReadParams(int first, int count, double* values) const {
    unsigned dirty = 0;
    for (int i = 0; i < count; ++i) {
        values[i] = GetParam(first + i);
        dirty |= static_cast<unsigned>(IsDirty(Params, first + i)) << i;
    }
    return dirty;
}

void CFilterProperties::Setup(const IFilter& filter) {
    SetParamsCount(filter.GetInputParamsInfo().GetCount());
    m_Strings.SetCount(filter.GetInputStringsInfo().GetCount());
    m_Curves.SetCount(filter.GetInputCurvesInfo().GetCount());
    m_Surfaces.SetCount(filter.GetInputSurfacesInfo().GetCount());
    m_CustomProperties.SetCount(filter.GetInputCustomPropertiesInfo().GetCount());
    SetFlagsCount(m_Dirty[Strings], m_Strings.GetCount());
    SetFlagsCount(m_Dirty[Curves], m_Curves.GetCount());
    SetFlagsCount(m_Dirty[Surfaces], m_Surfaces.GetCount());
    SetFlagsCount(m_Dirty[CustomProperties], m_CustomProperties.GetCount());
}

void CFilterProperties::SetDefaults(const IFilter& filter) {
    Setup(filter);
    for (int i = 0; i < m_Params.GetCount(); ++i)
        m_Params.SetValue(i, filter.GetInputParamsInfo().GetElement(i).GetDefault());
    SetToDefaults(filter.GetInputStringsInfo(), m_Strings);
    SetToDefaults(filter.GetInputCurvesInfo(), m_Curves);
    SetToDefaults(filter.GetInputSurfacesInfo(), m_Surfaces);
    for (int i = 0; i < m_CustomProperties.GetCount(); ++i) {
        m_CustomProperties.SetItem(i, {});
        if (const auto* value =
                filter.GetInputCustomPropertiesInfo().GetElement(i).GetDefaultValue())
            m_CustomProperties.SetValue(i, *value);
    }
    for (CDirtyFlags& flags : m_Dirty) {
        for (int i = 0; i < flags.GetCount(); ++i)
            flags[i].SetDirty();
    }
}

void CFilterProperties::Assign(const IConstFilterProperties& other) {
    if (&other == this)
        return;
    SetParamsCount(other.GetParams().GetCount());
    for (int i = 0; i < m_Params.GetCount(); ++i)
        m_Params.SetValue(i, other.GetParams().GetValue(i));
    AssignValues(other.GetStrings(), m_Strings);
    AssignValues(other.GetCurves(), m_Curves);
    AssignValues(other.GetSurfaces(), m_Surfaces);
    AssignValues(other.GetCustomProperties(), m_CustomProperties);
    for (int kind = 0; kind < InputKinds; ++kind) {
        const IConstDirtyFlags& source = other.GetDirty(kind);
        CDirtyFlags& flags = m_Dirty[static_cast<std::size_t>(kind)];
        flags.SetCount(source.GetCount());
        for (int i = 0; i < flags.GetCount(); ++i)
            source.GetElement(i).IsDirty() ? flags[i].SetDirty() : flags[i].ClearDirty();
    }
}

void CFilterProperties::ClearDirty() {
    for (CDirtyFlags& flags : m_Dirty) {
        const int count = flags.GetCount();
        for (int i = 0; i < count; ++i)
            flags[i].ClearDirty();
    }
}

void CFilterProperties::SetParamsCount(int count) {
    m_Params.SetCount(count);
    SetFlagsCount(m_Dirty[Params], count);
}

void CFilterProperties::AssignDirty(const CFilterProperties& other, int kind) {
    const CDirtyFlags& dirty = other.m_Dirty[static_cast<std::size_t>(kind)];
    switch (kind) {
    case Params:
        for (int i = 0; i < dirty.GetCount(); ++i) {
            if (dirty[i].IsDirty())
                m_Params.SetValue(i, other.m_Params.GetValue(i));
        }
        break;
    case Strings:
        AssignDirtyItems(other.m_Strings, dirty, m_Strings);
        break;
    case Curves:
        AssignDirtyItems(other.m_Curves, dirty, m_Curves);
        break;
    case Surfaces:
        AssignDirtyItems(other.m_Surfaces, dirty, m_Surfaces);
        break;
    case CustomProperties:
        AssignDirtyItems(other.m_CustomProperties, dirty, m_CustomProperties);
        break;
    default:
        break;
    }
}

} // namespace Lathe::Audio::DSP
