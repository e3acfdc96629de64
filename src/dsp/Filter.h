// The contract of every signal processor, from a gain stage to the whole equaliser.
//
// Life: constructed, Init (sample rate), any number of blocks, Uninit, possibly Init again. A
// change of sample rate is a new Init.
// A block: SetInputValues or variations bring new values, Process or ProcessSilence runs on the
// audio thread; when outputs fall due, UpdateOutputs runs between two blocks.
#pragma once

#include "core/Dirty.h"
#include "core/Realtime.h"
#include "core/containers/Vector.h"
#include "dsp/LegacyPresets.h"
#include "dsp/streams/AudioStream.h"
#include "dsp/values/ParamsValues.h"

namespace Lathe::Math {
class IFunction;
class IBinaryFunction;
} // namespace Lathe::Math

namespace Lathe::Serialization {
class ISerializable;
}

namespace Lathe::DataModel::Objects {
class IConstParamInfo;
class IConstStringInfo;
class IConstCurveInfo;
class IConstSurfaceInfo;
class IConstCustomPropertyInfo;
class IDynamicPropertyValue;
} // namespace Lathe::DataModel::Objects

namespace Lathe::Audio::MIDI {
class CMIDIEvent;
}

namespace Lathe::Audio::DSP {

class IConstFilterProductInfo;
class IConstFilterProperties;
class IConstFilterPropertiesVariations;
class IIOConfiguration;
class IOutputDataSync;
class IProcessInfo;
class ITransportInfo;

using IConstParamInfos = Containers::IConstVector<DataModel::Objects::IConstParamInfo>;
using IConstStringInfos = Containers::IConstVector<DataModel::Objects::IConstStringInfo>;
using IConstCurveInfos = Containers::IConstVector<DataModel::Objects::IConstCurveInfo>;
using IConstSurfaceInfos = Containers::IConstVector<DataModel::Objects::IConstSurfaceInfo>;
using IConstCustomPropertyInfos =
    Containers::IConstVector<DataModel::Objects::IConstCustomPropertyInfo>;

using IConstStrings = Containers::IConstValueVector<const char*>;
using IConstCurves = Containers::IConstValueVector<const Math::IFunction&>;
using IConstSurfaces = Containers::IConstValueVector<const Math::IBinaryFunction&>;
using IConstCustomProperties =
    Containers::IConstValueVector<const DataModel::Objects::IDynamicPropertyValue&>;

using IConstDirtyFlags = Containers::IConstVector<Core::IDirty>;
using IDirtyFlags = Containers::IVector<Core::IDirty>;

struct CFilterInitInfo {
    bool m_ResetToDefaults = false;
    // In samples; 0 or less when unknown.
    int m_MaxBlockSize = 0;
    // How many derivative vectors a variations object may carry.
    int m_MaxVariationsOrder = 1;
    // -1 for the default configuration, and for all the channels that it declares.
    int m_IOConfigurationIndex = -1;
    int m_ConnectedInputs = -1;
    int m_ConnectedOutputs = -1;
};

// Valid for the call that it is given to.
struct CFilterProcessData {
    const IConstAudioStreams* m_pInputs = nullptr;
    IAudioStreams* m_pOutputs = nullptr;
    int m_SamplesCount = 0;
    // Null when no value changes in this block.
    const IConstFilterPropertiesVariations* m_pVariations = nullptr;
    // The block's incoming events.
    const Containers::IConstVector<MIDI::CMIDIEvent>* m_pMIDIEvents = nullptr;
    // May be null.
    const ITransportInfo* m_pTransportInfo = nullptr;
};

// False when the block brings fewer channels than these: a filter then does nothing with it.
inline bool HasChannels(const CFilterProcessData& data, int inputs, int outputs) LATHE_REALTIME {
    return (data.m_pInputs ? data.m_pInputs->GetCount() : 0) >= inputs &&
           (data.m_pOutputs ? data.m_pOutputs->GetCount() : 0) >= outputs;
}

class IFilter {
public:
    // A filter with the same settings and state, which the caller owns.
    virtual IFilter* Clone() const = 0;
    virtual const IConstFilterProductInfo& GetProductInfo() const = 0;
    // The sample rate is in hertz. Parameters keep their old effect until they are applied anew.
    virtual void Init(double sampleRate, const CFilterInitInfo& info) = 0;
    // Releases scratch buffers.
    virtual void Uninit() = 0;

    virtual const IConstParamInfos& GetInputParamsInfo() const LATHE_REALTIME = 0;
    virtual const IConstStringInfos& GetInputStringsInfo() const LATHE_REALTIME = 0;
    virtual const IConstCurveInfos& GetInputCurvesInfo() const LATHE_REALTIME = 0;
    virtual const IConstSurfaceInfos& GetInputSurfacesInfo() const LATHE_REALTIME = 0;
    virtual const IConstCustomPropertyInfos& GetInputCustomPropertiesInfo() const
        LATHE_REALTIME = 0;
    // Applies the values whose flags are set at once, without a ramp.
    virtual void SetInputValues(const IConstFilterProperties& values) LATHE_REALTIME = 0;

    virtual const IProcessInfo& GetProcessInfo() const LATHE_REALTIME = 0;
    virtual const IIOConfiguration& GetCurrentIOConfiguration() const LATHE_REALTIME = 0;
    // Samples of output after silent input; -1 means endless.
    virtual int GetTailLength() const LATHE_REALTIME = 0;
    // In samples.
    virtual int GetLatency() const LATHE_REALTIME = 0;

    virtual void Process(const CFilterProcessData& data) LATHE_REALTIME = 0;
    // A block of silent input. True when the outputs hold signal, false when they hold zeros.
    virtual bool ProcessSilence(const CFilterProcessData& data) LATHE_REALTIME = 0;
    // Clears the signal state, keeps the parameters.
    virtual void Reset() LATHE_REALTIME = 0;

    // The filter's state beyond its parameters, or null when it has none.
    virtual Serialization::ISerializable* GetInternalDSPState() LATHE_REALTIME = 0;
    // Null when the filter has no clock of its own.
    virtual IOutputDataSync* GetOutputDataSync() LATHE_REALTIME = 0;
    // The two below, and all getters of outputs, run between two blocks.
    virtual void ResetOutputs() LATHE_REALTIME = 0;
    // Brings the outputs up to date with the signal state. True when anything was marked dirty.
    virtual bool UpdateOutputs() LATHE_REALTIME = 0;

    virtual const IConstParamInfos& GetOutputParamsInfo() const = 0;
    virtual const IConstParamsValues& GetOutputParamsValues() const LATHE_REALTIME = 0;
    // Outputs that are not published to control surfaces.
    virtual const IConstParamInfos& GetPrivateOutputParamsInfo() const = 0;
    virtual const IConstParamsValues& GetPrivateOutputParamsValues() const LATHE_REALTIME = 0;
    virtual const IConstStringInfos& GetOutputStringsInfo() const = 0;
    virtual const IConstStrings& GetOutputStrings() const LATHE_REALTIME = 0;
    virtual IDirtyFlags& GetOutputStringsDirty() LATHE_REALTIME = 0;
    virtual const IConstCurveInfos& GetOutputCurvesInfo() const = 0;
    virtual const IConstCurves& GetOutputCurves() const LATHE_REALTIME = 0;
    virtual IDirtyFlags& GetOutputCurvesDirty() LATHE_REALTIME = 0;
    virtual const IConstSurfaceInfos& GetOutputSurfacesInfo() const = 0;
    virtual const IConstSurfaces& GetOutputSurfaces() const LATHE_REALTIME = 0;
    virtual IDirtyFlags& GetOutputSurfacesDirty() LATHE_REALTIME = 0;
    virtual const IConstCustomPropertyInfos& GetOutputCustomPropertiesInfo() const = 0;
    virtual const IConstCustomProperties& GetOutputCustomProperties() const LATHE_REALTIME = 0;
    virtual IDirtyFlags& GetOutputCustomPropertiesDirty() LATHE_REALTIME = 0;

    virtual const ILegacyPresets& GetLegacyPresets() const = 0;
    virtual ~IFilter() = default;
};

} // namespace Lathe::Audio::DSP
