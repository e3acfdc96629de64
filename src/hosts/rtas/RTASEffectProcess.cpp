#include "hosts/rtas/RTASEffectProcess.h"

#include "dsp/FilterProductInfo.h"
#include "dsp/ProcessInfo.h"
#include "hosts/rtas/ChannelCounts.h"
#include "hosts/rtas/PluginCommands.h"
#include "hosts/rtas/ProductConstants.h"
#include "hosts/rtas/RTASPluginControl.h"
#include "platform/rtas/FourCharCode.h"
#include "plugin/internals/AudioPluginConfig.h"

#include <algorithm>
#include <iterator>

namespace LatheExt::RTASPlugin {

using namespace Lathe::Audio;

namespace {

constexpr double FirstSampleRate = 44100.0;
constexpr long BypassControl = 1;
constexpr const char* BypassNames = "Bypass\nByp";
constexpr const char* StateChunkName = "Marrow Sound Plugin State";
constexpr long ChunkPriority = -152;
// In events.
constexpr long MIDIBufferSize = 8192;
constexpr long AllChannels = 65535;
constexpr int OutputEventLength = 3;

constexpr int ControlsPerPage = 8;
constexpr int FieldsPerPage = 16;

Plugin::CAudioPluginConfig MakeProductConfig() {
    Plugin::CAudioPluginConfig config;
    config.filter = CreateFilter().release(); // The instance's.
    config.outputRefreshRate = GetOutputRefreshRate();
    config.productInfo = &GetProductInfo();
    config.packageInfo = &GetPackageInfo();
    config.guiFeatures = GetGUIFeatures();
    return config;
}

} // namespace

CRTASEffectProcess::CRTASEffectProcess() : CRTASEffectProcess(MakeProductConfig()) {}

CRTASEffectProcess::CRTASEffectProcess(Plugin::CAudioPluginConfig config)
    : m_Internals(config),
      m_PluginStateChunkID(GetManufacturerId()),
      m_OnStateChanged(*this, &CRTASEffectProcess::OnStateChanged) {
    InitFilter();
    AddChunk(m_PluginStateChunkID, StateChunkName, ChunkPriority);
    const DSP::IIOConfiguration& configuration =
        m_Internals.GetFilter()->GetCurrentIOConfiguration();
    m_InputStreams.resize(static_cast<std::size_t>(configuration.GetInputs().GetCount()));
    m_OutputStreams.resize(static_cast<std::size_t>(configuration.GetOutputs().GetCount()));
    const Plugin::IMIDIController& midi = m_Internals.GetMIDIController();
    m_InputAdapters.Setup(this, m_Internals.GetInputParamInfos(), midi.GetInputSettings(),
                          BypassControl);
    m_OutputAdapters.Setup(this, m_Internals.GetOutputParamInfos(), midi.GetOutputSettings(),
                           m_InputAdapters.GetCount() + 1);
    m_Internals.ConnectHost(m_InputAdapters, m_OutputAdapters, nullptr, nullptr);
    m_OutputEvent.SetLength(OutputEventLength);
    m_MIDIEvents.SetCount(s_MaxFilterEvents);
    m_MIDIEvents.SetCount(0);
}

// A MIDI connection that stays open still reaches the nodes, which are left to it then.
CRTASEffectProcess::~CRTASEffectProcess() {
    if (m_IsMIDIEnabled && CloseMIDI() != 0) {
        static_cast<void>(m_MIDIInputNode.release());
        static_cast<void>(m_MIDIOutputNode.release());
    }
    m_MIDIInputNode = nullptr;
    m_MIDIOutputNode = nullptr;
    m_HostTransport = nullptr;
    m_Internals.GetStateChangedEvent().RemoveAllCommands(&m_OnStateChanged);
    m_Internals.Shutdown();
}

void CRTASEffectProcess::InitFilter() {
    DSP::CFilterInitInfo info;
    info.m_ResetToDefaults = true;
    info.m_MaxBlockSize = -1;
    info.m_MaxVariationsOrder = 2;
    m_Internals.LockProcessing();
    m_Internals.GetFilter()->Init(FirstSampleRate, info);
    m_Internals.UnlockProcessing();
}

// The library's own control is the bypass: it comes back as a changed value, and nothing else
// feeds the bypass of a block.
void CRTASEffectProcess::InitControls() {
    m_Controls.reserve(static_cast<std::size_t>(m_InputAdapters.GetCount()) +
                       static_cast<std::size_t>(m_OutputAdapters.GetCount()));
    AddControl(
        std::make_unique<CPluginControl_OnOff>(MakeFourCharCode("bypa"), BypassNames, false));
    SetMasterBypassControl(BypassControl);
    m_Controls.push_back(nullptr);
    for (int i = 1; i < m_InputAdapters.GetCount(); ++i)
        AddPluginControl(m_InputAdapters[i], false);
    for (int i = 0; i < m_OutputAdapters.GetCount(); ++i) {
        AddPluginControl(m_OutputAdapters[i], true);
        AddSpecialControl(m_OutputAdapters[i].GetControlNumber());
    }
    if (!IsAudioSuite()) {
        CreateMIDINodes();
        m_HostTransport = &GetHostTransport();
    }
    m_Internals.GetStateChangedEvent().AddCommand(m_OnStateChanged);
}

void CRTASEffectProcess::AddPluginControl(CRTASParamAdapter& adapter, bool isOutput) {
    auto control = std::make_unique<CRTASPluginControl>(&adapter, isOutput);
    m_Controls.push_back(control.get());
    AddControl(std::move(control));
}

void CRTASEffectProcess::CreateMIDINodes() {
    m_IsMIDIEnabled = true;
    const std::string name = GetProductInfo().GetName();
    m_MIDIInputNode = std::make_unique<CEffectMIDINode>(name.c_str(), MIDIBufferSize);
    if (m_MIDIInputNode->Create(AllChannels, 1) != 0)
        m_MIDIInputNode = nullptr;
    if (m_OutputAdapters.GetCount() > 0) {
        m_MIDIOutputNode = std::make_unique<CEffectMIDIRTASBufferedOutputNode>(
            (name + " Out").c_str(), MIDIBufferSize);
        if (m_MIDIOutputNode->Create(AllChannels) != 0)
            m_MIDIOutputNode = nullptr;
    }
    ConnectMIDI(m_MIDIInputNode.get(), m_MIDIOutputNode.get());
}

void CRTASEffectProcess::Initialize() {
    CProcess::Initialize();
    DSP::CFilterInitInfo info;
    info.m_ResetToDefaults = true;
    info.m_MaxBlockSize = static_cast<int>(GetMaximumBlockSize());
    info.m_IOConfigurationIndex = FindIOConfiguration();
    info.m_ConnectedInputs = GetNumInputs();
    info.m_ConnectedOutputs = GetNumOutputs();
    m_Internals.PrepareToProcess(static_cast<double>(GetSampleRate()), info);
    const int inputs = m_InputAdapters.GetCount();
    for (int i = 0; i < static_cast<int>(m_Controls.size()); ++i) {
        const CRTASParamAdapter& adapter =
            i < inputs ? m_InputAdapters[i] : m_OutputAdapters[i - inputs];
        if (CRTASPluginControl* control = m_Controls[static_cast<std::size_t>(i)])
            control->SetValue(adapter.ToHost(adapter.GetValue()));
    }
    m_Controls.clear();
}

void CRTASEffectProcess::SetSampleRate(long rate) {
    const long before = GetSampleRate();
    CProcess::SetSampleRate(rate);
    if (rate == before)
        return;
    DSP::CFilterInitInfo info;
    info.m_MaxBlockSize = -1;
    info.m_IOConfigurationIndex = FindIOConfiguration();
    m_Internals.PrepareToProcess(static_cast<double>(rate), info);
}

// The first alternative with the host's channels, or -1.
int CRTASEffectProcess::FindIOConfiguration() const {
    const auto& configurations =
        m_Internals.GetConnections().GetFilter()->GetProcessInfo().GetIOConfigurations();
    const SChannelCounts host{GetNumInputs(), GetNumOutputs()};
    for (int i = 0; i < configurations.GetCount(); ++i) {
        if (GetNormalizedCounts(configurations.GetElement(i)) == host)
            return i;
    }
    return -1;
}

void CRTASEffectProcess::OnControlValueChanged(long control, long value) {
    const long inputs = m_InputAdapters.GetCount();
    if (control == BypassControl)
        m_Bypass.store(value > 0, std::memory_order_relaxed);
    if (control >= BypassControl && control < inputs + 1)
        m_InputAdapters[static_cast<int>(control) - 1].SetFromHost(value);
    else if (control > inputs && control - inputs < m_OutputAdapters.GetCount() + 1)
        m_OutputAdapters[static_cast<int>(control - inputs) - 1].SetFromHost(value);
    CProcess::OnControlValueChanged(control, value);
}

long CRTASEffectProcess::GetDelaySamples(long* samples) {
    *samples = m_Internals.GetFilter()->GetLatency();
    return 0;
}

const void* CRTASEffectProcess::QueryTable(std::uint32_t selector, long* size) {
    if (selector != MakeFourCharCode("PcTL"))
        return CProcess::QueryTable(selector, size);
    if (m_ControlPageTable.empty() && GetControlCount() > 0)
        FillControlPageTable();
    *size = static_cast<long>(m_ControlPageTable.size() * sizeof(std::uint16_t));
    return m_ControlPageTable.empty() ? nullptr : m_ControlPageTable.data();
}

// The fields of a page, the pages and the bytes of them all halved, the pages, and two empty
// fields.
void CRTASEffectProcess::FillControlPageTable() {
    const auto controls = static_cast<std::uint16_t>(GetControlCount());
    const int pages = (controls + ControlsPerPage - 1) / ControlsPerPage;
    m_ControlPageTable = {FieldsPerPage, static_cast<std::uint16_t>(pages),
                          static_cast<std::uint16_t>(pages * FieldsPerPage)};
    for (int page = 0; page < pages; ++page) {
        for (int field = 0; field < FieldsPerPage; ++field) {
            const int control = page * ControlsPerPage + field + 1;
            const bool isThere = field < ControlsPerPage && control <= controls;
            m_ControlPageTable.push_back(static_cast<std::uint16_t>(isThere ? control : 0));
        }
    }
    m_ControlPageTable.insert(m_ControlPageTable.end(), 2, 0);
}

bool CRTASEffectProcess::PluginCommand(const char* name, const char* argument,
                                       std::string& result) {
    if (const PluginCommandFunction command = FindPluginCommand(name))
        return command(m_Internals, argument ? argument : "", result);
    return CProcess::PluginCommand(name, argument, result);
}

} // namespace LatheExt::RTASPlugin
