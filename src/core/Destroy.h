// Destruction through an interface, for owners that hold nothing else of an object.
#pragma once

namespace Lathe::Core {

class IDestroy {
public:
    // Destroys the object behind the interface; the reference is dead afterwards.
    virtual void Destroy() = 0;

protected:
    virtual ~IDestroy() = default;
};

} // namespace Lathe::Core
