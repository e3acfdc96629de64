// Proves that a session gets the whole state and gives it back, and that no record, however it
// looks, does more than change nothing.
#include "hosts/rtas/TestProcess.h"

#include <gtest/gtest.h>

#include <cstring>

namespace LatheExt::RTASPlugin {
namespace {

class RTASChunks : public testing::Test {
protected:
    // With the zero, if the data have one.
    SChunkRecord* Make(const std::string& data) {
        m_Record.m_Size = static_cast<std::int32_t>(56 + data.size());
        std::memcpy(m_Record.m_Data, data.data(), data.size());
        return &m_Record;
    }
    std::string Get() {
        long size = 0;
        EXPECT_EQ(m_Process.GetChunkSize(m_Record.m_Code, &size), 0);
        Make(std::string(std::size_t(size) - 56, 'x'));
        EXPECT_EQ(m_Process.GetChunk(m_Record.m_Code, &m_Record), 0);
        EXPECT_EQ(std::strlen(m_Record.m_Data) + 57, std::size_t(size));
        return std::string(m_Record.m_Data, std::size_t(size) - 56);
    }
    // Twice, since the first must not move the state.
    void CheckEqual(const std::string& data, bool expected) {
        for (char isEqual : {char(0), char(1)}) {
            EXPECT_EQ(m_Process.CompareChunk(Make(data), &isEqual), 0);
            EXPECT_EQ(isEqual != 0, expected);
        }
    }
    long Set(const std::string& data) { return m_Process.SetChunk(m_Record.m_Code, Make(data)); }

    CTestProcess m_Host;
    CProcess& m_Process = m_Host.m_Process;
    struct : SChunkRecord {
        char m_Data[1 << 15];
    } m_Record{{0, {}, MakeFourCharCode("mrws"), {}}, {}};
};

TEST_F(RTASChunks, AStateComesBackAndNoRecordDoesHarm) {
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
    for (const std::string& data :
         {std::string(), std::string(1, '\0'), unended.substr(0, 60), std::string("\xFF\xFE")}) {
        EXPECT_EQ(Set(data), 0);
        CheckEqual(data, false);
        // A room that has become too small stays as it is.
        EXPECT_EQ(m_Process.GetChunk(m_Record.m_Code, Make(data)), 0);
        EXPECT_EQ(std::string(m_Record.m_Data, data.size()), data);
    }
    CheckEqual(unended, false);
    CheckEqual(saved, true);
}

} // namespace
} // namespace LatheExt::RTASPlugin
