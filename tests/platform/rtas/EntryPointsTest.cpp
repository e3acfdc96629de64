// The four entry points: what they refuse, and what becomes of exceptions.

#include "core/RealtimePermission.h"
#include "platform/rtas/DAEError.h"
#include "platform/rtas/TestPlugin.h"

#include <stdexcept>

namespace {

using CEntryPointsTest = CModuleTest;

TEST_F(CEntryPointsTest, EveryOperationRefusesWhatItCannotRead) {
    auto call = MakeCall<RTASProcessCall>(New());
    EXPECT_EQ(Dispatch(RTAS_DELETE_PROCESS, call), RTAS_OK);
    RTASProcess* const handles[]{
        nullptr, call.process, reinterpret_cast<RTASProcess*>(&call),
        reinterpret_cast<RTASProcess*>(reinterpret_cast<char*>(m_Process) + 1)};
    New();
    // Large enough for all structures, which begin with size and process.
    RTASProcessCall argument[40]{};
    const auto ask = std::bind_front(Dispatcher, RTAS_DISPATCHER_VERSION);
    int known = 0;
    for (int operation = -1; operation < 50; ++operation) {
        EXPECT_EQ(Dispatcher(RTAS_DISPATCHER_VERSION + 1, operation, argument), RTAS_WRONG_VERSION);
        if (ask(operation, nullptr) == RTAS_UNKNOWN_OPERATION)
            continue;
        ++known;
        EXPECT_EQ(ask(operation, nullptr), RTAS_WRONG_ARGUMENT);
        argument[0] = {sizeof(RTASProcessCall) - 1, m_Process, 0};
        EXPECT_EQ(ask(operation, argument), RTAS_WRONG_ARGUMENT);
        for (RTASProcess* const unknown : handles) {
            argument[0] = {sizeof argument, unknown, 0};
            EXPECT_EQ(operation > RTAS_NEW_PROCESS ? ask(operation, argument) : RTAS_WRONG_ARGUMENT,
                      RTAS_WRONG_ARGUMENT);
        }
    }
    // No control, no rate, no text, no record.
    for (const int operation :
         {RTAS_SET_SAMPLE_RATE, RTAS_GET_CONTROL_INFO, RTAS_GET_CONTROL_NAME,
          RTAS_GET_CONTROL_VALUE, RTAS_SET_CONTROL_VALUE, RTAS_CONTROL_VALUE_TO_TEXT,
          RTAS_CONTROL_TEXT_TO_VALUE, RTAS_GET_CHUNK, RTAS_SET_CHUNK, RTAS_COMPARE_CHUNK,
          RTAS_PLUGIN_COMMAND}) {
        argument[0] = {sizeof argument, m_Process, 0};
        EXPECT_EQ(ask(operation, argument), RTAS_WRONG_ARGUMENT) << operation;
    }
    for (const auto field :
         {&RTASNewProcess::typeIndex, &RTASNewProcess::sampleRate, &RTASNewProcess::maxBlockSize,
          &RTASNewProcess::inputs, &RTASNewProcess::outputs}) {
        RTASNewProcess wrong = m_New;
        wrong.*field = -1;
        EXPECT_TRUE(Dispatch(RTAS_NEW_PROCESS, wrong) == RTAS_WRONG_ARGUMENT && !wrong.process);
    }
    EXPECT_EQ(known, 22);
    EXPECT_EQ(CDSPDoHostCommand(0, nullptr), RTAS_UNKNOWN_OPERATION);
    EXPECT_EQ(g_Plan.m_LivingProcesses, 2);
}

TEST_F(CEntryPointsTest, ExceptionsBecomeCodes) {
#if defined(LATHE_HAS_REALTIME_SANITIZER)
    GTEST_SKIP() << "this sanitizer doesn't see a block end by an exception";
#endif
    const std::pair<std::function<void()>, int> cases[]{
        {[] { throw CDAEError(-42); }, -42},
        {[] { throw std::runtime_error("fault"); }, -7401},
    };
    bool isPlaying = false;
    for (const auto& [fault, code] : cases) {
        m_Plugin.m_InBlock = fault;
        EXPECT_EQ(Dispatch(RTAS_RENDER, m_Render), code);
        // The block is over all the same.
        EXPECT_NE(m_Plugin.GetHostTransport().IsPlaying(&isPlaying), 0);
        g_Plan.m_OnStart = fault;
        EXPECT_TRUE(Dispatch(RTAS_NEW_PROCESS, m_New) == code && !m_New.process);
        EXPECT_EQ(g_Plan.m_LivingProcesses, 1);
    }
    CloseMachOPlugIn();
    for (const auto& [fault, code] : cases) {
        g_Plan.m_OnStart = fault;
        EXPECT_EQ(NewMachOPlugIn(nullptr), code);
    }
    g_Plan.m_HasGroup = false;
    EXPECT_EQ(NewMachOPlugIn(nullptr), -7003);
    EXPECT_EQ(Dispatch(RTAS_NEW_PROCESS, m_New), RTAS_NO_GROUP);
}

} // namespace
