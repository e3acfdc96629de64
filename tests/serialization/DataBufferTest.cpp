// A value in memory has one type, and bytes from a file that don't fit their type are never handed
// out.
#include "serialization/Streams.h"

#include "serialization/DataBuffer.h"

#include <cmath>

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
    CDataBuffer buffer, buffers[7];
    EXPECT_EQ(GetAnsweringTypes(buffer), "");
    buffers[0].SetObject();
    buffers[1].SetBool(true);
    buffers[2].SetInt(1);
    buffers[3].SetFloat(2);
    buffers[4].SetDouble(nan);
    buffers[5].SetString("x");
    buffers[6].SetData("x", 2);
    for (int type = 0; type < 7; ++type) {
        SCOPED_TRACE(type);
        CMemDataObject file;
        EXPECT_TRUE(file.WriteObject("x", buffers[type]) && file.ReadObject("x", buffer));
        EXPECT_EQ(GetAnsweringTypes(buffer), std::to_string(type));
        const bool equal[] = {buffer.IsEqualObject({}),  buffer.IsEqualBool(true),
                              buffer.IsEqualInt(1),      buffer.IsEqualFloat(2),
                              buffer.IsEqualDouble(nan), buffer.IsEqualString("x"),
                              buffer.IsEqualData("x", 2)};
        for (int other = 0; other < 7; ++other)
            EXPECT_TRUE(equal[other] == (other == type) &&
                        equal[other] == (buffer == buffers[other]));
    }
    buffer.SetString(nullptr);
    const char* text = "x";
    EXPECT_TRUE(buffer.GetString(text) && text == nullptr);
    EXPECT_TRUE(buffer.IsEqualString(nullptr) && !buffer.IsEqualString(""));
}

// Each value has one character as its name, the index of its item.
TEST(MemDataObject, LoadsTheItemsThatAreThereAndRefusesBytesThatDoNotFit) {
    CXmlDataObject document("Root");
    ASSERT_TRUE(Parse(
        document,
        "<r ItemsCount='2000000000' ItemName0='0' ItemName1='1' ItemName2='2' ItemName3='3'"
        " ItemName4='4' ItemName5='5' ItemName6='6' ItemName7='7' ItemName8='8'>"
        "<Item0 type='1' value='Bw=='/><Item1 type='1' value=''/><Item2 type='4' value='AAAAAA=='/>"
        "<Item3 type='5' value='Zm9v'/><Item4 type='5' value='Zm8A'/><Item5 type='6' value='x'/>"
        "<Item6 type='0' value='AAAA'/><Item7 type='7' value='AAAA'/></r>"));
    CMemDataObject loaded;
    WriteValue(loaded, "old", "value");
    EXPECT_FALSE(loaded.DeSerialize(document));
    bool flag = false;
    double real = 0;
    EXPECT_TRUE(ReadValue(loaded, "0", flag) && flag); // It was 7.
    EXPECT_FALSE(ReadValue(loaded, "1", flag) || ReadValue(loaded, "2", real));
    EXPECT_EQ(ReadText(loaded, "3") + ReadText(loaded, "4"), "(missing)fo"); // No terminator, one.
    for (const char* name : {"5", "6", "7", "8", "old"})
        EXPECT_FALSE(loaded.HasValue(name)) << name;
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
    EXPECT_TRUE(ReadInt(object, "a") == 1 && ReadInt(object, "c") == 7);
    EXPECT_TRUE(ReadInt(object, "d") == 7 && !object.HasValue("b"));
    CDataBuffer buffer;
    buffer.SetInt(7);
    ASSERT_TRUE(Parse(changes, "<r type='6'/>")); // The same bytes.
    EXPECT_TRUE(buffer.DeSerialize(changes) && GetAnsweringTypes(buffer) == "6");
}

} // namespace Lathe::Serialization::Tests
