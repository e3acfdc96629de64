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
    enum { None = -1, Broken = -2 }; // A value that isn't there, and an object without its value.
    const struct {
        int m_IsNull;
        const char* m_Type;
        int m_Own; // What is under the two keys of the content.
        int m_Plain;
        const char* m_Full;    // What an object of class B and value 1 becomes in a full stream,
        const char* m_Changes; // and in one of changes.
    } cases[] = {{0, A, 7, None, "reads {AAA}7", "reads {AAA}7"},
                 {0, A, None, 8, "reads {AAA}8", "reads {AAA}8"},
                 {0, A, 7, 8, "reads {AAA}7", "reads {AAA}7"},
                 {0, A, Broken, None, "fails null", "fails null"},
                 {0, A, None, None, "fails null", "fails null"},
                 {0, B, Broken, None, "fails {BBB}-1", "fails {BBB}-1"},
                 {0, B, None, None, "fails {BBB}1", "reads {BBB}1"},
                 {1, nullptr, None, 7, "reads null", "reads null"},
                 {0, "{unknown}", 7, 7, "fails {BBB}1", "fails {BBB}1"},
                 {0, nullptr, None, 7, "fails {BBB}1", "reads {BBB}7"},
                 {None, nullptr, None, None, "fails {BBB}1", "reads {BBB}1"},
                 {None, A, 7, None, "fails {BBB}1", "reads {AAA}7"}};
    int row = 0;
    for (const auto& test : cases) {
        SCOPED_TRACE(row++);
        CMemDataObject full;
        CChanges changes;
        for (CMemDataObject* stream : {&full, static_cast<CMemDataObject*>(&changes)}) {
            if (test.m_IsNull != None)
                WriteValue(*stream, "isNull", test.m_IsNull == 1);
            if (test.m_Type)
                WriteValue(*stream, "type", test.m_Type);
            if (test.m_Own == Broken)
                stream->WriteObject(MakeContentKey(test.m_Type).c_str(), CMemDataObject());
            else if (test.m_Own != None)
                stream->WriteObject(MakeContentKey(test.m_Type).c_str(), CIntObject(test.m_Own));
            if (test.m_Plain != None)
                stream->WriteObject("content", CIntObject(test.m_Plain));
            ShapeOwner shape = MakeShape(B, 1);
            const bool reads = TRuntimeDeSerializer<IShape>(shape).DeSerialize(*stream);
            EXPECT_EQ((reads ? "reads " : "fails ") + Describe(shape),
                      stream == &full ? test.m_Full : test.m_Changes);
        }
        CTypeDeSerializerTester tester;
        EXPECT_TRUE(tester.DeSerialize(changes));
        EXPECT_EQ(tester.HasIsNull(), test.m_IsNull != None);
        EXPECT_EQ(tester.HasType(), test.m_Type != nullptr);
        EXPECT_EQ(tester.HoldsOnlyChanges(), test.m_IsNull == None && !test.m_Type);
    }
    ShapeOwner none;
    EXPECT_FALSE(TRuntimeDeSerializer<IShape>(none).DeSerialize(CChanges()));
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
