// Snapshots of a filter's input values: one value of every input, with a dirty flag each.
#pragma once

#include "core/containers/Collection.h"
#include "datamodel/objects/DynamicPropertyValue.h"
#include "dsp/Filter.h"
#include "dsp/values/RefCountValues.h"
#include "math/Function.h"

#include <array>

namespace Lathe::Audio::DSP {

// The kinds of input, by which flags and variations are reached.
enum EInputKind : int { Params, Strings, Curves, Surfaces, CustomProperties, InputKinds };

class IConstFilterProperties {
public:
    virtual const IConstParamsValues& GetParams() const LATHE_REALTIME = 0;
    virtual const IConstStrings& GetStrings() const LATHE_REALTIME = 0;
    virtual const IConstCurves& GetCurves() const LATHE_REALTIME = 0;
    virtual const IConstSurfaces& GetSurfaces() const LATHE_REALTIME = 0;
    virtual const IConstCustomProperties& GetCustomProperties() const LATHE_REALTIME = 0;
    // One flag a value of that kind.
    virtual const IConstDirtyFlags& GetDirty(int kind) const LATHE_REALTIME = 0;
    virtual ~IConstFilterProperties() = default;
    // Copies some parameters, at most 32, and returns their flags as bits: what the vectors above
    // give value by value, in one call for a filter that needs them all in each block.
    virtual unsigned ReadParams(int first, int count, double* values) const LATHE_REALTIME;
};

bool IsAnyDirty(const IConstFilterProperties& properties, int kind) LATHE_REALTIME;

class IFilterProperties : public virtual IConstFilterProperties {
public:
    using IConstFilterProperties::GetCurves;
    using IConstFilterProperties::GetCustomProperties;
    using IConstFilterProperties::GetDirty;
    using IConstFilterProperties::GetParams;
    using IConstFilterProperties::GetStrings;
    using IConstFilterProperties::GetSurfaces;

    virtual IParamsValues& GetParams() LATHE_REALTIME = 0;
    virtual Containers::IValueVector<const char*>& GetStrings() LATHE_REALTIME = 0;
    virtual Containers::IValueVector<const Math::IFunction&>& GetCurves() LATHE_REALTIME = 0;
    virtual Containers::IValueVector<const Math::IBinaryFunction&>& GetSurfaces()
        LATHE_REALTIME = 0;
    virtual Containers::IValueVector<const DataModel::Objects::IDynamicPropertyValue&>&
    GetCustomProperties() LATHE_REALTIME = 0;
    virtual IDirtyFlags& GetDirty(int kind) LATHE_REALTIME = 0;
};

class CFilterProperties final : public IFilterProperties {
public:
    using CStrings = TRefCountValues<const char*>;
    using CCurves = TRefCountValues<const Math::IFunction&>;
    using CSurfaces = TRefCountValues<const Math::IBinaryFunction&>;
    using CCustomProperties = TRefCountValues<const DataModel::Objects::IDynamicPropertyValue&>;

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
    unsigned ReadParams(int first, int count, double* values) const LATHE_REALTIME override;

    CDynamicParamsValues& GetParams() LATHE_REALTIME override { return m_Params; }
    CStrings& GetStrings() LATHE_REALTIME override { return m_Strings; }
    CCurves& GetCurves() LATHE_REALTIME override { return m_Curves; }
    CSurfaces& GetSurfaces() LATHE_REALTIME override { return m_Surfaces; }
    CCustomProperties& GetCustomProperties() LATHE_REALTIME override { return m_CustomProperties; }
    IDirtyFlags& GetDirty(int kind) LATHE_REALTIME override {
        return m_Dirty[static_cast<std::size_t>(kind)];
    }

    // As through the vectors above, without their virtual calls.
    int GetCount(int kind) const LATHE_REALTIME {
        return m_Dirty[static_cast<std::size_t>(kind)].GetCount();
    }
    bool IsDirty(int kind, int index) const LATHE_REALTIME {
        return m_Dirty[static_cast<std::size_t>(kind)][index].IsDirty();
    }
    double GetParam(int index) const LATHE_REALTIME { return m_Params.GetValue(index); }

    // Sizes everything to the filter's inputs; values that stay keep their contents and flags.
    void Setup(const IFilter& filter);
    // As Setup, with every value at the default of its description and every flag set.
    void SetDefaults(const IFilter& filter);
    // Copies the values and flags of all kinds.
    void Assign(const IConstFilterProperties& other);
    void ClearDirty() LATHE_REALTIME;

    // Only the number of parameters and their flags; allocates only beyond the largest so far.
    void SetParamsCount(int count);
    // Copies the values of one kind whose flags are set in the other, which has as many. References
    // move: nothing is allocated.
    void AssignDirty(const CFilterProperties& other, int kind) LATHE_REALTIME;

private:
    using CDirtyFlags = CoreUtilities::TDynamicCollection<Core::CDirty, Core::IDirty>;

    CDynamicParamsValues m_Params;
    CStrings m_Strings;
    CCurves m_Curves;
    CSurfaces m_Surfaces;
    CCustomProperties m_CustomProperties;
    std::array<CDirtyFlags, InputKinds> m_Dirty;
};

} // namespace Lathe::Audio::DSP
