#include "serialization/history/IncrementalDataBuffer.h"

#include "serialization/history/IncrementalMemDataObject.h"

#include <utility>

namespace Lathe::Serialization {

CIncrementalDataBuffer::CIncrementalDataBuffer(CDataBuffer value) : m_Value(std::move(value)) {}
CIncrementalDataBuffer::CIncrementalDataBuffer(std::unique_ptr<CIncrementalMemDataObject> object)
    : m_Object(std::move(object)) {}
CIncrementalDataBuffer::~CIncrementalDataBuffer() = default;
CIncrementalDataBuffer::CIncrementalDataBuffer(CIncrementalDataBuffer&&) noexcept = default;

} // namespace Lathe::Serialization
