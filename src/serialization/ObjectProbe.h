// Objects that stand between a stream and another object, to learn whether the stream has turned to
// it at all: the result of WriteObject and ReadObject alone doesn't tell a missing name from an
// object that failed.
#pragma once

#include "serialization/DataStream.h"
#include "serialization/Serializable.h"

namespace Lathe::Serialization {

class CDeSerializeProbe : public IDeSerialize {
public:
    CDeSerializeProbe() = default;
    explicit CDeSerializeProbe(IDeSerialize& object) : m_Object(&object) {}

    bool DeSerialize(const IReadDataStream& input) override {
        m_Found = true;
        return !m_Object || m_Object->DeSerialize(input);
    }
    bool IsFound() const { return m_Found; }

private:
    IDeSerialize* m_Object = nullptr;
    bool m_Found = false;
};

class CSerializeProbe : public ISerialize {
public:
    explicit CSerializeProbe(const ISerialize& object) : m_Object(object) {}

    bool Serialize(IWriteDataStream& output) const override {
        m_Accepted = true;
        return m_Object.Serialize(output);
    }
    bool IsAccepted() const { return m_Accepted; }

private:
    const ISerialize& m_Object;
    mutable bool m_Accepted = false;
};

inline bool HasObject(const IReadDataStream& input, const char* name) {
    CDeSerializeProbe probe;
    input.ReadObject(name, probe);
    return probe.IsFound();
}

// As ReadObject, but a name that an incremental stream doesn't hold means no change, and succeeds.
inline bool ReadObjectOrKeep(const IReadDataStream& input, const char* name, IDeSerialize& object) {
    CDeSerializeProbe probe(object);
    const bool read = input.ReadObject(name, probe);
    return probe.IsFound() ? read : input.IsIncremental();
}

} // namespace Lathe::Serialization
