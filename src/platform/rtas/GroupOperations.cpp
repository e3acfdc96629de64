#include "platform/rtas/CopyText.h"
#include "platform/rtas/EffectGroup.h"
#include "platform/rtas/Instance.h"
#include "platform/rtas/Operations.h"
#include "platform/rtas/Process.h"

#include <array>
#include <utility>

namespace RTASLibrary {

namespace {

// More than any stem format has, since a host may connect more than the plug-in uses.
constexpr std::int32_t MaxChannels = 64;

// By number of the stem format, from none to eight channels; formats that differ in the places of
// their loudspeakers have the same count.
std::int32_t CountChannels(long stem) {
    constexpr std::array<std::int32_t, 11> channels{1, 2, 3, 4, 4, 5, 6, 6, 7, 7, 8};
    const auto index = static_cast<std::size_t>(stem);
    return index < channels.size() ? channels[index] : 0;
}

const CEffectType* GetType(const CEffectGroup& group, std::int32_t index) {
    const auto i = static_cast<std::size_t>(index);
    return i < group.GetEffectTypes().size() ? group.GetEffectTypes()[i].get() : nullptr;
}

bool IsChannelCount(std::int32_t count) {
    return count >= 0 && count <= MaxChannels;
}

} // namespace

std::int32_t GetGroupInfo(CEffectGroup& group, RTASGroupInfo& info) {
    const auto& types = group.GetEffectTypes();
    info.manufacturerId = group.GetManufacturerCode();
    info.productId = types.empty() ? 0 : types.front()->GetProductId();
    info.typeCount = static_cast<std::int32_t>(types.size());
    CopyText(group.GetManufacturerName(), info.manufacturerName, sizeof info.manufacturerName - 1);
    CopyText(group.GetProductNames(), info.productNames, sizeof info.productNames - 1);
    return RTAS_OK;
}

std::int32_t GetTypeInfo(CEffectGroup& group, RTASTypeInfo& info) {
    const CEffectType* const type = GetType(group, info.index);
    if (!type || type->GetStemFormats().empty())
        return RTAS_WRONG_ARGUMENT;
    const SStemFormats& stems = type->GetStemFormats().front();
    info.typeId = static_cast<std::int32_t>(type->GetTypeId());
    info.productId = type->GetProductId();
    info.category = type->GetCategory();
    info.inputStem = static_cast<std::int32_t>(stems.m_Input);
    info.outputStem = static_cast<std::int32_t>(stems.m_Output);
    info.inputChannels = CountChannels(stems.m_Input);
    info.outputChannels = CountChannels(stems.m_Output);
    return RTAS_OK;
}

// A host may connect fewer or more channels than the type's stem formats have: the plug-in copes.
std::int32_t NewProcess(CEffectGroup& group, RTASNewProcess& call) {
    call.process = nullptr;
    if (!GetType(group, call.typeIndex) || call.sampleRate < 1 || call.maxBlockSize < 1 ||
        !IsChannelCount(call.inputs) || !IsChannelCount(call.outputs))
        return RTAS_WRONG_ARGUMENT;
    SProcessSetup setup;
    setup.m_SampleRate = call.sampleRate;
    setup.m_MaxBlockSize = call.maxBlockSize;
    setup.m_Inputs = static_cast<short>(call.inputs);
    setup.m_Outputs = static_cast<short>(call.outputs);
    setup.m_IsAudioSuite = call.isAudioSuite != 0;
    setup.m_Calls = call.calls;
    std::unique_ptr<CProcess> process = group.CreateProcess(call.typeIndex);
    if (process)
        call.process = AddInstance(std::make_unique<CInstance>(std::move(process), setup));
    return call.process ? RTAS_OK : RTAS_NO_PROCESS;
}

} // namespace RTASLibrary
