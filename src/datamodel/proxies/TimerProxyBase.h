// What the timer proxies of all kinds have in common: flags that the source's events set, and a
// tick that reads the source and fires.
#pragma once

#include "core/Differs.h"
#include "core/Realtime.h"
#include "core/events/Command.h"
#include "core/events/Value.h"
#include "core/threads/CriticalSection.h"
#include "core/threads/TimerProvider.h"
#include "datamodel/proxies/CaptureObjectProxy.h"

#include <atomic>
#include <thread>
#include <type_traits>

namespace Lathe::DataModel {

// Source changed, on whichever thread: a flag goes up, and nothing else happens. Tick, on the
// timer's thread: the source is read once, and value changed fires once, inside the bracket of its
// gesture; a gesture that is shorter than a tick isn't seen.
//
// The source and the timer outlive the proxy. A source that changes on other threads has events
// that other threads may subscribe to, and values that they may read. All calls are for the timer's
// thread, save that any thread may allow and forbid updates, pause the proxy, read a parameter,
// and, where the timer is for any thread, make and destroy the proxy. Its own events don't destroy
// it.
//
// TSource is what is read: an object for a parameter, a factory for the other kinds; const for a
// read-only proxy. Subclasses attach last in their constructor, and detach first in their
// destructor.
template <class TInterface, class TSource, class T, class TInfo>
class TTimerProxyBase : public TInterface {
public:
    Core::IEventProvider& GetValueChangedEvent() const override { return m_ValueChanged; }
    Core::IEventProvider& GetBeginCaptureEvent() const override { return m_BeginCapture; }
    Core::IEventProvider& GetEndCaptureEvent() const override { return m_EndCapture; }
    bool IsCaptured() const override { return m_Captured.load(std::memory_order_relaxed); }
    T GetValue() const override { return m_Value.GetValue(); }
    const TInfo& GetInfo() const override { return m_Source->GetInfo(); }

    // Cleared before the source is read: a change meanwhile is for the next time.
    void UpdateValue() override {
        const Core::CAutoLock lock(m_Lock);
        if (!m_UpdateEnabled || !m_Dirty.exchange(false, std::memory_order_acquire))
            return;
        m_Value.TakeValue(m_Source->GetValue());
        m_ValueChanged.Notify();
    }
    void EnableValueUpdate(bool enable) override {
        const Core::CAutoLock lock(m_Lock);
        m_UpdateEnabled = enable;
    }
    // 50 ms at first.
    void SetRefreshTime(int milliseconds) override {
        m_Timer->RemoveTimer(m_TickCommand, true);
        StartTimer(milliseconds);
    }
    int GetRefreshTime() const override { return m_RefreshTime; }
    void SetPaused(bool paused) override { m_Running.store(!paused, std::memory_order_relaxed); }
    bool IsPaused() const override { return !m_Running.load(std::memory_order_relaxed); }

protected:
    TTimerProxyBase(TSource& source, System::ITimerProvider& timer)
        : m_Source(&source),
          m_Timer(&timer),
          m_ChangedCommand(*this, &TTimerProxyBase::OnSourceChanged),
          m_BeginCommand(*this, &TTimerProxyBase::OnSourceBeginCapture),
          m_EndCommand(*this, &TTimerProxyBase::OnSourceEndCapture) {}

    // The source is read after it is subscribed to, so that no change gets lost between the two.
    void Attach() {
        m_Source->GetValueChangedEvent().AddCommand(m_ChangedCommand);
        m_Source->GetBeginCaptureEvent().AddCommand(m_BeginCommand);
        m_Source->GetEndCaptureEvent().AddCommand(m_EndCommand);
        const bool captured = m_Source->IsCaptured();
        m_SourceCaptured.store(captured, std::memory_order_relaxed);
        m_Captured.store(captured, std::memory_order_relaxed);
        m_Value.TakeValue(m_Source->GetValue());
        StartTimer(m_RefreshTime);
    }
    // Waits for a tick in progress, and for what the source's events run.
    void Detach() {
        m_Timer->RemoveTimer(m_TickCommand, true);
        m_Source->GetEndCaptureEvent().RemoveCommand(m_EndCommand);
        m_Source->GetBeginCaptureEvent().RemoveCommand(m_BeginCommand);
        m_Source->GetValueChangedEvent().RemoveCommand(m_ChangedCommand);
    }

    // The copy and the source take the value. What the source fires for that, on this thread, needs
    // no reading; what others change from here on does.
    void Write(T value) {
        const Core::TValueStorage<T> written(value); // It may be the copy, which goes.
        bool fires = true;
        if constexpr (std::is_same_v<T, double>)
            fires = Core::Differs(value, GetValue());
        m_Value.SetValue(value);
        fires = m_Dirty.exchange(false, std::memory_order_acquire) || fires;
        const auto outer = m_Writer.exchange(std::this_thread::get_id(), std::memory_order_relaxed);
        m_Source->SetValue(written.Get());
        m_Writer.store(outer, std::memory_order_relaxed);
        if (fires)
            m_ValueChanged.Notify();
    }
    void BeginCapture() {
        const bool captured = m_Captured.exchange(true, std::memory_order_relaxed);
        m_Source->Capture();
        if (!captured)
            m_BeginCapture.Notify();
    }
    void EndCapture() {
        const bool captured = m_Captured.exchange(false, std::memory_order_relaxed);
        m_Source->Release();
        if (captured)
            m_EndCapture.Notify();
    }

private:
    // An exchange carries on what another thread's event released, where a store would cut it off.
    void OnSourceChanged() LATHE_REALTIME {
        if (m_Writer.load(std::memory_order_relaxed) != std::this_thread::get_id())
            m_Dirty.exchange(true, std::memory_order_release);
    }
    void OnSourceBeginCapture() LATHE_REALTIME {
        m_SourceCaptured.store(true, std::memory_order_release);
    }
    // Hands over the gesture's last change with the flag.
    void OnSourceEndCapture() LATHE_REALTIME {
        m_SourceCaptured.store(false, std::memory_order_release);
    }

    void StartTimer(int milliseconds) {
        m_TickCommand = new Core::TCommand<TTimerProxyBase>(*this, &TTimerProxyBase::OnTick);
        m_Timer->AddTimer(milliseconds, m_TickCommand);
        m_RefreshTime = milliseconds;
    }

    void OnTick() {
        if (IsPaused())
            return;
        const bool captured = m_SourceCaptured.load(std::memory_order_acquire);
        if (m_Captured.exchange(captured, std::memory_order_relaxed) == captured)
            return UpdateValue();
        if (captured)
            m_BeginCapture.Notify();
        UpdateValue();
        if (!IsCaptured())
            m_EndCapture.Notify();
    }

    mutable Core::CEventProvider m_ValueChanged;
    mutable Core::CEventProvider m_BeginCapture;
    mutable Core::CEventProvider m_EndCapture;
    std::atomic<bool> m_Captured{false};
    std::atomic<bool> m_SourceCaptured{false};
    std::atomic<bool> m_Dirty{false};
    Core::TValue<T, Core::CEventProvider> m_Value;
    TSource* m_Source;
    System::ITimerProvider* m_Timer;
    Core::TCommand<TTimerProxyBase> m_ChangedCommand;
    Core::TCommand<TTimerProxyBase> m_BeginCommand;
    Core::TCommand<TTimerProxyBase> m_EndCommand;
    // Owned; the timer destroys it.
    Core::ICommand* m_TickCommand = nullptr;
    std::atomic<bool> m_Running{true};
    int m_RefreshTime = 50; // ms
    System::CCriticalSection m_Lock;
    bool m_UpdateEnabled = true; // Under m_Lock.
    // The thread that is writing to the source; none otherwise.
    std::atomic<std::thread::id> m_Writer{};
};

} // namespace Lathe::DataModel
