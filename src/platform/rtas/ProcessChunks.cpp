// The chunks of a process: its list of them, and the data of the two that are the library's own.
//
// "elck": a count, then number and value of each control. "midi": for each identity its name, a
// zero, and the number. All numbers are int32_t.

#include "platform/rtas/FourCharCode.h"
#include "platform/rtas/Process.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::uint32_t ControlsChunk = MakeFourCharCode("elck");
constexpr std::uint32_t MIDIChunk = MakeFourCharCode("midi");
// What the library's chunks are registered with.
constexpr long LibraryPriority = -152;

constexpr std::array<std::string_view, 3> MIDIIdentityNames{"Instance ID", "Node ID",
                                                            "OMS Node ID"};

void Append(std::string& data, long number) {
    const auto written = static_cast<std::int32_t>(number);
    data.append(reinterpret_cast<const char*>(&written), sizeof written);
}

// Takes a number from the front; false when the data are too short.
bool Take(std::string_view& data, std::int32_t& number) {
    if (data.size() < sizeof number)
        return false;
    std::memcpy(&number, data.data(), sizeof number);
    data.remove_prefix(sizeof number);
    return true;
}

// Likewise a text and its zero.
bool Take(std::string_view& data, std::string_view& text) {
    const std::size_t end = data.find('\0');
    if (end == std::string_view::npos)
        return false;
    text = data.substr(0, end);
    data.remove_prefix(end + 1);
    return true;
}

std::string_view GetData(const SChunkRecord& record) {
    if (record.m_Size < static_cast<std::int32_t>(sizeof record))
        return {};
    return {reinterpret_cast<const char*>(&record + 1),
            static_cast<std::size_t>(record.m_Size) - sizeof record};
}

} // namespace

CProcess::CProcess() {
    AddChunk(ControlsChunk, "Complete Controls State", LibraryPriority);
    AddChunk(MIDIChunk, "MIDI Nodes State", LibraryPriority);
}

void CProcess::AddChunk(std::uint32_t code, const char* name, long priority) {
    m_Chunks.push_back({code, name, priority});
}

std::uint32_t CProcess::GetChunkCode(long index) const {
    const auto i = static_cast<std::size_t>(index);
    return i < m_Chunks.size() ? m_Chunks[i].m_Code : 0;
}

bool CProcess::HasChunk(std::uint32_t code) const {
    return std::any_of(m_Chunks.begin(), m_Chunks.end(),
                       [code](const SChunkEntry& entry) { return entry.m_Code == code; });
}

long CProcess::MakeChunkData(std::uint32_t code, std::string& data) const {
    if (code == ControlsChunk) {
        if (m_Controls.empty())
            return EmptyControlListError;
        Append(data, GetControlCount());
        for (long control = 1; control <= GetControlCount(); ++control) {
            Append(data, control);
            Append(data, GetControl(control)->GetValue());
        }
        return 0;
    }
    if (code == MIDIChunk) {
        for (std::size_t i = 0; i < MIDIIdentityNames.size(); ++i) {
            data.append(MIDIIdentityNames[i]).push_back('\0');
            Append(data, m_MIDIIdentities[i]);
        }
        return 0;
    }
    return UnknownChunkError;
}

long CProcess::GetChunkSize(std::uint32_t code, long* size) {
    std::string data;
    const long status = MakeChunkData(code, data);
    *size = status == 0 ? static_cast<long>(sizeof(SChunkRecord) + data.size()) : 0;
    return status;
}

long CProcess::GetChunk(std::uint32_t code, SChunkRecord* record) {
    std::string data;
    const long status = MakeChunkData(code, data);
    if (status != 0)
        return status;
    if (data.size() <= GetData(*record).size()) {
        record->m_Size = static_cast<std::int32_t>(sizeof *record + data.size());
        std::memcpy(record + 1, data.data(), data.size());
    }
    return 0;
}

long CProcess::SetChunk(std::uint32_t code, const SChunkRecord* record) {
    if (code == ControlsChunk)
        return SetControlsState(GetData(*record));
    if (code == MIDIChunk)
        return SetMIDIIdentities(GetData(*record));
    return HasChunk(code) ? 0 : UnknownChunkError;
}

long CProcess::SetControlsState(std::string_view data) {
    std::int32_t count = 0;
    constexpr long pairSize = 2 * sizeof(std::int32_t);
    if (!Take(data, count) || static_cast<long>(data.size()) != count * pairSize)
        return DamagedChunkError;
    if (count == 0 || m_Controls.empty())
        return EmptyControlListError;
    std::int32_t control = 0;
    std::int32_t value = 0;
    while (Take(data, control) && Take(data, value)) {
        if (GetControl(control))
            OnControlValueChanged(control, value);
    }
    return 0;
}

long CProcess::SetMIDIIdentities(std::string_view data) {
    std::array<std::int32_t, MIDIIdentityNames.size()> identities{};
    std::array<bool, MIDIIdentityNames.size()> isFound{};
    while (!data.empty()) {
        std::string_view name;
        std::int32_t number = 0;
        if (!Take(data, name) || !Take(data, number))
            return DamagedChunkError;
        const auto found = std::find(MIDIIdentityNames.begin(), MIDIIdentityNames.end(), name);
        if (found == MIDIIdentityNames.end())
            continue;
        const auto index = static_cast<std::size_t>(found - MIDIIdentityNames.begin());
        identities[index] = number;
        isFound[index] = true;
    }
    if (std::find(isFound.begin(), isFound.end(), false) != isFound.end())
        return MissingMIDIKeyError;
    m_MIDIIdentities = identities;
    return 0;
}

long CProcess::CompareChunk(const SChunkRecord* record, char* isEqual) {
    *isEqual = 0;
    std::string data;
    const long status = MakeChunkData(record->m_Code, data);
    if (status == 0)
        *isEqual = GetData(*record) == data;
    else if (status == UnknownChunkError && HasChunk(record->m_Code))
        *isEqual = 1;
    else
        return status;
    return 0;
}
