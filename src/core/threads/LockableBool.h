// A flag with the lock that guards it.
#pragma once

#include "core/threads/CriticalSection.h"

namespace Lathe::System {

class CLockableBool : public CCriticalSection {
public:
    explicit CLockableBool(bool value = false) : m_Value(value) {}

    // Read and written under the lock.
    bool m_Value;
};

} // namespace Lathe::System
