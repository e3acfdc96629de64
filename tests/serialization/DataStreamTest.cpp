// Every stream keeps the same promises: what is written is read, names have one value, and nothing
// that is missing or null does harm.
#include "serialization/Streams.h"

#include <cfloat>
#include <climits>
#include <vector>

namespace Lathe::Serialization::Tests {

namespace {

template <class T>
void CheckNumbers(bool (IWriteDataStream::*write)(const char*, const T*),
                  bool (IReadDataStream::*read)(const char*, T*) const,
                  const std::vector<T>& values) {
    ForEachStream([&](auto& stream, const auto& reload) {
        for (T value : values) {
            EXPECT_TRUE((stream.*write)("v", &value));
            EXPECT_FALSE((stream.*write)("null", nullptr));
            EXPECT_FALSE((stream.*write)(nullptr, &value));
            reload();
            T loaded{};
            EXPECT_TRUE((stream.*read)("v", &loaded));
            for (const char* missing : {"null", "missing", static_cast<const char*>(nullptr)})
                EXPECT_FALSE((stream.*read)(missing, &loaded));
            EXPECT_FALSE((stream.*read)("v", nullptr));
            EXPECT_EQ(loaded, value);
        }
    });
}

} // namespace

TEST(DataStream, NumbersAreReadAsWritten) {
    using W = IWriteDataStream;
    using R = IReadDataStream;
    CheckNumbers<bool>(&W::WriteBool, &R::ReadBool, {true, false});
    CheckNumbers<int>(&W::WriteInt, &R::ReadInt, {7, 0, -1, INT_MIN, INT_MAX});
    CheckNumbers<float>(&W::WriteFloat, &R::ReadFloat, {0.1f, -1e-45f, FLT_MAX, 16777217.0f});
    CheckNumbers<double>(&W::WriteDouble, &R::ReadDouble, {0.1, -4.9e-324, DBL_MAX, 1.0 / 3});
}

TEST(DataStream, TextsAndDataAreReadAsWritten) {
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    const std::string texts[] = {
        "",
        "  two  blanks  ",
        "   ",
        " \t\n",
        "line\nbreak\ttab\rreturn\x01",
        R"(<a b="c">'d' & "e"</a>)",
        "]]> <!-- <![CDATA[ x ]]>",
        "&amp; & &#65; &#x &#x; &#xZZ; &#x41 &#x0; &#xFFFFFFF; &amp;#x41;x",
        "Grüße, 音",
        "not UTF-8 \xE9\xFF",
        bytes.substr(1)};
    for (const std::string& text : texts)
        ForEachStream([&](auto& stream, const auto& reload) {
            SCOPED_TRACE(text);
            const int size = static_cast<int>(text.size());
            EXPECT_TRUE(stream.WriteString("text", text.c_str()));
            EXPECT_TRUE(stream.WriteString("null", nullptr));
            EXPECT_TRUE(stream.WriteData("data", size > 0 ? text.data() : nullptr, size));
            EXPECT_FALSE(stream.WriteString(nullptr, "x"));
            EXPECT_FALSE(stream.WriteData("bad", nullptr, 4) || stream.WriteData("bad", "x", -1));
            EXPECT_EQ(ReadText(stream, "text"), text);
            reload();
            EXPECT_EQ(ReadText(stream, "text"), text);
            EXPECT_EQ(ReadText(stream, "null"), "");
            EXPECT_EQ(ReadText(stream, "bad"), "(missing)");
            char* data = nullptr;
            int loadedSize = -1;
            ASSERT_TRUE(stream.ReadData("data", &data, &loadedSize));
            const std::unique_ptr<char[]> owner(data);
            EXPECT_EQ(std::string(data, static_cast<std::size_t>(loadedSize)), text);
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
        EXPECT_TRUE(stream.ReadObject("outer", loaded));
        EXPECT_TRUE(loaded == outer);
        CIntObject object(8);
        EXPECT_FALSE(stream.ReadObject("missing", object) || stream.ReadObject(nullptr, object));
        EXPECT_EQ(object.m_Value, 8);
        EXPECT_TRUE(stream.ReadObject("failed", object)); // What it had written stays.
        EXPECT_EQ(object.m_Value, 6);
        object.m_Result = false;
        EXPECT_FALSE(stream.ReadObject("failed", object));
    });
}

TEST(DataStream, NamesHaveOneValue) {
    ForEachStream([](auto& stream, const auto& reload) {
        EXPECT_FALSE(stream.IsIncremental());
        for (const int number : {1, 2}) {
            stream.WriteInt("number", &number);
            stream.WriteObject("object", CIntObject(number * 10));
            stream.WriteObject("mixed", CIntObject(number));
        }
        stream.WriteString("other", "text");
        stream.WriteObject("other", CIntObject(3));
        reload();
        EXPECT_EQ(ReadInt(stream, "number"), 2);
        CIntObject object;
        EXPECT_TRUE(stream.ReadObject("object", object));
        EXPECT_EQ(object.m_Value, 20);
        EXPECT_TRUE(stream.ReadObject("other", object));
        for (const char* name : {"number", "object", "other"}) {
            EXPECT_TRUE(stream.HasValue(name));
            stream.RemoveValue(name);
            EXPECT_FALSE(stream.HasValue(name)) << name;
        }
        stream.RemoveValue(nullptr);
        EXPECT_FALSE(stream.HasValue(nullptr));
        stream.Clear();
        EXPECT_FALSE(stream.HasValue("mixed"));
        EXPECT_TRUE(stream.WriteString("again", "x"));
        EXPECT_EQ(ReadText(stream, "again"), "x");
    });
}

} // namespace Lathe::Serialization::Tests
