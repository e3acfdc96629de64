#include "platform/rtas/Instance.h"
#include "platform/rtas/Operations.h"
#include "platform/rtas/Process.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

namespace RTASLibrary {

namespace {

constexpr auto HeaderSize = static_cast<std::int32_t>(sizeof(SChunkRecord));

// The record of the call; null when it has no room for a header, or lies askew.
SChunkRecord* GetRoom(const RTASChunk& chunk) {
    const bool isSound =
        chunk.record && chunk.recordSize >= HeaderSize &&
        reinterpret_cast<std::uintptr_t>(chunk.record) % alignof(SChunkRecord) == 0;
    return isSound ? static_cast<SChunkRecord*>(chunk.record) : nullptr;
}

// Null also when its size names less than a header or more than the caller has.
const SChunkRecord* GetRecord(const RTASChunk& chunk) {
    const SChunkRecord* const record = GetRoom(chunk);
    return record && record->m_Size >= HeaderSize && record->m_Size <= chunk.recordSize ? record
                                                                                        : nullptr;
}

} // namespace

std::int32_t GetChunkCode(CInstance& instance, RTASChunk& chunk) {
    chunk.code = instance.GetProcess().GetChunkCode(chunk.index);
    return chunk.code != 0 ? RTAS_OK : RTAS_WRONG_ARGUMENT;
}

std::int32_t GetChunkSize(CInstance& instance, RTASChunk& chunk) {
    long size = 0;
    const long status = instance.GetProcess().GetChunkSize(chunk.code, &size);
    chunk.recordSize = static_cast<std::int32_t>(size);
    return static_cast<std::int32_t>(status);
}

// The state may have grown since the host asked for the size. The room that the process is offered
// is one byte more than the host has, so that a record that it left alone can be told from a full
// one, and the host never takes an empty record for the state.
std::int32_t GetChunk(CInstance& instance, RTASChunk& chunk) {
    if (!GetRoom(chunk))
        return RTAS_WRONG_ARGUMENT;
    const std::int32_t most =
        std::min(chunk.recordSize, std::numeric_limits<std::int32_t>::max() - 1);
    std::vector<char> room(static_cast<std::size_t>(most) + 1);
    auto* const record = reinterpret_cast<SChunkRecord*>(room.data());
    record->m_Size = most + 1;
    record->m_Code = chunk.code;
    if (const long status = instance.GetProcess().GetChunk(chunk.code, record); status != 0)
        return static_cast<std::int32_t>(status);
    if (record->m_Size < HeaderSize || record->m_Size > most)
        return RTAS_WRONG_ARGUMENT;
    chunk.recordSize = record->m_Size;
    std::memcpy(chunk.record, record, static_cast<std::size_t>(record->m_Size));
    return RTAS_OK;
}

std::int32_t SetChunk(CInstance& instance, RTASChunk& chunk) {
    const SChunkRecord* const record = GetRecord(chunk);
    if (!record || record->m_Code != chunk.code)
        return RTAS_WRONG_ARGUMENT;
    return static_cast<std::int32_t>(instance.GetProcess().SetChunk(chunk.code, record));
}

std::int32_t CompareChunk(CInstance& instance, RTASChunk& chunk) {
    const SChunkRecord* const record = GetRecord(chunk);
    if (!record)
        return RTAS_WRONG_ARGUMENT;
    char isEqual = 0;
    const long status = instance.GetProcess().CompareChunk(record, &isEqual);
    chunk.isEqual = isEqual != 0;
    return static_cast<std::int32_t>(status);
}

} // namespace RTASLibrary
