// Proves that a session gets the whole state and gives it back, and that no record, however it
// looks, does more than change nothing.
#include "hosts/rtas/TestProcess.h"

#include <gtest/gtest.h>

#include <cstring>

namespace LatheExt::RTASPlugin {
namespace {

class RTASChunks : public testing::Test {
protected:
    static SChunkRecord* AsRecord(std::vector<char>& bytes) {
        return reinterpret_cast<SChunkRecord*>(bytes.data());
    }
    // A record of the plug-in's own with these data.
    static std::vector<char> MakeChunk(const std::string& data) {
        std::vector<char> bytes(sizeof(SChunkRecord) + data.size());
        AsRecord(bytes)->m_Size = static_cast<std::int32_t>(bytes.size());
        AsRecord(bytes)->m_Code = CTestProcess::s_Code;
        std::memcpy(bytes.data() + sizeof(SChunkRecord), data.data(), data.size());
        return bytes;
    }
    static std::string GetText(const std::vector<char>& bytes) {
        return std::string(bytes.begin() + sizeof(SChunkRecord), bytes.end());
    }
    long Set(std::vector<char> bytes) {
        return m_Host.m_Process.SetChunk(AsRecord(bytes)->m_Code, AsRecord(bytes));
    }
    // Twice, since the first must not move the state.
    void CheckEqual(std::vector<char> bytes, bool expected) {
        for (int i = 0; i < 2; ++i) {
            char isEqual = expected ? 0 : 1;
            EXPECT_EQ(m_Host.m_Process.CompareChunk(AsRecord(bytes), &isEqual), 0);
            EXPECT_EQ(isEqual != 0, expected);
        }
    }

    CTestProcess m_Host;
};

TEST_F(RTASChunks, AStateComesBack) {
    m_Host.Start();
    m_Host.m_Process.OnControlValueChanged(2, s_Top);
    const std::vector<char> saved = m_Host.GetChunk();
    EXPECT_EQ(saved.back(), 0);
    EXPECT_EQ(std::strlen(GetText(saved).c_str()) + 57, saved.size());
    CheckEqual(saved, true);
    m_Host.m_Process.OnControlValueChanged(2, s_Bottom);
    CheckEqual(saved, false);
    EXPECT_EQ(Set(saved), 0);
    EXPECT_EQ(m_Host.GetValue(2), s_Top);
    EXPECT_EQ(m_Host.m_Log.Take(), "touch1 release1 touch2 2=2147483647 release2 ");
    CheckEqual(saved, true);
    // By length, not by the zero.
    const std::string text = GetText(saved);
    m_Host.m_Process.OnControlValueChanged(2, s_Bottom);
    EXPECT_EQ(Set(MakeChunk(text.substr(0, text.size() - 1))), 0);
    EXPECT_EQ(m_Host.GetValue(2), s_Top);
    CheckEqual(MakeChunk(text.substr(0, text.size() - 1)), false);
}

TEST_F(RTASChunks, NoRecordDoesHarm) {
    m_Host.Start();
    m_Host.m_Process.OnControlValueChanged(2, s_Top);
    const std::vector<char> saved = m_Host.GetChunk();
    const std::string text = GetText(saved);
    for (const std::string& data : {std::string(), std::string(1, '\0'), text.substr(0, 60),
                                    std::string("<Preset"), std::string("\xFF\xFE")}) {
        EXPECT_EQ(Set(MakeChunk(data)), 0);
        CheckEqual(MakeChunk(data), false);
    }
    std::vector<char> negative = MakeChunk("");
    AsRecord(negative)->m_Size = -1;
    EXPECT_EQ(Set(negative), 0);
    CheckEqual(negative, false);
    CheckEqual(saved, true);
    // A room that has become too small stays as it is.
    std::vector<char> small = MakeChunk("x");
    EXPECT_EQ(m_Host.m_Process.GetChunk(CTestProcess::s_Code, AsRecord(small)), 0);
    EXPECT_EQ(small, MakeChunk("x"));
    // The library's own.
    long size = 0;
    EXPECT_EQ(m_Host.m_Process.GetChunkSize(MakeFourCharCode("none"), &size), UnknownChunkError);
}

TEST_F(RTASChunks, BeforeThePreparationTheDocumentIsEmpty) {
    const std::string text = GetText(m_Host.GetChunk());
    char* empty = nullptr;
    ASSERT_TRUE(Lathe::Serialization::CXmlDataObject("Preset").GetText(empty));
    EXPECT_STREQ(text.c_str(), std::unique_ptr<char[]>(empty).get());
}

TEST_F(RTASChunks, TheHostHearsOfStateBesidesControls) {
    m_Host.Start();
    const long before = m_Host.m_Process.GetChangeCount();
    m_Host.m_Process.OnControlValueChanged(2, s_Top);
    EXPECT_EQ(m_Host.m_Process.GetChangeCount(), before);
    std::vector<char> saved = m_Host.GetChunk();
    std::string text = GetText(saved);
    const std::size_t at = text.find("none"); // The default of the filter's text.
    ASSERT_NE(at, std::string::npos);
    EXPECT_EQ(Set(MakeChunk(text.replace(at, 4, "other"))), 0);
    EXPECT_GT(m_Host.m_Process.GetChangeCount(), before);
}

} // namespace
} // namespace LatheExt::RTASPlugin
