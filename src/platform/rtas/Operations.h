// What the operations of Dispatcher do, once their structures have been found in order. Each
// returns one of its codes.
#pragma once

#include "core/Realtime.h"
#include "platform/rtas/Dispatcher.h"

#include <cstdint>

class CEffectGroup;

namespace RTASLibrary {

class CInstance;

std::int32_t GetGroupInfo(CEffectGroup& group, RTASGroupInfo& info);
std::int32_t GetTypeInfo(CEffectGroup& group, RTASTypeInfo& info);
std::int32_t NewProcess(CEffectGroup& group, RTASNewProcess& call);

std::int32_t DeleteProcess(CInstance& instance, RTASProcessCall& call);
std::int32_t SetSampleRate(CInstance& instance, RTASProcessCall& call);
std::int32_t Render(CInstance& instance, RTASRender& render) LATHE_REALTIME;
std::int32_t GetDelay(CInstance& instance, RTASProcessCall& call);
std::int32_t GetChangeCount(CInstance& instance, RTASProcessCall& call);
std::int32_t QueryTable(CInstance& instance, RTASTable& call);
std::int32_t PluginCommand(CInstance& instance, RTASPluginCommand& call);

std::int32_t GetControlCount(CInstance& instance, RTASProcessCall& call);
std::int32_t GetControlInfo(CInstance& instance, RTASControlInfo& info);
std::int32_t GetControlName(CInstance& instance, RTASControlText& call);
std::int32_t GetControlValue(CInstance& instance, RTASControlText& call);
std::int32_t SetControlValue(CInstance& instance, RTASControlText& call);
std::int32_t ControlValueToText(CInstance& instance, RTASControlText& call);
std::int32_t ControlTextToValue(CInstance& instance, RTASControlText& call);

std::int32_t GetChunkCode(CInstance& instance, RTASChunk& chunk);
std::int32_t GetChunkSize(CInstance& instance, RTASChunk& chunk);
std::int32_t GetChunk(CInstance& instance, RTASChunk& chunk);
std::int32_t SetChunk(CInstance& instance, RTASChunk& chunk);
std::int32_t CompareChunk(CInstance& instance, RTASChunk& chunk);

} // namespace RTASLibrary
