#include "datamodel/objects/DynamicPropertyValue.h"

#include <cstring>
#include <utility>

namespace Lathe::DataModel::Objects {

const void* CEmptyDynamicPropertyValue::QueryInterface(const char* id) const {
    return id && std::strcmp(id, ClassId()) == 0 ? this : nullptr;
}

void* CEmptyDynamicPropertyValue::QueryInterface(const char* id) {
    return const_cast<void*>(std::as_const(*this).QueryInterface(id));
}

CEmptyDynamicPropertyValue* CEmptyDynamicPropertyValue::Clone() const {
    return new CEmptyDynamicPropertyValue(*this); // The caller's, by contract.
}

bool CEmptyDynamicPropertyValue::IsSameType(const IDynamicPropertyValue& other) const {
    return other.QueryInterface(GetClassId()) != nullptr;
}

} // namespace Lathe::DataModel::Objects
