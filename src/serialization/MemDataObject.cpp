#include "serialization/MemDataObject.h"

#include "serialization/CollectionSerializers.h"
#include "serialization/ObjectProbe.h"
#include "serialization/StreamValue.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace Lathe::Serialization {

namespace {

constexpr const char* CountKey = "ItemsCount";
constexpr const char* NameKey = "ItemName";
constexpr const char* ItemKey = "Item";

} // namespace

CMemDataObject::CMemDataObject() : m_Values(Containers::NameMapBuckets) {}

const CDataBuffer* CMemDataObject::FindBuffer(std::string_view name) const {
    const auto found = m_Values.find(name);
    return found == m_Values.end() ? nullptr : &found->second;
}

void CMemDataObject::StoreBuffer(std::string_view name, CDataBuffer buffer) {
    m_Values[std::string(name)] = std::move(buffer);
}

bool CMemDataObject::ReadObject(const char* name, IDeSerialize& object) const {
    const CDataBuffer* buffer = name ? FindBuffer(name) : nullptr;
    const CMemDataObject* nested = nullptr;
    return buffer && buffer->GetObject(nested) && object.DeSerialize(*nested);
}

bool CMemDataObject::WriteObject(const char* name, const ISerialize& object) {
    return name && object.Serialize(m_Values[name].SetObject());
}

bool CMemDataObject::HasValue(const char* name) const {
    return name && FindBuffer(name);
}

void CMemDataObject::RemoveValue(const char* name) {
    if (name)
        m_Values.erase(name);
}

void CMemDataObject::Clear() {
    m_Values.clear();
}

std::vector<std::string> CMemDataObject::GetSortedNames() const {
    std::vector<std::string> names;
    for (const auto& value : m_Values)
        names.push_back(value.first);
    std::sort(names.begin(), names.end());
    return names;
}

bool CMemDataObject::Serialize(IWriteDataStream& output) const {
    const std::vector<std::string> names = GetSortedNames();
    const int count = static_cast<int>(names.size());
    bool result = output.WriteInt(CountKey, &count);
    int i = 0;
    for (const std::string& name : names) {
        result &= output.WriteString(MakeElementName(NameKey, i).c_str(), name.c_str());
        result &= output.WriteObject(MakeElementName(ItemKey, i).c_str(), m_Values.at(name));
        ++i;
    }
    return result;
}

bool CMemDataObject::DeSerialize(const IReadDataStream& input) {
    const bool incremental = input.IsIncremental();
    const std::vector<std::string> names =
        incremental ? GetSortedNames() : std::vector<std::string>();
    CMemDataObject before;
    m_Values.swap(before.m_Values);
    const int presentCount = static_cast<int>(names.size());
    int count = presentCount;
    bool result = input.ReadInt(CountKey, &count) || incremental;
    for (int i = 0; i < count; ++i) {
        std::string name;
        CDataBuffer buffer;
        if (i < presentCount) {
            name = names[static_cast<std::size_t>(i)];
            buffer = std::move(before.m_Values[name]);
        }
        if (!ReadValue(input, MakeElementName(NameKey, i).c_str(), name) && i >= presentCount)
            return false;
        if (ReadObjectOrKeep(input, MakeElementName(ItemKey, i).c_str(), buffer))
            m_Values[name] = std::move(buffer);
        else
            result = false;
    }
    return result;
}

} // namespace Lathe::Serialization
