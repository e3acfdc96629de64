// A flag that says that something has changed since somebody last looked.
#pragma once

#include "core/Realtime.h"

namespace Lathe::Core {

class IDirty {
public:
    virtual bool IsDirty() const LATHE_REALTIME = 0;
    virtual void ClearDirty() LATHE_REALTIME = 0;
    virtual void SetDirty() LATHE_REALTIME = 0;
    virtual ~IDirty() = default;
};

class CDirty final : public IDirty {
public:
    bool IsDirty() const LATHE_REALTIME override { return m_Dirty; }
    void ClearDirty() LATHE_REALTIME override { m_Dirty = false; }
    void SetDirty() LATHE_REALTIME override { m_Dirty = true; }

private:
    bool m_Dirty = false;
};

} // namespace Lathe::Core
