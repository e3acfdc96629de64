#include "serialization/MemDataObject.h"

#include "core/text/CharString.h"
#include "serialization/CollectionSerializers.h"
#include "serialization/ObjectProbe.h"
#include "serialization/StreamValue.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

namespace Lathe::Serialization {

namespace {

constexpr const char* CountKey = "ItemsCount";
constexpr const char* NameKey = "ItemName";
constexpr const char* ItemKey = "Item";

template <class T>
bool ReadNumber(const CDataBuffer* buffer, T* value, bool (CDataBuffer::*get)(T&) const) {
    return buffer && value && (buffer->*get)(*value);
}

} // namespace

CMemDataObject::CMemDataObject() : m_Values(Containers::NameMapBuckets) {}

const CDataBuffer* CMemDataObject::Find(const char* name) const {
    if (!name)
        return nullptr;
    const auto found = m_Values.find(std::string_view(name));
    return found == m_Values.end() ? nullptr : &found->second;
}

bool CMemDataObject::ReadBool(const char* name, bool* value) const {
    return ReadNumber(Find(name), value, &CDataBuffer::GetBool);
}

bool CMemDataObject::ReadInt(const char* name, int* value) const {
    return ReadNumber(Find(name), value, &CDataBuffer::GetInt);
}

bool CMemDataObject::ReadFloat(const char* name, float* value) const {
    return ReadNumber(Find(name), value, &CDataBuffer::GetFloat);
}

bool CMemDataObject::ReadDouble(const char* name, double* value) const {
    return ReadNumber(Find(name), value, &CDataBuffer::GetDouble);
}

bool CMemDataObject::ReadString(const char* name, char** value) const {
    const CDataBuffer* buffer = Find(name);
    const char* text = nullptr;
    if (!buffer || !value || !buffer->GetString(text))
        return false;
    *value = Core::NewText(text);
    return true;
}

bool CMemDataObject::ReadData(const char* name, char** data, int* size) const {
    const CDataBuffer* buffer = Find(name);
    const void* bytes = nullptr;
    int count = 0;
    if (!buffer || !data || !size || !buffer->GetData(bytes, count))
        return false;
    *data = Core::NewText(
        std::string_view(static_cast<const char*>(bytes), static_cast<std::size_t>(count)));
    *size = count;
    return true;
}

bool CMemDataObject::ReadObject(const char* name, IDeSerialize& object) const {
    const CDataBuffer* buffer = Find(name);
    const CMemDataObject* nested = nullptr;
    return buffer && buffer->GetObject(nested) && object.DeSerialize(*nested);
}

template <class T>
bool CMemDataObject::WriteNumber(const char* name, const T* value, void (CDataBuffer::*set)(T)) {
    if (!name || !value)
        return false;
    (GetBuffer(name).*set)(*value);
    return true;
}

bool CMemDataObject::WriteBool(const char* name, const bool* value) {
    return WriteNumber(name, value, &CDataBuffer::SetBool);
}

bool CMemDataObject::WriteInt(const char* name, const int* value) {
    return WriteNumber(name, value, &CDataBuffer::SetInt);
}

bool CMemDataObject::WriteFloat(const char* name, const float* value) {
    return WriteNumber(name, value, &CDataBuffer::SetFloat);
}

bool CMemDataObject::WriteDouble(const char* name, const double* value) {
    return WriteNumber(name, value, &CDataBuffer::SetDouble);
}

bool CMemDataObject::WriteString(const char* name, const char* value) {
    if (!name)
        return false;
    GetBuffer(name).SetString(value);
    return true;
}

bool CMemDataObject::WriteData(const char* name, const void* data, int size) {
    if (!name || size < 0 || (!data && size > 0))
        return false;
    GetBuffer(name).SetData(data, size);
    return true;
}

bool CMemDataObject::WriteObject(const char* name, const ISerialize& object) {
    return name && object.Serialize(GetBuffer(name).SetObject());
}

bool CMemDataObject::HasValue(const char* name) const {
    return Find(name) != nullptr;
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
