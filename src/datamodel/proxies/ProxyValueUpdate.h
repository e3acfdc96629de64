// How far a proxy keeps up with its source is in the hand of its reader.
#pragma once

namespace Lathe::DataModel::Objects {

class IProxyValueUpdate {
public:
    // Brings the copy up to date now, and fires if there was anything new; nothing while that is
    // forbidden.
    virtual void UpdateValue() = 0;
    // Allowed from the start. Waits for an update in progress on another thread; a listener of the
    // proxy may call it. What was missed comes with the next change or the next UpdateValue.
    virtual void EnableValueUpdate(bool enable) = 0;
    virtual ~IProxyValueUpdate() = default;
};

} // namespace Lathe::DataModel::Objects
