// Every stream keeps the same promises: what is written is read, names have one value, and nothing
// that is missing or null does harm. A value in memory has one type, and bytes from a file that
// don't fit their type are never handed out.
#include "serialization/Base64.h"
#include "serialization/Streams.h"

#include "core/Fixtures.h"

#include <climits>
#include <cmath>

namespace Lathe::Serialization::Tests {

// Texts of pieces that mean something to a parser.
TEST(DataStream, ValuesAreReadAsWritten) {
    const char* const pieces[] = {" ",          "\n\t",      "x\r\x01", "<a b=\"c\">", "'",
                                  "]]>",        "<![CDATA[", "<!--",    "&amp;",       "&#x",
                                  "&#x41",      "&#x;",      "&#xZZ;",  "&",           "&#x0;x",
                                  "&#x110000;", "Grüße音",   "\xE9\xFF"};
    SCOPED_TRACE("seed " + std::to_string(GetSeed()));
    ForEachStream([&](auto& stream, const auto& reload) {
        const auto check = [&](auto written) {
            EXPECT_TRUE(WriteValue(stream, "v", written));
            reload();
            auto read = decltype(written)();
            EXPECT_TRUE(ReadValue(stream, "v", read) && read == written) << written;
        };
        check(true), check(INT_MIN), check(-1e-45f), check(1.0 / 3);
        std::minstd_rand random(GetSeed());
        for (int round = 0; round < 300; ++round) {
            std::string text;
            for (auto k = random() % 5; k > 0; --k)
                text += pieces[random() % std::size(pieces)];
            SCOPED_TRACE(text);
            int size = static_cast<int>(text.size());
            EXPECT_TRUE(WriteValue(stream, "text", text.c_str()));
            EXPECT_TRUE(stream.WriteData("data", size > 0 ? text.data() : nullptr, size));
            EXPECT_EQ(ReadText(stream, "text"), text);
            reload();
            EXPECT_EQ(ReadText(stream, "text"), text);
            char* data = nullptr;
            ASSERT_TRUE(stream.ReadData("data", &data, &size));
            const std::unique_ptr<char[]> owner(data);
            EXPECT_EQ(std::string(data, static_cast<std::size_t>(size)), text);
        }
    });
}

TEST(DataStream, MissingAndNullDoNoHarm) {
    ForEachStream([](auto& stream, const auto& reload) {
        CIntObject object(8);
        EXPECT_FALSE(stream.WriteBool("v", nullptr) || stream.WriteDouble("v", nullptr) ||
                     stream.WriteData("v", nullptr, 4) || stream.WriteData("v", "x", -1) ||
                     WriteValue(stream, nullptr, 1) || stream.WriteObject(nullptr, object));
        EXPECT_FALSE(stream.HasValue("v") || stream.HasValue(nullptr) || stream.IsIncremental());
        EXPECT_TRUE(WriteValue(stream, "number", 1) && stream.WriteString("text", nullptr));
        reload();
        EXPECT_EQ(ReadText(stream, "text"), "");
        EXPECT_FALSE(stream.ReadInt("number", nullptr) || stream.ReadString("text", nullptr) ||
                     stream.ReadObject("v", object) || stream.ReadObject(nullptr, object));
        EXPECT_EQ(ReadInt(stream, "v", object.m_Value), 8);
        stream.RemoveValue(nullptr);
    });
}

TEST(DataStream, NamesHaveOneValueAndObjectsTheirOwnResult) {
    ForEachStream([](auto& stream, const auto& reload) {
        CMemDataObject outer, loaded;
        outer.WriteObject("inner", CIntObject(5));
        for (const int number : {1, 2}) {
            WriteValue(stream, "number", number);
            EXPECT_FALSE(stream.WriteObject("object", CIntObject(number * 10, false)));
        }
        EXPECT_TRUE(stream.WriteObject("outer", outer));
        reload();
        EXPECT_TRUE(stream.ReadObject("outer", loaded) && loaded == outer);
        CIntObject object(-1, false);
        EXPECT_FALSE(stream.ReadObject("object", object));
        EXPECT_TRUE(object.m_Value == 20 &&
                    ReadInt(stream, "number") == 2); // Written all the same.
        stream.RemoveValue("object");
        EXPECT_TRUE(stream.HasValue("number") && !stream.HasValue("object"));
        EXPECT_TRUE(WriteValue(stream, "outer", 3) && stream.WriteObject("outer", outer));
        EXPECT_EQ(ReadInt(stream, "outer"), -1);
        stream.Clear();
        EXPECT_FALSE(stream.HasValue("number") || stream.HasValue("outer"));
    });
}

TEST(DataBuffer, EqualsOnlyItsOwnTypeAndBytesAlsoAfterSaving) {
    CDataBuffer buffer, buffers[7];
    buffers[0].SetObject();
    buffers[1].SetBool(true);
    buffers[2].SetInt(1);
    buffers[3].SetFloat(NAN);
    buffers[4].SetDouble(NAN);
    buffers[5].SetString("x");
    buffers[6].SetData("x", 2);
    for (int type = 0; type < 7; ++type) {
        CMemDataObject file;
        EXPECT_TRUE(file.WriteObject("x", buffers[type]) && file.ReadObject("x", buffer));
        for (int other = 0; other < 7; ++other)
            EXPECT_EQ(buffer == buffers[other], other == type);
    }
    buffer.SetString(nullptr);
    const char* text = "x";
    EXPECT_TRUE(buffer.GetString(text) && text == nullptr && !buffer.IsEqualString(""));
}

// Each value has one character as its name, the index of its item.
TEST(MemDataObject, LoadsTheItemsThatAreThereAndRefusesWhatDoesNotFitTheirType) {
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
    float single = 0; // Types of one size.
    char* data = nullptr;
    int size = 0;
    loaded.WriteData("bytes", "\0\0\0", 4);
    EXPECT_FALSE(ReadValue(loaded, "bytes", single) || loaded.ReadInt("bytes", &size) ||
                 loaded.ReadString("bytes", &data) || loaded.ReadData("4", &data, &size));
}

TEST(MemDataObject, TakesChangesItemByItem) {
    CMemDataObject object;
    for (const char* name : {"b", "a", "c"})
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
    const int same = 7;
    EXPECT_TRUE(buffer.DeSerialize(changes) && buffer.IsEqualData(&same, sizeof(same)));
}

TEST(Base64, KeepsAPublishedVectorAndRefusesOnlyWrongLengths) {
    EXPECT_EQ(EncodeBase64("\xFB\xFF\xBF\0", 4), "+/+/AA==");
    for (const auto& [text, expected] :
         {std::pair("abcde", -1), std::pair("====", 1), std::pair("=abc", 3),
          std::pair("\xFF\x80 \n", 3), std::pair("====Zm9v", 6)}) {
        int size = -1;
        EXPECT_EQ(DecodeBase64(text, size) != nullptr, expected >= 0) << text;
        EXPECT_EQ(size, expected) << text;
    }
}

} // namespace Lathe::Serialization::Tests
