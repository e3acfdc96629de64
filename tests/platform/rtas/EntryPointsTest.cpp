// The four entry points: what a module tells of itself, what they refuse, and what becomes of
// exceptions.

#include "platform/rtas/DAEError.h"
#include "platform/rtas/FourCharCode.h"
#include "platform/rtas/TestPlugin.h"

#include <cstring>
#include <stdexcept>

namespace {

class CEntryPointsTest : public CModuleTest {};

TEST_F(CEntryPointsTest, GroupAndTypeTellOfThemselves) {
    RTASGroupInfo group{};
    group.size = sizeof group;
    EXPECT_EQ(Dispatch(RTAS_GET_GROUP_INFO, &group), RTAS_OK);
    EXPECT_EQ(group.manufacturerId, 0x6d616b65u);
    EXPECT_EQ(group.productId, MakeFourCharCode("prod"));
    EXPECT_EQ(group.typeCount, 1);
    EXPECT_STREQ(group.manufacturerName, "Maker");
    EXPECT_STREQ(group.productNames, "Long Name\nLong\nL");
    RTASTypeInfo type{};
    type.size = sizeof type;
    EXPECT_EQ(Dispatch(RTAS_GET_TYPE_INFO, &type), RTAS_OK);
    EXPECT_EQ(type.typeId, 7);
    EXPECT_EQ(type.category, 2u);
    EXPECT_EQ(type.inputChannels, 2);
    EXPECT_EQ(type.outputChannels, 6);
    for (const int index : {-1, 1}) {
        type.index = index;
        EXPECT_EQ(Dispatch(RTAS_GET_TYPE_INFO, &type), RTAS_WRONG_ARGUMENT);
    }
}

TEST_F(CEntryPointsTest, EveryOperationRefusesWhatItCannotRead) {
    RTASProcess* const process = New();
    RTASProcess* const deleted = New();
    auto call = MakeCall<RTASProcessCall>(deleted);
    EXPECT_EQ(Dispatch(RTAS_DELETE_PROCESS, &call), RTAS_OK);
    New();
    // Large enough for all structures, which begin with size and process.
    struct {
        RTASProcessCall m_Head;
        char m_Rest[1024];
    } argument{};
    argument.m_Head.process = process;
    int known = 0;
    for (int operation = -1; operation < 50; ++operation) {
        argument.m_Head.size = sizeof argument;
        EXPECT_EQ(Dispatcher(RTAS_DISPATCHER_VERSION + 1, operation, &argument),
                  RTAS_WRONG_VERSION);
        if (Dispatch(operation, nullptr) == RTAS_UNKNOWN_OPERATION)
            continue;
        ++known;
        EXPECT_EQ(Dispatch(operation, nullptr), RTAS_WRONG_ARGUMENT);
        argument.m_Head.size = sizeof(RTASProcessCall) - 1;
        EXPECT_EQ(Dispatch(operation, &argument), RTAS_WRONG_ARGUMENT);
        if (operation <= RTAS_NEW_PROCESS)
            continue;
        argument.m_Head.size = sizeof argument;
        for (RTASProcess* const unknown :
             {static_cast<RTASProcess*>(nullptr), deleted, reinterpret_cast<RTASProcess*>(&known),
              reinterpret_cast<RTASProcess*>(reinterpret_cast<std::uintptr_t>(process) + 1)}) {
            argument.m_Head.process = unknown;
            EXPECT_EQ(Dispatch(operation, &argument), RTAS_WRONG_ARGUMENT) << operation;
        }
        argument.m_Head.process = process;
    }
    EXPECT_EQ(known, 22);
    EXPECT_EQ(CDSPDoHostCommand(0, nullptr), RTAS_UNKNOWN_OPERATION);
    EXPECT_EQ(g_Plan.m_LivingProcesses, 2);
}

TEST_F(CEntryPointsTest, NewProcessRefusesWhatNoHostHas) {
    for (std::int32_t RTASNewProcess::*const field :
         {&RTASNewProcess::typeIndex, &RTASNewProcess::sampleRate, &RTASNewProcess::maxBlockSize,
          &RTASNewProcess::inputs, &RTASNewProcess::outputs}) {
        RTASNewProcess call = MakeNewProcess();
        call.*field = -1;
        EXPECT_EQ(Dispatch(RTAS_NEW_PROCESS, &call), RTAS_WRONG_ARGUMENT);
        EXPECT_EQ(call.process, nullptr);
    }
    RTASNewProcess call = MakeNewProcess();
    call.inputs = 65;
    EXPECT_EQ(Dispatch(RTAS_NEW_PROCESS, &call), RTAS_WRONG_ARGUMENT);
}

TEST_F(CEntryPointsTest, ExceptionsBecomeCodes) {
    const std::pair<std::function<void()>, int> cases[]{
        {[] { throw CDAEError(-42); }, -42},
        {[] { throw std::runtime_error("fault"); }, UnknownExceptionError},
        {[] { throw 1; }, UnknownExceptionError},
    };
    RTASProcess* const process = New();
    CTestProcess& plugin = *g_Plan.m_LastProcess;
    bool isPlaying = false;
    for (const auto& [fault, code] : cases) {
        plugin.m_InBlock = [&fault](CTestProcess&) { fault(); };
        const RTASTransport transport{};
        RTASRender render{};
        render.transport = &transport;
        EXPECT_EQ(Render(process, 8, render), code);
        // The block is over all the same.
        EXPECT_NE(plugin.GetHostTransport().IsPlaying(&isPlaying), 0);
        g_Plan.m_OnNewProcess = fault;
        RTASNewProcess call = MakeNewProcess();
        EXPECT_EQ(Dispatch(RTAS_NEW_PROCESS, &call), code);
        EXPECT_EQ(call.process, nullptr);
        EXPECT_EQ(g_Plan.m_LivingProcesses, 1);
    }
    CloseMachOPlugIn();
    for (const auto& [fault, code] : cases) {
        g_Plan.m_OnStart = fault;
        EXPECT_EQ(NewMachOPlugIn(nullptr), code);
    }
    g_Plan.m_HasGroup = false;
    EXPECT_EQ(NewMachOPlugIn(nullptr), -7003);
    RTASNewProcess call = MakeNewProcess();
    EXPECT_EQ(Dispatch(RTAS_NEW_PROCESS, &call), RTAS_NO_GROUP);
}

TEST_F(CEntryPointsTest, CommandsTablesRatesAndChangesOfOneInstanceAreItsOwn) {
    auto one = MakeCall<RTASProcessCall>(New());
    CTestProcess& plugin = *g_Plan.m_LastProcess;
    auto two = MakeCall<RTASProcessCall>(New());
    plugin.CountChange();
    EXPECT_EQ(Dispatch(RTAS_GET_CHANGE_COUNT, &one), RTAS_OK);
    EXPECT_EQ(Dispatch(RTAS_GET_CHANGE_COUNT, &two), RTAS_OK);
    EXPECT_EQ(one.value, 1);
    EXPECT_EQ(two.value, 0);
    EXPECT_EQ(Dispatch(RTAS_SET_SAMPLE_RATE, &two), RTAS_WRONG_ARGUMENT);
    one.value = 96000;
    EXPECT_EQ(Dispatch(RTAS_SET_SAMPLE_RATE, &one), RTAS_OK);
    EXPECT_EQ(plugin.GetSampleRate(), 96000);
    EXPECT_EQ(g_Plan.m_LastProcess->GetSampleRate(), 48000);
    EXPECT_EQ(Dispatch(RTAS_GET_DELAY, &one), RTAS_OK);
    EXPECT_EQ(one.value, 0);
    auto table = MakeCall<RTASTable>(one.process);
    EXPECT_EQ(Dispatch(RTAS_QUERY_TABLE, &table), RTAS_OK);
    EXPECT_EQ(table.table, nullptr);
    auto command = MakeCall<RTASPluginCommand>(one.process);
    EXPECT_EQ(Dispatch(RTAS_PLUGIN_COMMAND, &command), RTAS_WRONG_ARGUMENT);
    command.name = "fly";
    EXPECT_EQ(Dispatch(RTAS_PLUGIN_COMMAND, &command), RTAS_OK);
    EXPECT_FALSE(command.succeeded);
    EXPECT_STREQ(command.result, "Unknown command: fly");
}

} // namespace
