// Objects whose class the reader finds out: what is made, kept, nulled or refused, in full streams
// and in those that hold only changes.
#include "serialization/Streams.h"

#include "serialization/NamedValues.h"
#include "serialization/TypedObject.h"

namespace Lathe::Serialization::Tests {

namespace {

class IShape : public CIntObject, public virtual ITypeSerializable {
public:
    static const char* InterfaceId() { return "{71C7A9B2-5C31-4f0e-9C53-2F6B6E2A1D01}"; }
};

constexpr const char* A = "{0A0A9E2B-8F5A-4b0c-8B83-3F0E3D5B7A01}";
constexpr const char* B = "{0A0A9E2B-8F5A-4b0c-8B83-3F0E3D5B7A02}";
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

bool IsShape(const ShapeOwner& shape, const char* classId, int value) {
    if (!shape)
        return !classId;
    return classId && std::string(classId) == shape->GetClassId() && shape->m_Value == value;
}

bool Read(const IReadDataStream& input, ShapeOwner& shape) {
    return TRuntimeDeSerializer<IShape>(shape).DeSerialize(input);
}

} // namespace

TEST(TypedObject, IsReadAsWrittenWhateverWasThere) {
    for (const char* written : {A, B, C, "none"})
        for (const char* present : {A, B, C, "none"})
            ForEachStream([&](auto& stream, const auto& reload) {
                const ShapeOwner source = MakeShape(written, 5);
                EXPECT_TRUE(stream.WriteObject("shape", CTypeSerializer(source.Get())));
                reload();
                ShapeOwner shape = MakeShape(present, 1);
                const IShape* before = shape.Get();
                TRuntimeDeSerializer<IShape> reader(shape);
                EXPECT_TRUE(stream.ReadObject("shape", reader));
                EXPECT_TRUE(IsShape(shape, source ? written : nullptr, 5));
                EXPECT_TRUE(written != present || shape.Get() == before);
            });
}

TEST(TypedObject, PreparesNewObjectsBeforeTheyReadThemselves) {
    struct SPrepare : Core::TIArgCommand<IShape&> {
        void Execute(IShape& shape) override { m_Seen.push_back(shape.m_Value); }
        std::vector<int> m_Seen;
    } prepare;
    CMemDataObject stream;
    CTypeSerializer(MakeShape(A, 5).Get()).Serialize(stream);
    ShapeOwner shape;
    TRuntimeDeSerializer<IShape> reader(shape, &prepare);
    EXPECT_TRUE(reader.DeSerialize(stream) && reader.DeSerialize(stream));
    EXPECT_EQ(prepare.m_Seen, std::vector<int>{-1}); // Not the second time: the object was kept.
}

TEST(TypedObject, TakesEitherKeyAndRefusesWhatIsIncomplete) {
    struct SResult {
        bool m_Reads;
        const char* m_Class;
        int m_Value;
    };
    const SResult null = {true, nullptr, 0}, failedNew = {false, nullptr, 0};
    const SResult refused = {false, B, 1};
    const struct {
        int m_IsNull; // -1: not there; so for the values under the two keys of the content.
        const char* m_Type;
        int m_Own;
        int m_Plain;
        SResult m_Full;    // What an object of class B and value 1 becomes in a full stream,
        SResult m_Changes; // and in one of changes.
    } cases[] = {{0, A, 7, -1, {true, A, 7}, {true, A, 7}},
                 {0, A, -1, 8, {true, A, 8}, {true, A, 8}},
                 {0, A, 7, 8, {true, A, 7}, {true, A, 7}},
                 {0, C, 7, -1, {true, C, 7}, {true, C, 7}},
                 {0, B, -1, -1, refused, {true, B, 1}},
                 {0, A, -1, -1, failedNew, failedNew},
                 {1, nullptr, -1, 7, null, null},
                 {0, "{unknown}", 7, 7, refused, refused},
                 {0, nullptr, -1, 7, refused, {true, B, 7}},
                 {-1, nullptr, -1, -1, refused, {true, B, 1}},
                 {-1, A, 7, -1, refused, {true, A, 7}}};
    int row = 0;
    for (const auto& test : cases) {
        SCOPED_TRACE(row++);
        CMemDataObject full;
        CChanges changes;
        for (CMemDataObject* stream : {&full, static_cast<CMemDataObject*>(&changes)}) {
            if (test.m_IsNull >= 0)
                WriteValue(*stream, "isNull", test.m_IsNull == 1);
            if (test.m_Type)
                WriteValue(*stream, "type", test.m_Type);
            if (test.m_Own >= 0)
                stream->WriteObject(MakeContentKey(test.m_Type).c_str(), CIntObject(test.m_Own));
            if (test.m_Plain >= 0)
                stream->WriteObject("content", CIntObject(test.m_Plain));
            const SResult& expected = stream == &full ? test.m_Full : test.m_Changes;
            ShapeOwner shape = MakeShape(B, 1);
            EXPECT_EQ(Read(*stream, shape), expected.m_Reads);
            EXPECT_TRUE(IsShape(shape, expected.m_Class, expected.m_Value));
        }
        CTypeDeSerializerTester tester;
        EXPECT_TRUE(tester.DeSerialize(changes));
        EXPECT_EQ(tester.HasIsNull(), test.m_IsNull >= 0);
        EXPECT_EQ(tester.HasType(), test.m_Type != nullptr);
        EXPECT_EQ(tester.HoldsOnlyChanges(), test.m_IsNull < 0 && !test.m_Type);
    }
    ShapeOwner none;
    EXPECT_FALSE(Read(CChanges(), none));
    EXPECT_EQ(MakeContentKey("{A}"), "Y29udGVudHtBfQ=="); // A part of the file format.
}

TEST(TypedObject, FailedReadDropsOnlyANewObject) {
    CMemDataObject stream;
    CTypeSerializer(MakeShape(A, 5).Get()).Serialize(stream);
    stream.WriteObject(MakeContentKey(A).c_str(), CMemDataObject()); // Without a value.
    ShapeOwner shape = MakeShape(A, 1);
    EXPECT_FALSE(Read(stream, shape));
    EXPECT_TRUE(IsShape(shape, A, -1));
    shape.Reset();
    EXPECT_FALSE(Read(stream, shape));
    EXPECT_FALSE(shape);
}

TEST(NamedPointer, HoldsTheNameBesideTheObject) {
    CIntObject value(4), loaded;
    TSerializableNamedPointer<CIntObject> plain("x", &loaded), null;
    TSerializableNamedTypedPointer<IShape> shape;
    CMemDataObject stream;
    EXPECT_FALSE(null.Serialize(stream));
    EXPECT_TRUE(TSerializableNamedPointer<CIntObject>("plain", &value).Serialize(stream));
    EXPECT_TRUE(plain.DeSerialize(stream));
    EXPECT_FALSE(null.DeSerialize(stream));
    EXPECT_STREQ(plain.GetName(), "plain");
    EXPECT_EQ(loaded.m_Value, 4);
    const TSerializableNamedTypedPointer<IShape> saved("typed", MakeShape(B, 6).Detach(), true);
    EXPECT_TRUE(saved.Serialize(stream) && shape.DeSerialize(stream));
    EXPECT_STREQ(shape.GetName(), "typed");
    EXPECT_TRUE(IsShape(shape.GetPointer(), B, 6));
}

} // namespace Lathe::Serialization::Tests
