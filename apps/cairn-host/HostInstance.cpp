#include "cairn-host/HostInstance.h"

#include "cairn-host/Module.h"

namespace CairnHost {
namespace {

constexpr int s_Channels = 2;
// A plug-in has a handful; this only ends the loop of a broken one.
constexpr int s_MaxChunks = 1000;

} // namespace

CHostInstance::~CHostInstance() {
    if (!m_Process)
        return;
    auto call = Make<RTASProcessCall>();
    m_Module.Call(RTAS_DELETE_PROCESS, &call);
}

CStatus CHostInstance::Open(int sampleRate, int maxBlockSize) {
    auto call = Make<RTASNewProcess>();
    call.sampleRate = sampleRate;
    call.maxBlockSize = maxBlockSize;
    call.inputs = call.outputs = s_Channels;
    if (CStatus status = m_Module.Do(RTAS_NEW_PROCESS, &call, "making an instance"); !status)
        return status;
    m_Process = call.process;
    return {};
}

int CHostInstance::GetControlCount() const {
    auto call = Make<RTASProcessCall>();
    return m_Module.Call(RTAS_GET_CONTROL_COUNT, &call) == RTAS_OK ? call.value : 0;
}

RTASControlInfo CHostInstance::GetControlInfo(int control) const {
    auto info = Make<RTASControlInfo>();
    info.control = control;
    m_Module.Call(RTAS_GET_CONTROL_INFO, &info);
    return info;
}

std::string CHostInstance::GetControlName(int control, int length) const {
    return ReadText(RTAS_GET_CONTROL_NAME, control, 0, length);
}

std::string CHostInstance::ControlToText(int control, std::int32_t value, int length) const {
    return ReadText(RTAS_CONTROL_VALUE_TO_TEXT, control, value, length);
}

std::string CHostInstance::ReadText(int operation, int control, std::int32_t value,
                                    int length) const {
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    auto call = Make<RTASControlText>();
    call.control = control;
    call.value = value;
    call.length = length;
    call.text = text.data();
    if (m_Module.Call(operation, &call) != RTAS_OK)
        return {};
    text.back() = '\0';
    return text.c_str();
}

TResult<std::int32_t> CHostInstance::TextToControl(int control, const std::string& text) const {
    std::string copy = text;
    auto call = Make<RTASControlText>();
    call.control = control;
    call.length = static_cast<std::int32_t>(copy.size());
    call.text = copy.data();
    if (CStatus status = m_Module.Do(RTAS_CONTROL_TEXT_TO_VALUE, &call, "reading a value"); !status)
        return status.GetFault();
    return call.value;
}

CStatus CHostInstance::SetControl(int control, std::int32_t value) {
    auto call = Make<RTASControlText>();
    call.control = control;
    call.value = value;
    return m_Module.Do(RTAS_SET_CONTROL_VALUE, &call, "setting a control");
}

TResult<int> CHostInstance::GetDelay() const {
    auto call = Make<RTASProcessCall>();
    if (CStatus status = m_Module.Do(RTAS_GET_DELAY, &call, "telling its delay"); !status)
        return status.GetFault();
    return call.value;
}

CStatus CHostInstance::Process(RTASRender& block) {
    block.size = sizeof block;
    block.process = m_Process;
    return m_Module.Do(RTAS_RENDER, &block, "rendering");
}

std::vector<std::uint32_t> CHostInstance::GetChunkCodes() const {
    std::vector<std::uint32_t> codes;
    for (int i = 0; i < s_MaxChunks; ++i) {
        auto chunk = Make<RTASChunk>();
        chunk.index = i;
        if (m_Module.Call(RTAS_GET_CHUNK_CODE, &chunk) != RTAS_OK || chunk.code == 0)
            break;
        codes.push_back(chunk.code);
    }
    return codes;
}

TResult<std::string> CHostInstance::GetChunk(std::uint32_t code) const {
    const std::string what = "storing its chunk \"" + CodeToText(code) + '"';
    auto chunk = Make<RTASChunk>();
    chunk.code = code;
    if (CStatus status = m_Module.Do(RTAS_GET_CHUNK_SIZE, &chunk, what.c_str()); !status)
        return status.GetFault();
    if (chunk.recordSize < 0)
        return SFault{what + " needs " + std::to_string(chunk.recordSize) + " bytes"};
    std::string record(static_cast<std::size_t>(chunk.recordSize), '\0');
    chunk.record = record.data();
    if (CStatus status = m_Module.Do(RTAS_GET_CHUNK, &chunk, what.c_str()); !status)
        return status.GetFault();
    return record;
}

CStatus CHostInstance::SetChunk(std::uint32_t code, std::string record) {
    const std::string what = "taking the chunk \"" + CodeToText(code) + '"';
    auto chunk = Make<RTASChunk>();
    chunk.code = code;
    chunk.record = record.data();
    chunk.recordSize = static_cast<std::int32_t>(record.size());
    return m_Module.Do(RTAS_SET_CHUNK, &chunk, what.c_str());
}

bool CHostInstance::HoldsChunk(std::uint32_t code, std::string record) const {
    auto chunk = Make<RTASChunk>();
    chunk.code = code;
    chunk.record = record.data();
    chunk.recordSize = static_cast<std::int32_t>(record.size());
    return m_Module.Call(RTAS_COMPARE_CHUNK, &chunk) == RTAS_OK && chunk.isEqual != 0;
}

TResult<std::string> CHostInstance::Command(const std::string& name, const std::string& argument) {
    auto call = Make<RTASPluginCommand>();
    call.name = name.c_str();
    call.argument = argument.c_str();
    const std::string what = "the command " + name;
    if (CStatus status = m_Module.Do(RTAS_PLUGIN_COMMAND, &call, what.c_str()); !status)
        return status.GetFault();
    const std::string result = call.result ? call.result : "";
    if (call.succeeded == 0)
        return SFault{result.empty() ? what + " failed" : result};
    return result;
}

std::string CHostInstance::GetTable(std::uint32_t selector) const {
    auto call = Make<RTASTable>();
    call.selector = selector;
    if (m_Module.Call(RTAS_QUERY_TABLE, &call) != RTAS_OK || !call.table || call.tableSize <= 0)
        return {};
    return {static_cast<const char*>(call.table), static_cast<std::size_t>(call.tableSize)};
}

} // namespace CairnHost
