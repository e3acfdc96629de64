// Objects whose class the reader finds out: what is made, kept, nulled or refused. The counted form
// of collections: sizes, gaps, and counts that can't be true. Both in full streams and in those
// that hold only changes.
#include "serialization/Streams.h"

#include "serialization/CollectionSerializers.h"
#include "serialization/NamedValues.h"
#include "serialization/TypedObject.h"

#include "core/containers/Collection.h"

#include <list>
#include <vector>

namespace Lathe::Serialization::Tests {

namespace {

using namespace std::string_literals;

struct IShape : CIntObject, virtual ITypeSerializable {
    static const char* InterfaceId() { return "{71C7A9B2-5C31-4f0e-9C53-2F6B6E2A1D01}"; }
};

constexpr const char* A = "{AAA}";
constexpr const char* B = "{B}"; // Its key ends in "==", which is no XML name.

template <const char* const& Id>
struct CShape : IShape {
    static const char* ClassId() { return Id; }
    const char* GetClassId() const override { return Id; }
};

const Runtime::CFactoryRegistration<CShape<A>, IShape> RegistrationA;
const Runtime::CFactoryRegistration<CShape<B>, IShape> RegistrationB;

using ShapeOwner = Core::TOwnership<IShape>;

// Null for an unknown class.
ShapeOwner MakeShape(const char* classId, int value) {
    ShapeOwner shape(Runtime::CreateObject<IShape>(classId));
    if (shape)
        shape->m_Value = value;
    return shape;
}

std::string Describe(const ShapeOwner& shape) {
    return shape ? shape->GetClassId() + std::to_string(shape->m_Value) : "null";
}

// What an object of class B and value 1 becomes, after what the tester sees, and whether the read
// succeeds.
std::string ReadShape(const IReadDataStream& input) {
    ShapeOwner shape = MakeShape(B, 1);
    CTypeDeSerializerTester tester;
    EXPECT_TRUE(tester.DeSerialize(input));
    const bool reads = TRuntimeDeSerializer<IShape>(shape).DeSerialize(input);
    return std::string(tester.HasIsNull() ? "null? " : "") + (tester.HasType() ? "type " : "") +
           (tester.HoldsOnlyChanges() ? "content " : "") + (reads ? "reads " : "fails ") +
           Describe(shape);
}

struct SPrepare : Core::TIArgCommand<IShape&> {
    void Execute(IShape& shape) override { m_Seen += std::to_string(shape.m_Value); }
    std::string m_Seen;
};

using Vector = CoreUtilities::TDynamicCollection<CIntObject, CIntObject>;
using List = std::list<std::unique_ptr<CIntObject>>;

// What two elements of the value 7 become, after whether the read succeeds.
template <template <class> class TReader>
std::string ReadTwo(const IReadDataStream& input) {
    Vector vector(2);
    vector[0].m_Value = vector[1].m_Value = 7;
    std::string result = TReader<Vector>(vector, "item").DeSerialize(input) ? "reads" : "fails";
    for (int i = 0; i < vector.GetCount(); ++i)
        result += ' ' + std::to_string(vector[i].m_Value);
    return result;
}

} // namespace

TEST(TypedObject, IsReadAsWrittenWhateverWasThere) {
    for (const char* written : {A, B, "none"})
        for (const char* present : {A, B, "none"})
            ForEachStream([&](auto& stream, const auto& reload) {
                const ShapeOwner source = MakeShape(written, 5);
                EXPECT_TRUE(stream.WriteObject("shape", CTypeSerializer(source.Get())));
                reload();
                ShapeOwner shape = MakeShape(present, 1);
                SPrepare prepare;
                TRuntimeDeSerializer<IShape> reader(shape, &prepare);
                EXPECT_TRUE(stream.ReadObject("shape", reader));
                EXPECT_EQ(Describe(shape), Describe(source));
                // Only a new object is prepared, and before it reads itself.
                EXPECT_EQ(prepare.m_Seen, source && written != present ? "-1" : "");
            });
}

TEST(TypedObject, TakesEitherKeyAndRefusesWhatIsIncomplete) {
    const std::string a = "<r isNull='0' type='{AAA}'>", b = "<r isNull='0' type='{B}'>";
    const std::string ownA = "<Y29udGVudHtBQUF9 v='7'/></r>", brokenA = "<Y29udGVudHtBQUF9/></r>";
    const std::string plain = "<content v='8'/>", end = "</r>", all = "null? type ";
    const std::pair<std::string, std::string> cases[] = {
        {a + ownA, all + "reads {AAA}7, " + all + "reads {AAA}7"},
        {a + plain + end, all + "reads {AAA}8, " + all + "reads {AAA}8"},
        {a + plain + ownA, all + "reads {AAA}7, " + all + "reads {AAA}7"},
        {a + brokenA, all + "fails null, " + all + "fails null"},
        {a + end, all + "fails null, " + all + "fails null"},
        {b + "<content/></r>", all + "fails {B}-1, " + all + "fails {B}-1"},
        {b + end, all + "fails {B}1, " + all + "reads {B}1"},
        {"<r isNull='1'>" + plain + end, "null? reads null, null? reads null"},
        {"<r isNull='0' type='{C}'>" + plain + end, all + "fails {B}1, " + all + "fails {B}1"},
        {"<r isNull='0'>" + plain + end, "null? fails {B}1, null? reads {B}8"},
        {"<r/>", "fails {B}1, content reads {B}1"},
        {"<r type='{AAA}'>" + ownA, "type fails {B}1, type reads {AAA}7"}};
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(ReadBoth(text, ReadShape), expected) << text;
    ShapeOwner null;
    EXPECT_FALSE(TRuntimeDeSerializer<IShape>(null).DeSerialize(CChanges()) || null);
    EXPECT_EQ(MakeContentKey("{A}"), "Y29udGVudHtBfQ=="); // A part of the file format.
}

TEST(Collections, SizeFollowsTheStreamOnlyWhereItIsDynamic) {
    const std::string zero = "<item0 v='10'/>", one = "<item1 v='11'/>", two = "<item2 v='12'/>";
    // What becomes of a vector of fixed size, and of a dynamic one.
    const std::vector<std::string> cases[] = {
        {"<r itemCount='2'>" + zero + one, "reads 10 11, reads 10 11", "reads 10 11, reads 10 11"},
        {"<r itemCount='1'>" + zero, "fails 10 7, reads 10 7", "reads 10, reads 10"},
        {"<r itemCount='3'>" + zero + two, "fails 10 7, reads 10 7",
         "fails 10 7 12, reads 10 7 12"},
        {"<r itemCount='0'>", "fails 7 7, reads 7 7", "reads, reads"},
        {"<r itemCount='-5'>" + zero, "fails 10 7, reads 10 7", "fails, fails"},
        {"<r>" + one, "fails 7 11, reads 7 11", "fails, reads 7 11"}};
    for (const auto& test : cases) {
        EXPECT_EQ(ReadBoth(test[0] + "</r>", ReadTwo<TVectorDeSerializer>), test[1]) << test[0];
        EXPECT_EQ(ReadBoth(test[0] + "</r>", ReadTwo<TDynamicVectorDeSerializer>), test[2])
            << test[0];
    }
}

TEST(Collections, ShareOneFormAndMakeRoomForNoMoreThanIsThere) {
    CMemDataObject stream, again;
    WriteValue(stream, "itemCount", 2'000'000'000);
    for (const int i : {0, 1, 1000, 1001, 2025})
        stream.WriteObject(MakeElementName("item", i).c_str(), CIntObject(100 + i));
    List list;
    Vector vector;
    EXPECT_FALSE((TStdContainerDeSerializer<CIntObject, List>(list, "item").DeSerialize(stream)));
    ASSERT_EQ(list.size(), 2026U);
    EXPECT_EQ(list.back()->m_Value, 2125);
    EXPECT_TRUE(TStdContainerSerializer<List>(list, "item").Serialize(stream) &&
                TDynamicVectorDeSerializer<Vector>(vector, "item").DeSerialize(stream) &&
                TVectorSerializer<Vector>(vector, "item").Serialize(again) && again == stream);
}

TEST(NamedValues, AreReadAsWrittenAndByChanges) {
    ForEachStream([](auto& stream, const auto& reload) {
        CSerializableNamedAttributes saved, loaded;
        for (int i = 0; i < 600; ++i) // Each twice.
            saved.SetValue(("name " + std::to_string(i % 300)).c_str(), i % 2 ? "odd" : nullptr);
        saved.SetValue("", "x");
        saved.SetValue(nullptr, "x");
        EXPECT_TRUE(stream.WriteObject("a", saved));
        reload();
        loaded.SetValue("old", "gone");
        EXPECT_TRUE(stream.ReadObject("a", loaded) && loaded.DeSerialize(CChanges()));
        EXPECT_TRUE(loaded.GetCount() == 300 && !loaded.GetValue(nullptr));
        EXPECT_EQ(loaded.GetValue("name 7") + "/"s + loaded.GetValue("name 8"), "odd/");
        CMemDataObject first, second;
        EXPECT_TRUE(saved.Serialize(first) && loaded.Serialize(second));
        EXPECT_TRUE(first == second); // In one order, however the dictionary was filled.
        EXPECT_FALSE(loaded.DeSerialize(CMemDataObject()) || loaded.GetCount() > 0);
    });
}

TEST(NamedValues, HoldTheNameBesideAnyKindOfValue) {
    CIntObject object(4), loaded;
    TSerializableNamedValue<double> number;
    TSerializableNamedPointer<CIntObject> plain("", &loaded), null;
    TSerializableNamedTypedPointer<IShape> typed;
    CMemDataObject n, p, t;
    EXPECT_FALSE(number.DeSerialize(n) || null.Serialize(n) || null.DeSerialize(n));
    EXPECT_TRUE(TSerializableNamedValue<double>("n", 0.1).Serialize(n) && number.DeSerialize(n));
    EXPECT_TRUE(TSerializableNamedPointer("p", &object).Serialize(p) && plain.DeSerialize(p));
    EXPECT_TRUE(TSerializableNamedTypedPointer("t", MakeShape(B, 6).Detach(), true).Serialize(t) &&
                typed.DeSerialize(t));
    EXPECT_EQ(std::string(number.GetName()) + plain.GetName() + typed.GetName(), "npt");
    EXPECT_TRUE(number.GetValue() == 0.1 && loaded.m_Value == 4);
    EXPECT_EQ(Describe(typed.GetPointer()), "{B}6");
}

} // namespace Lathe::Serialization::Tests
