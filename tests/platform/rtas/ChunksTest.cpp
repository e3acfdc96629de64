// Chunks: what is stored comes back in another instance, and no damaged record is read beyond its
// end, or taken in part.

#include "platform/rtas/FourCharCode.h"
#include "platform/rtas/TestPlugin.h"

#include <climits>
#include <cstring>

namespace {

constexpr std::uint32_t Controls = MakeFourCharCode("elck");
constexpr std::uint32_t MIDI = MakeFourCharCode("midi");

// Exactly as large as its data ask for, so that reading beyond shows.
class CRecord {
public:
    CRecord(std::uint32_t code, const std::string& data)
        : m_Size(static_cast<int>(56 + data.size())),
          m_Bytes(std::make_unique<char[]>(static_cast<std::size_t>(m_Size))) {
        SetNumber(0, m_Size);
        SetNumber(20, static_cast<int>(code));
        std::memcpy(m_Bytes.get() + 56, data.data(), data.size());
    }

    void SetNumber(int offset, int number) {
        std::memcpy(m_Bytes.get() + offset, &number, sizeof number);
    }
    std::string GetData() const {
        return {m_Bytes.get() + 56, static_cast<std::size_t>(m_Size - 56)};
    }
    // Hands it over with the code that it has.
    int Run(int operation, RTASProcess* process, bool* isEqual = nullptr) const {
        auto chunk = MakeCall<RTASChunk>(process);
        std::memcpy(&chunk.code, m_Bytes.get() + 20, sizeof chunk.code);
        chunk.record = m_Bytes.get();
        chunk.recordSize = m_Size;
        const int status = Dispatch(operation, &chunk);
        if (isEqual)
            *isEqual = chunk.isEqual != 0;
        return status;
    }

private:
    int m_Size;
    std::unique_ptr<char[]> m_Bytes;
};

std::string Numbers(std::initializer_list<int> numbers) {
    std::string data;
    for (const int number : numbers)
        data.append(reinterpret_cast<const char*>(&number), sizeof number);
    return data;
}

CRecord Store(RTASProcess* process, std::uint32_t code) {
    auto chunk = MakeCall<RTASChunk>(process);
    chunk.code = code;
    EXPECT_EQ(Dispatch(RTAS_GET_CHUNK_SIZE, &chunk), RTAS_OK);
    CRecord record(code, std::string(static_cast<std::size_t>(chunk.recordSize - 56), '?'));
    EXPECT_EQ(record.Run(RTAS_GET_CHUNK, process), RTAS_OK);
    return record;
}

class CChunksTest : public CModuleTest {
protected:
    bool IsEqual(RTASProcess* process, const CRecord& record) {
        bool isEqual = false;
        record.Run(RTAS_COMPARE_CHUNK, process, &isEqual);
        return isEqual;
    }
};

TEST_F(CChunksTest, TheLibrarysComeFirst) {
    auto chunk = MakeCall<RTASChunk>(New());
    for (const std::uint32_t code : {Controls, MIDI, MakeFourCharCode("test"), 0u}) {
        EXPECT_EQ(Dispatch(RTAS_GET_CHUNK_CODE, &chunk), code ? RTAS_OK : RTAS_WRONG_ARGUMENT);
        EXPECT_EQ(chunk.code, code);
        ++chunk.index;
    }
    chunk.index = -1;
    EXPECT_EQ(Dispatch(RTAS_GET_CHUNK_CODE, &chunk), RTAS_WRONG_ARGUMENT);
}

TEST_F(CChunksTest, ControlsAndIdentitiesComeBackInAnotherInstance) {
    RTASProcess* const one = New();
    RTASProcess* const two = New();
    const CRecord midi(MIDI, "OMS Node ID" + std::string(1, '\0') + Numbers({3}) + "Other" +
                                 std::string(1, '\0') + Numbers({9}) + "Instance ID" +
                                 std::string(1, '\0') + Numbers({1}) + "Node ID" +
                                 std::string(1, '\0') + Numbers({-2}));
    EXPECT_EQ(midi.Run(RTAS_SET_CHUNK, one), RTAS_OK);
    const CRecord controls(Controls, Numbers({4, 3, INT_MAX, 77, 5, 0, 6, 1, INT_MIN + 1}));
    EXPECT_EQ(controls.Run(RTAS_SET_CHUNK, one), RTAS_OK);
    EXPECT_EQ(g_Plan.m_LivingProcesses, 2);
    EXPECT_EQ(Value(one, 1), INT_MIN + 1);
    EXPECT_EQ(Value(one, 3), INT_MAX);
    for (const std::uint32_t code : {Controls, MIDI}) {
        const CRecord stored = Store(one, code);
        EXPECT_TRUE(IsEqual(one, stored));
        EXPECT_FALSE(IsEqual(two, stored));
        EXPECT_EQ(stored.Run(RTAS_SET_CHUNK, two), RTAS_OK);
        EXPECT_TRUE(IsEqual(two, stored));
        EXPECT_EQ(Store(two, code).GetData(), stored.GetData());
    }
    EXPECT_EQ(Store(one, Controls).GetData(), Numbers({3, 1, INT_MIN + 1, 2, INT_MIN, 3, INT_MAX}));
    // Both restorations went the way of any value of the host's.
    EXPECT_EQ(g_Plan.m_LastProcess->m_Heard.size(), 3u);
}

TEST_F(CChunksTest, DamagedRecordsAreRefusedWhole) {
    struct SCase {
        std::uint32_t m_Code;
        std::string m_Data;
        long m_Expected;
    };
    const std::string zero(1, '\0');
    const SCase cases[]{
        {Controls, "", DamagedChunkError},
        {Controls, Numbers({1, 2, 5}).substr(0, 11), DamagedChunkError},
        {Controls, Numbers({2, 2, 5}), DamagedChunkError},
        {Controls, Numbers({1, 2, 5, 0}), DamagedChunkError},
        {Controls, Numbers({-1, 2, 5}), DamagedChunkError},
        {Controls, Numbers({INT_MAX, 2, 5}), DamagedChunkError},
        {Controls, Numbers({0}), EmptyControlListError},
        {MIDI, "", MissingMIDIKeyError},
        {MIDI, "Node ID" + zero + Numbers({1}), MissingMIDIKeyError},
        {MIDI, "Node ID", DamagedChunkError},
        {MIDI, "Node ID" + zero + "abc", DamagedChunkError},
        {MakeFourCharCode("test"), "anything", 0},
        {MakeFourCharCode("none"), "anything", UnknownChunkError},
    };
    RTASProcess* const process = New();
    const CRecord controls = Store(process, Controls);
    const CRecord midi = Store(process, MIDI);
    for (const SCase& item : cases) {
        const CRecord record(item.m_Code, item.m_Data);
        EXPECT_EQ(record.Run(RTAS_SET_CHUNK, process), item.m_Expected) << item.m_Data;
        EXPECT_EQ(IsEqual(process, record), item.m_Expected == 0);
        EXPECT_TRUE(IsEqual(process, controls) && IsEqual(process, midi));
    }
}

TEST_F(CChunksTest, NoSizeFieldIsBelieved) {
    RTASProcess* const process = New();
    for (const std::uint32_t code : {Controls, MIDI, MakeFourCharCode("test")}) {
        for (const int size : {INT_MIN, -1, 0, 55, 61, INT_MAX}) {
            CRecord record(code, Numbers({0}));
            record.SetNumber(0, size);
            EXPECT_EQ(record.Run(RTAS_SET_CHUNK, process), RTAS_WRONG_ARGUMENT);
            EXPECT_EQ(record.Run(RTAS_COMPARE_CHUNK, process), RTAS_WRONG_ARGUMENT);
        }
    }
    // Room for less than the state.
    const CRecord small(Controls, Numbers({0, 0}));
    EXPECT_EQ(small.Run(RTAS_GET_CHUNK, process), RTAS_WRONG_ARGUMENT);
    EXPECT_EQ(small.GetData(), Numbers({0, 0}));
    auto chunk = MakeCall<RTASChunk>(process);
    chunk.code = Controls;
    alignas(4) char room[128]{};
    for (void* const record : {static_cast<void*>(nullptr), static_cast<void*>(room + 1)}) {
        chunk.record = record;
        chunk.recordSize = 100;
        EXPECT_EQ(Dispatch(RTAS_GET_CHUNK, &chunk), RTAS_WRONG_ARGUMENT);
        EXPECT_EQ(Dispatch(RTAS_SET_CHUNK, &chunk), RTAS_WRONG_ARGUMENT);
    }
}

TEST_F(CChunksTest, ControlsOfAProcessWithoutAny) {
    g_Plan.m_HasControls = false;
    auto chunk = MakeCall<RTASChunk>(New());
    chunk.code = Controls;
    EXPECT_EQ(Dispatch(RTAS_GET_CHUNK_SIZE, &chunk), EmptyControlListError);
    EXPECT_EQ(chunk.recordSize, 0);
}

} // namespace
