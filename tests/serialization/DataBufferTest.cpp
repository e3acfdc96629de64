// A value in memory has one type, and bytes from a file that don't fit their type are never handed
// out.
#include "serialization/Streams.h"

#include "serialization/DataBuffer.h"

#include <cmath>
#include <functional>

namespace Lathe::Serialization::Tests {

namespace {

// The numbers of the types whose getters answer.
std::string GetAnsweringTypes(const CDataBuffer& buffer) {
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
    std::string types;
    for (int i = 0; i < 7; ++i)
        if (answers[i])
            types += std::to_string(i);
    return types;
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
        {2, [](auto& b) { b.SetString("x"); }, [](auto& b) { return b.IsEqualString("x"); }},
        {2, [](auto& b) { b.SetData("x", 2); }, [](auto& b) { return b.IsEqualData("x", 2); }}};
    CDataBuffer buffer;
    EXPECT_EQ(GetAnsweringTypes(buffer), "");
    for (int type = 0; type < 7; ++type) {
        SCOPED_TRACE(type);
        cases[type].m_Set(buffer); // Over the value of the case before.
        CMemDataObject file;
        EXPECT_TRUE(file.WriteObject("x", buffer));
        CDataBuffer loaded;
        EXPECT_TRUE(file.ReadObject("x", loaded) && loaded == buffer);
        EXPECT_EQ(GetAnsweringTypes(loaded), std::to_string(type));
        EXPECT_EQ(loaded.GetSize(), cases[type].m_Size);
        for (int other = 0; other < 7; ++other)
            EXPECT_EQ(cases[other].m_IsEqual(loaded), other == type);
    }
    buffer.SetString(nullptr);
    const char* text = "x";
    EXPECT_TRUE(buffer.GetString(text) && text == nullptr);
    EXPECT_TRUE(buffer.IsEqualString(nullptr) && !buffer.IsEqualString(""));
}

TEST(DataBuffer, RefusesBytesThatDoNotFitTheType) {
    // The attributes, whether they load, and the type that answers then. Among them a bool that is
    // 7 and texts without and with their terminating zero.
    const std::tuple<const char*, bool, const char*> cases[] = {
        {"type='1' value='Bw=='", true, "1"},
        {"type='1' value=''", true, ""},
        {"type='2' value='AAAA'", true, ""},
        {"type='4' value='AAAAAA=='", true, ""},
        {"type='5' value='Zm9v'", true, ""},
        {"type='5' value='Zm8A'", true, "5"},
        {"type='6' value='x'", false, ""},
        {"type='6'", false, ""},
        {"type='0' value='AAAA'", false, "0"},
        {"type='7' value='AAAA'", false, ""},
        {"value='AAAA'", false, ""}};
    for (const auto& [attributes, loads, answeringTypes] : cases) {
        SCOPED_TRACE(attributes);
        CXmlDataObject document("Root");
        ASSERT_TRUE(Parse(document, std::string("<r><x ") + attributes + "/></r>"));
        CDataBuffer buffer;
        buffer.SetInt(3);
        EXPECT_EQ(document.ReadObject("x", buffer), loads);
        EXPECT_EQ(GetAnsweringTypes(buffer), answeringTypes);
    }
}

TEST(MemDataObject, LoadsOnlyTheItemsThatAreThere) {
    CXmlDataObject document("Root");
    ASSERT_TRUE(Parse(document,
                      "<r><m ItemsCount='2000000000' ItemName0='a' ItemName1='b' ItemName2='c'>"
                      "<Item0 type='2' value='AQAAAA=='/><Item2 type='5' value='eAA='/></m></r>"));
    CMemDataObject loaded;
    WriteValue(loaded, "old", "value");
    EXPECT_FALSE(document.ReadObject("m", loaded));
    EXPECT_EQ(ReadInt(loaded, "a"), 1);
    EXPECT_EQ(ReadInt(loaded, "c", 3), 3); // A text is no number.
    EXPECT_EQ(ReadText(loaded, "c"), "x");
    EXPECT_FALSE(loaded.HasValue("b") || loaded.HasValue("old"));
}

TEST(MemDataObject, TakesChangesItemByItem) {
    CMemDataObject object;
    for (const char* name : {"c", "b", "a"})
        WriteValue(object, name, 7);
    TChanges<CXmlDataObject> changes("Root");
    ASSERT_TRUE(Parse(changes, "<r ItemName1='d'><Item0 type='2' value='AQAAAA=='/></r>"));
    EXPECT_TRUE(object.DeSerialize(changes));
    ASSERT_TRUE(Parse(changes, "<r ItemsCount='2000000000'/>"));
    EXPECT_FALSE(object.DeSerialize(changes));
    EXPECT_TRUE(ReadInt(object, "a") == 1 && ReadInt(object, "c") == 7 &&
                ReadInt(object, "d") == 7);
    EXPECT_FALSE(object.HasValue("b"));
    CDataBuffer buffer;
    buffer.SetInt(7);
    ASSERT_TRUE(Parse(changes, "<r type='6'/>")); // The same bytes.
    EXPECT_TRUE(buffer.DeSerialize(changes) && GetAnsweringTypes(buffer) == "6");
}

} // namespace Lathe::Serialization::Tests
