// The one-way link that moves its target over time: a change of the source starts a transition,
// which a timer plays.
//
// Source changed: Update starts the stopwatch and asks StartStep for the way to go; each tick of
// the timer then plays a Step, up to the ratio 1. A capture that the source gives up meanwhile
// stays on the target until the last of them.
#pragma once

#include "core/Differs.h"
#include "core/RefreshTime.h"
#include "core/threads/PreciseCPUWatch.h"
#include "core/threads/TimerProvider.h"
#include "datamodel/links/CaptureObjectLink.h"

#include <algorithm>

namespace Lathe::DataModel {

// Ticks run on the timer provider's thread, which must be the source's. A transition that is under
// way is played to its end also when the link is paused, switched off or without a source.
//
// A subclass calls StopTimer first in its destructor, as does the owner that cuts a link in its
// own.
template <class TSource, class TTarget>
class TCaptureObjectTimeLink : public TCaptureObjectLink<TSource, TTarget>,
                               public Core::IRefreshTime {
    using Base = TCaptureObjectLink<TSource, TTarget>;

public:
    // From 1 on: a timer without a period would never let its thread sleep.
    void SetRefreshTime(int milliseconds) override {
        StopTimer();
        m_RefreshTime = std::max(milliseconds, 1);
        m_TimerProvider->AddTimer(m_RefreshTime, &m_TickCommand);
    }
    int GetRefreshTime() const override { return m_RefreshTime; }
    // In milliseconds. With 0 and less, changes arrive at once, without the timer, and so does what
    // is under way, unless the link is paused.
    virtual void SetDuration(double milliseconds) {
        const double old = m_Duration;
        if (!Core::Differs(milliseconds, old))
            return;
        m_Duration = milliseconds;
        if (m_Duration <= 0.0 && old > 0.0 && !this->IsPaused())
            OnTick();
    }
    // True while the link itself writes the target.
    bool IsInStep() const { return m_InStep; }
    // For the end: when this returns, no tick runs any more, not on another thread either.
    void StopTimer() { m_TimerProvider->RemoveTimer(&m_TickCommand, false); }

protected:
    // The provider is not owned. Ticks of the source of time are nanoseconds.
    TCaptureObjectTimeLink(System::ITimerProvider* timerProvider,
                           System::CPreciseCPUWatch::TickSource getNow)
        : m_Watch(getNow), m_TimerProvider(timerProvider) {
        m_TimerProvider->AddTimer(m_RefreshTime, &m_TickCommand);
    }

    // Notes where the transition starts and ends; false when there is no way to go.
    virtual bool StartStep() = 0;
    // Moves the target to that share of the way, above 0 and up to 1; false when it has arrived.
    virtual bool Step(double ratio) = 0;

    void Update() override {
        m_Watch.Start();
        m_Animating = StartStep();
        if (!m_Animating)
            ReleasePending();
        if (m_Duration <= 0.0)
            OnTick();
    }
    // A new target has no part in what is under way to the old one.
    void BeforeTargetChange() override {
        m_Animating = false;
        ReleasePending();
    }
    void OnSourceBeginCapture() override {
        if (!this->IsActive())
            return;
        m_ReleasePending = false; // A handler of the capture may ask for it again.
        if (!this->HasCapturedTarget())
            Base::OnSourceBeginCapture();
    }
    void OnSourceEndCapture() override {
        if (!this->HasCapturedTarget())
            return;
        if (m_Animating)
            m_ReleasePending = true;
        else
            Base::OnSourceEndCapture();
    }

private:
    void OnTick() {
        if (!m_Animating)
            return;
        const double ratio = GetRatio();
        // Before the step, in which a handler may start the next transition.
        if (ratio >= 1.0)
            m_Animating = false;
        m_InStep = true;
        const bool more = Step(ratio);
        m_InStep = false;
        if (!more)
            m_Animating = false;
        if (!m_Animating)
            ReleasePending();
    }
    double GetRatio() const {
        if (m_Duration <= 0.0)
            return 1.0;
        const double elapsed = static_cast<double>(m_Watch.GetElapsedTicks()) /
                               static_cast<double>(m_Watch.MillisecondsToTicks(1));
        return std::min(elapsed / m_Duration, 1.0);
    }
    void ReleasePending() {
        if (!m_ReleasePending)
            return;
        m_ReleasePending = false;
        this->GiveBackCapture();
    }

    System::CPreciseCPUWatch m_Watch;
    bool m_Animating = false;
    bool m_InStep = false;
    bool m_ReleasePending = false;
    System::ITimerProvider* m_TimerProvider;
    double m_Duration = 250.0; // ms
    int m_RefreshTime = 50;    // ms
    Core::TCommand<TCaptureObjectTimeLink> m_TickCommand{*this, &TCaptureObjectTimeLink::OnTick};
};

} // namespace Lathe::DataModel
