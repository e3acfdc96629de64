// Views of somebody else's properties and variations, through which an enclosing filter hands a
// sub-filter its slice. They copy no value and own nothing.
#pragma once

#include "core/containers/VectorAdapter.h"
#include "dsp/properties/FilterPropertiesVariations.h"

#include <array>

namespace Lathe::Audio::DSP {

// For each kind a range (first, count) of the source; count -1 means "to the end".
class CFilterPropertiesAdapter : public IConstFilterProperties {
public:
    const IConstParamsValues& GetParams() const LATHE_REALTIME override { return m_Params; }
    const IConstStrings& GetStrings() const LATHE_REALTIME override { return m_Strings; }
    const IConstCurves& GetCurves() const LATHE_REALTIME override { return m_Curves; }
    const IConstSurfaces& GetSurfaces() const LATHE_REALTIME override { return m_Surfaces; }
    const IConstCustomProperties& GetCustomProperties() const LATHE_REALTIME override {
        return m_CustomProperties;
    }
    const IConstDirtyFlags& GetDirty(int kind) const LATHE_REALTIME override {
        return m_Dirty[static_cast<std::size_t>(kind)];
    }

    // All of the source.
    void Attach(const IConstFilterProperties& source) LATHE_REALTIME;
    void SetRange(int kind, int first, int count) LATHE_REALTIME;
    // The inputs of one of several equal filters that stand one after the other in the source.
    void SetChannel(const IFilter& filter, int channel) LATHE_REALTIME;

private:
    template <class V>
    using TView = CoreUtilities::TConstValueVectorAdapter<V>;

    TView<double> m_Params;
    TView<const char*> m_Strings;
    TView<const Math::IFunction&> m_Curves;
    TView<const Math::IBinaryFunction&> m_Surfaces;
    TView<const DataModel::Objects::IDynamicPropertyValue&> m_CustomProperties;
    std::array<CoreUtilities::TConstVectorAdapter<Core::IDirty>, InputKinds> m_Dirty;
};

// The same range on the start, the end and every derivative vector.
class CFilterPropertiesVariationsAdapter : public IConstFilterPropertiesVariations {
public:
    CFilterPropertiesVariationsAdapter() = default;
    // A view is not copied with its owner: the copy has room for as many orders, and no source.
    CFilterPropertiesVariationsAdapter(const CFilterPropertiesVariationsAdapter& other);
    CFilterPropertiesVariationsAdapter& operator=(const CFilterPropertiesVariationsAdapter&) {
        return *this;
    }

    const IConstFilterProperties& GetStart() const LATHE_REALTIME override { return m_Start; }
    const IConstFilterProperties& GetEnd() const LATHE_REALTIME override { return m_End; }
    const IConstRates& GetVariations(int kind) const LATHE_REALTIME override {
        return m_Rates[static_cast<std::size_t>(kind)];
    }

    // Makes room for the orders that a source may have, at least one, so that Attach allocates
    // nothing.
    void Reserve(int maxOrder);
    void Attach(const IConstFilterPropertiesVariations& source) LATHE_REALTIME;
    void SetRange(int kind, int first, int count) LATHE_REALTIME;
    void SetChannel(const IFilter& filter, int channel) LATHE_REALTIME;

private:
    using CRateViews =
        CoreUtilities::TDynamicCollection<CoreUtilities::TConstValueVectorAdapter<double>,
                                          IConstParamsValues>;

    CFilterPropertiesAdapter m_Start;
    CFilterPropertiesAdapter m_End;
    std::array<CRateViews, InputKinds> m_Rates;
    int m_MaxOrder = 0;
};

} // namespace Lathe::Audio::DSP
