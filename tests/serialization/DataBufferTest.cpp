// A value in memory has one type, and bytes from a file that don't fit their type are never handed
// out.
#include "Streams.h"

#include "serialization/DataBuffer.h"

#include <array>
#include <cmath>
#include <limits>

namespace Lathe::Serialization::Tests {

namespace {

// Which getters answer, in the order of the types' numbers.
std::string GetAnswers(const CDataBuffer& buffer) {
    bool flag = false;
    int number = 0;
    float single = 0;
    double real = 0;
    const char* text = nullptr;
    const void* data = nullptr;
    const CMemDataObject* object = nullptr;
    const std::array<bool, 7> answers = {buffer.GetObject(object),    buffer.GetBool(flag),
                                         buffer.GetInt(number),       buffer.GetFloat(single),
                                         buffer.GetDouble(real),      buffer.GetString(text),
                                         buffer.GetData(data, number)};
    std::string result;
    for (const bool answer : answers)
        result += answer ? '1' : '0';
    return result;
}

// The same for the equality tests, with the values that the test below sets.
std::string GetEqualities(const CDataBuffer& buffer) {
    CMemDataObject object;
    object.WriteString("s", "in");
    const std::array<bool, 7> answers = {
        buffer.IsEqualObject(object),
        buffer.IsEqualBool(true),
        buffer.IsEqualInt(1),
        buffer.IsEqualFloat(1.0f),
        buffer.IsEqualDouble(std::numeric_limits<double>::quiet_NaN()),
        buffer.IsEqualString("text"),
        buffer.IsEqualData("text", 5)};
    std::string result;
    for (const bool answer : answers)
        result += answer ? '1' : '0';
    return result;
}

} // namespace

TEST(DataBuffer, AnswersOnlyForItsTypeAlsoAfterSaving) {
    const struct {
        std::function<void(CDataBuffer&)> m_Set;
        int m_Size;
    } cases[] = {
        {[](CDataBuffer& buffer) { buffer.SetObject().WriteString("s", "in"); }, 0},
        {[](CDataBuffer& buffer) { buffer.SetBool(true); }, 1},
        {[](CDataBuffer& buffer) { buffer.SetInt(1); }, 4},
        {[](CDataBuffer& buffer) { buffer.SetFloat(1.0f); }, 4},
        {[](CDataBuffer& buffer) { buffer.SetDouble(std::nan("")); }, 8},
        {[](CDataBuffer& buffer) { buffer.SetString("text"); }, 5},
        {[](CDataBuffer& buffer) { buffer.SetData("text", 5); }, 5},
    };
    CDataBuffer buffer;
    EXPECT_EQ(GetAnswers(buffer), "0000000");
    std::size_t type = 0;
    for (const auto& [set, size] : cases) {
        SCOPED_TRACE(type);
        std::string expected = "0000000";
        expected[type] = '1';
        set(buffer); // Over the value of the case before.
        CXmlDataObject file("File");
        EXPECT_TRUE(file.WriteObject("x", buffer));
        CDataBuffer loaded;
        loaded.SetInt(99);
        EXPECT_TRUE(file.ReadObject("x", loaded));
        for (const CDataBuffer* each : {&buffer, &loaded}) {
            EXPECT_EQ(static_cast<std::size_t>(each->GetType()), type);
            EXPECT_EQ(each->GetSize(), size);
            EXPECT_EQ(GetAnswers(*each), expected);
            EXPECT_EQ(GetEqualities(*each), expected);
        }
        EXPECT_TRUE(loaded == buffer);
        loaded.SetData("other", 5);
        EXPECT_FALSE(loaded == buffer);
        ++type;
    }
    buffer.SetString(nullptr);
    const char* text = "x";
    EXPECT_TRUE(buffer.GetString(text));
    EXPECT_EQ(text, nullptr);
    EXPECT_TRUE(buffer.IsEqualString(nullptr));
    EXPECT_FALSE(buffer.IsEqualString(""));
}

TEST(DataBuffer, RefusesBytesThatDoNotFitTheType) {
    const struct {
        const char* m_Attributes;
        bool m_Loads;
        const char* m_Answers;
    } cases[] = {
        {"type='1' value='Bw=='", true, "0100000"}, // A bool that is 7.
        {"type='1' value=''", true, "0000000"},
        {"type='2' value='AAAA'", true, "0000000"},
        {"type='4' value='AAAAAA=='", true, "0000000"},
        {"type='5' value='Zm9v'", true, "0000000"}, // No terminating zero.
        {"type='5' value='Zm8A'", true, "0000010"},
        {"type='6' value='x'", false, "0000000"}, // Not Base64.
        {"type='6'", false, "0000000"},
        {"type='0' value='AAAA'", false, "1000000"}, // An attribute, where an object is due.
        {"type='7' value='AAAA'", false, "0000000"},
        {"type='-2' value='AAAA'", false, "0000000"},
        {"value='AAAA'", false, "0000000"}};
    for (const auto& [attributes, loads, answers] : cases) {
        SCOPED_TRACE(attributes);
        CXmlDataObject document("Root");
        ASSERT_TRUE(Parse(document, std::string("<r><x ") + attributes + "/></r>"));
        CDataBuffer buffer;
        buffer.SetInt(3);
        EXPECT_EQ(document.ReadObject("x", buffer), loads);
        EXPECT_EQ(GetAnswers(buffer), answers);
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
    EXPECT_FALSE(loaded.HasValue("b"));
    EXPECT_EQ(ReadText(loaded, "c"), "x");
    EXPECT_FALSE(loaded.HasValue("old"));

    CChanges changes;
    EXPECT_TRUE(loaded.DeSerialize(changes));
    EXPECT_TRUE(loaded.HasValue("a"));
    int wrongType = 3;
    EXPECT_FALSE(loaded.ReadInt("c", &wrongType));
    EXPECT_EQ(wrongType, 3);
}

} // namespace Lathe::Serialization::Tests
