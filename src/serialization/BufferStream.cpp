#include "serialization/BufferStream.h"

#include "core/text/CharString.h"

#include <cstddef>
#include <utility>

namespace Lathe::Serialization {

template <class T>
bool CBufferStream::ReadNumber(const char* name, T* value,
                               bool (CDataBuffer::*get)(T&) const) const {
    const CDataBuffer* buffer = name ? FindBuffer(name) : nullptr;
    return buffer && value && (buffer->*get)(*value);
}

bool CBufferStream::ReadBool(const char* name, bool* value) const {
    return ReadNumber(name, value, &CDataBuffer::GetBool);
}

bool CBufferStream::ReadInt(const char* name, int* value) const {
    return ReadNumber(name, value, &CDataBuffer::GetInt);
}

bool CBufferStream::ReadFloat(const char* name, float* value) const {
    return ReadNumber(name, value, &CDataBuffer::GetFloat);
}

bool CBufferStream::ReadDouble(const char* name, double* value) const {
    return ReadNumber(name, value, &CDataBuffer::GetDouble);
}

bool CBufferStream::ReadString(const char* name, char** value) const {
    const CDataBuffer* buffer = name ? FindBuffer(name) : nullptr;
    const char* text = nullptr;
    if (!buffer || !value || !buffer->GetString(text))
        return false;
    *value = Core::NewText(text);
    return true;
}

bool CBufferStream::ReadData(const char* name, char** data, int* size) const {
    const CDataBuffer* buffer = name ? FindBuffer(name) : nullptr;
    const void* bytes = nullptr;
    int count = 0;
    if (!buffer || !data || !size || !buffer->GetData(bytes, count))
        return false;
    *data = Core::NewText(
        std::string_view(static_cast<const char*>(bytes), static_cast<std::size_t>(count)));
    *size = count;
    return true;
}

template <class T>
bool CBufferStream::WriteNumber(const char* name, const T* value, void (CDataBuffer::*set)(T)) {
    if (!name || !value)
        return false;
    CDataBuffer buffer;
    (buffer.*set)(*value);
    StoreBuffer(name, std::move(buffer));
    return true;
}

bool CBufferStream::WriteBool(const char* name, const bool* value) {
    return WriteNumber(name, value, &CDataBuffer::SetBool);
}

bool CBufferStream::WriteInt(const char* name, const int* value) {
    return WriteNumber(name, value, &CDataBuffer::SetInt);
}

bool CBufferStream::WriteFloat(const char* name, const float* value) {
    return WriteNumber(name, value, &CDataBuffer::SetFloat);
}

bool CBufferStream::WriteDouble(const char* name, const double* value) {
    return WriteNumber(name, value, &CDataBuffer::SetDouble);
}

bool CBufferStream::WriteString(const char* name, const char* value) {
    if (!name)
        return false;
    CDataBuffer buffer;
    buffer.SetString(value);
    StoreBuffer(name, std::move(buffer));
    return true;
}

bool CBufferStream::WriteData(const char* name, const void* data, int size) {
    if (!name || size < 0 || (!data && size > 0))
        return false;
    CDataBuffer buffer;
    buffer.SetData(data, size);
    StoreBuffer(name, std::move(buffer));
    return true;
}

} // namespace Lathe::Serialization
