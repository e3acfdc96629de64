// A flag with the lock that guards it.
#pragma once

#include "core/threads/CriticalSection.h"

#include <atomic>

namespace Lathe::System {

class CLockableBool : public CCriticalSection {
public:
    explicit CLockableBool(bool value = false) : m_Value(value) {}

    // Written under the lock; a look without it may be out of date.
    std::atomic<bool> m_Value;
};

} // namespace Lathe::System
