// The running instance: it owns the filter, the editor, the model, the MIDI settings, the presets
// and the undo history, and it is the one road by which values pass between threads.
//
// Instance built by the host: constructor, ConnectHost, PrepareToProcess.
// A block, on the audio thread: HandleMIDIEvent for each event, the bypass manager's SetBypass,
// GetPropertiesVariations, LockProcessing, the bypass manager's Process or ProcessSilence,
// UnlockProcessing, AdvanceOutputSync, CommitVariations if there were any; and when
// GetOutputSync() says that outputs are due: its ResetCounter, ComputeOutputs, MakeOutputMIDIEvent
// for each output, PublishOutputs(false), which is tried again after the next block if it failed;
// at last EndBlock.
// Knob turned in the editor: the host's parameter object changes; the next block sees it.
// State loaded by the host: DeSerializeState; the next blocks see it value by value.
// Instance closed: Shutdown, destructor.
#pragma once

#include "core/events/Command.h"
#include "core/text/CharString.h"
#include "core/threads/MessageLoopThread.h"
#include "dsp/OutputDataSync.h"
#include "dsp/properties/FilterPropertiesVariations.h"
#include "plugin/interfaces/PresetsManager.h"
#include "plugin/internals/FilterBypassManager.h"
#include "plugin/internals/GUIConnections.h"
#include "plugin/internals/HostActivity.h"
#include "plugin/internals/InputObjects.h"
#include "plugin/internals/OutputObjects.h"
#include "plugin/internals/PluginParamInfos.h"
#include "plugin/midi/MIDIController.h"
#include "plugin/presets/PresetLists.h"
#include "plugin/presets/PresetOwner.h"
#include "plugin/settings/PackageInfo.h"
#include "serialization/Serializable.h"
#include "serialization/history/IncrementalHistoryManager.h"

#include <atomic>
#include <memory>
#include <vector>

namespace Lathe::Audio::DSP {
class CFilterProductInfo;
}

namespace Lathe::Audio::MIDI {
class IConstMIDIEvent;
class IMIDIEvent;
} // namespace Lathe::Audio::MIDI

namespace Lathe::Audio::Plugin {

class IPluginGUI;
class IStaticSettings;
struct CAudioPluginConfig;
struct SProcessData;

// Locks nest in this order: that of the host activity's m_RunningFlag, then m_ProcessLock or the
// inputs' lock; the outputs' lock before m_ProcessLock. No lock is held while an event is raised,
// but that of the event and, in preparation and in an idle tick, that of m_RunningFlag.
class CAudioPluginInternalsBase : public virtual Serialization::ISerializable,
                                  public virtual IPresetsManager,
                                  private IPresetOwner {
public:
    // Takes what the configuration gives away.
    explicit CAudioPluginInternalsBase(CAudioPluginConfig& config);
    ~CAudioPluginInternalsBase() override;
    CAudioPluginInternalsBase(const CAudioPluginInternalsBase&) = delete;
    CAudioPluginInternalsBase& operator=(const CAudioPluginInternalsBase&) = delete;

    // --- Host's main thread ---

    // The vectors stay the host's, as do the commands, which may be null. inputParams holds Bypass
    // and then one object a parameter of the filter. stateChanged runs when an input that isn't a
    // number changes, on the thread that changes it; outputsUpdated on the timer thread, before
    // outputs are published while the host doesn't process: it waits for no thread of the host's.
    void ConnectHost(IInputParams& inputParams, IOutputParams& outputParams,
                     Core::ICommand* stateChanged, Core::ICommand* outputsUpdated);
    // The sample rate is in hertz. Not while a block runs. Where the block size is unknown, room is
    // made for the largest one that was ever told.
    void PrepareToProcess(double sampleRate, const DSP::CFilterInitInfo& info);
    // Before destruction; a second call does nothing.
    void Shutdown();
    // The whole state, as a preset holds it. Any thread.
    bool SerializeState(Serialization::IWriteDataStream& output) const { return Serialize(output); }
    bool DeSerializeState(const Serialization::IReadDataStream& input) {
        return DeSerialize(input);
    }

    // --- Audio thread ---

    // Once a block, before the filter runs: null when nothing changed. CommitVariations tells that
    // the block has used them.
    const DSP::IConstFilterPropertiesVariations* GetPropertiesVariations(int numSamples)
        LATHE_REALTIME;
    void CommitVariations() LATHE_REALTIME { m_Variations.Commit(); }
    void EndBlock() LATHE_REALTIME { m_HostActivity.EndBlock(); }
    CFilterBypassManager& GetBypassManager() LATHE_REALTIME { return m_BypassManager; }
    // Around the bypass manager; they do nothing when the filter has no state of its own.
    void LockProcessing() LATHE_REALTIME;
    void UnlockProcessing() LATHE_REALTIME;
    void AdvanceOutputSync(int numSamples) LATHE_REALTIME;
    DSP::IOutputDataSync& GetOutputSync() LATHE_REALTIME;
    // Lets the filter compute its outputs, before they are read or published.
    void ComputeOutputs() LATHE_REALTIME;
    // False when somebody reads the outputs and this doesn't wait: numbers are published all the
    // same, and the others keep their flags for the next call. Waits only with force.
    bool PublishOutputs(bool force) LATHE_REALTIME;
    // Applies one event before the block that it belongs to. True for a control change, which the
    // message then holds.
    bool HandleMIDIEvent(const MIDI::IConstMIDIEvent& event, CMIDICCMessage& message)
        LATHE_REALTIME;
    // Fills the event for one output; false when nothing is to be sent.
    bool MakeOutputMIDIEvent(int output, MIDI::IMIDIEvent& event) LATHE_REALTIME;

    // --- Any thread ---

    // Null after Shutdown.
    DSP::IFilter* GetFilter() { return m_Filter.get(); }
    // Null when there is none.
    IPluginGUI* GetGUI() { return m_GUI.get(); }
    const DSP::IConstParamInfos& GetInputParamInfos() const { return m_InputParamInfos; }
    const DSP::IConstParamInfos& GetOutputParamInfos() const { return m_OutputParamInfos; }
    CMIDIController& GetMIDIController() LATHE_REALTIME { return m_MIDIController; }
    const IPluginGUIConnections& GetConnections() const { return m_GUIConnections; }
    // The GUI thread's alone.
    Serialization::IHistoryManager& GetHistory() { return m_History; }
    double GetSampleRate() const LATHE_REALTIME { return m_SampleRate.GetValue(); }
    // From the first PrepareToProcess on.
    bool IsPrepared() const { return m_Prepared; }
    // Something of the saved state has moved; raised on the thread that moved it.
    Core::IEventProvider& GetStateChangedEvent() { return m_StateChanged; }

    bool Serialize(Serialization::IWriteDataStream& output) const override;
    // True: what is missing means the default, or no change in an incremental stream.
    bool DeSerialize(const Serialization::IReadDataStream& input) override;

    // --- Presets: the GUI thread ---

    IPresets& GetPresets() override { return m_PresetLists.GetPresets(); }
    const CPresetFolder& GetFactoryFolder() const override {
        return m_PresetLists.GetFactoryFolder();
    }
    IPresets& GetUserPresets() override { return m_PresetLists.GetUserPresets(); }
    const CPresetFolder& GetUserFolder() const override { return m_PresetLists.GetUserFolder(); }
    // The one that new instances take, of either list; null when there is none.
    const IPreset* GetDefaultPreset() const { return m_PresetLists.GetDefaultPreset(); }
    void Refresh() override;
    char* GetCurrentPresetName() const override;
    void PreviousPreset() override;
    void NextPreset() override;
    Core::IEventProvider& GetPresetChangedEvent() const override { return m_PresetsChanged; }
    bool SavePreset(const char* path) override;
    bool LoadPreset(const char* path) override;
    bool SaveAsDefault() override;
    void LoadDefault() override { ResetToDefaults(); }
    void ResetDefault() override;

private:
    // Only the members: when what follows fails, the destructor runs.
    struct SMembersOnly {};
    CAudioPluginInternalsBase(CAudioPluginConfig& config, SMembersOnly);

    // Construction and connection.
    void ReadDefaultSettings(double outputRefreshRate);
    void SubscribeToDefaultSettings();
    void UnsubscribeFromDefaultSettings();
    void SubscribeToState();
    void StartTimers();
    void FillConnections();
    void OnDefaultInputCCSettingsChanged();
    void OnDefaultOutputCCSettingsChanged();
    void OnDefaultRefreshRateChanged();
    void OnInputChanged() { m_StateChanged.Notify(); }

    // Preparation.
    void SetUpVariations();
    int ChooseBlockSize(int maxBlockSize);
    void InitFilter(double sampleRate, const DSP::CFilterInitInfo& info);
    void InitBypass();
    void StoreChannels(int inputs, int outputs);
    SProcessData GetProcessData() const;
    void ResetToDefaults();
    void ForgetSentControllers();

    // Data paths.
    bool SyncInputs() LATHE_REALTIME;
    bool SyncParams() LATHE_REALTIME;
    void MarkAllInputs() LATHE_REALTIME;
    void PushAllInputs() LATHE_REALTIME;
    Core::ILock* GetProcessLock() const LATHE_REALTIME {
        return m_FilterHasState ? &m_ProcessLock : nullptr;
    }

    // Timers.
    void OnGarbageTimer() { m_Inputs.PurgeRetired(); }
    void OnIdleTimer();
    void UpdateOutputsWhileIdle();

    // State.
    bool WriteMIDISettings(Serialization::IWriteDataStream& output) const;
    bool WriteInputs(Serialization::IWriteDataStream& output) const;
    bool WriteInternalDSPState(Serialization::IWriteDataStream& output) const;
    // True when the filter's own state was read.
    bool ReadState(const Serialization::IReadDataStream& input);
    void ReadProgramName(const Serialization::IReadDataStream& input);
    void ReadMIDISettings(const Serialization::IReadDataStream& input);
    void ReadInputParams(const Serialization::IReadDataStream& input);
    void ReadInputObjects(const Serialization::IReadDataStream& input);
    bool ReadInternalDSPState(const Serialization::IReadDataStream& input);
    void PrepareCustomProperty(DataModel::Objects::IDynamicPropertyValue& value);

    // IPresetOwner.
    void SetCurrentPreset(int index, const char* name) override;
    IInputParams* GetInputParams() override { return m_InputParams; }
    void SetProgramName(const char* name);
    void ApplyPreset(int step);
    // False when there is none.
    bool ApplyDefaultPreset();

    std::unique_ptr<DSP::IFilter> m_Filter;
    std::unique_ptr<IPluginGUI> m_GUI;
    std::unique_ptr<IAudioPluginModel> m_Model;
    IStaticSettings& m_StaticSettings;
    std::unique_ptr<DSP::CFilterProductInfo> m_ProductInfo;
    std::unique_ptr<CPackageInfo> m_PackageInfo;
    SGUIFeatures m_GUIFeatures;
    // Bypass, then the filter's parameters.
    CPluginParamInfos m_InputParamInfos;
    DSP::CParamInfos m_OutputParamInfos;
    CGUIConnections m_GUIConnections;
    CMIDIController m_MIDIController;
    CMTBool m_MIDIInputDefault{true};
    CMTBool m_MIDIOutputDefault{true};
    CMTInt m_InputChannels{0};
    CMTInt m_OutputChannels{0};
    CMTDouble m_SampleRate{0.0};
    CMTDouble m_MaxBlockSize{0.0};
    Serialization::CIncrementalHistoryManager m_History;

    // What the audio thread touches.
    bool m_FilterHasState;
    IInputParams* m_InputParams = nullptr;
    CFilterBypassManager m_BypassManager;
    DSP::CFilterPropertiesVariations m_Variations;
    CInputObjects m_Inputs;
    COutputObjects m_Outputs;
    DSP::COutputDataSync m_DefaultOutputSync;
    // Of each output, the 7-bit value that was sent last, or -1.
    std::vector<std::atomic<int>> m_LastOutputCC;
    std::atomic<bool> m_AllInputsPushed{false};
    std::atomic<bool> m_OutputsPending{false};
    CHostActivity m_HostActivity;
    mutable System::CCriticalSection m_ProcessLock;

    // In samples; 0 until the host tells one: the largest that it ever told, and the one that room
    // is made for.
    int m_LargestBlockSize = 0;
    int m_BlockSize = 0;
    std::atomic<bool> m_Prepared{false};
    // Loads in progress, on any thread.
    std::atomic<int> m_LoadingState{0};
    // Those of them for which the editor and the model rest.
    std::atomic<int> m_RestingLoads{0};
    bool m_ShutDown = false;
    std::atomic<Core::ICommand*> m_StateChangedCommand{nullptr};
    std::atomic<Core::ICommand*> m_OutputsUpdatedCommand{nullptr};

    // Guards the name and the index of the current preset, and the lists.
    mutable System::CCriticalSection m_PresetLock;
    Core::CCharString m_ProgramName{"Default Settings"};
    int m_CurrentPreset = -1;
    CPresetLists m_PresetLists;
    mutable System::CMTEventProvider m_PresetsChanged;
    System::CMTEventProvider m_StateChanged;

    System::CMessageLoopThread m_TimerThread;
    System::ITimerProvider& m_Timers;
    Core::TCommand<CAudioPluginInternalsBase> m_GarbageTimer;
    Core::TCommand<CAudioPluginInternalsBase> m_IdleTimer;
    Core::TCommand<CAudioPluginInternalsBase> m_OnInputChanged;
    Core::TCommand<CAudioPluginInternalsBase> m_OnDefaultInputCCSettings;
    Core::TCommand<CAudioPluginInternalsBase> m_OnDefaultOutputCCSettings;
    Core::TCommand<CAudioPluginInternalsBase> m_OnDefaultRefreshRate;
};

} // namespace Lathe::Audio::Plugin
