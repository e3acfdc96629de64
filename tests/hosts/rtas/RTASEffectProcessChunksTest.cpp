// Proves that a session gets the whole state and gives it back, and that no record, however it
// looks, does more than change nothing.
#include "hosts/rtas/TestProcess.h"

#include <gtest/gtest.h>

#include <cstring>

namespace LatheExt::RTASPlugin {
namespace {

class RTASChunks : public testing::Test {
protected:
    static constexpr std::uint32_t s_Code = MakeFourCharCode("mrws");

    struct SRecord : SChunkRecord {
        char m_Data[1 << 15];
    };

    // With the zero, if the data have one.
    SRecord& Make(const std::string& data) {
        m_Record.m_Size = static_cast<std::int32_t>(56 + data.size());
        m_Record.m_Code = s_Code;
        std::memcpy(m_Record.m_Data, data.data(), data.size());
        return m_Record;
    }
    std::string Get() {
        long size = 0;
        EXPECT_EQ(m_Host.m_Process.GetChunkSize(s_Code, &size), 0);
        EXPECT_EQ(
            m_Host.m_Process.GetChunk(s_Code, &Make(std::string(std::size_t(size) - 56, 'x'))), 0);
        EXPECT_EQ(std::strlen(m_Record.m_Data) + 57, std::size_t(size));
        return std::string(m_Record.m_Data, std::size_t(size) - 56);
    }
    // Twice, since the first must not move the state.
    void CheckEqual(const std::string& data, bool expected) {
        for (char isEqual : {char(0), char(1)}) {
            EXPECT_EQ(m_Host.m_Process.CompareChunk(&Make(data), &isEqual), 0);
            EXPECT_EQ(isEqual != 0, expected);
        }
    }
    long Set(const std::string& data) { return m_Host.m_Process.SetChunk(s_Code, &Make(data)); }

    CTestProcess m_Host;
    SRecord m_Record{};
};

TEST_F(RTASChunks, AStateComesBack) {
    EXPECT_EQ(Get().find("inputParams"), std::string::npos); // Not prepared: an empty document.
    m_Host.Start().Move(2, s_Top);
    const std::string saved = Get();
    const std::string unended = saved.substr(0, saved.size() - 1);
    for (const std::string& data : {saved, unended}) {
        m_Host.Move(2, s_Bottom);
        CheckEqual(saved, false);
        EXPECT_EQ(Set(data), 0);
        EXPECT_EQ(m_Host.GetValue(2), s_Top);
        CheckEqual(saved, true);
    }
    CheckEqual(unended, false);
}

TEST_F(RTASChunks, NoRecordDoesHarm) {
    m_Host.Start().Move(2, s_Top);
    const std::string saved = Get();
    for (const std::string& data :
         {std::string(), std::string(1, '\0'), saved.substr(0, 60), std::string("\xFF\xFE")}) {
        EXPECT_EQ(Set(data), 0);
        CheckEqual(data, false);
        // A room that has become too small stays as it is.
        EXPECT_EQ(m_Host.m_Process.GetChunk(s_Code, &Make(data)), 0);
        EXPECT_EQ(std::string(m_Record.m_Data, data.size()), data);
    }
    CheckEqual(saved, true);
}

} // namespace
} // namespace LatheExt::RTASPlugin
