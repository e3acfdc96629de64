// One value of a recorded state: a plain one, or a nested object with the values that it holds.
#pragma once

#include "serialization/DataBuffer.h"

#include <memory>

namespace Lathe::Serialization {

class CIncrementalMemDataObject;

class CIncrementalDataBuffer {
public:
    explicit CIncrementalDataBuffer(CDataBuffer value);
    explicit CIncrementalDataBuffer(std::unique_ptr<CIncrementalMemDataObject> object);
    ~CIncrementalDataBuffer();
    CIncrementalDataBuffer(CIncrementalDataBuffer&&) noexcept;

    // Of the type Empty when this holds an object.
    const CDataBuffer& GetValue() const { return m_Value; }
    // Null when this holds a plain value.
    CIncrementalMemDataObject* GetObject() const { return m_Object.get(); }
    // The same type and bytes; false for an object, which is the same only as a shared entry.
    bool HasValue(const CDataBuffer& value) const { return !m_Object && m_Value == value; }

private:
    CDataBuffer m_Value;
    std::unique_ptr<CIncrementalMemDataObject> m_Object;
};

} // namespace Lathe::Serialization
