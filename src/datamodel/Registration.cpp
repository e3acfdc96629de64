// Enters the classes of this library that are made by class id into the factory of objects before
// main.

#include "core/runtime/ObjectsFactory.h"
#include "datamodel/objects/DynamicPropertyValue.h"

// Whoever links this library names this symbol to the linker, and so keeps this file.
extern "C" {
extern const char LatheDataModelRegistration;
const char LatheDataModelRegistration = 0;
}

namespace Lathe::DataModel::Objects {

namespace {

const Runtime::CFactoryRegistration<CEmptyDynamicPropertyValue, IDynamicPropertyValue>
    EmptyDynamicPropertyValue;

} // namespace

} // namespace Lathe::DataModel::Objects
