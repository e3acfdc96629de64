// The four functions that a module exports, and the way from the number of an operation to what it
// does.

#include "platform/rtas/DAEError.h"
#include "platform/rtas/EffectGroup.h"
#include "platform/rtas/Instance.h"
#include "platform/rtas/Operations.h"

#include <array>
#include <memory>
#include <utility>

#define RTAS_EXPORTED __attribute__((visibility("default")))

using namespace RTASLibrary;

namespace {

// From the load of the module to its unload; main thread.
struct SModule {
    void* m_Bundle = nullptr;
    std::unique_ptr<CEffectGroup> m_Group;
};

SModule g_Module;

// No exception crosses into the host.
template <class Function>
std::int32_t CallCatching(Function function) {
    try {
        return function();
    } catch (const CDAEError& error) {
        return error.GetCode();
    } catch (...) {
        return UnknownExceptionError;
    }
}

// A group that makes no effects is none for the host.
std::unique_ptr<CEffectGroup> MakeGroup() {
    std::unique_ptr<CProcessGroup> group = CProcessGroup::CreateProcessGroup();
    auto* const effects = dynamic_cast<CEffectGroup*>(group.get());
    if (effects)
        static_cast<void>(group.release());
    return std::unique_ptr<CEffectGroup>(effects);
}

// Null when the structure is missing or comes from an older, smaller version.
template <class Call>
Call* ToCall(void* argument) {
    auto* const call = static_cast<Call*>(argument);
    return call && call->size >= sizeof(Call) ? call : nullptr;
}

template <class Call, std::int32_t (*Operation)(CEffectGroup&, Call&)>
std::int32_t RunOnGroup(void* argument) {
    if (!g_Module.m_Group)
        return RTAS_NO_GROUP;
    Call* const call = ToCall<Call>(argument);
    return call ? Operation(*g_Module.m_Group, *call) : RTAS_WRONG_ARGUMENT;
}

template <class Call, std::int32_t (*Operation)(CInstance&, Call&)>
std::int32_t RunOnInstance(void* argument) {
    Call* const call = ToCall<Call>(argument);
    CInstance* const instance = call ? FindInstance(call->process) : nullptr;
    return instance ? Operation(*instance, *call) : RTAS_WRONG_ARGUMENT;
}

struct SOperation {
    std::int32_t m_Number;
    std::int32_t (*m_Run)(void* argument);
};

constexpr std::array Operations{
    SOperation{RTAS_GET_GROUP_INFO, RunOnGroup<RTASGroupInfo, GetGroupInfo>},
    SOperation{RTAS_GET_TYPE_INFO, RunOnGroup<RTASTypeInfo, GetTypeInfo>},
    SOperation{RTAS_NEW_PROCESS, RunOnGroup<RTASNewProcess, NewProcess>},
    SOperation{RTAS_DELETE_PROCESS, RunOnInstance<RTASProcessCall, DeleteProcess>},
    SOperation{RTAS_SET_SAMPLE_RATE, RunOnInstance<RTASProcessCall, SetSampleRate>},
    SOperation{RTAS_RENDER, RunOnInstance<RTASRender, Render>},
    SOperation{RTAS_GET_DELAY, RunOnInstance<RTASProcessCall, GetDelay>},
    SOperation{RTAS_GET_CONTROL_COUNT, RunOnInstance<RTASProcessCall, GetControlCount>},
    SOperation{RTAS_GET_CONTROL_INFO, RunOnInstance<RTASControlInfo, GetControlInfo>},
    SOperation{RTAS_GET_CONTROL_NAME, RunOnInstance<RTASControlText, GetControlName>},
    SOperation{RTAS_GET_CONTROL_VALUE, RunOnInstance<RTASControlText, GetControlValue>},
    SOperation{RTAS_SET_CONTROL_VALUE, RunOnInstance<RTASControlText, SetControlValue>},
    SOperation{RTAS_CONTROL_VALUE_TO_TEXT, RunOnInstance<RTASControlText, ControlValueToText>},
    SOperation{RTAS_CONTROL_TEXT_TO_VALUE, RunOnInstance<RTASControlText, ControlTextToValue>},
    SOperation{RTAS_GET_CHANGE_COUNT, RunOnInstance<RTASProcessCall, GetChangeCount>},
    SOperation{RTAS_GET_CHUNK_CODE, RunOnInstance<RTASChunk, GetChunkCode>},
    SOperation{RTAS_GET_CHUNK_SIZE, RunOnInstance<RTASChunk, GetChunkSize>},
    SOperation{RTAS_GET_CHUNK, RunOnInstance<RTASChunk, GetChunk>},
    SOperation{RTAS_SET_CHUNK, RunOnInstance<RTASChunk, SetChunk>},
    SOperation{RTAS_COMPARE_CHUNK, RunOnInstance<RTASChunk, CompareChunk>},
    SOperation{RTAS_QUERY_TABLE, RunOnInstance<RTASTable, QueryTable>},
    SOperation{RTAS_PLUGIN_COMMAND, RunOnInstance<RTASPluginCommand, PluginCommand>},
};

} // namespace

RTAS_EXPORTED std::int32_t NewMachOPlugIn(void* bundle) {
    // What has been loaded needs no second start.
    if (g_Module.m_Group)
        return RTAS_OK;
    return CallCatching([bundle]() -> std::int32_t {
        std::unique_ptr<CEffectGroup> group = MakeGroup();
        if (!group)
            return NoGroupError;
        group->Initialize();
        g_Module = {bundle, std::move(group)};
        return RTAS_OK;
    });
}

RTAS_EXPORTED std::int32_t CloseMachOPlugIn() {
    return CallCatching([]() -> std::int32_t {
        DeleteAllInstances();
        g_Module = {};
        return RTAS_OK;
    });
}

RTAS_EXPORTED std::int32_t Dispatcher(std::int32_t version, std::int32_t operation,
                                      void* argument) {
    if (version != RTAS_DISPATCHER_VERSION)
        return RTAS_WRONG_VERSION;
    for (const SOperation& known : Operations) {
        if (known.m_Number == operation)
            return CallCatching([&known, argument] { return known.m_Run(argument); });
    }
    return RTAS_UNKNOWN_OPERATION;
}

RTAS_EXPORTED std::int32_t CDSPDoHostCommand(std::int32_t /*command*/, void* /*argument*/) {
    return RTAS_UNKNOWN_OPERATION;
}
