#include "cairn-host/StateFile.h"

#include "cairn-host/HostInstance.h"
#include "cairn-host/WholeFile.h"

#include <cstring>

namespace CairnHost {
namespace {

constexpr std::size_t s_HeaderSize = 56;
constexpr std::size_t s_CodeOffset = 20;

} // namespace

TResult<std::vector<SChunk>> ReadStateFile(const std::string& path) {
    const TResult<std::string> bytes = ReadWholeFile(path);
    if (!bytes)
        return bytes.GetFault();
    std::vector<SChunk> chunks;
    for (std::size_t at = 0; at < bytes->size();) {
        const std::size_t rest = bytes->size() - at;
        const auto refuse = [&](const std::string& why) {
            return SFault{path + ": isn't a plug-in's state: the chunk at byte " +
                          std::to_string(at) + why};
        };
        if (rest < s_HeaderSize)
            return refuse(" is cut short");
        std::int32_t size = 0;
        SChunk chunk = {};
        std::memcpy(&size, bytes->data() + at, sizeof size);
        std::memcpy(&chunk.m_Code, bytes->data() + at + s_CodeOffset, sizeof chunk.m_Code);
        if (size < static_cast<std::int32_t>(s_HeaderSize) || static_cast<std::size_t>(size) > rest)
            return refuse(" claims " + std::to_string(size) + " bytes: expected " +
                          std::to_string(s_HeaderSize) + " to " + std::to_string(rest));
        chunk.m_Record = bytes->substr(at, static_cast<std::size_t>(size));
        at += chunk.m_Record.size();
        chunks.push_back(std::move(chunk));
    }
    if (chunks.empty())
        return SFault{path + ": is empty: expected a plug-in's state"};
    return chunks;
}

TResult<std::string> StoreState(const CHostInstance& instance) {
    std::string bytes;
    for (const std::uint32_t code : instance.GetChunkCodes()) {
        const TResult<std::string> record = instance.GetChunk(code);
        if (!record)
            return record;
        bytes += *record;
    }
    return bytes;
}

} // namespace CairnHost
