// Objects of one "name" and one "value", and dictionaries of texts as lists of them.
#pragma once

#include "core/containers/NamedAttributes.h"
#include "core/ownership/Ownership.h"
#include "core/text/CharString.h"
#include "serialization/ObjectProbe.h"
#include "serialization/Serializable.h"
#include "serialization/StreamValue.h"
#include "serialization/TypedObject.h"

namespace Lathe::Serialization {

class CSerializableName {
public:
    const char* GetName() const { return m_Name.GetText(); }
    void SetName(const char* name) { m_Name = name; }

protected:
    static constexpr const char* ValueKey = "value";

    bool WriteName(IWriteDataStream& output) const { return WriteValue(output, "name", m_Name); }
    bool ReadName(const IReadDataStream& input) {
        return ReadValueOrDefault(input, "name", m_Name, Core::CCharString());
    }

private:
    Core::CCharString m_Name;
};

// T is a plain number, a bool or CCharString.
template <class T>
class TSerializableNamedValue : public CSerializableName, public ISerializable {
public:
    TSerializableNamedValue() = default;
    TSerializableNamedValue(const char* name, const T& value) : m_Value(value) { SetName(name); }

    const T& GetValue() const { return m_Value; }
    void SetValue(const T& value) { m_Value = value; }

    bool Serialize(IWriteDataStream& output) const override {
        const bool result = WriteName(output);
        return WriteValue(output, ValueKey, m_Value) && result;
    }
    bool DeSerialize(const IReadDataStream& input) override {
        const bool result = ReadName(input);
        return ReadValueOrDefault(input, ValueKey, m_Value, T()) && result;
    }

private:
    T m_Value = T();
};

// A serializable object of a known class, which isn't owned. With a null pointer only the name is
// written and read, and the result is false.
template <class T>
class TSerializableNamedPointer : public CSerializableName, public ISerializable {
public:
    TSerializableNamedPointer() = default;
    TSerializableNamedPointer(const char* name, T* pointer) : m_Pointer(pointer) { SetName(name); }

    T* GetPointer() const { return m_Pointer; }
    void SetPointer(T* pointer) { m_Pointer = pointer; }

    bool Serialize(IWriteDataStream& output) const override {
        const bool result = WriteName(output);
        return m_Pointer && output.WriteObject(ValueKey, *m_Pointer) && result;
    }
    bool DeSerialize(const IReadDataStream& input) override {
        const bool result = ReadName(input);
        return m_Pointer && ReadObjectOrKeep(input, ValueKey, *m_Pointer) && result;
    }

private:
    T* m_Pointer = nullptr;
};

// An object whose class the reader finds out, or null. T is the interface that the factory makes.
template <class T>
class TSerializableNamedTypedPointer : public CSerializableName, public ISerializable {
public:
    TSerializableNamedTypedPointer() = default;
    TSerializableNamedTypedPointer(const char* name, T* pointer, bool owned)
        : m_Pointer(pointer, owned) {
        SetName(name);
    }

    const Core::TOwnership<T>& GetPointer() const { return m_Pointer; }
    Core::TOwnership<T>& GetPointer() { return m_Pointer; }

    bool Serialize(IWriteDataStream& output) const override {
        const bool result = WriteName(output);
        return output.WriteObject(ValueKey, CTypeSerializer(m_Pointer.Get())) && result;
    }
    bool DeSerialize(const IReadDataStream& input) override {
        const bool result = ReadName(input);
        TRuntimeDeSerializer<T> value(m_Pointer);
        return ReadObjectOrKeep(input, ValueKey, value) && result;
    }

private:
    Core::TOwnership<T> m_Pointer;
};

// Writes the object "namedValues", which holds the list "item" of named texts.
class CNamedAttributesSerializer : public ISerialize {
public:
    explicit CNamedAttributesSerializer(const Containers::IConstNamedAttributes& attributes)
        : m_Attributes(attributes) {}
    bool Serialize(IWriteDataStream& output) const override;

private:
    const Containers::IConstNamedAttributes& m_Attributes;
};

// Replaces all attributes by those of the stream, or none if it has no list; an incremental stream
// changes only what it holds.
class CNamedAttributesDeSerializer : public IDeSerialize {
public:
    explicit CNamedAttributesDeSerializer(Containers::INamedAttributes& attributes)
        : m_Attributes(attributes) {}
    bool DeSerialize(const IReadDataStream& input) override;

private:
    Containers::INamedAttributes& m_Attributes;
};

class CSerializableNamedAttributes : public Containers::CNamedAttributes, public ISerializable {
public:
    bool Serialize(IWriteDataStream& output) const override {
        return CNamedAttributesSerializer(*this).Serialize(output);
    }
    bool DeSerialize(const IReadDataStream& input) override {
        return CNamedAttributesDeSerializer(*this).DeSerialize(input);
    }
};

} // namespace Lathe::Serialization
