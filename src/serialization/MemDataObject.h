// Named values in memory: a temporary copy of a state, or, when empty, a source of defaults.
#pragma once

#include "core/containers/NameHash.h"
#include "serialization/BufferStream.h"
#include "serialization/DataBuffer.h"
#include "serialization/Serializable.h"

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Lathe::Serialization {

class CMemDataObject : public CBufferStream, public ISerializable {
public:
    CMemDataObject();

    bool IsIncremental() const override { return false; }
    bool ReadObject(const char* name, IDeSerialize& object) const override;
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
    const CDataBuffer* FindBuffer(std::string_view name) const override;
    void StoreBuffer(std::string_view name, CDataBuffer buffer) override;
    std::vector<std::string> GetSortedNames() const;

    std::unordered_map<std::string, CDataBuffer, Containers::CNameHash, std::equal_to<>> m_Values;
};

} // namespace Lathe::Serialization
