// What objects that remember the history of another one have in common: at each tick of a timer
// they add the value that their source has then, and show the history as their own value.
//
// Scrolling graph: the timer ticks (new point, value-changed event); the viewer evaluates at times
// up to 0, which is now.
#pragma once

#include "core/RefreshTime.h"
#include "core/events/Command.h"
#include "core/threads/PreciseCPUWatch.h"
#include "datamodel/objects/capture/CaptureObject.h"
#include "datamodel/objects/capture/CaptureState.h"

namespace Lathe::System {
class ITimerProvider;
}

namespace Lathe::DataModel::Objects {

// TKind tells what is remembered and how it is shown: CSource, the object; CFunction, its history
// as a function, and CHistory, the class of that; CInfo and IConstInfo, which describe it;
// TakeInfo, which sets the default and all axes but time by the source's description;
// DefaultRefreshTime, in milliseconds; and whether a new duration fires the value-changed event.
//
// For one thread, that of the timer provider.
template <class TKind>
class TCaptureOverTime
    : public TCaptureState<TIConstCaptureObjectWrapper<const typename TKind::CFunction&,
                                                       typename TKind::IConstInfo>>,
      public Core::IRefreshTime {
public:
    using CSource = typename TKind::CSource;
    using CInfo = typename TKind::CInfo;

    static constexpr int DefaultDuration = 10000; // ms

    // Null gives an empty history. The provider is not owned and outlives this object.
    TCaptureOverTime(
        const CSource* source, System::ITimerProvider* timerProvider,
        System::CPreciseCPUWatch::TickSource getNow = &System::CPreciseCPUWatch::GetNow);
    ~TCaptureOverTime() override;

    const typename TKind::CFunction& GetValue() const override { return m_History; }
    const CInfo& GetInfo() const override { return m_Info; }
    CInfo& GetInfo() { return m_Info; }

    // The source outlives the connection. What is remembered of the old one stays.
    void Connect(const CSource& source);
    // No more points from now on; all else stays.
    void Disconnect() override { m_Source = nullptr; }

    // How far the history goes back at least, in milliseconds, from 0 on. Forgets all points.
    void SetDuration(int milliseconds);
    int GetDuration() const;
    // From 1 on. Forgets all points.
    void SetRefreshTime(int milliseconds) override;
    int GetRefreshTime() const override;
    // Paused, nothing is added; time goes on, so that a line leads across the gap.
    void SetPaused(bool paused) { m_Running = !paused; }
    bool IsPaused() const { return !m_Running; }

private:
    void OnTick();

    const CSource* m_Source = nullptr;
    System::ITimerProvider* m_TimerProvider;
    Core::TCommand<TCaptureOverTime> m_TickCommand;
    typename TKind::CHistory m_History;
    CInfo m_Info;
    double m_RefreshTime = TKind::DefaultRefreshTime; // ms
    bool m_Running = true;
    System::CPreciseCPUWatch m_Watch;
};

} // namespace Lathe::DataModel::Objects
