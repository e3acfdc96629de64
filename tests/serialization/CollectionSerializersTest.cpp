// The counted form of collections: sizes, gaps, changes only, and counts that can't be true.
#include "serialization/Streams.h"

#include "serialization/CollectionSerializers.h"
#include "serialization/NamedValues.h"

#include "core/containers/Collection.h"

#include <list>
#include <vector>

namespace Lathe::Serialization::Tests {

namespace {

using Vector = CoreUtilities::TDynamicCollection<CIntObject, CIntObject>;
using List = std::list<std::unique_ptr<CIntObject>>;

std::vector<int> GetValues(const Vector& vector) {
    std::vector<int> values;
    for (int i = 0; i < vector.GetCount(); ++i)
        values.push_back(vector[i].m_Value);
    return values;
}

void WriteElements(CMemDataObject& output, int count, const std::vector<int>& indices) {
    output.WriteInt("itemCount", &count);
    for (const int i : indices)
        output.WriteObject(("item" + std::to_string(i)).c_str(), CIntObject(100 + i));
}

} // namespace

TEST(Collections, VectorsAndListsShareOneForm) {
    ForEachStream([](auto& stream, const auto& reload) {
        Vector vector(20), fromList(3);
        for (int i = 0; i < vector.GetCount(); ++i)
            vector[i].m_Value = i * i;
        List list;
        TStdContainerDeSerializer<CIntObject, List> intoList(list, "item");
        TDynamicVectorDeSerializer<Vector> intoVector(fromList, "item");
        EXPECT_TRUE(stream.WriteObject("v", TVectorSerializer<Vector>(vector, "item")));
        reload();
        EXPECT_TRUE(stream.ReadObject("v", intoList));
        EXPECT_TRUE(stream.WriteObject("l", TStdContainerSerializer<List>(list, "item")));
        EXPECT_TRUE(stream.ReadObject("l", intoVector));
        EXPECT_EQ(GetValues(fromList), GetValues(vector));
    });
}

TEST(Collections, SizeFollowsTheStreamOnlyWhereItIsDynamic) {
    constexpr int NoCount = -1000;
    struct SResult {
        bool m_Reads;
        std::vector<int> m_Values;
    };
    const struct {
        int m_Count;
        std::vector<int> m_Present;
        SResult m_Fixed;   // What two elements of the value 7 become,
        SResult m_Dynamic; // when they may grow and shrink,
        SResult m_Changes; // and so from changes only.
    } cases[] = {
        {2, {0, 1}, {true, {100, 101}}, {true, {100, 101}}, {true, {100, 101}}},
        {1, {0}, {false, {100, 7}}, {true, {100}}, {true, {100}}},
        {3, {0, 2}, {false, {100, 7}}, {false, {100, 7, 102}}, {true, {100, 7, 102}}},
        {0, {}, {false, {7, 7}}, {true, {}}, {true, {}}},
        {-5, {0}, {false, {100, 7}}, {false, {}}, {false, {}}},
        {NoCount, {1}, {false, {7, 101}}, {false, {}}, {true, {7, 101}}},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.m_Count);
        CMemDataObject full;
        CChanges changes;
        for (CMemDataObject* stream : {&full, static_cast<CMemDataObject*>(&changes)}) {
            WriteElements(*stream, test.m_Count, test.m_Present);
            if (test.m_Count == NoCount)
                stream->RemoveValue("itemCount");
        }
        Vector fixed(2);
        fixed[0].m_Value = fixed[1].m_Value = 7;
        Vector dynamic = fixed, changed = fixed;
        TDynamicVectorDeSerializer<Vector> intoDynamic(dynamic, "item"),
            intoChanged(changed, "item");
        EXPECT_EQ(TVectorDeSerializer<Vector>(fixed, "item").DeSerialize(full),
                  test.m_Fixed.m_Reads);
        EXPECT_EQ(intoDynamic.DeSerialize(full), test.m_Dynamic.m_Reads);
        EXPECT_EQ(intoChanged.DeSerialize(changes), test.m_Changes.m_Reads);
        EXPECT_EQ(GetValues(fixed), test.m_Fixed.m_Values);
        EXPECT_EQ(GetValues(dynamic), test.m_Dynamic.m_Values);
        EXPECT_EQ(GetValues(changed), test.m_Changes.m_Values);
    }
    Vector none;
    EXPECT_TRUE(TVectorDeSerializer<Vector>(none, "item").DeSerialize(CMemDataObject()));
}

TEST(Collections, MakeRoomForNoMoreThanIsThere) {
    CMemDataObject stream;
    WriteElements(stream, 2'000'000'000, {0, 1, 1000, 1001, 2025});
    Vector vector;
    List list;
    TStdContainerDeSerializer<CIntObject, List> intoList(list, "item");
    EXPECT_FALSE(TDynamicVectorDeSerializer<Vector>(vector, "item").DeSerialize(stream));
    EXPECT_FALSE(intoList.DeSerialize(stream));
    EXPECT_EQ(list.size(), 2026U);
    ASSERT_EQ(vector.GetCount(), 2026);
    EXPECT_EQ(vector[2025].m_Value, 2125);
}

TEST(NamedValues, AreReadAsWritten) {
    CMemDataObject stream;
    TSerializableNamedValue<double> number;
    EXPECT_TRUE(TSerializableNamedValue<double>("gain", 0.1).Serialize(stream));
    EXPECT_TRUE(number.DeSerialize(stream));
    EXPECT_STREQ(number.GetName(), "gain");
    EXPECT_EQ(number.GetValue(), 0.1);
    EXPECT_FALSE(number.DeSerialize(CMemDataObject()));
    EXPECT_EQ(number.GetValue(), 0.0);
}

TEST(NamedAttributes, ReplaceAndIgnore) {
    Containers::CNamedAttributes attributes;
    attributes.SetValue(nullptr, "x");
    attributes.SetValue("", "x");
    EXPECT_EQ(attributes.GetCount(), 0);
    attributes.SetValue("a", "1");
    attributes.SetValue("a", "2");
    attributes.SetValue("b", nullptr);
    attributes.RemoveValue(nullptr);
    EXPECT_EQ(attributes.GetCount(), 2);
    EXPECT_STREQ(attributes.GetValue("a"), "2");
    EXPECT_STREQ(attributes.GetValue("b"), "");
    EXPECT_EQ(attributes.GetValue(nullptr), nullptr);
    attributes.RemoveValue("a");
    EXPECT_EQ(attributes.GetValue("a"), nullptr);
}

TEST(NamedAttributes, AreReadAsWrittenAndByChanges) {
    ForEachStream([](auto& stream, const auto& reload) {
        CSerializableNamedAttributes saved, loaded;
        for (int i = 0; i < 300; ++i)
            saved.SetValue(("name " + std::to_string(i)).c_str(), std::to_string(i).c_str());
        EXPECT_TRUE(stream.WriteObject("a", saved));
        reload();
        loaded.SetValue("old", "gone");
        EXPECT_TRUE(stream.ReadObject("a", loaded));
        EXPECT_EQ(loaded.GetCount(), 300);
        const auto values = saved.GetValues();
        for (const auto names = saved.GetNames(); !names->IsDone(); names->Next(), values->Next())
            EXPECT_STREQ(loaded.GetValue(names->GetValue()), values->GetValue());
        EXPECT_TRUE(values->IsDone());

        CMemDataObject first, second;
        EXPECT_TRUE(saved.Serialize(first) && loaded.Serialize(second));
        EXPECT_TRUE(first == second); // In one order, however the dictionary was filled.
        EXPECT_TRUE(loaded.DeSerialize(CChanges()));
        EXPECT_EQ(loaded.GetCount(), 300);
        EXPECT_FALSE(loaded.DeSerialize(CMemDataObject()));
        EXPECT_EQ(loaded.GetCount(), 0);
    });
}

} // namespace Lathe::Serialization::Tests
