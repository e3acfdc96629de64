// Things that can run the other way round, and tell when they do.
#pragma once

namespace Lathe::Core {

class IEventProvider;

class IReverse {
public:
    virtual void SetReverse(bool reverse) = 0;
    virtual bool IsReversed() const = 0;
    virtual IEventProvider& GetReverseChangedEvent() const = 0;
    virtual ~IReverse() = default;
};

} // namespace Lathe::Core
