#include "platform/rtas/TestPlugin.h"

#include "platform/rtas/FourCharCode.h"

STestPlan g_Plan;

namespace {

class CTestGroup : public CEffectGroupMIDI {
public:
    CTestGroup() {
        SetManufacturer("Maker", MakeFourCharCode("make"));
        SetProductName("Long Name\nLong\nL", true);
        auto type = std::make_unique<CEffectTypeRTAS>(7, MakeFourCharCode("prod"), 2);
        type->DefineStemFormats(1, 6, 0);
        AddEffectType(std::move(type));
    }

    void Initialize() override {
        if (g_Plan.m_OnStart)
            g_Plan.m_OnStart();
    }
    std::unique_ptr<CProcess> CreateProcess(long) override {
        return std::make_unique<CTestProcess>();
    }
};

} // namespace

std::unique_ptr<CProcessGroup> CProcessGroup::CreateProcessGroup() {
    return g_Plan.m_HasGroup ? std::make_unique<CTestGroup>() : nullptr;
}

CTestProcess::CTestProcess() {
    ++g_Plan.m_LivingProcesses;
    g_Plan.m_LastProcess = this;
    AddChunk(MakeFourCharCode("test"), "Test State", -152);
    m_Heard.reserve(64);
}

CTestProcess::~CTestProcess() {
    CloseMIDI();
    --g_Plan.m_LivingProcesses;
}

void CTestProcess::InitControls() {
    if (g_Plan.m_OnNewProcess)
        g_Plan.m_OnNewProcess();
    if (g_Plan.m_HasControls) {
        for (const char* name : {"Bypass\nByp", "Level", "Count"})
            AddControl(std::make_unique<CPluginControl_OnOff>(0, name, false));
        SetMasterBypassControl(1);
        AddSpecialControl(3);
    }
    EXPECT_EQ(m_Input.Create(65535, 1), 0);
    EXPECT_EQ(m_Output.Create(65535), 0);
    ConnectMIDI(&m_Input, &m_Output);
}

void CTestProcess::RenderAudio(float** inputs, float** outputs, int numSamples) {
    for (int channel = 0; channel < GetNumOutputs(); ++channel) {
        for (int i = 0; i < numSamples; ++i)
            outputs[channel][i] = 2.0f * inputs[0][i];
    }
    if (m_Input.HasStream() && m_Input.FetchEvents(numSamples) == 0) {
        for (long i = 0; i < m_Input.GetEventCount(); ++i) {
            const RTASMIDIEvent& event = m_Input.GetEvent(i);
            TouchControl(2);
            SetControlValue(2, event.data[2]);
            ReleaseControl(2);
            m_Output.Post(event);
        }
        UpdateControlValue(3, m_Input.GetEventCount());
        // From the next block on, all that this one brought would fit.
        m_Input.SetBufferSize(m_Input.GetStreamBufferSize());
    }
    if (m_InBlock)
        m_InBlock(*this);
}

void CTestProcess::OnControlValueChanged(long control, long value) {
    CProcess::OnControlValueChanged(control, value);
    if (m_Heard.size() < m_Heard.capacity())
        m_Heard.emplace_back(control, value);
}

void CModuleTest::SetUp() {
    g_Plan = {};
    ASSERT_EQ(NewMachOPlugIn(nullptr), RTAS_OK);
}

void CModuleTest::TearDown() {
    CloseMachOPlugIn();
    EXPECT_EQ(g_Plan.m_LivingProcesses, 0);
}

RTASNewProcess CModuleTest::MakeNewProcess() {
    RTASNewProcess call{};
    call.size = sizeof call;
    call.sampleRate = 48000;
    call.maxBlockSize = 64;
    call.inputs = call.outputs = 2;
    return call;
}

RTASProcess* CModuleTest::New(bool isAudioSuite) {
    RTASNewProcess call = MakeNewProcess();
    call.isAudioSuite = isAudioSuite;
    call.calls.context = &m_HostHeard;
    call.calls.controlChanged = [](void* heard, int32_t control, int32_t value) {
        static_cast<std::vector<std::string>*>(heard)->push_back(std::to_string(control) + "=" +
                                                                 std::to_string(value));
    };
    call.calls.controlTouched = [](void* heard, int32_t) {
        static_cast<std::vector<std::string>*>(heard)->push_back("touch");
    };
    call.calls.controlReleased = [](void* heard, int32_t) {
        static_cast<std::vector<std::string>*>(heard)->push_back("release");
    };
    EXPECT_EQ(Dispatch(RTAS_NEW_PROCESS, &call), RTAS_OK);
    return call.process;
}

int CModuleTest::Value(RTASProcess* process, int control) {
    auto call = MakeCall<RTASControlText>(process);
    call.control = control;
    EXPECT_EQ(Dispatch(RTAS_GET_CONTROL_VALUE, &call), RTAS_OK);
    return call.value;
}

int CModuleTest::Render(RTASProcess* process, int numSamples, RTASRender render) {
    std::vector<float> samples(64);
    float* const buffers[]{samples.data(), samples.data()};
    render.size = sizeof render;
    render.process = process;
    render.inputs = render.outputs = buffers;
    render.numSamples = numSamples;
    return Dispatch(RTAS_RENDER, &render);
}
