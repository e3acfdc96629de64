#include "serialization/MemDataObject.h"

#include "core/text/CharString.h"
#include "serialization/CollectionSerializers.h"

#include <memory>
#include <string_view>
#include <utility>

namespace Lathe::Serialization {

namespace {

constexpr const char* CountKey = "ItemsCount";
constexpr const char* NameKey = "ItemName";
constexpr const char* ItemKey = "Item";

} // namespace

CMemDataObject::CMemDataObject() : m_Values(Containers::NameMapBuckets) {}

const CDataBuffer* CMemDataObject::Find(const char* name) const {
    if (!name)
        return nullptr;
    const auto found = m_Values.find(std::string_view(name));
    return found == m_Values.end() ? nullptr : &found->second;
}

bool CMemDataObject::ReadBool(const char* name, bool* value) const {
    const CDataBuffer* buffer = Find(name);
    return buffer && value && buffer->GetBool(*value);
}

bool CMemDataObject::ReadInt(const char* name, int* value) const {
    const CDataBuffer* buffer = Find(name);
    return buffer && value && buffer->GetInt(*value);
}

bool CMemDataObject::ReadFloat(const char* name, float* value) const {
    const CDataBuffer* buffer = Find(name);
    return buffer && value && buffer->GetFloat(*value);
}

bool CMemDataObject::ReadDouble(const char* name, double* value) const {
    const CDataBuffer* buffer = Find(name);
    return buffer && value && buffer->GetDouble(*value);
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

bool CMemDataObject::WriteBool(const char* name, const bool* value) {
    if (!name || !value)
        return false;
    GetBuffer(name).SetBool(*value);
    return true;
}

bool CMemDataObject::WriteInt(const char* name, const int* value) {
    if (!name || !value)
        return false;
    GetBuffer(name).SetInt(*value);
    return true;
}

bool CMemDataObject::WriteFloat(const char* name, const float* value) {
    if (!name || !value)
        return false;
    GetBuffer(name).SetFloat(*value);
    return true;
}

bool CMemDataObject::WriteDouble(const char* name, const double* value) {
    if (!name || !value)
        return false;
    GetBuffer(name).SetDouble(*value);
    return true;
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

bool CMemDataObject::Serialize(IWriteDataStream& output) const {
    const int count = static_cast<int>(m_Values.size());
    bool result = output.WriteInt(CountKey, &count);
    int i = 0;
    for (const auto& [name, buffer] : m_Values) {
        result &= output.WriteString(MakeElementName(NameKey, i).c_str(), name.c_str());
        result &= output.WriteObject(MakeElementName(ItemKey, i).c_str(), buffer);
        ++i;
    }
    return result;
}

bool CMemDataObject::DeSerialize(const IReadDataStream& input) {
    if (!input.IsIncremental())
        Clear();
    int count = 0;
    bool result = input.ReadInt(CountKey, &count) || input.IsIncremental();
    for (int i = 0; i < count; ++i) {
        char* name = nullptr;
        if (!input.ReadString(MakeElementName(NameKey, i).c_str(), &name)) {
            if (input.IsIncremental())
                continue;
            return false;
        }
        const std::unique_ptr<char[]> owner(name);
        CDataBuffer buffer;
        if (input.ReadObject(MakeElementName(ItemKey, i).c_str(), buffer))
            m_Values[name] = std::move(buffer);
        else
            result = input.IsIncremental() && result;
    }
    return result;
}

} // namespace Lathe::Serialization
