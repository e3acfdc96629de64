// The whole state of an instance, as presets, host sessions, undo and the clipboard hold it.
#include "core/text/CharString.h"
#include "plugin/interfaces/AudioPluginDefaultSettings.h"
#include "plugin/interfaces/AudioPluginModel.h"
#include "plugin/interfaces/PluginGUI.h"
#include "plugin/interfaces/StaticSettings.h"
#include "plugin/internals/AudioPluginInternalsBase.h"
#include "plugin/internals/ProcessAwareProperty.h"
#include "plugin/presets/InputValuesSerializers.h"
#include "serialization/CollectionSerializers.h"
#include "serialization/MemDataObject.h"
#include "serialization/ObjectProbe.h"
#include "serialization/StreamValue.h"

namespace Lathe::Audio::Plugin {

namespace {

using namespace Serialization;

constexpr int StateVersion = 4;
// The first that holds inputs other than numbers, and the first that holds the filter's own state.
constexpr int FirstVersionWithObjects = 3;
constexpr int FirstVersionWithDSPState = 4;

constexpr const char* SettingBaseName = "setting";

// What stands in for an editor or a model that isn't there.
class CNoState : public ISerialize {
public:
    bool Serialize(IWriteDataStream&) const override { return true; }
};

template <class TPart>
bool WritePart(IWriteDataStream& output, const char* name, const TPart* part) {
    return part ? output.WriteObject(name, *part) : output.WriteObject(name, CNoState());
}

template <class TSettings>
bool WriteSettings(IWriteDataStream& output, const char* name, const TSettings& settings) {
    return output.WriteObject(name, TVectorSerializer<TSettings>(settings, SettingBaseName));
}

template <class TSettings>
void ReadSettings(const IReadDataStream& input, const char* name, TSettings& settings) {
    TVectorDeSerializer<TSettings> reader(settings, SettingBaseName);
    input.ReadObject(name, reader);
}

// Counts itself while it lives.
class CCountScope {
public:
    explicit CCountScope(std::atomic<int>& count) : m_Count(count) { ++m_Count; }
    ~CCountScope() { --m_Count; }
    CCountScope(const CCountScope&) = delete;
    CCountScope& operator=(const CCountScope&) = delete;

private:
    std::atomic<int>& m_Count;
};

// The editor and the model rest from the first of several loads at once to the end of the last.
class CRestScope {
public:
    CRestScope(std::atomic<int>& rests, IPluginGUI* gui, IAudioPluginModel* model)
        : m_Rests(rests), m_GUI(gui), m_Model(model) {
        if (m_Rests++ > 0)
            return;
        if (m_GUI)
            m_GUI->Suspend();
        if (m_Model)
            m_Model->Enable(false);
    }
    ~CRestScope() {
        if (--m_Rests > 0)
            return;
        if (m_Model)
            m_Model->Enable(true);
        if (m_GUI)
            m_GUI->Resume();
    }
    CRestScope(const CRestScope&) = delete;
    CRestScope& operator=(const CRestScope&) = delete;

private:
    std::atomic<int>& m_Rests;
    IPluginGUI* m_GUI;
    IAudioPluginModel* m_Model;
};

} // namespace

bool CAudioPluginInternalsBase::Serialize(IWriteDataStream& output) const {
    const std::unique_ptr<char[]> name(GetCurrentPresetName());
    bool result = WriteValue(output, "version", StateVersion);
    result &= WriteValue(output, "progName", static_cast<const char*>(name.get()));
    result &= WriteMIDISettings(output);
    result &= WriteInputs(output);
    result &= WriteInternalDSPState(output);
    result &= WritePart(output, "model", m_Model.get());
    result &= WritePart(output, "GUI", m_GUI.get());
    return result;
}

bool CAudioPluginInternalsBase::WriteMIDISettings(IWriteDataStream& output) const {
    const bool inputDefault = m_MIDIInputDefault.GetValue();
    bool result = WriteValue(output, "MIDIInputDefault", inputDefault);
    if (!inputDefault)
        result &= WriteSettings(output, "MIDIInputSettings", m_MIDIController.GetInputSettings());
    const bool outputDefault = m_MIDIOutputDefault.GetValue();
    result &= WriteValue(output, "MIDIOutputDefault", outputDefault);
    if (!outputDefault)
        result &= WriteSettings(output, "MIDIOutputSettings", m_MIDIController.GetOutputSettings());
    return result;
}

bool CAudioPluginInternalsBase::WriteInputs(IWriteDataStream& output) const {
    bool result = true;
    if (m_InputParams)
        result &= output.WriteObject("inputParams", CInputParamsSerializer(*m_InputParams));
    result &= output.WriteObject("inputStrings", CInputStringsSerializer(m_Inputs.GetStrings()));
    result &= output.WriteObject("inputCurves", CInputCurvesSerializer(m_Inputs.GetCurves()));
    result &= output.WriteObject("inputSurfaces", CInputSurfacesSerializer(m_Inputs.GetSurfaces()));
    result &= output.WriteObject("inputCustomProperties",
                                 CInputCustomPropertiesSerializer(m_Inputs.GetCustomProperties()));
    return result;
}

bool CAudioPluginInternalsBase::WriteInternalDSPState(IWriteDataStream& output) const {
    ISerializable* state = m_FilterHasState && m_Filter ? m_Filter->GetInternalDSPState() : nullptr;
    if (!state)
        return true;
    const Core::CAutoLock lock(m_ProcessLock);
    return output.WriteObject("internalDSPState", *state);
}

bool CAudioPluginInternalsBase::DeSerialize(const IReadDataStream& input) {
    const CCountScope loading(m_LoadingState);
    ForgetSentControllers();
    const bool dspStateRead = ReadState(input);
    Core::ICommand* stateChanged = m_StateChangedCommand;
    if (dspStateRead && stateChanged)
        stateChanged->Execute();
    return true;
}

bool CAudioPluginInternalsBase::ReadState(const IReadDataStream& input) {
    const CRestScope resting(m_RestingLoads, m_GUI.get(), m_Model.get());
    int version = 0;
    ReadValue(input, "version", version);
    const bool incremental = input.IsIncremental();
    ReadProgramName(input);
    ReadMIDISettings(input);
    ReadInputParams(input);
    if (version < FirstVersionWithObjects && !incremental)
        ReadInputObjects(CMemDataObject());
    else
        ReadInputObjects(input);
    const bool hasDSPState = version >= FirstVersionWithDSPState || incremental;
    const bool dspStateRead = hasDSPState && ReadInternalDSPState(input);
    if (m_Model)
        ReadObjectOrDefaults(input, "model", *m_Model);
    if (m_GUI)
        ReadObjectOrDefaults(input, "GUI", *m_GUI);
    return dspStateRead;
}

void CAudioPluginInternalsBase::ReadProgramName(const IReadDataStream& input) {
    Core::CCharString name;
    if (ReadValue(input, "progName", name))
        SetProgramName(name.GetText());
    else if (!input.IsIncremental())
        SetProgramName("Default");
    m_PresetsChanged.Notify();
}

void CAudioPluginInternalsBase::ReadMIDISettings(const IReadDataStream& input) {
    IAudioPluginDefaultSettings& defaults = m_StaticSettings.GetDefaultSettings();
    bool inputDefault = m_MIDIInputDefault.GetValue();
    ReadValue(input, "MIDIInputDefault", inputDefault);
    m_MIDIInputDefault.SetValue(inputDefault);
    if (inputDefault)
        defaults.GetInputCCSettings(m_MIDIController.GetInputSettings());
    else
        ReadSettings(input, "MIDIInputSettings", m_MIDIController.GetInputSettings());

    bool outputDefault = m_MIDIOutputDefault.GetValue();
    ReadValue(input, "MIDIOutputDefault", outputDefault);
    m_MIDIOutputDefault.SetValue(outputDefault);
    if (outputDefault)
        defaults.GetOutputCCSettings(m_MIDIController.GetOutputSettings());
    else
        ReadSettings(input, "MIDIOutputSettings", m_MIDIController.GetOutputSettings());
}

void CAudioPluginInternalsBase::ReadInputParams(const IReadDataStream& input) {
    if (!m_InputParams)
        return;
    CInputParamsDeSerializer params(*m_InputParams);
    ReadObjectOrDefaults(input, "inputParams", params);
}

void CAudioPluginInternalsBase::ReadInputObjects(const IReadDataStream& input) {
    CInputStringsDeSerializer strings(m_Inputs.GetStrings());
    ReadObjectOrDefaults(input, "inputStrings", strings);
    CInputCurvesDeSerializer curves(m_Inputs.GetCurves());
    ReadObjectOrDefaults(input, "inputCurves", curves);
    CInputSurfacesDeSerializer surfaces(m_Inputs.GetSurfaces());
    ReadObjectOrDefaults(input, "inputSurfaces", surfaces);
    // A new value knows where it runs before it reads its own state.
    Core::TArgCommand<CAudioPluginInternalsBase, DataModel::Objects::IDynamicPropertyValue&>
        prepare(*this, &CAudioPluginInternalsBase::PrepareCustomProperty);
    CInputCustomPropertiesDeSerializer properties(m_Inputs.GetCustomProperties(), &prepare);
    ReadObjectOrDefaults(input, "inputCustomProperties", properties);
}

bool CAudioPluginInternalsBase::ReadInternalDSPState(const IReadDataStream& input) {
    ISerializable* state = m_FilterHasState && m_Filter ? m_Filter->GetInternalDSPState() : nullptr;
    if (!state)
        return false;
    CDeSerializeProbe probe(*state);
    const Core::CAutoLock lock(m_ProcessLock);
    input.ReadObject("internalDSPState", probe);
    return probe.IsFound();
}

void CAudioPluginInternalsBase::PrepareCustomProperty(
    DataModel::Objects::IDynamicPropertyValue& value) {
    WriteProcessData(value, GetProcessData());
}

} // namespace Lathe::Audio::Plugin
