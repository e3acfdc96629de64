// An instance with a filter that notes what it is given, and a host around it with up to three
// channels of buffers.
#pragma once

#include "dsp/ProcessInfo.h"
#include "hosts/rtas/HostLog.h"
#include "hosts/rtas/RTASEffectProcess.h"
#include "platform/rtas/FourCharCode.h"
#include "plugin/PluginTestFilter.h"
#include "plugin/TestHost.h"

#include <array>
#include <limits>
#include <string>
#include <vector>

namespace LatheExt::RTASPlugin {

using namespace Lathe::Audio;

inline constexpr long s_Bottom = std::numeric_limits<std::int32_t>::min();
inline constexpr long s_Top = std::numeric_limits<std::int32_t>::max();

// Of the last block: the events, and whether there was a time line. Of all its life: the rates.
class CSeenFilter : public Plugin::CPluginTestFilter {
public:
    explicit CSeenFilter(Plugin::STestFilterSetup setup = {})
        : CPluginTestFilter(setup), m_Info(setup.m_Inputs, setup.m_Outputs) {}

    const DSP::IProcessInfo& GetProcessInfo() const override { return m_Info; }
    void Init(double sampleRate, const DSP::CFilterInitInfo& info) override {
        m_Rates.push_back(sampleRate);
        CPluginTestFilter::Init(sampleRate, info);
    }
    void Process(const DSP::CFilterProcessData& data) override {
        See(data);
        CPluginTestFilter::Process(data);
    }
    bool ProcessSilence(const DSP::CFilterProcessData& data) override {
        See(data);
        return CPluginTestFilter::ProcessSilence(data);
    }

    DSP::CProcessInfo m_Info;
    std::vector<double> m_Rates;
    int m_Events = -1;
    bool m_HasTransport = false;

private:
    void See(const DSP::CFilterProcessData& data) {
        m_Events = data.m_pMIDIEvents->GetCount();
        m_HasTransport = data.m_pTransportInfo != nullptr;
    }
};

class COpenProcess : public CRTASEffectProcess {
public:
    using CRTASEffectProcess::CRTASEffectProcess;
    using CRTASEffectProcess::GetInternals;
};

class CTestProcess {
public:
    static constexpr int s_Frames = 64;
    using Buffers = std::array<std::vector<float>, 3>;

    explicit CTestProcess(std::unique_ptr<DSP::IFilter> filter)
        : m_Process(MakeConfig(filter.release())) {
        m_Setup = m_Log.MakeSetup();
        for (std::size_t c = 0; c < 3; ++c) {
            m_Inputs[c].assign(512, 0.0f);
            m_Outputs[c].assign(512, 0.0f);
        }
    }
    explicit CTestProcess(Plugin::STestFilterSetup setup = {})
        : CTestProcess(std::make_unique<CSeenFilter>(setup)) {}

    // As the library does it, with what is in m_Setup.
    CTestProcess& Start() {
        m_Process.SetUp(m_Setup);
        m_Process.InitControls();
        m_Process.Initialize();
        m_Log.Take();
        return *this;
    }
    void Render(int frames = s_Frames, const std::vector<RTASMIDIEvent>& events = {},
                bool isInPlace = false) LATHE_REALTIME {
        float *inputs[3], *outputs[3];
        for (std::size_t c = 0; c < 3; ++c) {
            outputs[c] = m_Outputs[c].data();
            inputs[c] = isInPlace ? outputs[c] : m_Inputs[c].data();
        }
        const RTASTransport transport{};
        RTASRender render{};
        render.midiIn = events.data();
        render.midiInCount = static_cast<int>(events.size());
        render.midiOut = m_Sent.data();
        render.midiOutRoom = static_cast<int>(m_Sent.size());
        render.transport = &transport;
        m_Process.BeginBlock(render);
        m_Process.RenderAudio(inputs, outputs, frames);
        m_Process.EndBlock(render);
        m_SentCount = render.midiOutCount;
    }
    void Fill(std::size_t channel, float level) {
        m_Inputs[channel].assign(m_Inputs[channel].size(), level);
    }

    CSeenFilter& GetFilter() { return dynamic_cast<CSeenFilter&>(*m_Filter); }
    std::string Command(const char* name, const std::string& argument = "") {
        std::string result;
        const bool succeeded = m_Process.PluginCommand(name, argument.c_str(), result);
        return (succeeded ? "" : "! ") + result;
    }
    // Of a chunk of the plug-in's own state, as long as it says.
    std::vector<char> GetChunk() {
        long size = 0;
        EXPECT_EQ(m_Process.GetChunkSize(s_Code, &size), 0);
        std::vector<char> bytes(static_cast<std::size_t>(size));
        auto* record = reinterpret_cast<SChunkRecord*>(bytes.data());
        record->m_Size = static_cast<std::int32_t>(size);
        record->m_Code = s_Code;
        EXPECT_EQ(m_Process.GetChunk(s_Code, record), 0);
        return bytes;
    }
    // Of a control, as the library has it.
    long GetValue(int control) const { return m_Process.GetControl(control)->GetValue(); }

    static constexpr std::uint32_t s_Code = 0x6D727773;

    CTemporaryHome m_Home;
    Plugin::CTestSettings m_Settings{nullptr};
    CHostLog m_Log;
    SProcessSetup m_Setup;
    Buffers m_Inputs;
    Buffers m_Outputs;
    // Of the last block.
    std::array<RTASMIDIEvent, 16> m_Sent{};
    int m_SentCount = 0;
    DSP::IFilter* m_Filter = nullptr;
    COpenProcess m_Process;

private:
    Plugin::CAudioPluginConfig MakeConfig(DSP::IFilter* filter) {
        m_Filter = filter;
        Plugin::CAudioPluginConfig config;
        config.filter = filter; // The instance's.
        config.staticSettings = &m_Settings;
        return config;
    }
};

} // namespace LatheExt::RTASPlugin
