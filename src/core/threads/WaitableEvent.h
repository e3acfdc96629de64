// An event that a wait takes back: a signal is for one who waits.
#pragma once

#include "core/threads/Condition.h"

namespace Lathe::System {

class CWaitableEvent {
public:
    explicit CWaitableEvent(bool signaled = false) : m_Signaled(signaled) {}

    // Wakes one who waits, or the next to wait. Further signals until then add nothing.
    void Signal();
    // Waits for a signal, but no longer than the time, in milliseconds; negative is without limit.
    // Takes the signal back, unless it came during a wait with a limit: the next wait then returns
    // at once. True also when the time ran out, false only when the wait failed.
    bool Wait(int milliseconds);

private:
    CCondition m_Condition;
    bool m_Signaled;
};

} // namespace Lathe::System
