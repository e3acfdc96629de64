// Streams of named values: the one pair of interfaces through which everything is stored.
#pragma once

namespace Lathe::Serialization {

class ISerialize;
class IDeSerialize;

// Every operation takes the value's name first and returns true on success. Writing a name that is
// already there replaces its value.
class IWriteDataStream {
public:
    virtual bool WriteBool(const char* name, const bool* value) = 0;
    virtual bool WriteInt(const char* name, const int* value) = 0;
    virtual bool WriteFloat(const char* name, const float* value) = 0;
    virtual bool WriteDouble(const char* name, const double* value) = 0;
    virtual bool WriteString(const char* name, const char* value) = 0;
    // The size is in bytes.
    virtual bool WriteData(const char* name, const void* data, int size) = 0;
    virtual bool WriteObject(const char* name, const ISerialize& object) = 0;
    virtual ~IWriteDataStream() = default;
};

// Every read returns false, and leaves the destination alone, when the name isn't there.
class IReadDataStream {
public:
    // True for a stream that holds only what changed.
    virtual bool IsIncremental() const = 0;
    virtual bool ReadBool(const char* name, bool* value) const = 0;
    virtual bool ReadInt(const char* name, int* value) const = 0;
    virtual bool ReadFloat(const char* name, float* value) const = 0;
    virtual bool ReadDouble(const char* name, double* value) const = 0;
    // Gives a new array of char, which the caller deletes[].
    virtual bool ReadString(const char* name, char** value) const = 0;
    // Gives a new array of char and its size in bytes, which the caller deletes[].
    virtual bool ReadData(const char* name, char** data, int* size) const = 0;
    // Returns what the object's own DeSerialize returned.
    virtual bool ReadObject(const char* name, IDeSerialize& object) const = 0;
    virtual ~IReadDataStream() = default;
};

class IReadWriteDataStream : public virtual IReadDataStream, public virtual IWriteDataStream {};

} // namespace Lathe::Serialization
