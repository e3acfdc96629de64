// The description that every named thing has: a name, a description and an event.
#pragma once

#include "core/events/EventProvider.h"
#include "core/text/CharString.h"

namespace Lathe::DataModel {

class IConstObjectInfo {
public:
    virtual const char* GetName() const = 0;
    virtual const char* GetDescription() const = 0;
    // Fires after any change of the info.
    virtual Core::IEventProvider& GetChangedEvent() const = 0;
    virtual ~IConstObjectInfo() = default;
};

} // namespace Lathe::DataModel
