// All output objects of a filter: the way of its meters, texts, curves, surfaces and custom
// properties to other threads.
#pragma once

#include "core/containers/Collection.h"
#include "datamodel/objects/capture/MTCaptureParam.h"
#include "plugin/internals/MTCaptureObjectFactory.h"

namespace Lathe::Audio::Plugin {

class COutputObjects {
public:
    using COutputParams =
        CoreUtilities::TCollection<DataModel::Objects::CMTCaptureParam,
                                   DataModel::Objects::IConstCaptureParam, IConstParams>;
    using COutputStrings =
        TConstMTCaptureObjectFactories<const char*, DSP::IConstStringInfo, DSP::CStringInfo>;
    using COutputCurves = TConstMTCaptureObjectFactories<const Math::IFunction&,
                                                         DSP::IConstCurveInfo, DSP::CCurveInfo>;
    using COutputSurfaces =
        TConstMTCaptureObjectFactories<const Math::IBinaryFunction&, DSP::IConstSurfaceInfo,
                                       DSP::CSurfaceInfo>;
    using COutputCustomProperties =
        TConstMTCaptureObjectFactories<const DataModel::Objects::IDynamicPropertyValue&,
                                       DSP::IConstCustomPropertyInfo, DSP::CCustomPropertyInfo>;

    // Everything starts at the default of its description.
    explicit COutputObjects(const DSP::IFilter& filter);

    const IConstParams& GetParams() const { return m_OutputParams; }
    const IOutputStrings& GetStrings() const { return m_OutputStrings; }
    const IOutputCurves& GetCurves() const { return m_OutputCurves; }
    const IOutputSurfaces& GetSurfaces() const { return m_OutputSurfaces; }
    const IOutputCustomProperties& GetCustomProperties() const { return m_OutputCustomProperties; }

    // Between two blocks, always on the same filter: the params at once; then, under the lock, what
    // the filter brings up to date of the others; then their events, without the lock. False when
    // the lock isn't free, and all but the params waits for the next call. With force it waits for
    // the lock, which is not for the audio thread. The filter is locked by processLock, unless that
    // is null.
    bool Publish(DSP::IFilter& filter, Core::ILock* processLock, bool force) LATHE_REALTIME;
    // Before the filter dies: from here on readers see the defaults.
    void Detach();

private:
    bool IsEmpty() const LATHE_REALTIME;
    bool Enter(bool force) LATHE_REALTIME;
    void Leave() LATHE_REALTIME;
    void Collect(DSP::IFilter& filter) LATHE_REALTIME;
    // Strings, curves, surfaces, custom properties.
    template <class TOperation>
    void ForEach(TOperation operation) LATHE_REALTIME;

    // Guards all but the params, and the filter's outputs behind them.
    System::CCriticalSection m_OutputLock;
    COutputParams m_OutputParams;
    COutputStrings m_OutputStrings;
    COutputCurves m_OutputCurves;
    COutputSurfaces m_OutputSurfaces;
    COutputCustomProperties m_OutputCustomProperties;
};

} // namespace Lathe::Audio::Plugin
