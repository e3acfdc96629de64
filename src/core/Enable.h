// Things that can be switched on and off, and tell when they are.
#pragma once

#include "core/events/EventProvider.h"

namespace Lathe::Core {

class IConstEnable {
public:
    virtual bool GetEnabled() const = 0;
    virtual IEventProvider& GetEnabledChangedEvent() const = 0;
    virtual ~IConstEnable() = default;

    // The data model's words for the same.
    bool IsEnabled() const { return GetEnabled(); }
    IEventProvider& GetEnableChangedEvent() const { return GetEnabledChangedEvent(); }
};

class IEnable : public virtual IConstEnable {
public:
    virtual void SetEnabled(bool enabled) = 0;

    void SetEnable(bool enabled) { SetEnabled(enabled); }
};

class CEnable : public IEnable {
public:
    bool GetEnabled() const override { return m_Enabled; }
    IEventProvider& GetEnabledChangedEvent() const override { return m_EnabledChanged; }
    // Setting the present value does nothing.
    void SetEnabled(bool enabled) override;

private:
    bool m_Enabled = true;
    mutable CEventProvider m_EnabledChanged;
};

} // namespace Lathe::Core
