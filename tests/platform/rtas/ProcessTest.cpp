// Controls and chunks as a host reaches them: values that it sets and that the plug-in sets, texts
// within the room given, and chunks that come back in another instance; no damaged record is read
// beyond its end, or taken in part.

#include "platform/rtas/TestPlugin.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace {

constexpr std::uint32_t Controls = MakeFourCharCode("elck");
constexpr std::uint32_t MIDI = MakeFourCharCode("midi");

std::string Numbers(std::initializer_list<int> numbers) {
    return {reinterpret_cast<const char*>(numbers.begin()), numbers.size() * sizeof(int)};
}

std::string Identity(const std::string& name, int number) {
    return name + '\0' + Numbers({number});
}

std::string MakeRecord(std::uint32_t code, const std::string& data) {
    return Numbers({56 + static_cast<int>(data.size()), 0, 0, 0, 0, static_cast<int>(code)}) +
           std::string(32, '\0') + data;
}

// Hands the record over with the code that it has, in exactly as many bytes as it needs, so that
// reading beyond shows.
std::pair<int, bool> Hand(int operation, RTASProcess* process, std::string& record) {
    std::vector<char> bytes(record.begin(), record.end());
    auto chunk = MakeCall<RTASChunk>(process);
    std::memcpy(&chunk.code, bytes.data() + 20, sizeof chunk.code);
    chunk.record = bytes.data();
    chunk.recordSize = static_cast<int>(bytes.size());
    const int status = Dispatch(operation, chunk);
    record.assign(bytes.begin(), bytes.end());
    return {status, chunk.isEqual != 0};
}

int Set(RTASProcess* process, std::string record) {
    return Hand(RTAS_SET_CHUNK, process, record).first;
}

bool IsEqual(RTASProcess* process, std::string record) {
    return Hand(RTAS_COMPARE_CHUNK, process, record).second;
}

std::string Store(RTASProcess* process, std::uint32_t code) {
    auto chunk = MakeCall<RTASChunk>(process);
    chunk.code = code;
    EXPECT_EQ(Dispatch(RTAS_GET_CHUNK_SIZE, chunk), RTAS_OK);
    std::string record =
        MakeRecord(code, std::string(static_cast<std::size_t>(chunk.recordSize - 56), '?'));
    EXPECT_EQ(Hand(RTAS_GET_CHUNK, process, record).first, RTAS_OK);
    return record;
}

using CProcessTest = CModuleTest;

TEST_F(CProcessTest, TheHostHearsWhatThePluginMoves) {
    m_Plugin.SetControlValue(2, 1L << 40);
    m_Plugin.SetControlValue(9, 1);
    m_Plugin.UpdateControlValue(3, -8);
    EXPECT_EQ(m_Plugin.m_Heard, 1);
    EXPECT_EQ(m_HostHeard, std::vector<std::string>{"2=2147483647"});
    EXPECT_TRUE(GetValue(m_Process, 2) == INT_MAX && GetValue(m_Process, 3) == -8);
}

TEST_F(CProcessTest, ControlTextsFitTheirRoom) {
    const std::tuple<int, int, std::string> cases[]{
        {RTAS_GET_CONTROL_NAME, 30, "Bypass"},   {RTAS_GET_CONTROL_NAME, 5, "Byp"},
        {RTAS_GET_CONTROL_NAME, 2, "By"},        {RTAS_GET_CONTROL_NAME, 0, ""},
        {RTAS_CONTROL_VALUE_TO_TEXT, 30, "Off"}, {RTAS_CONTROL_VALUE_TO_TEXT, 2, "Of"},
    };
    auto call = MakeCall<RTASControlText>(m_Process);
    call.control = 1;
    for (const auto& [operation, length, expected] : cases) {
        std::string room(9, '?');
        call.length = length;
        call.text = room.data();
        EXPECT_EQ(Dispatch(operation, call), RTAS_OK);
        EXPECT_EQ(room, expected + '\0' + std::string(8 - expected.size(), '?'));
        call.length = -1;
        EXPECT_EQ(Dispatch(operation, call), RTAS_WRONG_ARGUMENT);
    }
    for (std::string text : {"On", "Off", "1", "0", ""}) {
        call.text = text.data();
        EXPECT_EQ(Dispatch(RTAS_CONTROL_TEXT_TO_VALUE, call), RTAS_OK);
        EXPECT_EQ(call.value, text == "On" || text == "1" ? INT_MAX : INT_MIN);
    }
}

TEST_F(CProcessTest, ControlsAndIdentitiesComeBackInAnotherInstance) {
    RTASProcess* const other = New();
    const std::string controls = Numbers({4, 3, INT_MAX, 77, 5, 0, 6, 1, INT_MIN + 1});
    const std::string midi = Identity("OMS Node ID", 3) + Identity("Other", 9) +
                             Identity("Instance ID", 1) + Identity("Node ID", -2);
    EXPECT_EQ(Set(m_Process, MakeRecord(MIDI, midi)), RTAS_OK);
    EXPECT_EQ(Set(m_Process, MakeRecord(Controls, controls)), RTAS_OK);
    // As any value of the host's, of which it hears nothing, and only those of controls that are
    // there.
    EXPECT_TRUE(m_Plugin.m_Heard == 2 && m_HostHeard.empty());
    for (auto chunk = MakeCall<RTASChunk>(m_Process); chunk.index < 2; ++chunk.index) {
        EXPECT_EQ(Dispatch(RTAS_GET_CHUNK_CODE, chunk), RTAS_OK);
        const std::uint32_t code = chunk.index == 0 ? Controls : MIDI;
        EXPECT_EQ(chunk.code, code);
        const std::string stored = Store(m_Process, code);
        EXPECT_TRUE(IsEqual(m_Process, stored) && !IsEqual(other, stored));
        EXPECT_EQ(Set(other, stored), RTAS_OK);
        EXPECT_EQ(Store(other, code), stored);
    }
    EXPECT_EQ(Store(other, Controls),
              MakeRecord(Controls, Numbers({3, 1, INT_MIN + 1, 2, INT_MIN, 3, INT_MAX})));
}

TEST_F(CProcessTest, DamagedRecordsAreRefusedWhole) {
    const std::tuple<std::uint32_t, std::string, long> cases[]{
        {Controls, "", DamagedChunkError},
        {Controls, Numbers({1, 2, 5}).substr(0, 11), DamagedChunkError},
        {Controls, Numbers({1, 2, 5, 0}), DamagedChunkError},
        {Controls, Numbers({INT_MAX, 2, 5}), DamagedChunkError},
        {Controls, Numbers({0}), EmptyControlListError},
        {MIDI, Identity("Instance ID", 1) + Identity("Node ID", 2), MissingMIDIKeyError},
        {MIDI, "Node ID", DamagedChunkError},
        {MIDI, Identity("Node ID", 1).substr(0, 10), DamagedChunkError},
        {MakeFourCharCode("test"), "anything", 0},
        {MakeFourCharCode("none"), "anything", UnknownChunkError},
    };
    const std::string controls = Store(m_Process, Controls);
    const std::string midi = Store(m_Process, MIDI);
    for (const auto& [code, data, expected] : cases) {
        EXPECT_EQ(Set(m_Process, MakeRecord(code, data)), expected) << data;
        EXPECT_EQ(IsEqual(m_Process, MakeRecord(code, data)), expected == 0);
        EXPECT_TRUE(IsEqual(m_Process, controls) && IsEqual(m_Process, midi));
    }
    for (const int size : {INT_MIN, -1, 0, 55, 61, INT_MAX}) {
        const std::string record =
            MakeRecord(MakeFourCharCode("test"), Numbers({0})).replace(0, 4, Numbers({size}));
        EXPECT_EQ(Set(m_Process, record), RTAS_WRONG_ARGUMENT);
        EXPECT_FALSE(IsEqual(m_Process, record));
    }
    std::string small = MakeRecord(Controls, Numbers({0, 0, 0, 0, 0, 0}) + "???");
    EXPECT_EQ(Hand(RTAS_GET_CHUNK, m_Process, small).first, RTAS_WRONG_ARGUMENT);
    EXPECT_EQ(small.substr(56), Numbers({0, 0, 0, 0, 0, 0}) + "???");
}

} // namespace
