#include "serialization/DataBuffer.h"

#include "serialization/DataStream.h"
#include "serialization/MemDataObject.h"
#include "serialization/ObjectProbe.h"

#include <cstddef>
#include <cstring>
#include <utility>

namespace Lathe::Serialization {

namespace {

constexpr const char* TypeKey = "type";
constexpr const char* ValueKey = "value";

bool IsStoredType(int type) {
    return type >= static_cast<int>(EDataType::Empty) && type <= static_cast<int>(EDataType::Data);
}

int GetStringSize(const char* text) {
    return text ? static_cast<int>(std::strlen(text)) + 1 : 0;
}

} // namespace

CDataBuffer::CDataBuffer() = default;
CDataBuffer::~CDataBuffer() = default;
CDataBuffer::CDataBuffer(CDataBuffer&&) noexcept = default;
CDataBuffer& CDataBuffer::operator=(CDataBuffer&&) noexcept = default;

void CDataBuffer::Clear() {
    SetBytes(EDataType::Empty, nullptr, 0);
}

void CDataBuffer::SetBytes(EDataType type, const void* data, int size) {
    // The source may be a part of the present value, so that is freed last.
    std::unique_ptr<char[]> bytes;
    if (size > 0) {
        bytes.reset(new char[static_cast<std::size_t>(size)]);
        std::memcpy(bytes.get(), data, static_cast<std::size_t>(size));
    }
    m_Type = type;
    m_Size = size;
    m_Data = std::move(bytes);
    m_Object.reset();
}

bool CDataBuffer::HasBytes(EDataType type, const void* data, int size) const {
    return m_Type == type && m_Size == size &&
           (size == 0 || std::memcmp(m_Data.get(), data, static_cast<std::size_t>(size)) == 0);
}

template <class T>
bool CDataBuffer::GetScalar(EDataType type, T& value) const {
    if (m_Type != type || m_Size != static_cast<int>(sizeof(T)))
        return false;
    std::memcpy(&value, m_Data.get(), sizeof(T));
    return true;
}

bool CDataBuffer::operator==(const CDataBuffer& other) const {
    if (m_Type == EDataType::Object && other.m_Type == EDataType::Object)
        return *m_Object == *other.m_Object;
    return HasBytes(other.m_Type, other.m_Data.get(), other.m_Size);
}

bool CDataBuffer::GetBool(bool& value) const {
    // Through a byte: one from a file may be neither 0 nor 1, which no bool can hold.
    static_assert(sizeof(bool) == sizeof(char));
    char byte = 0;
    if (!GetScalar(EDataType::Bool, byte))
        return false;
    value = byte != 0;
    return true;
}

bool CDataBuffer::GetInt(int& value) const {
    return GetScalar(EDataType::Int, value);
}

bool CDataBuffer::GetFloat(float& value) const {
    return GetScalar(EDataType::Float, value);
}

bool CDataBuffer::GetDouble(double& value) const {
    return GetScalar(EDataType::Double, value);
}

bool CDataBuffer::GetString(const char*& value) const {
    if (m_Type != EDataType::String)
        return false;
    // Bytes from a file may lack the terminating zero.
    if (m_Size > 0 && m_Data[static_cast<std::size_t>(m_Size) - 1] != '\0')
        return false;
    value = m_Data.get();
    return true;
}

bool CDataBuffer::GetData(const void*& data, int& size) const {
    if (m_Type != EDataType::Data)
        return false;
    data = m_Data.get();
    size = m_Size;
    return true;
}

bool CDataBuffer::GetObject(const CMemDataObject*& object) const {
    if (m_Type != EDataType::Object)
        return false;
    object = m_Object.get();
    return true;
}

bool CDataBuffer::IsEqualBool(bool value) const {
    return HasBytes(EDataType::Bool, &value, sizeof(value));
}

bool CDataBuffer::IsEqualInt(int value) const {
    return HasBytes(EDataType::Int, &value, sizeof(value));
}

bool CDataBuffer::IsEqualFloat(float value) const {
    return HasBytes(EDataType::Float, &value, sizeof(value));
}

bool CDataBuffer::IsEqualDouble(double value) const {
    return HasBytes(EDataType::Double, &value, sizeof(value));
}

bool CDataBuffer::IsEqualString(const char* value) const {
    return HasBytes(EDataType::String, value, GetStringSize(value));
}

bool CDataBuffer::IsEqualData(const void* data, int size) const {
    return HasBytes(EDataType::Data, data, size);
}

bool CDataBuffer::IsEqualObject(const CMemDataObject& object) const {
    return m_Type == EDataType::Object && *m_Object == object;
}

void CDataBuffer::SetBool(bool value) {
    SetBytes(EDataType::Bool, &value, sizeof(value));
}

void CDataBuffer::SetInt(int value) {
    SetBytes(EDataType::Int, &value, sizeof(value));
}

void CDataBuffer::SetFloat(float value) {
    SetBytes(EDataType::Float, &value, sizeof(value));
}

void CDataBuffer::SetDouble(double value) {
    SetBytes(EDataType::Double, &value, sizeof(value));
}

void CDataBuffer::SetString(const char* value) {
    SetBytes(EDataType::String, value, GetStringSize(value));
}

void CDataBuffer::SetData(const void* data, int size) {
    SetBytes(EDataType::Data, data, size);
}

CMemDataObject& CDataBuffer::SetObject() {
    SetBytes(EDataType::Object, nullptr, 0);
    m_Object = std::make_unique<CMemDataObject>();
    return *m_Object;
}

bool CDataBuffer::Serialize(IWriteDataStream& output) const {
    const int type = static_cast<int>(m_Type);
    const bool result = output.WriteInt(TypeKey, &type);
    if (m_Type == EDataType::Object)
        return output.WriteObject(ValueKey, *m_Object) && result;
    return output.WriteData(ValueKey, m_Data.get(), m_Size) && result;
}

bool CDataBuffer::DeSerialize(const IReadDataStream& input) {
    int type = static_cast<int>(m_Type);
    if ((!input.ReadInt(TypeKey, &type) && !input.IsIncremental()) || !IsStoredType(type)) {
        Clear();
        return false;
    }
    if (static_cast<EDataType>(type) == EDataType::Object) {
        CMemDataObject& object =
            m_Type == EDataType::Object && input.IsIncremental() ? *m_Object : SetObject();
        return ReadObjectOrKeep(input, ValueKey, object);
    }
    char* data = nullptr;
    int size = 0;
    if (input.ReadData(ValueKey, &data, &size)) {
        const std::unique_ptr<char[]> owner(data);
        SetBytes(static_cast<EDataType>(type), data, size);
        return true;
    }
    if (!input.IsIncremental()) {
        Clear();
        return false;
    }
    // The same bytes under another type are no change of the value.
    if (m_Type != EDataType::Object)
        m_Type = static_cast<EDataType>(type);
    return true;
}

} // namespace Lathe::Serialization
