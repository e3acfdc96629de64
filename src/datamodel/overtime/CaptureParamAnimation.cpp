#include "datamodel/overtime/CaptureParamAnimation.h"

#include "core/Differs.h"

#include <utility>

namespace Lathe::DataModel::Objects {

CCaptureParamAnimation::CCaptureParamAnimation(System::ITimerProvider* timerProvider,
                                               ICaptureParam* target,
                                               System::CPreciseCPUWatch::TickSource getNow)
    : m_Link(timerProvider, nullptr, nullptr, getNow),
      m_TargetValueChangedCommand(*this, &CCaptureParamAnimation::OnTargetValueChanged),
      m_TargetInfoChangedCommand(*this, &CCaptureParamAnimation::OnTargetInfoChanged) {
    m_Link.SetDuration(m_Duration);
    if (target)
        CCaptureParamAnimation::Connect(*target);
}

CCaptureParamAnimation::~CCaptureParamAnimation() {
    m_Link.StopTimer();
    CCaptureParamAnimation::Disconnect();
}

void CCaptureParamAnimation::SetValue(double value) {
    const bool outer = std::exchange(m_InSetValue, true);
    if (Core::Differs(value, m_Value)) {
        m_Value = value;
        NotifyValueChanged();
    }
    m_InSetValue = outer;
}

void CCaptureParamAnimation::Connect(ICaptureParam& target) {
    Disconnect();
    // Before any handler runs, which may connect another target or none.
    m_Link.SetTarget(&target);
    target.GetValueChangedEvent().AddCommand(m_TargetValueChangedCommand);
    target.GetInfo().GetChangedEvent().AddCommand(m_TargetInfoChangedCommand);
    m_Info.Copy(target.GetInfo());
    SetValue(target.GetValue());
    m_Link.SetSource(this);
}

void CCaptureParamAnimation::Disconnect() {
    if (ICaptureParam* target = GetTarget()) {
        target->GetValueChangedEvent().RemoveCommand(m_TargetValueChangedCommand);
        target->GetInfo().GetChangedEvent().RemoveCommand(m_TargetInfoChangedCommand);
    }
    m_Link.Disconnect();
}

void CCaptureParamAnimation::SetEnabled(bool enabled) {
    if (enabled == m_Enabled)
        return;
    m_Enabled = enabled;
    m_Link.SetDuration(m_Enabled ? m_Duration : 0);
    m_EnabledChanged.Notify();
}

void CCaptureParamAnimation::SetDuration(int milliseconds) {
    m_Duration = milliseconds;
    if (m_Enabled)
        m_Link.SetDuration(m_Duration);
}

void CCaptureParamAnimation::OnTargetValueChanged() {
    if (!m_InSetValue && !m_Link.IsInStep() && GetTarget())
        SetValue(GetTarget()->GetValue());
}

void CCaptureParamAnimation::OnTargetInfoChanged() {
    m_Info.Copy(GetTarget()->GetInfo());
}

} // namespace Lathe::DataModel::Objects
