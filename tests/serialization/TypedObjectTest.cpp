// Objects whose class the reader finds out: what is made, kept, nulled or refused, in full streams
// and in those that hold only changes.
#include "serialization/Streams.h"

#include "serialization/NamedValues.h"
#include "serialization/TypedObject.h"

#include <vector>

namespace Lathe::Serialization::Tests {

namespace {

class IShape : public CIntObject, public virtual ITypeSerializable {
public:
    static const char* InterfaceId() { return "{71C7A9B2-5C31-4f0e-9C53-2F6B6E2A1D01}"; }
};

constexpr const char* A = "{AAA}";
constexpr const char* B = "{BBB}";
constexpr const char* C = "{C}"; // Its key ends in "==", which is no XML name.

template <const char* const& Id>
class CShape : public IShape {
public:
    static const char* ClassId() { return Id; }
    const char* GetClassId() const override { return Id; }
};

const Runtime::CFactoryRegistration<CShape<A>, IShape> RegistrationA;
const Runtime::CFactoryRegistration<CShape<B>, IShape> RegistrationB;
const Runtime::CFactoryRegistration<CShape<C>, IShape> RegistrationC;

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

std::string Read(const IReadDataStream& input, ShapeOwner shape) {
    const bool reads = TRuntimeDeSerializer<IShape>(shape).DeSerialize(input);
    return (reads ? "reads " : "fails ") + Describe(shape);
}

struct SPrepare : Core::TIArgCommand<IShape&> {
    void Execute(IShape& shape) override { m_Seen += std::to_string(shape.m_Value); }
    std::string m_Seen;
};

} // namespace

TEST(TypedObject, IsReadAsWrittenWhateverWasThere) {
    for (const char* written : {A, B, C, "none"})
        for (const char* present : {A, B, C, "none"})
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
    const std::string a = "<r isNull='0' type='{AAA}'>", b = "<r isNull='0' type='{BBB}'>";
    const std::string ownA = "<Y29udGVudHtBQUF9 v='7'/>", brokenA = "<Y29udGVudHtBQUF9/>";
    const std::string plain = "<content v='8'/>";
    // What an object of class B and value 1 becomes, also if the document holds only changes.
    const std::vector<std::string> cases[] = {
        {a + ownA, "reads {AAA}7", "reads {AAA}7"},
        {a + plain, "reads {AAA}8", "reads {AAA}8"},
        {a + plain + ownA, "reads {AAA}7", "reads {AAA}7"},
        {a + brokenA, "fails null", "fails null"},
        {a, "fails null", "fails null"},
        {b + "<content/>", "fails {BBB}-1", "fails {BBB}-1"},
        {b, "fails {BBB}1", "reads {BBB}1"},
        {"<r isNull='1'>" + plain, "reads null", "reads null"},
        {"<r isNull='0' type='{unknown}'>" + plain, "fails {BBB}1", "fails {BBB}1"},
        {"<r isNull='0'>" + plain, "fails {BBB}1", "reads {BBB}8"},
        {"<r>", "fails {BBB}1", "reads {BBB}1"},
        {"<r type='{AAA}'>" + ownA, "fails {BBB}1", "reads {AAA}7"}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test[0]);
        CXmlDataObject full("Root");
        TChanges<CXmlDataObject> changes("Root");
        ASSERT_TRUE(Parse(full, test[0] + "</r>") && Parse(changes, test[0] + "</r>"));
        EXPECT_EQ(Read(full, MakeShape(B, 1)), test[1]);
        EXPECT_EQ(Read(changes, MakeShape(B, 1)), test[2]);
        CTypeDeSerializerTester tester;
        EXPECT_TRUE(tester.DeSerialize(changes));
        EXPECT_EQ(tester.HasIsNull(), changes.HasValue("isNull"));
        EXPECT_EQ(tester.HasType(), changes.HasValue("type"));
        EXPECT_EQ(tester.HoldsOnlyChanges(), test[0] == "<r>");
    }
    EXPECT_EQ(Read(CChanges(), ShapeOwner()), "fails null");
    EXPECT_EQ(MakeContentKey("{A}"), "Y29udGVudHtBfQ=="); // A part of the file format.
}

TEST(NamedPointer, HoldsTheNameBesideTheObject) {
    CIntObject value(4), loaded;
    TSerializableNamedPointer<CIntObject> plain("x", &loaded), null;
    TSerializableNamedTypedPointer<IShape> shape;
    CMemDataObject stream;
    EXPECT_FALSE(null.Serialize(stream) || null.DeSerialize(stream));
    EXPECT_TRUE(TSerializableNamedPointer<CIntObject>("plain", &value).Serialize(stream));
    EXPECT_TRUE(plain.DeSerialize(stream));
    EXPECT_EQ(plain.GetName() + std::to_string(loaded.m_Value), "plain4");
    const TSerializableNamedTypedPointer<IShape> saved("typed", MakeShape(B, 6).Detach(), true);
    EXPECT_TRUE(saved.Serialize(stream) && shape.DeSerialize(stream));
    EXPECT_EQ(shape.GetName() + Describe(shape.GetPointer()), "typed{BBB}6");
}

} // namespace Lathe::Serialization::Tests
