// Objects whose class the reader finds out: what is made, kept, nulled or refused, in full streams
// and in those that hold only changes.
#include "Streams.h"

#include "serialization/NamedValues.h"
#include "serialization/TypedObject.h"

namespace Lathe::Serialization::Tests {

namespace {

class IShape : public virtual ITypeSerializable {
public:
    static const char* InterfaceId() { return "{71C7A9B2-5C31-4f0e-9C53-2F6B6E2A1D01}"; }
    int m_Size = 0;
    int m_Prepared = 0;

    bool Serialize(IWriteDataStream& output) const override {
        return output.WriteInt("size", &m_Size);
    }
    bool DeSerialize(const IReadDataStream& input) override {
        return input.ReadInt("size", &m_Size) || input.IsIncremental();
    }
};

template <char Kind>
class CShape : public IShape {
public:
    static const char* ClassId() {
        // The key of the last one ends in "==", which is no XML name.
        return Kind == 'A'   ? "{0A0A9E2B-8F5A-4b0c-8B83-3F0E3D5B7A01}"
               : Kind == 'B' ? "{0A0A9E2B-8F5A-4b0c-8B83-3F0E3D5B7A02}"
                             : "{shape}{C}";
    }
    const char* GetClassId() const override { return ClassId(); }
};

const Runtime::CFactoryRegistration<CShape<'A'>, IShape> RegistrationA;
const Runtime::CFactoryRegistration<CShape<'B'>, IShape> RegistrationB;
const Runtime::CFactoryRegistration<CShape<'C'>, IShape> RegistrationC;

using ShapeOwner = Core::TOwnership<IShape>;

ShapeOwner MakeShape(char kind, int size) {
    ShapeOwner shape;
    if (kind == 'A')
        shape.Set(new CShape<'A'>);
    else if (kind == 'B')
        shape.Set(new CShape<'B'>);
    else if (kind == 'C')
        shape.Set(new CShape<'C'>);
    if (shape)
        shape->m_Size = size;
    return shape;
}

// Class letter and size, or "null".
std::string Describe(const ShapeOwner& shape) {
    if (!shape)
        return "null";
    for (const char kind : {'A', 'B', 'C'})
        if (std::strcmp(MakeShape(kind, 0)->GetClassId(), shape->GetClassId()) == 0)
            return kind + std::to_string(shape->m_Size);
    return "?";
}

bool Read(const IReadDataStream& input, ShapeOwner& shape) {
    return TRuntimeDeSerializer<IShape>(shape).DeSerialize(input);
}

struct SSize : ISerialize {
    explicit SSize(int size) : m_Size(size) {}
    bool Serialize(IWriteDataStream& output) const override {
        return output.WriteInt("size", &m_Size);
    }
    int m_Size;
};

} // namespace

TEST(TypedObject, IsReadAsWrittenWhateverWasThere) {
    for (const char written : {'A', 'B', 'C', '-'})
        for (const char present : {'A', 'B', 'C', '-'})
            ForEachKind([&](CStream& stream) {
                const ShapeOwner source = MakeShape(written, 5);
                EXPECT_TRUE(stream.Get().WriteObject("shape", CTypeSerializer(source.Get())));
                stream.Reload();
                ShapeOwner shape = MakeShape(present, 1);
                const IShape* before = shape.Get();
                TRuntimeDeSerializer<IShape> reader(shape);
                EXPECT_TRUE(stream.Get().ReadObject("shape", reader));
                EXPECT_EQ(Describe(shape), Describe(source));
                if (written == present) {
                    EXPECT_EQ(shape.Get(), before);
                }
            });
}

TEST(TypedObject, PreparesNewObjectsBeforeTheyReadThemselves) {
    struct SPrepare : Core::TIArgCommand<IShape&> {
        void Execute(IShape& shape) override { shape.m_Prepared = shape.m_Size + 1; }
    } prepare;
    CMemDataObject stream;
    CTypeSerializer(MakeShape('A', 5).Get()).Serialize(stream);
    ShapeOwner shape;
    TRuntimeDeSerializer<IShape> reader(shape, &prepare);
    EXPECT_TRUE(reader.DeSerialize(stream));
    EXPECT_EQ(shape->m_Prepared, 1);
    shape->m_Prepared = 0;
    EXPECT_TRUE(reader.DeSerialize(stream));
    EXPECT_EQ(shape->m_Prepared, 0);
}

// Each row writes some of the keys; "own" and "plain" are the sizes under the two content keys.
TEST(TypedObject, TakesEitherKeyAndRefusesWhatIsIncomplete) {
    const char* const a = CShape<'A'>::ClassId();
    const char* const c = CShape<'C'>::ClassId();
    const struct {
        int m_IsNull; // -1: not there.
        const char* m_Type;
        int m_Own;
        int m_Plain;
        bool m_Reads;
        const char* m_Full; // What a B1 becomes in a full stream,
        bool m_ReadsChanges;
        const char* m_Changes; // and in one of changes.
    } cases[] = {{0, a, 7, -1, true, "A7", true, "A7"},
                 {0, a, -1, 8, true, "A8", true, "A8"},
                 {0, a, 7, 8, true, "A7", true, "A7"},
                 {0, c, 7, -1, true, "C7", true, "C7"},
                 {0, c, -1, 8, true, "C8", true, "C8"},
                 {1, a, 7, -1, true, "null", true, "null"},
                 {1, nullptr, -1, -1, true, "null", true, "null"},
                 {0, a, -1, -1, false, "null", false, "null"},
                 {0, "{unknown}", 7, 7, false, "B1", false, "B1"},
                 {0, "", 7, 7, false, "B1", false, "B1"},
                 {0, nullptr, -1, 7, false, "B1", true, "B7"},
                 {-1, nullptr, -1, 7, false, "B1", true, "B7"},
                 {-1, nullptr, -1, -1, false, "B1", true, "B1"},
                 {-1, a, 7, -1, false, "B1", true, "A7"}};
    int row = 0;
    for (const auto& test : cases) {
        SCOPED_TRACE(row++);
        CMemDataObject full;
        CChanges changes;
        for (CMemDataObject* stream : {&full, static_cast<CMemDataObject*>(&changes)}) {
            const bool isNull = test.m_IsNull == 1;
            if (test.m_IsNull >= 0)
                stream->WriteBool("isNull", &isNull);
            if (test.m_Type)
                stream->WriteString("type", test.m_Type);
            if (test.m_Own >= 0)
                stream->WriteObject(MakeContentKey(test.m_Type).c_str(), SSize(test.m_Own));
            if (test.m_Plain >= 0)
                stream->WriteObject("content", SSize(test.m_Plain));
        }
        ShapeOwner shape = MakeShape('B', 1);
        EXPECT_EQ(Read(full, shape), test.m_Reads);
        EXPECT_EQ(Describe(shape), test.m_Full);
        shape = MakeShape('B', 1);
        EXPECT_EQ(Read(changes, shape), test.m_ReadsChanges);
        EXPECT_EQ(Describe(shape), test.m_Changes);

        CTypeDeSerializerTester tester;
        EXPECT_TRUE(tester.DeSerialize(changes));
        EXPECT_EQ(tester.HasIsNull(), test.m_IsNull >= 0);
        EXPECT_EQ(tester.HasType(), test.m_Type != nullptr);
        EXPECT_EQ(tester.HoldsOnlyChanges(), test.m_IsNull < 0 && !test.m_Type);
    }
    CChanges empty;
    ShapeOwner none;
    EXPECT_FALSE(Read(empty, none));
    // The saved form of the key is part of the file format.
    EXPECT_EQ(MakeContentKey("{A}"), "Y29udGVudHtBfQ==");
}

TEST(TypedObject, FailedReadOfAPresentObjectKeepsIt) {
    CMemDataObject stream;
    const bool isNull = false;
    stream.WriteBool("isNull", &isNull);
    stream.WriteString("type", CShape<'A'>::ClassId());
    stream.WriteObject("content", CIntObject(3)); // Without a size.
    ShapeOwner shape = MakeShape('A', 1);
    EXPECT_FALSE(Read(stream, shape));
    EXPECT_EQ(Describe(shape), "A1");
    shape.Reset();
    EXPECT_FALSE(Read(stream, shape));
    EXPECT_EQ(Describe(shape), "null");
}

TEST(NamedPointer, HoldsTheNameBesideTheObject) {
    ForEachKind([](CStream& stream) {
        CIntObject value(4), loaded;
        const TSerializableNamedPointer<CIntObject> saved("plain", &value);
        TSerializableNamedPointer<CIntObject> plain("x", &loaded), null;
        EXPECT_TRUE(stream.Get().WriteObject("p", saved));
        EXPECT_FALSE(stream.Get().WriteObject("n", null));
        const TSerializableNamedTypedPointer<IShape> savedShape("typed", MakeShape('B', 6).Detach(),
                                                                true);
        TSerializableNamedTypedPointer<IShape> shape;
        EXPECT_TRUE(stream.Get().WriteObject("t", savedShape));
        stream.Reload();
        EXPECT_TRUE(stream.Get().ReadObject("p", plain));
        EXPECT_STREQ(plain.GetName(), "plain");
        EXPECT_EQ(loaded.m_Value, 4);
        EXPECT_FALSE(stream.Get().ReadObject("p", null));
        EXPECT_TRUE(stream.Get().ReadObject("t", shape));
        EXPECT_STREQ(shape.GetName(), "typed");
        EXPECT_EQ(Describe(shape.GetPointer()), "B6");
    });
}

} // namespace Lathe::Serialization::Tests
