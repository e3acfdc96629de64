// A tiny plug-in behind the entry points, and a host that reaches it through them.
#pragma once

#include "platform/rtas/EffectGroup.h"
#include "platform/rtas/EffectProcess.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

// Control 1: master bypass. Control 2: moved by MIDI, as the plug-in's own gesture. Control 3: a
// special one, moved in silence: the number of events in the block.
class CTestProcess : public CEffectProcessMIDI, public CEffectProcessRTAS {
public:
    CTestProcess();
    ~CTestProcess() override;

    void InitControls() override;
    // Doubles the first channel into all outputs, and gives back the MIDI that comes in.
    void RenderAudio(float** inputs, float** outputs, int numSamples) override;
    void OnControlValueChanged(long control, long value) override;

    std::vector<std::pair<long, long>> m_Heard;
    // Called in each block; may be empty.
    std::function<void(CTestProcess&)> m_InBlock;

private:
    CEffectMIDINode m_Input{"In", 4};
    CEffectMIDIRTASBufferedOutputNode m_Output{"Out", 4};
};

// What the plug-in does where a test wants a fault; each function may be empty.
struct STestPlan {
    bool m_HasGroup = true;
    bool m_HasControls = true;
    std::function<void()> m_OnStart;
    std::function<void()> m_OnNewProcess;
    int m_LivingProcesses = 0;
    CTestProcess* m_LastProcess = nullptr;
};

extern STestPlan g_Plan;

template <class Call>
Call MakeCall(RTASProcess* process) {
    Call call{};
    call.size = sizeof call;
    call.process = process;
    return call;
}

inline int Dispatch(int operation, void* argument) {
    return Dispatcher(RTAS_DISPATCHER_VERSION, operation, argument);
}

// A loaded module.
class CModuleTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // As the host would, stereo, at 48000 Hz, in blocks of up to 64.
    static RTASNewProcess MakeNewProcess();
    RTASProcess* New(bool isAudioSuite = false);
    int Value(RTASProcess* process, int control);
    // Renders a block of silence with what else is in the call.
    int Render(RTASProcess* process, int numSamples, RTASRender render = {});

    std::vector<std::string> m_HostHeard;
};
