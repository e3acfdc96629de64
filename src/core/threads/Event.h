// An event that stays set until it is reset.
#pragma once

#include "core/threads/Condition.h"

namespace Lathe::System {

class CEvent {
public:
    explicit CEvent(bool signaled = false) : m_Signaled(signaled) {}

    // Wakes all who wait, also when a Reset follows at once. The event may be destroyed as soon as
    // the last of them has returned.
    void Set();
    void Reset();
    // Waits until it is set, but no longer than the time, in milliseconds; negative is without
    // limit. True also when the time ran out, false only when the wait failed.
    bool Wait(int milliseconds);
    bool IsSignaled();

private:
    CCondition m_Condition;
    bool m_Signaled;
    // How often it was set: tells a waiting thread of a Set that a Reset took back.
    unsigned m_SetCount = 0;
};

} // namespace Lathe::System
