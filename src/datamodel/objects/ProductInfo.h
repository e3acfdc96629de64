// The identity of something that is shown to the user as a product.
#pragma once

#include "core/events/EventProvider.h"

namespace Lathe::DataModel::Objects {

class IConstProductInfo {
public:
    virtual const char* GetName() const = 0;
    virtual const char* GetDescription() const = 0;
    // Fires after any change of the info.
    virtual Core::IEventProvider& GetChangedEvent() const = 0;
    virtual ~IConstProductInfo() = default;
};

} // namespace Lathe::DataModel::Objects
