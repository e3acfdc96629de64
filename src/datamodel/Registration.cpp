// Enters the classes of this library that are made by class id into the objects' factory.
#include "core/runtime/ObjectsFactory.h"
#include "datamodel/objects/DynamicPropertyValue.h"

namespace Lathe::DataModel::Objects {

namespace {

const Runtime::CFactoryRegistration<CEmptyDynamicPropertyValue, IDynamicPropertyValue>
    EmptyDynamicPropertyValueRegistration;

} // namespace

} // namespace Lathe::DataModel::Objects

// Referenced from the linker's command line, so that this file is never left out.
extern "C" {
extern const int lathe_datamodel_registration;
const int lathe_datamodel_registration = 1;
}
