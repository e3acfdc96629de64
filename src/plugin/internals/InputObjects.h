// All input objects of a filter: the way of its texts, curves, surfaces and custom properties to
// the audio thread.
#pragma once

#include "plugin/internals/MTRefCountCaptureObjectFactory.h"

namespace Lathe::Audio::DSP {
class CFilterProperties;
}

namespace Lathe::Audio::Plugin {

struct SProcessData;

class CInputObjects {
public:
    using CInputStrings =
        TMTRefCountCaptureObjectFactories<const char*, DSP::IConstStringInfo, DSP::CStringInfo>;
    using CInputCurves = TMTRefCountCaptureObjectFactories<const Math::IFunction&,
                                                           DSP::IConstCurveInfo, DSP::CCurveInfo>;
    using CInputSurfaces =
        TMTRefCountCaptureObjectFactories<const Math::IBinaryFunction&, DSP::IConstSurfaceInfo,
                                          DSP::CSurfaceInfo>;
    using CInputCustomProperties =
        TMTRefCountCaptureObjectFactories<const DataModel::Objects::IDynamicPropertyValue&,
                                          DSP::IConstCustomPropertyInfo, DSP::CCustomPropertyInfo>;

    // Copies the descriptions: the filter may die first.
    explicit CInputObjects(const DSP::IFilter& filter);

    IInputStrings& GetStrings() { return m_InputStrings; }
    IInputCurves& GetCurves() { return m_InputCurves; }
    IInputSurfaces& GetSurfaces() { return m_InputSurfaces; }
    IInputCustomProperties& GetCustomProperties() { return m_InputCustomProperties; }
    const IInputStrings& GetStrings() const { return m_InputStrings; }
    const IInputCurves& GetCurves() const { return m_InputCurves; }
    const IInputSurfaces& GetSurfaces() const { return m_InputSurfaces; }
    const IInputCustomProperties& GetCustomProperties() const { return m_InputCustomProperties; }

    // The filter has no input of these kinds.
    bool IsEmpty() const LATHE_REALTIME;
    // Moves the values that are new to the end state, which is set up for the filter and is never
    // given values by anybody else, and sets their flags. True when there were any. Waits for the
    // lock, unless there is no object.
    bool Sync(DSP::CFilterProperties& end) LATHE_REALTIME;
    // Frees the values that no block holds any more. Not for the audio thread.
    void PurgeRetired();
    // Tells the custom properties that want to know. Not while blocks run.
    void WriteProcessData(const SProcessData& data);
    // Kind by kind, each in order. The command runs on the threads of the writers.
    void AddValueChangedCommand(Core::ICommand& command);
    void RemoveValueChangedCommand(Core::ICommand& command);

private:
    template <class TOperation>
    void ForEach(TOperation operation);

    System::CCriticalSection m_InputLock;
    CInputCurves m_InputCurves;
    CInputStrings m_InputStrings;
    CInputSurfaces m_InputSurfaces;
    CInputCustomProperties m_InputCustomProperties;
};

} // namespace Lathe::Audio::Plugin
