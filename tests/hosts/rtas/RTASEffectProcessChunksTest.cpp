// Proves that a session gets the whole state and gives it back, and that no record, however it
// looks, does more than change nothing.
#include "hosts/rtas/TestProcess.h"

#include <gtest/gtest.h>

#include <cstring>

namespace LatheExt::RTASPlugin {
namespace {

TEST(RTASChunks, AStateComesBackAndNoRecordDoesHarm) {
    CTestProcess host;
    CProcess& process = host.m_Process;
    struct : SChunkRecord {
        char m_Data[1 << 15];
    } record{{0, {}, MakeFourCharCode("mrws"), {}}, {}};
    // With the zero, if the data have one.
    const auto make = [&](const std::string& data) {
        record.m_Size = static_cast<std::int32_t>(56 + data.size());
        std::memcpy(record.m_Data, data.data(), data.size());
        return &record;
    };
    const auto get = [&] {
        long size = 0;
        EXPECT_EQ(process.GetChunkSize(record.m_Code, &size), 0);
        make(std::string(std::size_t(size) - 56, 'x'));
        EXPECT_EQ(process.GetChunk(record.m_Code, &record), 0);
        EXPECT_EQ(std::strlen(record.m_Data) + 57, std::size_t(size));
        return std::string(record.m_Data, std::size_t(size) - 56);
    };
    // Twice, since the first must not move the state.
    const auto isEqual = [&](const std::string& data) {
        char equal[] = {0, 1};
        EXPECT_EQ(process.CompareChunk(make(data), &equal[0]), 0);
        EXPECT_EQ(process.CompareChunk(make(data), &equal[1]), 0);
        EXPECT_EQ(equal[0], equal[1]);
        return equal[0] != 0;
    };
    EXPECT_EQ(get().find("inputParams"), std::string::npos); // Not prepared: an empty document.
    host.Start().Move(2, s_Top);
    const std::string saved = get();
    const std::string unended = saved.substr(0, saved.size() - 1);
    for (const std::string& data : {saved, unended}) {
        host.Move(2, s_Bottom);
        EXPECT_FALSE(isEqual(saved));
        EXPECT_EQ(process.SetChunk(record.m_Code, make(data)), 0);
        EXPECT_EQ(host.GetValue(2), s_Top);
        EXPECT_TRUE(isEqual(saved) && !isEqual(unended));
    }
    for (const std::string& data :
         {std::string(), std::string(1, '\0'), unended.substr(0, 60), std::string("\xFF\xFE")}) {
        EXPECT_EQ(process.SetChunk(record.m_Code, make(data)), 0);
        EXPECT_FALSE(isEqual(data));
        // A room that has become too small stays as it is.
        EXPECT_EQ(process.GetChunk(record.m_Code, make(data)), 0);
        EXPECT_EQ(std::string(record.m_Data, data.size()), data);
    }
    EXPECT_TRUE(isEqual(saved));
}

} // namespace
} // namespace LatheExt::RTASPlugin
