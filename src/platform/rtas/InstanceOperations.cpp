#include "platform/rtas/Instance.h"
#include "platform/rtas/Operations.h"
#include "platform/rtas/Process.h"

#include <string>
#include <utility>

namespace RTASLibrary {

namespace {

// In order of offset, within the block, each with bytes that it has.
bool AreEventsSound(const RTASMIDIEvent* events, std::int32_t count, std::int32_t numSamples) {
    if (count < 0 || (count > 0 && !events))
        return false;
    std::int32_t earliest = 0;
    for (std::int32_t i = 0; i < count; ++i) {
        const RTASMIDIEvent& event = events[i];
        if (event.offset < earliest || event.offset >= numSamples || event.length < 1 ||
            event.length > static_cast<std::int32_t>(sizeof event.data))
            return false;
        earliest = event.offset;
    }
    return true;
}

} // namespace

std::int32_t DeleteProcess(CInstance& /*instance*/, RTASProcessCall& call) {
    DeleteInstance(call.process);
    return RTAS_OK;
}

std::int32_t SetSampleRate(CInstance& instance, RTASProcessCall& call) {
    if (call.value < 1)
        return RTAS_WRONG_ARGUMENT;
    instance.GetProcess().SetSampleRate(call.value);
    return RTAS_OK;
}

std::int32_t Render(CInstance& instance, RTASRender& render) {
    render.midiOutCount = 0;
    const bool isSound = render.numSamples >= 0 &&
                         AreEventsSound(render.midiIn, render.midiInCount, render.numSamples) &&
                         render.midiOutRoom >= 0 && (render.midiOutRoom == 0 || render.midiOut) &&
                         instance.AimBuffers(render);
    if (!isSound)
        return RTAS_WRONG_ARGUMENT;
    instance.RenderBlock(render);
    return RTAS_OK;
}

std::int32_t GetDelay(CInstance& instance, RTASProcessCall& call) {
    long samples = 0;
    const long status = instance.GetProcess().GetDelaySamples(&samples);
    call.value = static_cast<std::int32_t>(samples);
    return static_cast<std::int32_t>(status);
}

std::int32_t GetChangeCount(CInstance& instance, RTASProcessCall& call) {
    call.value = static_cast<std::int32_t>(instance.GetProcess().GetChangeCount());
    return RTAS_OK;
}

std::int32_t QueryTable(CInstance& instance, RTASTable& call) {
    long size = 0;
    call.table = instance.GetProcess().QueryTable(call.selector, &size);
    call.tableSize = call.table ? static_cast<std::int32_t>(size) : 0;
    return RTAS_OK;
}

std::int32_t PluginCommand(CInstance& instance, RTASPluginCommand& call) {
    if (!call.name)
        return RTAS_WRONG_ARGUMENT;
    std::string result;
    call.succeeded = instance.GetProcess().PluginCommand(call.name, call.argument, result);
    call.result = instance.Lend(std::move(result));
    return RTAS_OK;
}

} // namespace RTASLibrary
