// Every stream keeps the same promises: what is written is read, names have one value, and nothing
// that is missing or null does harm.
#include "serialization/Streams.h"

#include "core/Fixtures.h"

#include <climits>
#include <iterator>
#include <random>

namespace Lathe::Serialization::Tests {

TEST(DataStream, NumbersAreReadAsWritten) {
    ForEachStream([](auto& stream, const auto& reload) {
        EXPECT_TRUE(WriteValue(stream, "b", true) && WriteValue(stream, "i", INT_MIN));
        EXPECT_TRUE(WriteValue(stream, "f", -1e-45f) && WriteValue(stream, "d", 1.0 / 3));
        reload();
        bool flag = false;
        float single = 0;
        double real = 0;
        EXPECT_TRUE(ReadValue(stream, "b", flag) && flag);
        EXPECT_EQ(ReadInt(stream, "i"), INT_MIN);
        EXPECT_TRUE(ReadValue(stream, "f", single) && single == -1e-45f);
        EXPECT_TRUE(ReadValue(stream, "d", real) && real == 1.0 / 3);
    });
}

// Texts of pieces that mean something to a parser.
TEST(DataStream, TextsAndDataAreReadAsWritten) {
    const char* const pieces[] = {" ",          "\n\t",      "x\r\x01", "<a b=\"c\">", "'",
                                  "]]>",        "<![CDATA[", "<!--",    "&amp;",       "&#x",
                                  "&#x41",      "&#x;",      "&#xZZ;",  "&",           "&#x0;x",
                                  "&#x110000;", "Grüße音",   "\xE9\xFF"};
    SCOPED_TRACE("seed " + std::to_string(GetSeed()));
    ForEachStream([&](auto& stream, const auto& reload) {
        std::minstd_rand random(GetSeed());
        for (int round = 0; round < 300; ++round) {
            std::string text;
            for (auto k = random() % 5; k > 0; --k)
                text += pieces[random() % std::size(pieces)];
            SCOPED_TRACE(text);
            const int size = static_cast<int>(text.size());
            EXPECT_TRUE(WriteValue(stream, "text", text.c_str()));
            EXPECT_TRUE(stream.WriteData("data", size > 0 ? text.data() : nullptr, size));
            EXPECT_EQ(ReadText(stream, "text"), text);
            reload();
            EXPECT_EQ(ReadText(stream, "text"), text);
            char* data = nullptr;
            int loadedSize = -1;
            ASSERT_TRUE(stream.ReadData("data", &data, &loadedSize));
            const std::unique_ptr<char[]> owner(data);
            EXPECT_EQ(std::string(data, static_cast<std::size_t>(loadedSize)), text);
        }
    });
}

TEST(DataStream, MissingAndNullDoNoHarm) {
    ForEachStream([](auto& stream, const auto& reload) {
        EXPECT_FALSE(stream.WriteBool("v", nullptr) || stream.WriteDouble("v", nullptr));
        EXPECT_FALSE(stream.WriteData("v", nullptr, 4) || stream.WriteData("v", "x", -1));
        CIntObject object(8);
        EXPECT_FALSE(WriteValue(stream, nullptr, 1) || stream.WriteObject(nullptr, object));
        EXPECT_FALSE(stream.HasValue("v") || stream.HasValue(nullptr) || stream.IsIncremental());
        EXPECT_TRUE(WriteValue(stream, "number", 1) && stream.WriteString("text", nullptr));
        reload();
        EXPECT_EQ(ReadText(stream, "text"), "");
        EXPECT_FALSE(stream.ReadInt("number", nullptr) || stream.ReadString("text", nullptr));
        EXPECT_FALSE(stream.ReadObject("v", object) || stream.ReadObject(nullptr, object));
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
        EXPECT_EQ(ReadInt(stream, "number"), 2);
        EXPECT_TRUE(stream.ReadObject("outer", loaded) && loaded == outer);
        CIntObject object(-1, false);
        EXPECT_FALSE(stream.ReadObject("object", object));
        EXPECT_EQ(object.m_Value, 20); // What it had written stays.
        stream.RemoveValue("object");
        EXPECT_TRUE(stream.HasValue("number") && !stream.HasValue("object"));
        EXPECT_TRUE(WriteValue(stream, "outer", 3) && stream.WriteObject("outer", outer));
        EXPECT_EQ(ReadInt(stream, "outer"), -1);
        stream.Clear();
        EXPECT_FALSE(stream.HasValue("number") || stream.HasValue("outer"));
    });
}

} // namespace Lathe::Serialization::Tests
