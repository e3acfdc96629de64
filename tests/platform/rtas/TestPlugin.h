// A tiny plug-in behind the entry points, and a host that reaches it through them.
#pragma once

#include "platform/rtas/EffectGroup.h"
#include "platform/rtas/EffectProcess.h"
#include "platform/rtas/FourCharCode.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class CTestProcess;

struct STestPlan {
    bool m_HasGroup = true;
    // Where module and instances start.
    std::function<void()> m_OnStart = [] {};
    int m_LivingProcesses = 0;
    CTestProcess* m_LastProcess = nullptr;
};

extern STestPlan g_Plan;

// Control 1: master bypass. Control 2: moved by MIDI, as the plug-in's own gesture. Control 3: a
// special one, moved in silence: the number of events in the block.
class CTestProcess : public CEffectProcessMIDI, public CEffectProcessRTAS {
public:
    CTestProcess() {
        ++g_Plan.m_LivingProcesses;
        g_Plan.m_LastProcess = this;
        AddChunk(MakeFourCharCode("test"), "Test State", -152);
    }
    ~CTestProcess() override {
        CloseMIDI();
        --g_Plan.m_LivingProcesses;
    }

    void InitControls() override {
        g_Plan.m_OnStart();
        for (const char* name : {"Bypass\nByp", "Level", "Count"})
            AddControl(std::make_unique<CPluginControl_OnOff>(0, name, false));
        SetMasterBypassControl(1);
        AddSpecialControl(3);
        EXPECT_EQ(m_Input.Create(65535, 1) | m_Output.Create(65535), 0);
        ConnectMIDI(&m_Input, &m_Output);
    }
    // Gives back the MIDI that comes in.
    void RenderAudio(float**, float**, int numSamples) override {
        if (m_Input.FetchEvents(numSamples) == 0)
            UpdateControlValue(3, m_Input.GetEventCount());
        for (long i = 0; i < m_Input.GetEventCount(); ++i) {
            TouchControl(2);
            SetControlValue(2, m_Input.GetEvent(i).data[2]);
            ReleaseControl(2);
            m_Output.Post(m_Input.GetEvent(i));
        }
        // From the next block on, all that this one brought would fit.
        m_Input.SetBufferSize(m_Input.GetStreamBufferSize());
        m_InBlock();
    }
    void OnControlValueChanged(long control, long value) override {
        CProcess::OnControlValueChanged(control, value);
        ++m_Heard;
    }

    // Of OnControlValueChanged.
    std::atomic<int> m_Heard{0};
    std::function<void()> m_InBlock = [] {};

private:
    CEffectMIDINode m_Input{"In", 4};
    CEffectMIDIRTASBufferedOutputNode m_Output{"Out", 4};
};

// Asks an operation of the module.
template <class Call>
int Dispatch(int operation, Call& call) {
    call.size = sizeof call;
    return Dispatcher(RTAS_DISPATCHER_VERSION, operation, &call);
}

template <class Call>
Call MakeCall(RTASProcess* process) {
    Call call{};
    call.process = process;
    return call;
}

// A loaded module with one instance: stereo, at 48000 Hz, that renders larger blocks than
// announced.
class CModuleTest : public testing::Test {
protected:
    CModuleTest();
    ~CModuleTest() override;

    RTASProcess* New();
    int GetValue(RTASProcess* process, int control);

    // What the host's calls brought.
    std::vector<std::string> m_HostHeard;
    RTASNewProcess m_New{};
    RTASProcess* m_Process;
    CTestProcess& m_Plugin;
    float m_Samples[2][64]{};
    float* m_Buffers[2]{m_Samples[0], m_Samples[1]};
    // What a test may lend to the block; the first event is at 0, each 1 behind the last.
    RTASMIDIEvent m_Events[6], m_Out[3];
    RTASTransport m_Transport{1, 120.0, 4, 4, 48000, 1920000, 1, 960000, 3840000};
    // In place, the whole block, and no events.
    RTASRender m_Render{};
};
