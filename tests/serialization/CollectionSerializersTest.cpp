// The counted form of collections: sizes, gaps, changes only, and counts that can't be true.
#include "Streams.h"

#include "serialization/CollectionSerializers.h"
#include "serialization/NamedValues.h"

#include "core/containers/Collection.h"

#include <list>
#include <vector>

namespace Lathe::Serialization::Tests {

namespace {

using Vector = CoreUtilities::TDynamicCollection<CIntObject, CIntObject>;

Vector MakeVector(const std::vector<int>& values) {
    Vector vector(static_cast<int>(values.size()));
    for (int i = 0; i < vector.GetCount(); ++i)
        vector[i].m_Value = values[static_cast<std::size_t>(i)];
    return vector;
}

std::vector<int> GetValues(const Vector& vector) {
    std::vector<int> values;
    for (int i = 0; i < vector.GetCount(); ++i)
        values.push_back(vector[i].m_Value);
    return values;
}

void WriteElements(CMemDataObject& output, const std::vector<int>& indices) {
    for (const int i : indices)
        output.WriteObject(MakeElementName("item", i).c_str(), CIntObject(100 + i));
}

} // namespace

TEST(Collections, VectorsAndListsShareOneForm) {
    const std::vector<int> values = {3, 1, 4, 1, 5};
    const Vector vector = MakeVector(values);
    ForEachKind([&](CStream& stream) {
        EXPECT_TRUE(stream.Get().WriteObject("v", TVectorSerializer<Vector>(vector, "item")));
        stream.Reload();
        Vector grown;
        TDynamicVectorDeSerializer<Vector> intoVector(grown, "item");
        EXPECT_TRUE(stream.Get().ReadObject("v", intoVector));
        EXPECT_EQ(GetValues(grown), values);

        std::list<std::unique_ptr<CIntObject>> list;
        TStdContainerDeSerializer<CIntObject, decltype(list)> intoList(list, "item");
        EXPECT_TRUE(stream.Get().ReadObject("v", intoList));
        EXPECT_TRUE(
            stream.Get().WriteObject("l", TStdContainerSerializer<decltype(list)>(list, "item")));
        list.resize(1);
        std::list<CIntObject> shorter(9);
        TStdContainerDeSerializer<CIntObject, decltype(shorter)> intoShorter(shorter, "item");
        EXPECT_TRUE(stream.Get().ReadObject("l", intoShorter));
        std::vector<int> read;
        for (const CIntObject& element : shorter)
            read.push_back(element.m_Value);
        EXPECT_EQ(read, values);
    });
}

TEST(Collections, SizeFollowsTheStreamOnlyWhereItIsDynamic) {
    const struct {
        int m_Count; // -1000: not there.
        std::vector<int> m_Present;
        bool m_FixedReads;
        std::vector<int> m_Fixed; // What the vector {7, 8} becomes,
        bool m_DynamicReads;
        std::vector<int> m_Dynamic; // when it may be resized,
        bool m_ChangesRead;
        std::vector<int> m_Changes; // and by changes only.
    } cases[] = {
        {2, {0, 1}, true, {100, 101}, true, {100, 101}, true, {100, 101}},
        {1, {0}, false, {100, 8}, true, {100}, true, {100}},
        {3, {0, 1, 2}, true, {100, 101}, true, {100, 101, 102}, true, {100, 101, 102}},
        {3, {0, 2}, false, {100, 8}, false, {100, 8, 102}, true, {100, 8, 102}},
        {0, {}, false, {7, 8}, true, {}, true, {}},
        {-5, {0}, false, {100, 8}, false, {}, false, {}},
        {-1000, {1}, false, {7, 101}, false, {}, true, {7, 101}},
    };
    int row = 0;
    for (const auto& test : cases) {
        SCOPED_TRACE(row++);
        CMemDataObject full;
        CChanges changes;
        for (CMemDataObject* stream : {&full, static_cast<CMemDataObject*>(&changes)}) {
            if (test.m_Count != -1000)
                stream->WriteInt("itemCount", &test.m_Count);
            WriteElements(*stream, test.m_Present);
        }
        Vector vector = MakeVector({7, 8});
        EXPECT_EQ(TVectorDeSerializer<Vector>(vector, "item").DeSerialize(full), test.m_FixedReads);
        EXPECT_EQ(GetValues(vector), test.m_Fixed);
        vector = MakeVector({7, 8});
        EXPECT_EQ(TDynamicVectorDeSerializer<Vector>(vector, "item").DeSerialize(full),
                  test.m_DynamicReads);
        EXPECT_EQ(GetValues(vector), test.m_Dynamic);
        vector = MakeVector({7, 8});
        EXPECT_EQ(TDynamicVectorDeSerializer<Vector>(vector, "item").DeSerialize(changes),
                  test.m_ChangesRead);
        EXPECT_EQ(GetValues(vector), test.m_Changes);
    }
    Vector none;
    EXPECT_TRUE(TVectorDeSerializer<Vector>(none, "item").DeSerialize(CMemDataObject()));
}

TEST(Collections, MakeRoomForNoMoreThanIsThere) {
    CMemDataObject stream;
    const int claimed = 2'000'000'000;
    stream.WriteInt("itemCount", &claimed);
    WriteElements(stream, {0, 1, 1000, 1001, 2025});
    Vector vector;
    EXPECT_FALSE(TDynamicVectorDeSerializer<Vector>(vector, "item").DeSerialize(stream));
    EXPECT_EQ(vector.GetCount(), 2026);
    EXPECT_EQ(vector[2025].m_Value, 2125);
    std::list<CIntObject> list;
    EXPECT_FALSE((TStdContainerDeSerializer<CIntObject, std::list<CIntObject>>(list, "item")
                      .DeSerialize(stream)));
    EXPECT_EQ(list.size(), 2026U);
}

TEST(NamedValues, AreReadAsWritten) {
    ForEachKind([](CStream& stream) {
        using Text = TSerializableNamedValue<Core::CCharString>;
        EXPECT_TRUE(stream.Get().WriteObject("d", TSerializableNamedValue<double>("gain", 0.1)));
        EXPECT_TRUE(stream.Get().WriteObject("t", Text("<label>", " a & b ")));
        stream.Reload();
        TSerializableNamedValue<double> number;
        Text text;
        EXPECT_TRUE(stream.Get().ReadObject("d", number));
        EXPECT_TRUE(stream.Get().ReadObject("t", text));
        EXPECT_STREQ(number.GetName(), "gain");
        EXPECT_EQ(number.GetValue(), 0.1);
        EXPECT_STREQ(text.GetName(), "<label>");
        EXPECT_TRUE(text.GetValue() == " a & b ");
        EXPECT_FALSE(number.DeSerialize(CMemDataObject()));
        EXPECT_STREQ(number.GetName(), "");
        EXPECT_EQ(number.GetValue(), 0.0);
    });
}

TEST(NamedAttributes, ReplaceIgnoreAndIterate) {
    Containers::CNamedAttributes attributes;
    attributes.SetValue(nullptr, "x");
    attributes.SetValue("", "x");
    EXPECT_EQ(attributes.GetCount(), 0);
    attributes.SetValue("a", "1");
    attributes.SetValue("a", attributes.GetValue("a"));
    attributes.SetValue("b", nullptr);
    attributes.SetValue("c", "3");
    attributes.RemoveValue("c");
    attributes.RemoveValue(nullptr);
    EXPECT_EQ(attributes.GetCount(), 2);
    EXPECT_STREQ(attributes.GetValue("b"), "");
    EXPECT_EQ(attributes.GetValue("c"), nullptr);
    EXPECT_EQ(attributes.GetValue(nullptr), nullptr);
    int seen = 0;
    const auto values = attributes.GetValues();
    for (const auto names = attributes.GetNames(); !names->IsDone(); names->Next()) {
        EXPECT_STREQ(values->GetValue(), attributes.GetValue(names->GetValue()));
        values->Next();
        ++seen;
    }
    EXPECT_TRUE(values->IsDone());
    EXPECT_EQ(seen, 2);
    attributes.Clear();
    EXPECT_TRUE(attributes.GetNames()->IsDone());
}

TEST(NamedAttributes, AreReadAsWrittenAndByChanges) {
    ForEachKind([](CStream& stream) {
        CSerializableNamedAttributes saved, loaded;
        for (int i = 0; i < 300; ++i)
            saved.SetValue(("name " + std::to_string(i)).c_str(), std::to_string(i).c_str());
        EXPECT_TRUE(stream.Get().WriteObject("a", saved));
        stream.Reload();
        loaded.SetValue("old", "gone");
        EXPECT_TRUE(stream.Get().ReadObject("a", loaded));
        EXPECT_EQ(loaded.GetCount(), 300);
        for (const auto names = saved.GetNames(); !names->IsDone(); names->Next())
            EXPECT_STREQ(loaded.GetValue(names->GetValue()), saved.GetValue(names->GetValue()));
        EXPECT_TRUE(loaded.DeSerialize(CChanges()));
        EXPECT_EQ(loaded.GetCount(), 300);
        EXPECT_FALSE(loaded.DeSerialize(CMemDataObject()));
        EXPECT_EQ(loaded.GetCount(), 0);
    });
}

} // namespace Lathe::Serialization::Tests
