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
    const std::string zero = "<item0 v='10'/>", one = "<item1 v='11'/>", two = "<item2 v='12'/>";
    // The elements of a document, and what becomes of a vector of fixed size, of a dynamic one, and
    // of a dynamic one if the document holds only changes.
    const std::vector<std::string> cases[] = {
        {"<r itemCount='2'>" + zero + one, "reads 10 11", "reads 10 11", "reads 10 11"},
        {"<r itemCount='1'>" + zero, "fails 10 7", "reads 10", "reads 10"},
        {"<r itemCount='3'>" + zero + two, "fails 10 7", "fails 10 7 12", "reads 10 7 12"},
        {"<r itemCount='0'>", "fails 7 7", "reads", "reads"},
        {"<r itemCount='-5'>" + zero, "fails 10 7", "fails", "fails"},
        {"<r>" + one, "fails 7 11", "fails", "reads 7 11"}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test[0]);
        CXmlDataObject full("Root");
        TChanges<CXmlDataObject> changes("Root");
        ASSERT_TRUE(Parse(full, test[0] + "</r>") && Parse(changes, test[0] + "</r>"));
        EXPECT_EQ(Read<TVectorDeSerializer>(full), test[1]);
        EXPECT_EQ(Read<TDynamicVectorDeSerializer>(full), test[2]);
        EXPECT_EQ(Read<TDynamicVectorDeSerializer>(changes), test[3]);
    }
    Vector none;
    EXPECT_TRUE(TVectorDeSerializer<Vector>(none, "item").DeSerialize(CMemDataObject()));
}

TEST(Collections, ShareOneFormAndMakeRoomForNoMoreThanIsThere) {
    CMemDataObject stream, again;
    WriteValue(stream, "itemCount", 2'000'000'000);
    for (const int i : {0, 1, 1000, 1001, 2025})
        stream.WriteObject(MakeElementName("item", i).c_str(), CIntObject(100 + i));
    List list;
    TStdContainerDeSerializer<CIntObject, List> intoList(list, "item");
    EXPECT_FALSE(intoList.DeSerialize(stream));
    ASSERT_EQ(list.size(), 2026U);
    EXPECT_EQ(list.back()->m_Value, 2125);

    Vector vector;
    EXPECT_TRUE(TStdContainerSerializer<List>(list, "item").Serialize(stream));
    EXPECT_TRUE(TDynamicVectorDeSerializer<Vector>(vector, "item").DeSerialize(stream));
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
