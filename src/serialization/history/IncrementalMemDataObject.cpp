#include "serialization/history/IncrementalMemDataObject.h"

#include "core/containers/NameHash.h"
#include "serialization/Serializable.h"
#include "serialization/history/IncrementalDataBuffer.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>

namespace Lathe::Serialization {

struct CIncrementalMemDataObject::SEntry {
    SEntry(std::string_view name, CIncrementalDataBuffer buffer)
        : m_Hash(Containers::CNameHash()(name)), m_Name(name), m_Buffer(std::move(buffer)) {}

    const std::size_t m_Hash;
    const std::string m_Name;
    const CIncrementalDataBuffer m_Buffer;
    // Of the objects that hold the entry.
    int m_Count = 0;
};

CIncrementalMemDataObject::CIncrementalMemDataObject(const CIncrementalMemDataObject* previous)
    : m_Previous(previous), m_SameAsPrevious(previous != nullptr) {
    if (previous)
        m_Entries.reserve(previous->m_Entries.size());
}

CIncrementalMemDataObject::~CIncrementalMemDataObject() {
    Release(m_Entries);
}

void CIncrementalMemDataObject::Release(Entries& entries) {
    while (!entries.empty()) {
        SEntry* entry = entries.back();
        entries.pop_back();
        if (--entry->m_Count > 0)
            continue;
        // What an object alone holds joins the list, or its destructor would recurse.
        if (CIncrementalMemDataObject* object = entry->m_Buffer.GetObject()) {
            entries.insert(entries.end(), object->m_Entries.begin(), object->m_Entries.end());
            object->m_Entries.clear();
        }
        delete entry;
    }
}

CIncrementalMemDataObject::Entries::const_iterator
CIncrementalMemDataObject::FindPlace(std::string_view name) const {
    const std::size_t hash = Containers::CNameHash()(name);
    return std::partition_point(m_Entries.begin(), m_Entries.end(), [&](const SEntry* entry) {
        return entry->m_Hash < hash || (entry->m_Hash == hash && entry->m_Name < name);
    });
}

bool CIncrementalMemDataObject::IsAt(Entries::const_iterator place, std::string_view name) const {
    return place != m_Entries.end() && (*place)->m_Name == name;
}

CIncrementalMemDataObject::SEntry* CIncrementalMemDataObject::Find(std::string_view name) const {
    const auto place = FindPlace(name);
    return IsAt(place, name) ? *place : nullptr;
}

CIncrementalMemDataObject::SEntry*
CIncrementalMemDataObject::FindInPrevious(std::string_view name) const {
    return m_Previous ? m_Previous->Find(name) : nullptr;
}

const CDataBuffer* CIncrementalMemDataObject::FindBuffer(std::string_view name) const {
    const SEntry* entry = Find(name);
    return entry ? &entry->m_Buffer.GetValue() : nullptr;
}

void CIncrementalMemDataObject::Put(SEntry& entry) {
    ++entry.m_Count;
    const auto place = FindPlace(entry.m_Name);
    if (IsAt(place, entry.m_Name)) {
        Entries replaced{*place};
        m_Entries[static_cast<std::size_t>(place - m_Entries.begin())] = &entry;
        Release(replaced);
    } else
        m_Entries.insert(place, &entry);
}

void CIncrementalMemDataObject::PutNew(std::string_view name, CIncrementalDataBuffer buffer) {
    Put(*std::make_unique<SEntry>(name, std::move(buffer)).release());
}

void CIncrementalMemDataObject::StoreBuffer(std::string_view name, CDataBuffer buffer) {
    SEntry* present = FindInPrevious(name);
    if (present && present->m_Buffer.HasValue(buffer)) {
        Put(*present);
        return;
    }
    m_SameAsPrevious = false;
    PutNew(name, CIncrementalDataBuffer(std::move(buffer)));
}

bool CIncrementalMemDataObject::ReadObject(const char* name, IDeSerialize& object) const {
    const SEntry* entry = name ? Find(name) : nullptr;
    const CIncrementalMemDataObject* nested = entry ? entry->m_Buffer.GetObject() : nullptr;
    return nested && object.DeSerialize(*nested);
}

bool CIncrementalMemDataObject::WriteObject(const char* name, const ISerialize& object) {
    if (!name)
        return false;
    SEntry* present = FindInPrevious(name);
    auto nested = std::make_unique<CIncrementalMemDataObject>(
        present ? present->m_Buffer.GetObject() : nullptr);
    const bool result = object.Serialize(*nested);
    if (nested->m_SameAsPrevious) {
        Put(*present);
        return result;
    }
    m_SameAsPrevious = false;
    nested->ForgetPrevious();
    PutNew(name, CIncrementalDataBuffer(std::move(nested)));
    return result;
}

void CIncrementalMemDataObject::Clear() {
    Release(m_Entries);
    m_SameAsPrevious = m_Previous != nullptr;
    m_IsIncremental = false;
}

void CIncrementalMemDataObject::ForgetPrevious() {
    m_Previous = nullptr;
    m_SameAsPrevious = false;
}

bool CIncrementalMemDataObject::SetDifference(const CIncrementalMemDataObject& from,
                                              const CIncrementalMemDataObject& to) {
    if (to.m_Previous != &from && from.m_Previous != &to)
        return false;
    TakeDifference(from, to);
    return true;
}

void CIncrementalMemDataObject::SetCopy(const CIncrementalMemDataObject& source) {
    TakeDifference(CIncrementalMemDataObject(), source);
}

void CIncrementalMemDataObject::TakeDifference(const CIncrementalMemDataObject& from,
                                               const CIncrementalMemDataObject& to) {
    bool complete = true;
    for (SEntry* entry : to.m_Entries) {
        const SEntry* before = from.Find(entry->m_Name);
        // A state that was rewritten may have a value of its own that equals its neighbour's.
        if (before && (before == entry || before->m_Buffer.HasValue(entry->m_Buffer.GetValue())))
            complete = false;
        else if (before && before->m_Buffer.GetObject() && entry->m_Buffer.GetObject())
            complete &= PutObjectDifference(*before, *entry);
        else
            Put(*entry);
    }
    m_IsIncremental = !complete;
}

// Whether nothing of the object is left out.
bool CIncrementalMemDataObject::PutObjectDifference(const SEntry& from, const SEntry& to) {
    auto nested = std::make_unique<CIncrementalMemDataObject>();
    nested->TakeDifference(*from.m_Buffer.GetObject(), *to.m_Buffer.GetObject());
    const bool complete = !nested->m_IsIncremental;
    PutNew(to.m_Name, CIncrementalDataBuffer(std::move(nested)));
    return complete;
}

} // namespace Lathe::Serialization
