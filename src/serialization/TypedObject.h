// Objects whose class the reader has to find out: "isNull", then "type" and the object itself,
// under a key of its own for each class, so that no class ever reads what another one wrote.
//
// A stream that can't hold that key as a name refuses it before it turns to the object (the key is
// Base64, which XML doesn't always take as the name of an element). The object then goes under the
// plain key "content". A reader takes either.
#pragma once

#include "core/events/Command.h"
#include "core/ownership/Ownership.h"
#include "core/runtime/ObjectsFactory.h"
#include "serialization/DataStream.h"
#include "serialization/ObjectProbe.h"
#include "serialization/Serializable.h"

#include <string>

namespace Lathe::Serialization {

inline constexpr const char* PlainContentKey = "content";

// The Base64 form of "content" and the class id.
std::string MakeContentKey(const char* classId);

// Reads the object under the key of the class, or else under the plain one. An incremental stream
// may have neither, and succeeds, unless `mustBeThere`.
bool ReadTypedContent(const IReadDataStream& input, const char* classId, IDeSerialize& object,
                      bool mustBeThere);

class CTypeSerializer : public ISerialize {
public:
    // Not owned; may be null.
    explicit CTypeSerializer(const ITypeSerializable* object) : m_Object(object) {}
    bool Serialize(IWriteDataStream& output) const override;

private:
    const ITypeSerializable* m_Object;
};

// What one read of "isNull" and "type" finds.
struct STypeHeader {
    // False: the read as a whole fails, and nothing else is read.
    bool m_Valid = false;
    bool m_IsNull = false;
    // Empty when an incremental stream doesn't tell the class.
    bool m_HasType = false;
    std::string m_Type;
};
STypeHeader ReadTypeHeader(const IReadDataStream& input);

// Reads into the present object if it is of the class that the stream names, else into a new one
// from the factory of T's interface id. The present object is read into even when it isn't owned:
// the caller clones what it shares with others.
template <class T>
class TRuntimeDeSerializer : public IDeSerialize {
public:
    using PostCreateCommand = Core::TIArgCommand<T&>;

    // The command, not owned, gets each new object before that object reads itself.
    explicit TRuntimeDeSerializer(Core::TOwnership<T>& object,
                                  PostCreateCommand* postCreate = nullptr)
        : m_Object(object), m_PostCreate(postCreate) {}

    // An object that can't be made leaves the present one; a new object that fails to read itself
    // leaves null.
    bool DeSerialize(const IReadDataStream& input) override {
        const STypeHeader header = ReadTypeHeader(input);
        if (!header.m_Valid)
            return false;
        if (header.m_IsNull) {
            m_Object.Reset();
            return true;
        }
        if (!header.m_HasType)
            return m_Object && ReadPresent(input);
        if (m_Object && header.m_Type == m_Object->GetClassId())
            return ReadPresent(input);
        T* created = Runtime::CreateObject<T>(header.m_Type.c_str());
        if (!created)
            return false;
        m_Object.Set(created);
        if (m_PostCreate)
            m_PostCreate->Execute(*created);
        if (ReadTypedContent(input, header.m_Type.c_str(), *created, true))
            return true;
        m_Object.Reset();
        return false;
    }

private:
    bool ReadPresent(const IReadDataStream& input) {
        return ReadTypedContent(input, m_Object->GetClassId(), *m_Object, false);
    }

    Core::TOwnership<T>& m_Object;
    PostCreateCommand* m_PostCreate;
};

// Tells a container whether an element of an incremental stream holds only changes of the value
// that it has, so that it passes that value to TRuntimeDeSerializer.
class CTypeDeSerializerTester : public IDeSerialize {
public:
    bool DeSerialize(const IReadDataStream& input) override;

    bool HasIsNull() const { return m_HasIsNull; }
    bool HasType() const { return m_HasType; }
    bool HoldsOnlyChanges() const { return m_Incremental && !m_HasIsNull && !m_HasType; }

private:
    bool m_Incremental = false;
    bool m_HasIsNull = false;
    bool m_HasType = false;
};

} // namespace Lathe::Serialization
