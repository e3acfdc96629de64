#include "plugin/internals/AudioPluginInternalsBase.h"

#include "dsp/FilterProductInfo.h"
#include "dsp/ProcessInfo.h"
#include "plugin/interfaces/AudioPluginDefaultSettings.h"
#include "plugin/interfaces/AudioPluginModel.h"
#include "plugin/interfaces/PluginGUI.h"
#include "plugin/interfaces/StaticSettings.h"
#include "plugin/internals/AudioPluginConfig.h"
#include "plugin/midi/MIDICCSettings.h"
#include "plugin/settings/AudioPluginStaticSettings.h"

namespace Lathe::Audio::Plugin {

namespace {

constexpr int HistorySteps = 128;
constexpr int GarbageMilliseconds = 100;

std::unique_ptr<DSP::CFilterProductInfo> CopyProductInfo(const DSP::IConstFilterProductInfo* info) {
    if (!info)
        return nullptr;
    return std::make_unique<DSP::CFilterProductInfo>(
        info->GetCompany(), info->GetName(), info->GetVersion(), info->GetCopyright(),
        info->GetDescription(), info->GetCategory(), info->GetShortName());
}

std::unique_ptr<CPackageInfo> CopyPackageInfo(const IConstPackageInfo* info) {
    if (!info)
        return nullptr;
    return std::make_unique<CPackageInfo>(info->GetMaker(), info->GetProduct(), info->GetVariant());
}

DSP::CParamInfos CopyParamInfos(const DSP::IConstParamInfos& infos) {
    DSP::CParamInfos copy(infos.GetCount());
    for (int i = 0; i < infos.GetCount(); ++i)
        copy[i] = infos.GetElement(i);
    return copy;
}

} // namespace

CAudioPluginInternalsBase::CAudioPluginInternalsBase(CAudioPluginConfig& config, SMembersOnly)
    : m_Filter(std::exchange(config.filter, nullptr)),
      m_GUI(std::exchange(config.gui, nullptr)),
      m_Model(std::exchange(config.model, nullptr)),
      m_StaticSettings(config.staticSettings ? *config.staticSettings
                                             : GetStaticSettings(config.packageInfo)),
      m_ProductInfo(CopyProductInfo(config.productInfo)),
      m_PackageInfo(CopyPackageInfo(config.packageInfo)),
      m_GUIFeatures(config.guiFeatures),
      m_InputParamInfos(m_Filter->GetInputParamsInfo()),
      m_OutputParamInfos(CopyParamInfos(m_Filter->GetOutputParamsInfo())),
      m_MIDIController(m_InputParamInfos.GetCount(), m_OutputParamInfos.GetCount()),
      m_History(this),
      m_FilterHasState(m_Filter->GetInternalDSPState() != nullptr),
      m_Inputs(*m_Filter),
      m_Outputs(*m_Filter),
      m_LastOutputCC(static_cast<std::size_t>(m_OutputParamInfos.GetCount())),
      m_PresetLists(*this, m_Filter->GetLegacyPresets(), m_StaticSettings.GetDataPath()),
      m_Timers(config.timerProvider ? *config.timerProvider : m_TimerThread),
      m_GarbageTimer(*this, &CAudioPluginInternalsBase::OnGarbageTimer),
      m_IdleTimer(*this, &CAudioPluginInternalsBase::OnIdleTimer),
      m_OnInputChanged(*this, &CAudioPluginInternalsBase::OnInputChanged),
      m_OnDefaultInputCCSettings(*this,
                                 &CAudioPluginInternalsBase::OnDefaultInputCCSettingsChanged),
      m_OnDefaultOutputCCSettings(*this,
                                  &CAudioPluginInternalsBase::OnDefaultOutputCCSettingsChanged),
      m_OnDefaultRefreshRate(*this, &CAudioPluginInternalsBase::OnDefaultRefreshRateChanged) {
    m_GUIConnections.m_PackageInfo = m_PackageInfo.get();
    ForgetSentControllers();
}

CAudioPluginInternalsBase::CAudioPluginInternalsBase(CAudioPluginConfig& config)
    : CAudioPluginInternalsBase(config, SMembersOnly()) {
    SubscribeToDefaultSettings();
    SetUpVariations();
    m_History.SetMaxSteps(HistorySteps);
    m_History.SetIncremental(true);
    ReadDefaultSettings(config.outputRefreshRate);
    StoreChannels(-1, -1);
    SubscribeToState();
    StartTimers();
}

CAudioPluginInternalsBase::~CAudioPluginInternalsBase() {
    Shutdown();
}

// Room for two orders of rates, and defaults where the host's objects tell nothing.
void CAudioPluginInternalsBase::SetUpVariations() {
    m_Variations.Setup(*m_Filter, 2);
    const DSP::IConstParamInfos& infos = m_Filter->GetInputParamsInfo();
    for (int i = 0; i < infos.GetCount(); ++i) {
        m_Variations.GetStart().GetParams().SetValue(i, infos.GetElement(i).GetDefault());
        m_Variations.GetEnd().GetParams().SetValue(i, infos.GetElement(i).GetDefault());
    }
}

void CAudioPluginInternalsBase::SubscribeToDefaultSettings() {
    IAudioPluginDefaultSettings& settings = m_StaticSettings.GetDefaultSettings();
    settings.GetInputCCSettingsChangedEvent().AddCommand(m_OnDefaultInputCCSettings);
    settings.GetOutputCCSettingsChangedEvent().AddCommand(m_OnDefaultOutputCCSettings);
    settings.GetRefreshRateChangedEvent().AddCommand(m_OnDefaultRefreshRate);
}

void CAudioPluginInternalsBase::UnsubscribeFromDefaultSettings() {
    IAudioPluginDefaultSettings& settings = m_StaticSettings.GetDefaultSettings();
    settings.GetInputCCSettingsChangedEvent().RemoveCommand(m_OnDefaultInputCCSettings);
    settings.GetOutputCCSettingsChangedEvent().RemoveCommand(m_OnDefaultOutputCCSettings);
    settings.GetRefreshRateChangedEvent().RemoveCommand(m_OnDefaultRefreshRate);
}

void CAudioPluginInternalsBase::ReadDefaultSettings(double outputRefreshRate) {
    IAudioPluginDefaultSettings& settings = m_StaticSettings.GetDefaultSettings();
    settings.SetFactoryRefreshRate(outputRefreshRate);
    m_StaticSettings.Init(m_InputParamInfos, m_OutputParamInfos);
    settings.GetInputCCSettings(m_MIDIController.GetInputSettings());
    settings.GetOutputCCSettings(m_MIDIController.GetOutputSettings());
    m_DefaultOutputSync.SetRefreshRate(settings.GetRefreshRate());
    GetOutputSync().SetRefreshRate(settings.GetRefreshRate());
}

void CAudioPluginInternalsBase::OnDefaultInputCCSettingsChanged() {
    if (m_MIDIInputDefault.GetValue())
        m_StaticSettings.GetDefaultSettings().GetInputCCSettings(
            m_MIDIController.GetInputSettings());
}

void CAudioPluginInternalsBase::OnDefaultOutputCCSettingsChanged() {
    if (m_MIDIOutputDefault.GetValue())
        m_StaticSettings.GetDefaultSettings().GetOutputCCSettings(
            m_MIDIController.GetOutputSettings());
}

void CAudioPluginInternalsBase::OnDefaultRefreshRateChanged() {
    GetOutputSync().SetRefreshRate(m_StaticSettings.GetDefaultSettings().GetRefreshRate());
}

void CAudioPluginInternalsBase::SubscribeToState() {
    m_Inputs.AddValueChangedCommand(m_OnInputChanged);
    if (m_GUI)
        m_GUI->GetStateChangedEvent().AddCommand(m_OnInputChanged);
    if (m_Model)
        m_Model->GetStateChangedEvent().AddCommand(m_OnInputChanged);
}

void CAudioPluginInternalsBase::StartTimers() {
    if (&m_Timers == &m_TimerThread)
        m_TimerThread.Start();
    if (!m_Inputs.IsEmpty())
        m_Timers.AddTimer(GarbageMilliseconds, &m_GarbageTimer);
    m_Timers.AddTimer(CHostActivity::s_TickMilliseconds, &m_IdleTimer);
}

void CAudioPluginInternalsBase::ConnectHost(IInputParams& inputParams, IOutputParams& outputParams,
                                            Core::ICommand* stateChanged,
                                            Core::ICommand* outputsUpdated) {
    m_InputParams = &inputParams;
    m_GUIConnections.m_OutputParamsAdapter = &outputParams;
    FillConnections();
    if (m_Model)
        m_Model->Connect(&m_GUIConnections);
    if (m_GUI)
        m_GUI->Connect(&m_GUIConnections);
    if (Core::ICommand* before = m_StateChangedCommand.exchange(stateChanged))
        m_Inputs.RemoveValueChangedCommand(*before);
    if (stateChanged)
        m_Inputs.AddValueChangedCommand(*stateChanged);
    m_OutputsUpdatedCommand = outputsUpdated;
}

void CAudioPluginInternalsBase::FillConnections() {
    CGUIConnections& connections = m_GUIConnections;
    connections.m_ProductInfo = m_ProductInfo.get();
    connections.m_Filter = m_Filter.get();
    connections.m_InputChannels = &m_InputChannels;
    connections.m_OutputChannels = &m_OutputChannels;
    connections.m_InputParams = m_InputParams;
    connections.m_InputStrings = &m_Inputs.GetStrings();
    connections.m_InputCurves = &m_Inputs.GetCurves();
    connections.m_InputSurfaces = &m_Inputs.GetSurfaces();
    connections.m_InputCustomProperties = &m_Inputs.GetCustomProperties();
    connections.m_OutputParams = &m_Outputs.GetParams();
    connections.m_OutputCurves = &m_Outputs.GetCurves();
    connections.m_OutputSurfaces = &m_Outputs.GetSurfaces();
    connections.m_OutputStrings = &m_Outputs.GetStrings();
    connections.m_OutputCustomProperties = &m_Outputs.GetCustomProperties();
    connections.m_Model = m_Model.get();
    connections.m_StateWriter = this;
    connections.m_History = &m_History;
    connections.m_MIDIController = &m_MIDIController;
    connections.m_DefaultSettings = &m_StaticSettings.GetDefaultSettings();
    connections.m_MIDIInputDefault = &m_MIDIInputDefault;
    connections.m_MIDIOutputDefault = &m_MIDIOutputDefault;
    connections.m_PresetsManager = this;
    connections.m_DataPath = &m_StaticSettings.GetDataPath();
    connections.m_SampleRate = &m_SampleRate;
    connections.m_MaxBlockSize = &m_MaxBlockSize;
    connections.m_Features = m_GUIFeatures;
}

void CAudioPluginInternalsBase::Shutdown() {
    if (m_ShutDown)
        return;
    m_Timers.RemoveTimer(&m_GarbageTimer, false);
    m_Timers.RemoveTimer(&m_IdleTimer, false);
    m_TimerThread.Stop();
    UnsubscribeFromDefaultSettings();
    if (Core::ICommand* stateChanged = m_StateChangedCommand.exchange(nullptr))
        m_Inputs.RemoveValueChangedCommand(*stateChanged);
    m_Inputs.RemoveValueChangedCommand(m_OnInputChanged);
    m_OutputsUpdatedCommand = nullptr;
    if (m_GUI) {
        m_GUI->GetStateChangedEvent().RemoveCommand(m_OnInputChanged);
        // It has pointers to what goes now.
        m_GUI->Connect(nullptr);
    }
    m_Outputs.Detach();
    m_InputParamInfos.ForgetFilter();
    m_GUIConnections.m_Filter = nullptr;
    m_Filter = nullptr;
    m_Inputs.PurgeRetired();
    if (m_Model) {
        m_Model->GetStateChangedEvent().RemoveCommand(m_OnInputChanged);
        m_Model->Connect(nullptr);
    }
    m_ShutDown = true;
}

} // namespace Lathe::Audio::Plugin
