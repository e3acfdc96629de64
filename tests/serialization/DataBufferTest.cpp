// A value in memory has one type, and bytes from a file that don't fit their type are never handed
// out.
#include "serialization/Streams.h"

#include "serialization/DataBuffer.h"

#include <cmath>

namespace Lathe::Serialization::Tests {

namespace {

// The number of the only type whose getter answers, or -1.
int GetAnsweringType(const CDataBuffer& buffer) {
    bool flag = false;
    int number = 0;
    float single = 0;
    double real = 0;
    const char* text = nullptr;
    const void* data = nullptr;
    const CMemDataObject* object = nullptr;
    const bool answers[] = {buffer.GetObject(object),    buffer.GetBool(flag),
                            buffer.GetInt(number),       buffer.GetFloat(single),
                            buffer.GetDouble(real),      buffer.GetString(text),
                            buffer.GetData(data, number)};
    int type = -1;
    for (int i = 0; i < 7; ++i)
        if (answers[i])
            type = type == -1 ? i : 99;
    return type;
}

} // namespace

TEST(DataBuffer, AnswersOnlyForItsTypeAlsoAfterSaving) {
    const double nan = std::nan("");
    const struct {
        int m_Size;
        std::function<void(CDataBuffer&)> m_Set;
        std::function<bool(const CDataBuffer&)> m_IsEqual;
    } cases[] = {
        {0, [](auto& b) { b.SetObject(); }, [](auto& b) { return b.IsEqualObject({}); }},
        {1, [](auto& b) { b.SetBool(true); }, [](auto& b) { return b.IsEqualBool(true); }},
        {4, [](auto& b) { b.SetInt(1); }, [](auto& b) { return b.IsEqualInt(1); }},
        {4, [](auto& b) { b.SetFloat(2); }, [](auto& b) { return b.IsEqualFloat(2); }},
        {8, [=](auto& b) { b.SetDouble(nan); }, [=](auto& b) { return b.IsEqualDouble(nan); }},
        {5, [](auto& b) { b.SetString("text"); }, [](auto& b) { return b.IsEqualString("text"); }},
        {5, [](auto& b) { b.SetData("text", 5); },
         [](auto& b) { return b.IsEqualData("text", 5); }}};
    CDataBuffer buffer;
    EXPECT_EQ(GetAnsweringType(buffer), -1);
    for (int type = 0; type < 7; ++type) {
        SCOPED_TRACE(type);
        cases[type].m_Set(buffer); // Over the value of the case before.
        CXmlDataObject file("File");
        EXPECT_TRUE(file.WriteObject("x", buffer));
        CDataBuffer loaded;
        EXPECT_TRUE(file.ReadObject("x", loaded));
        EXPECT_TRUE(loaded == buffer);
        EXPECT_EQ(GetAnsweringType(loaded), type);
        EXPECT_EQ(loaded.GetSize(), cases[type].m_Size);
        for (int other = 0; other < 7; ++other)
            EXPECT_EQ(cases[other].m_IsEqual(loaded), other == type);
    }
    buffer.SetString(nullptr);
    const char* text = "x";
    EXPECT_TRUE(buffer.GetString(text) && text == nullptr);
    EXPECT_TRUE(buffer.IsEqualString(nullptr));
    EXPECT_FALSE(buffer.IsEqualString(""));
}

TEST(DataBuffer, RefusesBytesThatDoNotFitTheType) {
    const struct {
        const char* m_Attributes;
        bool m_Loads;
        int m_AnsweringType;
    } cases[] = {{"type='1' value='Bw=='", true, 1}, // A bool that is 7.
                 {"type='1' value=''", true, -1},
                 {"type='2' value='AAAA'", true, -1},
                 {"type='4' value='AAAAAA=='", true, -1},
                 {"type='5' value='Zm9v'", true, -1}, // No terminating zero.
                 {"type='5' value='Zm8A'", true, 5},
                 {"type='6' value='x'", false, -1}, // Not Base64.
                 {"type='6'", false, -1},
                 {"type='0' value='AAAA'", false, 0}, // An attribute, where an object is due.
                 {"type='7' value='AAAA'", false, -1},
                 {"value='AAAA'", false, -1}};
    for (const auto& [attributes, loads, answeringType] : cases) {
        SCOPED_TRACE(attributes);
        CXmlDataObject document("Root");
        ASSERT_TRUE(Parse(document, std::string("<r><x ") + attributes + "/></r>"));
        CDataBuffer buffer;
        buffer.SetInt(3);
        EXPECT_EQ(document.ReadObject("x", buffer), loads);
        EXPECT_EQ(GetAnsweringType(buffer), answeringType);
    }
}

TEST(MemDataObject, LoadsOnlyTheItemsThatAreThere) {
    CXmlDataObject document("Root");
    ASSERT_TRUE(Parse(document,
                      "<r><m ItemsCount='2000000000' ItemName0='a' ItemName1='b' ItemName2='c'>"
                      "<Item0 type='2' value='AQAAAA=='/><Item2 type='5' value='eAA='/></m></r>"));
    CMemDataObject loaded;
    loaded.WriteString("old", "value");
    EXPECT_FALSE(document.ReadObject("m", loaded));
    EXPECT_EQ(ReadInt(loaded, "a"), 1);
    EXPECT_EQ(ReadInt(loaded, "c", 3), 3); // A text is no number.
    EXPECT_EQ(ReadText(loaded, "c"), "x");
    EXPECT_FALSE(loaded.HasValue("b") || loaded.HasValue("old"));
    EXPECT_TRUE(loaded.DeSerialize(CChanges()) && loaded.HasValue("a"));
}

} // namespace Lathe::Serialization::Tests
