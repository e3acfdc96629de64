// A recorded state: a tree of named values that shares all that is equal with the state before.
//
// Recording: make one with the state before, let the target serialize itself into it, and keep it
// unless IsSameAsPrevious. Restoring: make one without, SetDifference of the present state and of
// the wanted one, and let the target read it.
#pragma once

#include "serialization/BufferStream.h"

#include <string_view>
#include <vector>

namespace Lathe::Serialization {

class CIncrementalDataBuffer;

// For one thread together with all objects that it shares values with.
class CIncrementalMemDataObject : public CBufferStream {
public:
    // The previous object, which may be null and isn't owned, lives until ForgetPrevious or as long
    // as this one.
    explicit CIncrementalMemDataObject(const CIncrementalMemDataObject* previous = nullptr);
    // Shared values live on. Takes objects nested to any depth without recursion.
    ~CIncrementalMemDataObject() override;
    CIncrementalMemDataObject(const CIncrementalMemDataObject&) = delete;
    CIncrementalMemDataObject& operator=(const CIncrementalMemDataObject&) = delete;

    // False but for a difference that left something out.
    bool IsIncremental() const override { return m_IsIncremental; }
    bool ReadObject(const char* name, IDeSerialize& object) const override;
    // An object that serializes itself to what the previous one holds is shared whole.
    bool WriteObject(const char* name, const ISerialize& object) override;

    int GetCount() const { return static_cast<int>(m_Entries.size()); }
    // Back to the state after the construction.
    void Clear();

    // Whether there is a previous object and nothing that differs from it has been written. A value
    // that is only missing is no difference.
    bool IsSameAsPrevious() const { return m_SameAsPrevious; }
    void ForgetPrevious();

    // The two fill an empty object with shared values. The difference is what the state `to` holds
    // and the state `from` holds otherwise or not at all; if that is everything, it is no
    // incremental stream. False, and nothing is changed, unless one of the states is the other's
    // previous one.
    bool SetDifference(const CIncrementalMemDataObject& from, const CIncrementalMemDataObject& to);
    void SetCopy(const CIncrementalMemDataObject& source);

private:
    struct SEntry;
    // In the order of the hashes of their names: buckets one behind the other, without the table
    // that would lead to them. The table would take more room than all else in a step.
    using Entries = std::vector<SEntry*>;

    const CDataBuffer* FindBuffer(std::string_view name) const override;
    void StoreBuffer(std::string_view name, CDataBuffer buffer) override;

    // Where the name stands, or would stand.
    Entries::const_iterator FindPlace(std::string_view name) const;
    bool IsAt(Entries::const_iterator place, std::string_view name) const;
    SEntry* Find(std::string_view name) const;
    SEntry* FindInPrevious(std::string_view name) const;
    // In place of an entry of that name.
    void Put(SEntry& entry);
    void PutNew(std::string_view name, CIncrementalDataBuffer buffer);
    void TakeDifference(const CIncrementalMemDataObject& from, const CIncrementalMemDataObject& to);
    bool PutObjectDifference(const SEntry& from, const SEntry& to);
    // Leaves the vector empty.
    static void Release(Entries& entries);

    // Of a nested object only while it is written: entries are shared by states that outlive those
    // before them, so that it would dangle.
    const CIncrementalMemDataObject* m_Previous;
    Entries m_Entries;
    bool m_SameAsPrevious;
    bool m_IsIncremental = false;
};

} // namespace Lathe::Serialization
