// All that the editor and the model reach of an instance: a record of pointers.
//
// Everything is the instance's and lives until Connect(null). Whoever is connected copies the
// record, and doesn't ask the instance again. A pointer is null where the instance has no such
// thing.
#pragma once

#include "core/containers/Vector.h"
#include "core/events/Value.h"
#include "core/threads/MTEventProvider.h"
#include "datamodel/objects/capture/CaptureObject.h"

namespace Lathe::Audio::DSP {
class IConstFilterProductInfo;
class IFilter;
} // namespace Lathe::Audio::DSP

namespace Lathe::Serialization {
class IHistoryManager;
class ISerialize;
} // namespace Lathe::Serialization

namespace Lathe::Audio::Plugin {

class IAudioPluginDataPath;
class IAudioPluginDefaultSettings;
class IAudioPluginModel;
class IConstPackageInfo;
class IMIDIController;
class IPresetsManager;

using CMTBool = Core::TValue<bool, System::CMTEventProvider>;
using CMTInt = Core::TValue<int, System::CMTEventProvider>;
using CMTDouble = Core::TValue<double, System::CMTEventProvider>;

using IConstParams = Containers::IConstVector<DataModel::Objects::IConstCaptureParam>;
using IOutputParams = Containers::IVector<DataModel::Objects::IConstCaptureParam>;
using IInputParams = Containers::IVector<DataModel::Objects::ICaptureParam>;

// The kinds whose values are copied out, because the audio thread may replace them at any moment.
template <class T, class TInfo>
using TIInputObjects = Containers::IVector<DataModel::TICaptureObjectFactory<T, TInfo>>;
template <class T, class TInfo>
using TIOutputObjects = Containers::IConstVector<DataModel::TIConstCaptureObjectFactory<T, TInfo>>;

using IInputStrings = TIInputObjects<const char*, DataModel::Objects::IConstStringInfo>;
using IInputCurves = TIInputObjects<const Math::IFunction&, DataModel::Objects::IConstCurveInfo>;
using IInputSurfaces =
    TIInputObjects<const Math::IBinaryFunction&, DataModel::Objects::IConstSurfaceInfo>;
using IInputCustomProperties = TIInputObjects<const DataModel::Objects::IDynamicPropertyValue&,
                                              DataModel::Objects::IConstCustomPropertyInfo>;
using IOutputStrings = TIOutputObjects<const char*, DataModel::Objects::IConstStringInfo>;
using IOutputCurves = TIOutputObjects<const Math::IFunction&, DataModel::Objects::IConstCurveInfo>;
using IOutputSurfaces =
    TIOutputObjects<const Math::IBinaryFunction&, DataModel::Objects::IConstSurfaceInfo>;
using IOutputCustomProperties = TIOutputObjects<const DataModel::Objects::IDynamicPropertyValue&,
                                                DataModel::Objects::IConstCustomPropertyInfo>;

// What the editor may offer. The fourth also says that the host counts the plug-in's types; the
// others are handed on as they come.
struct SGUIFeatures {
    bool m_First = true;
    bool m_Second = true;
    bool m_Third = true;
    bool m_Fourth = true;
    bool m_Fifth = false;
};

class IPluginGUIConnections {
public:
    virtual const DSP::IConstFilterProductInfo* GetProductInfo() const = 0;
    virtual const IConstPackageInfo* GetPackageInfo() const = 0;
    virtual const DSP::IFilter* GetFilter() const = 0;
    virtual CMTInt* GetInputChannels() const = 0;
    virtual CMTInt* GetOutputChannels() const = 0;
    virtual IInputParams* GetInputParams() const = 0;
    virtual IInputStrings* GetInputStrings() const = 0;
    virtual IInputCurves* GetInputCurves() const = 0;
    virtual IInputSurfaces* GetInputSurfaces() const = 0;
    virtual IInputCustomProperties* GetInputCustomProperties() const = 0;
    // The host's own objects of the output parameters.
    virtual IOutputParams* GetOutputParamsAdapter() const = 0;
    virtual const IConstParams* GetOutputParams() const = 0;
    virtual const IOutputCurves* GetOutputCurves() const = 0;
    virtual const IOutputStrings* GetOutputStrings() const = 0;
    virtual const IOutputSurfaces* GetOutputSurfaces() const = 0;
    virtual const IOutputCustomProperties* GetOutputCustomProperties() const = 0;
    virtual IAudioPluginModel* GetModel() const = 0;
    virtual const Serialization::ISerialize* GetStateWriter() const = 0;
    virtual Serialization::IHistoryManager* GetHistory() const = 0;
    virtual IMIDIController* GetMIDIController() const = 0;
    virtual IAudioPluginDefaultSettings* GetDefaultSettings() const = 0;
    virtual CMTBool* GetMIDIInputDefault() const = 0;
    virtual CMTBool* GetMIDIOutputDefault() const = 0;
    virtual IPresetsManager* GetPresetsManager() const = 0;
    virtual const IAudioPluginDataPath* GetDataPath() const = 0;
    // In hertz.
    virtual CMTDouble* GetSampleRate() const = 0;
    // In samples; 0 when the host doesn't tell.
    virtual CMTDouble* GetMaxBlockSize() const = 0;
    virtual const SGUIFeatures& GetFeatures() const = 0;
    virtual ~IPluginGUIConnections() = default;
};

} // namespace Lathe::Audio::Plugin
