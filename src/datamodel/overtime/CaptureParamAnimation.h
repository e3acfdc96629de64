// A parameter in front of another one, which glides to what is set here, while what happens to it
// otherwise shows here at once.
//
// Value set: SetValue (value-changed event); the link moves the target with each tick of the timer.
// Target set by somebody else: the value follows at once, and no transition starts.
#pragma once

#include "core/Disconnect.h"
#include "core/Enable.h"
#include "core/RefreshTime.h"
#include "core/events/Command.h"
#include "core/threads/PreciseCPUWatch.h"
#include "datamodel/links/CaptureParamTimeLink.h"
#include "datamodel/objects/ParamInfo.h"
#include "datamodel/objects/capture/CaptureObject.h"
#include "datamodel/objects/capture/CaptureState.h"

namespace Lathe::DataModel::Objects {

// For one thread, that of the timer provider.
class CCaptureParamAnimation
    : public TCaptureState<TICaptureObjectWrapper<double, IConstParamInfo>>,
      public Core::TIConnect<ICaptureParam>,
      public Core::IEnable,
      public Core::IDisconnectAndPause,
      public Core::IRefreshTime {
public:
    // The provider is not owned and outlives this object; the target can be null.
    CCaptureParamAnimation(
        System::ITimerProvider* timerProvider, ICaptureParam* target,
        System::CPreciseCPUWatch::TickSource getNow = &System::CPreciseCPUWatch::GetNow);
    ~CCaptureParamAnimation() override;

    double GetValue() const override { return m_Value; }
    // That of the target; without a target, of the last one.
    const CParamInfo& GetInfo() const override { return m_Info; }
    // Where the target shall go. It isn't limited to the range here: the target does that.
    void SetValue(double value) override;
    void Capture() override { BeginCapture(); }
    // The target is released when the transition has ended.
    void Release() override { EndCapture(); }

    // Takes the value and the description of the target, which outlives the connection.
    void Connect(ICaptureParam& target) override;
    // What is set afterwards is held without effect.
    void Disconnect() override;

    bool GetEnabled() const override { return m_Enabled; }
    Core::IEventProvider& GetEnabledChangedEvent() const override { return m_EnabledChanged; }
    // Disabled, values pass straight on to the target.
    void SetEnabled(bool enabled) override;
    // On leaving the pause, the target sets out for the value.
    void SetPaused(bool paused) override { m_Link.SetPaused(paused); }
    // Of a transition, in milliseconds; 0 and less is at once.
    void SetDuration(int milliseconds);
    // Of the ticks of a transition, in milliseconds, from 1 on.
    void SetRefreshTime(int milliseconds) override { m_Link.SetRefreshTime(milliseconds); }
    int GetRefreshTime() const override { return m_Link.GetRefreshTime(); }

private:
    void OnTargetValueChanged();
    void OnTargetInfoChanged();
    ICaptureParam* GetTarget() const { return m_Link.GetTarget(); }

    double m_Value = 0.0;
    bool m_Enabled = true;
    int m_Duration = 250; // ms
    mutable Core::CEventProvider m_EnabledChanged;
    CCaptureParamTimeLink m_Link;
    CParamInfo m_Info;
    Core::TCommand<CCaptureParamAnimation> m_TargetValueChangedCommand;
    Core::TCommand<CCaptureParamAnimation> m_TargetInfoChangedCommand;
    bool m_InSetValue = false;
};

} // namespace Lathe::DataModel::Objects
