// Every stream keeps the same promises: what is written is read, names have one value, and nothing
// that is missing or null does harm.
#include "serialization/Streams.h"

#include "core/Seed.h"

#include <cfloat>
#include <climits>
#include <iterator>
#include <random>
#include <vector>

namespace Lathe::Serialization::Tests {

namespace {

template <class T>
void CheckNumbers(const std::vector<T>& values) {
    ForEachStream([&](auto& stream, const auto& reload) {
        for (const T value : values) {
            EXPECT_TRUE(WriteValue(stream, "v", value));
            reload();
            T loaded{};
            EXPECT_TRUE(ReadValue(stream, "v", loaded));
            EXPECT_FALSE(WriteValue(stream, nullptr, value) || ReadValue(stream, "x", loaded));
            EXPECT_EQ(loaded, value);
        }
    });
}

} // namespace

TEST(DataStream, NumbersAreReadAsWritten) {
    CheckNumbers<bool>({true, false});
    CheckNumbers<int>({7, 0, -1, INT_MIN, INT_MAX});
    CheckNumbers<float>({0.1f, -1e-45f, FLT_MAX, 16777217.0f});
    CheckNumbers<double>({0.1, -4.9e-324, DBL_MAX, 1.0 / 3});
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

TEST(DataStream, RefuseNullValuesButNotNullTexts) {
    ForEachStream([](auto& stream, const auto& reload) {
        EXPECT_FALSE(stream.WriteBool("v", nullptr) || stream.WriteDouble("v", nullptr));
        EXPECT_FALSE(stream.WriteData("v", nullptr, 4) || stream.WriteData("v", "x", -1));
        EXPECT_FALSE(stream.WriteString(nullptr, "x") || stream.WriteData(nullptr, "x", 1));
        EXPECT_FALSE(stream.HasValue("v") || stream.HasValue(nullptr) || stream.IsIncremental());
        EXPECT_TRUE(WriteValue(stream, "number", 1) && stream.WriteString("text", nullptr));
        reload();
        EXPECT_EQ(ReadText(stream, "text"), "");
        EXPECT_FALSE(stream.ReadInt("number", nullptr) || stream.ReadString("text", nullptr));
        EXPECT_FALSE(stream.ReadData("text", nullptr, nullptr));
        stream.RemoveValue(nullptr);
    });
}

TEST(DataStream, ObjectsNestAndGiveTheirOwnResult) {
    ForEachStream([](auto& stream, const auto& reload) {
        CMemDataObject outer, loaded;
        outer.WriteObject("inner", CIntObject(5));
        EXPECT_TRUE(stream.WriteObject("outer", outer));
        EXPECT_FALSE(stream.WriteObject("failed", CIntObject(6, false)));
        EXPECT_FALSE(stream.WriteObject(nullptr, outer));
        reload();
        EXPECT_TRUE(stream.ReadObject("outer", loaded) && loaded == outer);
        CIntObject object(8, false);
        EXPECT_FALSE(stream.ReadObject("missing", object) || stream.ReadObject(nullptr, object));
        EXPECT_EQ(object.m_Value, 8);
        EXPECT_FALSE(stream.ReadObject("failed", object));
        EXPECT_EQ(object.m_Value, 6); // What it had written stays.
    });
}

TEST(DataStream, NamesHaveOneValue) {
    ForEachStream([](auto& stream, const auto& reload) {
        CIntObject object;
        for (const int number : {1, 2}) {
            WriteValue(stream, "number", number);
            stream.WriteObject("object", CIntObject(number * 10));
        }
        reload();
        EXPECT_EQ(ReadInt(stream, "number"), 2);
        EXPECT_TRUE(stream.ReadObject("object", object) && object.m_Value == 20);
        for (const char* name : {"number", "object"}) {
            EXPECT_TRUE(stream.HasValue(name));
            stream.RemoveValue(name);
            EXPECT_FALSE(stream.HasValue(name)) << name;
        }
        EXPECT_TRUE(WriteValue(stream, "object", 3) && stream.WriteObject("object", object));
        EXPECT_EQ(ReadInt(stream, "object"), -1);
        EXPECT_TRUE(WriteValue(stream, "number", 3));
        stream.Clear();
        EXPECT_FALSE(stream.HasValue("number") || stream.HasValue("object"));
    });
}

} // namespace Lathe::Serialization::Tests
