// One value of any type that a stream of named values takes, in memory.
#pragma once

#include "serialization/Serializable.h"

#include <memory>

namespace Lathe::Serialization {

class CMemDataObject;

// The numbers are stored in files.
enum class EDataType : int {
    Empty = -1,
    Object = 0,
    Bool = 1,
    Int = 2,
    Float = 3,
    Double = 4,
    String = 5,
    Data = 6
};

// Every getter returns false, and leaves the destination alone, when the type or the size doesn't
// match. What it hands out stays the holder's, and is valid until the next change.
class IConstDataHolder {
public:
    virtual EDataType GetType() const = 0;
    // In bytes; a string counts its terminating zero.
    virtual int GetSize() const = 0;

    virtual bool GetBool(bool& value) const = 0;
    virtual bool GetInt(int& value) const = 0;
    virtual bool GetFloat(float& value) const = 0;
    virtual bool GetDouble(double& value) const = 0;
    // Null for a string that was set from null.
    virtual bool GetString(const char*& value) const = 0;
    virtual bool GetData(const void*& data, int& size) const = 0;
    virtual bool GetObject(const CMemDataObject*& object) const = 0;

    // Bytes are compared, so that a NaN equals itself; false on a different type.
    virtual bool IsEqualBool(bool value) const = 0;
    virtual bool IsEqualInt(int value) const = 0;
    virtual bool IsEqualFloat(float value) const = 0;
    virtual bool IsEqualDouble(double value) const = 0;
    virtual bool IsEqualString(const char* value) const = 0;
    virtual bool IsEqualData(const void* data, int size) const = 0;
    virtual bool IsEqualObject(const CMemDataObject& object) const = 0;

    virtual ~IConstDataHolder() = default;
};

// Every setter replaces the value and its type, and copies what it is given.
class IDataHolder : public virtual IConstDataHolder {
public:
    virtual void SetBool(bool value) = 0;
    virtual void SetInt(int value) = 0;
    virtual void SetFloat(float value) = 0;
    virtual void SetDouble(double value) = 0;
    virtual void SetString(const char* value) = 0;
    // The size is in bytes and not below zero.
    virtual void SetData(const void* data, int size) = 0;
    // A new, empty object, to be filled by the caller.
    virtual CMemDataObject& SetObject() = 0;
};

class CDataBuffer : public IDataHolder, public ISerializable {
public:
    CDataBuffer();
    ~CDataBuffer() override;
    CDataBuffer(CDataBuffer&&) noexcept;
    CDataBuffer& operator=(CDataBuffer&&) noexcept;

    void Clear();
    bool operator==(const CDataBuffer& other) const;

    EDataType GetType() const override { return m_Type; }
    int GetSize() const override { return m_Size; }

    bool GetBool(bool& value) const override;
    bool GetInt(int& value) const override;
    bool GetFloat(float& value) const override;
    bool GetDouble(double& value) const override;
    bool GetString(const char*& value) const override;
    bool GetData(const void*& data, int& size) const override;
    bool GetObject(const CMemDataObject*& object) const override;

    bool IsEqualBool(bool value) const override;
    bool IsEqualInt(int value) const override;
    bool IsEqualFloat(float value) const override;
    bool IsEqualDouble(double value) const override;
    bool IsEqualString(const char* value) const override;
    bool IsEqualData(const void* data, int size) const override;
    bool IsEqualObject(const CMemDataObject& object) const override;

    void SetBool(bool value) override;
    void SetInt(int value) override;
    void SetFloat(float value) override;
    void SetDouble(double value) override;
    void SetString(const char* value) override;
    void SetData(const void* data, int size) override;
    CMemDataObject& SetObject() override;

    // "type", then "value": an object, or the raw bytes in the machine's order.
    bool Serialize(IWriteDataStream& output) const override;
    // Takes the bytes as they are: it is the getters that refuse bytes that don't fit the type.
    bool DeSerialize(const IReadDataStream& input) override;

private:
    void SetBytes(EDataType type, const void* data, int size);
    bool HasBytes(EDataType type, const void* data, int size) const;
    template <class T>
    bool GetScalar(EDataType type, T& value) const;

    int m_Size = 0;
    EDataType m_Type = EDataType::Empty;
    std::unique_ptr<char[]> m_Data;
    std::unique_ptr<CMemDataObject> m_Object;
};

} // namespace Lathe::Serialization
