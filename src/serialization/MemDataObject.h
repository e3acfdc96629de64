// Named values in memory: a temporary copy of a state, or, when empty, a source of defaults.
#pragma once

#include "core/containers/NameHash.h"
#include "serialization/DataBuffer.h"
#include "serialization/DataStream.h"
#include "serialization/Serializable.h"

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace Lathe::Serialization {

// Null names and null values other than a null text are refused; a null text reads as an empty one.
class CMemDataObject : public IReadWriteDataStream, public ISerializable {
public:
    CMemDataObject();

    bool IsIncremental() const override { return false; }
    bool ReadBool(const char* name, bool* value) const override;
    bool ReadInt(const char* name, int* value) const override;
    bool ReadFloat(const char* name, float* value) const override;
    bool ReadDouble(const char* name, double* value) const override;
    bool ReadString(const char* name, char** value) const override;
    bool ReadData(const char* name, char** data, int* size) const override;
    bool ReadObject(const char* name, IDeSerialize& object) const override;

    bool WriteBool(const char* name, const bool* value) override;
    bool WriteInt(const char* name, const int* value) override;
    bool WriteFloat(const char* name, const float* value) override;
    bool WriteDouble(const char* name, const double* value) override;
    bool WriteString(const char* name, const char* value) override;
    bool WriteData(const char* name, const void* data, int size) override;
    bool WriteObject(const char* name, const ISerialize& object) override;

    bool HasValue(const char* name) const;
    void RemoveValue(const char* name);
    void Clear();
    // The same names with equal values.
    bool operator==(const CMemDataObject& other) const { return m_Values == other.m_Values; }

    // "ItemsCount", then "ItemName" and "Item" with the index of each. Sorted by name, because the
    // order of the map changes when it is filled anew, and an incremental stream tells items apart
    // by their index alone.
    bool Serialize(IWriteDataStream& output) const override;
    // Replaces what is there, up to the first name that is missing, whatever the count says. An
    // incremental stream changes what it holds of each item.
    bool DeSerialize(const IReadDataStream& input) override;

private:
    const CDataBuffer* Find(const char* name) const;
    CDataBuffer& GetBuffer(const char* name) { return m_Values[name]; }
    std::vector<std::string> GetSortedNames() const;
    template <class T>
    bool WriteNumber(const char* name, const T* value, void (CDataBuffer::*set)(T));

    std::unordered_map<std::string, CDataBuffer, Containers::CNameHash, std::equal_to<>> m_Values;
};

} // namespace Lathe::Serialization
