// The plain values of the streams that keep each of their values as a CDataBuffer.
#pragma once

#include "serialization/DataBuffer.h"
#include "serialization/DataStream.h"

#include <string_view>

namespace Lathe::Serialization {

// Null names and null values other than a null text are refused; a null text reads as an empty one.
class CBufferStream : public IReadWriteDataStream {
public:
    bool ReadBool(const char* name, bool* value) const override;
    bool ReadInt(const char* name, int* value) const override;
    bool ReadFloat(const char* name, float* value) const override;
    bool ReadDouble(const char* name, double* value) const override;
    bool ReadString(const char* name, char** value) const override;
    bool ReadData(const char* name, char** data, int* size) const override;

    bool WriteBool(const char* name, const bool* value) override;
    bool WriteInt(const char* name, const int* value) override;
    bool WriteFloat(const char* name, const float* value) override;
    bool WriteDouble(const char* name, const double* value) override;
    bool WriteString(const char* name, const char* value) override;
    bool WriteData(const char* name, const void* data, int size) override;

protected:
    // Null when there is no such value.
    virtual const CDataBuffer* FindBuffer(std::string_view name) const = 0;
    // In place of a value that is there.
    virtual void StoreBuffer(std::string_view name, CDataBuffer buffer) = 0;

private:
    template <class T>
    bool ReadNumber(const char* name, T* value, bool (CDataBuffer::*get)(T&) const) const;
    template <class T>
    bool WriteNumber(const char* name, const T* value, void (CDataBuffer::*set)(T));
};

} // namespace Lathe::Serialization
