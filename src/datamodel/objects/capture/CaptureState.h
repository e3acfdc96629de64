// The three events and the flag that every capture object has.
#pragma once

#include "core/events/EventProvider.h"

#include <atomic>

namespace Lathe::DataModel {

// Implements that part of TInterface, a capture interface of any kind of value. Subclasses that are
// writable publish BeginCapture and EndCapture as Capture and Release.
template <class TInterface, class TEventProvider = Core::CEventProvider>
class TCaptureState : public virtual TInterface {
public:
    TCaptureState() = default;
    TCaptureState(const TCaptureState&) = delete;
    TCaptureState& operator=(const TCaptureState&) = delete;

    Core::IEventProvider& GetValueChangedEvent() const override { return m_ValueChanged; }
    Core::IEventProvider& GetBeginCaptureEvent() const override { return m_BeginCapture; }
    Core::IEventProvider& GetEndCaptureEvent() const override { return m_EndCapture; }
    bool IsCaptured() const override { return m_Capturing.load(std::memory_order_relaxed); }

protected:
    void NotifyValueChanged() { m_ValueChanged.Notify(); }
    // A second begin and a stray end do nothing, whichever threads they come from.
    void BeginCapture() {
        if (!m_Capturing.exchange(true, std::memory_order_relaxed))
            m_BeginCapture.Notify();
    }
    void EndCapture() {
        if (m_Capturing.exchange(false, std::memory_order_relaxed))
            m_EndCapture.Notify();
    }
    // These two don't look at the flag first.
    void ForceBeginCapture() {
        m_Capturing.store(true, std::memory_order_relaxed);
        m_BeginCapture.Notify();
    }
    void ForceEndCapture() {
        m_Capturing.store(false, std::memory_order_relaxed);
        m_EndCapture.Notify();
    }
    // Without an event.
    void ForgetCapture() { m_Capturing.store(false, std::memory_order_relaxed); }

private:
    mutable TEventProvider m_ValueChanged;
    mutable TEventProvider m_BeginCapture;
    mutable TEventProvider m_EndCapture;
    // Objects that change on another thread report their captures from there.
    std::atomic<bool> m_Capturing{false};
};

} // namespace Lathe::DataModel
