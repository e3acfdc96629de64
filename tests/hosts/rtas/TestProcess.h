// An instance with a test filter, and a host around it that notes what it hears and has up to three
// channels of buffers.
#pragma once

#include "core/RealtimePermission.h"
#include "hosts/rtas/RTASEffectProcess.h"
#include "platform/rtas/FourCharCode.h"
#include "plugin/PluginTestFilter.h"
#include "plugin/TestHost.h"

#include <limits>
#include <string>
#include <vector>

namespace LatheExt::RTASPlugin {

using namespace Lathe::Audio;

inline constexpr long s_Bottom = std::numeric_limits<std::int32_t>::min();
inline constexpr long s_Top = std::numeric_limits<std::int32_t>::max();

// All since it was last emptied: "2=100 " for a value, "touch2 " and "release2 ".
struct SHostLog {
    static void Note(void* log, const std::string& text) {
        const Lathe::Core::CRealtimePermission permission; // A real host makes no notes.
        static_cast<SHostLog*>(log)->m_Text += text + " ";
    }
    RTASHostCalls MakeCalls() {
        using std::to_string;
        return {this,
                [](void* log, int id, int v) { Note(log, to_string(id) + "=" + to_string(v)); },
                [](void* log, int id) { Note(log, "touch" + to_string(id)); },
                [](void* log, int id) { Note(log, "release" + to_string(id)); }};
    }
    std::string Take() { return std::exchange(m_Text, ""); }

    std::string m_Text;
};

class COpenProcess : public CRTASEffectProcess {
public:
    using CRTASEffectProcess::CRTASEffectProcess;
    using CRTASEffectProcess::GetInternals;
};

class CTestProcess {
public:
    explicit CTestProcess(std::unique_ptr<DSP::IFilter> filter)
        : m_Seen(dynamic_cast<Plugin::CPluginTestFilter*>(filter.get())),
          m_Process(Plugin::CAudioPluginConfig{.filter = filter.release(),
                                               .staticSettings = &m_Settings}) {
        m_Setup.m_Calls = m_Log.MakeCalls();
    }
    explicit CTestProcess(Plugin::STestFilterSetup setup = {})
        : CTestProcess(std::make_unique<Plugin::CPluginTestFilter>(setup)) {}

    CTestProcess& Start() {
        m_Process.SetUp(m_Setup);
        m_Process.InitControls();
        m_Process.Initialize();
        m_Log.Take();
        return *this;
    }
    void Render(int frames = 64, const std::vector<RTASMIDIEvent>& events = {},
                bool isInPlace = false) LATHE_REALTIME {
        float* inputs[] = {m_Inputs[0].data(), m_Inputs[1].data(), m_Inputs[2].data()};
        float* outputs[] = {m_Outputs[0].data(), m_Outputs[1].data(), m_Outputs[2].data()};
        RTASRender render{};
        render.midiIn = events.data();
        render.midiInCount = static_cast<int>(events.size());
        render.midiOut = &m_Sent;
        render.midiOutRoom = 1;
        m_Process.BeginBlock(render);
        m_Process.RenderAudio(isInPlace ? outputs : inputs, outputs, frames);
        m_Process.EndBlock(render);
        m_SentCount = render.midiOutCount;
    }
    void Move(long control, long value) { m_Process.OnControlValueChanged(control, value); }
    long GetValue(int control) const { return m_Process.GetControl(control)->GetValue(); }
    // The result, behind "! " when it failed.
    std::string Command(const char* name, const std::string& argument = "") {
        std::string result;
        return m_Process.PluginCommand(name, argument.c_str(), result) ? result : "! " + result;
    }

    CTemporaryHome m_Home;
    Plugin::CTestSettings m_Settings{nullptr};
    SHostLog m_Log;
    SProcessSetup m_Setup;
    // Null for another filter.
    Plugin::CPluginTestFilter* m_Seen;
    std::vector<std::vector<float>> m_Inputs{3, std::vector<float>(512)};
    std::vector<std::vector<float>> m_Outputs{3, std::vector<float>(512, -1.0f)};
    // Of the last block.
    RTASMIDIEvent m_Sent{};
    int m_SentCount = 0;
    COpenProcess m_Process;
};

} // namespace LatheExt::RTASPlugin
