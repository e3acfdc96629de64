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

void WriteElements(CMemDataObject& output, int count, const std::vector<int>& indices) {
    WriteValue(output, "itemCount", count);
    for (const int i : indices)
        output.WriteObject(MakeElementName("item", i).c_str(), CIntObject(100 + i));
}

// What two elements of the value 7 become, after whether the read succeeds.
template <template <class> class TReader>
std::string Read(const IReadDataStream& input) {
    Vector vector(2);
    vector[0].m_Value = vector[1].m_Value = 7;
    std::string result = TReader<Vector>(vector, "item").DeSerialize(input) ? "reads" : "fails";
    for (int i = 0; i < vector.GetCount(); ++i)
        result += ' ' + std::to_string(vector[i].m_Value);
    return result;
}

} // namespace

TEST(Collections, SizeFollowsTheStreamOnlyWhereItIsDynamic) {
    constexpr int NoCount = -1000;
    const struct {
        int m_Count;
        std::vector<int> m_Present;
        const char* m_Fixed;
        const char* m_Dynamic;
        const char* m_Changes; // When dynamic, from changes only.
    } cases[] = {
        {2, {0, 1}, "reads 100 101", "reads 100 101", "reads 100 101"},
        {1, {0}, "fails 100 7", "reads 100", "reads 100"},
        {3, {0, 2}, "fails 100 7", "fails 100 7 102", "reads 100 7 102"},
        {0, {}, "fails 7 7", "reads", "reads"},
        {-5, {0}, "fails 100 7", "fails", "fails"},
        {NoCount, {1}, "fails 7 101", "fails", "reads 7 101"},
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
        EXPECT_EQ(Read<TVectorDeSerializer>(full), test.m_Fixed);
        EXPECT_EQ(Read<TDynamicVectorDeSerializer>(full), test.m_Dynamic);
        EXPECT_EQ(Read<TDynamicVectorDeSerializer>(changes), test.m_Changes);
    }
    Vector none;
    EXPECT_TRUE(TVectorDeSerializer<Vector>(none, "item").DeSerialize(CMemDataObject()));
}

TEST(Collections, ShareOneFormAndMakeRoomForNoMoreThanIsThere) {
    CMemDataObject stream;
    WriteElements(stream, 2'000'000'000, {0, 1, 1000, 1001, 2025});
    List list;
    TStdContainerDeSerializer<CIntObject, List> intoList(list, "item");
    EXPECT_FALSE(intoList.DeSerialize(stream));
    ASSERT_EQ(list.size(), 2026U);
    EXPECT_EQ(list.back()->m_Value, 2125);

    Vector vector;
    EXPECT_TRUE(TStdContainerSerializer<List>(list, "item").Serialize(stream));
    EXPECT_TRUE(TDynamicVectorDeSerializer<Vector>(vector, "item").DeSerialize(stream));
    CMemDataObject again;
    EXPECT_TRUE(TVectorSerializer<Vector>(vector, "item").Serialize(again) && again == stream);
}

TEST(NamedValues, AreReadAsWrittenAndByChanges) {
    ForEachStream([](auto& stream, const auto& reload) {
        CSerializableNamedAttributes saved, loaded;
        for (int i = 0; i < 300; ++i)
            for (const char* value : {"replaced", i % 2 ? "odd" : nullptr})
                saved.SetValue(("name " + std::to_string(i)).c_str(), value);
        saved.SetValue("", "x");
        saved.SetValue(nullptr, "x");
        EXPECT_TRUE(stream.WriteObject("a", saved));
        reload();
        loaded.SetValue("old", "gone");
        EXPECT_TRUE(stream.ReadObject("a", loaded) && loaded.DeSerialize(CChanges()));
        EXPECT_TRUE(loaded.GetCount() == 300 && !loaded.GetValue(nullptr));
        EXPECT_STREQ(loaded.GetValue("name 7"), "odd");
        EXPECT_STREQ(loaded.GetValue("name 8"), "");
        CMemDataObject first, second;
        EXPECT_TRUE(saved.Serialize(first) && loaded.Serialize(second));
        EXPECT_TRUE(first == second); // In one order, however the dictionary was filled.
        loaded.RemoveValue("name 7");
        EXPECT_EQ(loaded.GetValue("name 7"), nullptr);
        EXPECT_FALSE(loaded.DeSerialize(CMemDataObject()) || loaded.GetCount() > 0);

        TSerializableNamedValue<double> number;
        EXPECT_TRUE(stream.WriteObject("n", TSerializableNamedValue<double>("gain", 0.1)));
        EXPECT_TRUE(stream.ReadObject("n", number) && number.GetValue() == 0.1);
        EXPECT_STREQ(number.GetName(), "gain");
        EXPECT_FALSE(number.DeSerialize(CMemDataObject()) || number.GetValue() != 0);
    });
}

} // namespace Lathe::Serialization::Tests
