#include "platform/rtas/TestPlugin.h"

#include "core/RealtimePermission.h"

STestPlan g_Plan;

namespace {

class CTestGroup : public CEffectGroupMIDI {
public:
    CTestGroup() {
        AddEffectType(std::make_unique<CEffectTypeRTAS>(7, MakeFourCharCode("prod"), 2));
    }

    void Initialize() override { g_Plan.m_OnStart(); }
    std::unique_ptr<CProcess> CreateProcess(long) override {
        return std::make_unique<CTestProcess>();
    }
};

} // namespace

std::unique_ptr<CProcessGroup> CProcessGroup::CreateProcessGroup() {
    return g_Plan.m_HasGroup ? std::make_unique<CTestGroup>() : nullptr;
}

CModuleTest::CModuleTest()
    : m_Process((g_Plan = {}, NewMachOPlugIn(nullptr), New())), m_Plugin(*g_Plan.m_LastProcess) {
    m_Render.process = m_Process;
    m_Render.inputs = m_Render.outputs = m_Buffers;
    m_Render.numSamples = 64;
    for (int i = 0; i < 6; ++i)
        m_Events[i] = {i, 3, {0xB0, 7, static_cast<std::uint8_t>(i + 1), 0}};
    m_Render.midiIn = m_Events;
    m_Render.midiOut = m_Out;
    m_Render.midiOutRoom = 3;
    m_Render.transport = &m_Transport;
}

// The instances that are left go with the module.
CModuleTest::~CModuleTest() {
    EXPECT_EQ(CloseMachOPlugIn(), RTAS_OK);
    EXPECT_EQ(g_Plan.m_LivingProcesses, 0);
}

RTASProcess* CModuleTest::New() {
    m_New.sampleRate = 48000;
    m_New.maxBlockSize = 1; // All blocks are larger.
    m_New.inputs = m_New.outputs = 2;
    static constexpr auto s_Note = [](void* heard, const std::string& what) {
        const Lathe::Core::CRealtimePermission permission; // A real host makes no notes.
        static_cast<std::vector<std::string>*>(heard)->push_back(what);
    };
    m_New.calls = {&m_HostHeard,
                   [](void* heard, int32_t control, int32_t value) {
                       s_Note(heard, std::to_string(control) + "=" + std::to_string(value));
                   },
                   [](void* heard, int32_t) { s_Note(heard, "touch"); },
                   [](void* heard, int32_t) { s_Note(heard, "release"); }};
    EXPECT_EQ(Dispatch(RTAS_NEW_PROCESS, m_New), RTAS_OK);
    return m_New.process;
}

int CModuleTest::GetValue(RTASProcess* process, int control) {
    auto call = MakeCall<RTASControlText>(process);
    call.control = control;
    EXPECT_EQ(Dispatch(RTAS_GET_CONTROL_VALUE, call), RTAS_OK);
    return call.value;
}
