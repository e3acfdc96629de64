// Joining adapters to the objects that they stand for, and cutting them off again.
#pragma once

namespace Lathe::Core {

class IDisconnect {
public:
    // Cuts the link to whatever the adapter is bound to; the adapter stays usable, with defaults.
    virtual void Disconnect() = 0;
    virtual ~IDisconnect() = default;
};

// One that can also be put to sleep: paused, it ignores both of its ends; it catches up when it
// goes on.
class IDisconnectAndPause : public virtual IDisconnect {
public:
    virtual void SetPaused(bool paused) = 0;
};

template <class T>
class TIConnect {
public:
    // Binds to an object that must outlive the connection.
    virtual void Connect(T& object) = 0;
    virtual ~TIConnect() = default;
};

} // namespace Lathe::Core
