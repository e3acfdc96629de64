// Every stream keeps the same promises: what is written is read, names have one value, and nothing
// that is missing or null does harm.
#include "Streams.h"

#include <bit>
#include <cfloat>
#include <climits>
#include <cstdint>
#include <limits>
#include <vector>

namespace Lathe::Serialization::Tests {

namespace {

// Writes each value under a name of its own, and reads all after the stream went through text.
template <class T>
struct SValues {
    bool (IWriteDataStream::*m_Write)(const char*, const T*);
    bool (IReadDataStream::*m_Read)(const char*, T*) const;
    std::vector<T> m_Values;

    void Check(CStream& stream, const char* baseName) const {
        for (std::size_t i = 0; i < m_Values.size(); ++i) {
            const T value = m_Values[i];
            EXPECT_TRUE((stream.Get().*m_Write)((baseName + std::to_string(i)).c_str(), &value));
        }
        stream.Reload();
        for (std::size_t i = 0; i < m_Values.size(); ++i) {
            T value{};
            EXPECT_TRUE((stream.Get().*m_Read)((baseName + std::to_string(i)).c_str(), &value));
            EXPECT_EQ(value, m_Values[i]) << baseName << i;
        }
        T untouched = m_Values[0];
        EXPECT_FALSE((stream.Get().*m_Read)("missing", &untouched));
        EXPECT_FALSE((stream.Get().*m_Read)(nullptr, &untouched));
        EXPECT_FALSE((stream.Get().*m_Read)((baseName + std::string("0")).c_str(), nullptr));
        EXPECT_FALSE((stream.Get().*m_Write)("null", nullptr));
        EXPECT_FALSE((stream.Get().*m_Write)(nullptr, &untouched));
        EXPECT_FALSE(stream.HasValue("null"));
        EXPECT_EQ(untouched, m_Values[0]);
    }
};

const SValues<bool> Bools{&IWriteDataStream::WriteBool, &IReadDataStream::ReadBool, {true, false}};
const SValues<int> Ints{
    &IWriteDataStream::WriteInt, &IReadDataStream::ReadInt, {7, 0, -1, INT_MIN, INT_MAX}};
const SValues<float> Floats{&IWriteDataStream::WriteFloat,
                            &IReadDataStream::ReadFloat,
                            {0.1f, -1e-45f, FLT_MAX, FLT_MIN, 16777217.0f}};
const SValues<double> Doubles{&IWriteDataStream::WriteDouble,
                              &IReadDataStream::ReadDouble,
                              {0.1, -4.9e-324, DBL_MAX, 1.0 / 3, 44100.5}};

const std::string Texts[] = {
    "",
    "plain",
    "  two  blanks  ",
    "   ",
    " \t\n",
    "line\nbreak\ttab\rreturn\x01",
    R"(<a b="c">'d' & "e"</a>)",
    "it's \"both\"",
    "]]> <!-- <![CDATA[ x ]]>",
    "&amp; &lt; & &#65; &#x &#x; &#xZZ; &#x41 &#x0; &#xFFFFFFF; &amp;#x41;x",
    "Grüße, 音",
    "not UTF-8 \xE9\xFF",
    "\xE9"};

} // namespace

TEST(DataStream, NumbersAreReadAsWritten) {
    ForEachKind([](CStream& stream) {
        EXPECT_FALSE(stream.Get().IsIncremental());
        Bools.Check(stream, "bool");
        Ints.Check(stream, "int");
        Floats.Check(stream, "float");
        Doubles.Check(stream, "double");
    });
}

TEST(DataStream, TextsAreReadAsWritten) {
    for (const std::string& text : Texts)
        ForEachKind([&](CStream& stream) {
            SCOPED_TRACE(text);
            EXPECT_TRUE(stream.Get().WriteString("text", text.c_str()));
            EXPECT_TRUE(stream.Get().WriteString("null", nullptr));
            EXPECT_EQ(ReadText(stream.Get(), "text"), text);
            stream.Reload();
            EXPECT_EQ(ReadText(stream.Get(), "text"), text);
            EXPECT_EQ(ReadText(stream.Get(), "null"), "");
            EXPECT_EQ(ReadText(stream.Get(), "missing"), "(missing)");
            EXPECT_FALSE(stream.Get().WriteString(nullptr, "x"));
        });
}

TEST(DataStream, DataIsReadAsWritten) {
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    ForEachKind([&](CStream& stream) {
        EXPECT_TRUE(stream.Get().WriteData("bytes", bytes.data(), 256));
        EXPECT_TRUE(stream.Get().WriteData("empty", nullptr, 0));
        EXPECT_FALSE(stream.Get().WriteData("negative", bytes.data(), -1));
        EXPECT_FALSE(stream.Get().WriteData("null", nullptr, 4));
        stream.Reload();
        for (const auto& [name, expected] : {std::pair{"bytes", bytes}, {"empty", std::string()}}) {
            char* data = nullptr;
            int size = -1;
            ASSERT_TRUE(stream.Get().ReadData(name, &data, &size));
            const std::unique_ptr<char[]> owner(data);
            EXPECT_EQ(std::string(data, static_cast<std::size_t>(size)), expected);
        }
        EXPECT_FALSE(stream.HasValue("negative"));
        EXPECT_FALSE(stream.HasValue("null"));
    });
}

TEST(DataStream, ObjectsNestAndGiveTheirOwnResult) {
    ForEachKind([](CStream& stream) {
        CFunctionObject outer;
        outer.m_Write = [](IWriteDataStream& output) {
            return output.WriteObject("inner", CIntObject(5)) && output.WriteString("s", "kept") &&
                   false;
        };
        EXPECT_FALSE(stream.Get().WriteObject("outer", outer));
        stream.Reload();
        CIntObject inner;
        outer.m_Read = [&](const IReadDataStream& input) {
            EXPECT_EQ(ReadText(input, "s"), "kept");
            return input.ReadObject("inner", inner);
        };
        EXPECT_TRUE(stream.Get().ReadObject("outer", outer));
        EXPECT_EQ(inner.m_Value, 5);
        EXPECT_FALSE(stream.Get().ReadObject("missing", inner));
        EXPECT_FALSE(stream.Get().ReadObject(nullptr, inner));
        EXPECT_FALSE(stream.Get().WriteObject(nullptr, inner));
        EXPECT_EQ(inner.m_Value, 5);
        outer.m_Read = [](const IReadDataStream&) { return false; };
        EXPECT_FALSE(stream.Get().ReadObject("outer", outer));
    });
}

TEST(DataStream, ASecondWriteReplacesTheFirst) {
    ForEachKind([](CStream& stream) {
        const int numbers[] = {1, 2};
        for (const int& number : numbers) {
            stream.Get().WriteInt("number", &number);
            stream.Get().WriteObject("object", CIntObject(number * 10));
        }
        stream.Get().WriteString("mixed", "text");
        stream.Get().WriteObject("mixed", CIntObject(3));
        stream.Reload();
        EXPECT_EQ(ReadInt(stream.Get(), "number"), 2);
        CIntObject object;
        EXPECT_TRUE(stream.Get().ReadObject("object", object));
        EXPECT_EQ(object.m_Value, 20);
        EXPECT_TRUE(stream.Get().ReadObject("mixed", object));
        for (const char* name : {"number", "object", "mixed"}) {
            EXPECT_TRUE(stream.HasValue(name));
            stream.RemoveValue(name);
            EXPECT_FALSE(stream.HasValue(name)) << name;
        }
        stream.RemoveValue("missing");
        stream.RemoveValue(nullptr);
        EXPECT_FALSE(stream.HasValue(nullptr));

        stream.Get().WriteInt("number", &numbers[0]);
        stream.Get().WriteObject("object", object);
        stream.Clear();
        EXPECT_FALSE(stream.HasValue("number"));
        EXPECT_FALSE(stream.HasValue("object"));
        EXPECT_TRUE(stream.Get().WriteInt("number", &numbers[0]));
        EXPECT_EQ(ReadInt(stream.Get(), "number"), 1);
    });
}

} // namespace Lathe::Serialization::Tests
