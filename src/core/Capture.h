// The capture bracket: it marks a gesture in progress, such as a drag on a parameter.
//
// Knob dragged: Capture (begin event), any number of value changes, Release (end event). Capture
// locks nothing; it is information for undo, links and host automation. There is no counting: two
// holders share one flag.
#pragma once

#include "core/events/EventProvider.h"

namespace Lathe::Core {

class IConstCapture {
public:
    virtual IEventProvider& GetBeginCaptureEvent() const = 0;
    virtual IEventProvider& GetEndCaptureEvent() const = 0;
    virtual bool IsCaptured() const = 0;
    virtual ~IConstCapture() = default;
};

class ICapture : public virtual IConstCapture {
public:
    // A second capture does nothing.
    virtual void Capture() = 0;
    // A release without a capture does nothing.
    virtual void Release() = 0;
};

class CCapture : public ICapture {
public:
    IEventProvider& GetBeginCaptureEvent() const override { return m_BeginCapture; }
    IEventProvider& GetEndCaptureEvent() const override { return m_EndCapture; }
    bool IsCaptured() const override { return m_Captured; }
    void Capture() override;
    void Release() override;

protected:
    // For subclasses that hold a value: this class never fires it.
    mutable CEventProvider m_Changed;

private:
    mutable CEventProvider m_BeginCapture;
    mutable CEventProvider m_EndCapture;
    bool m_Captured = false;
};

} // namespace Lathe::Core
