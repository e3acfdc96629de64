#include "datamodel/links/CaptureParamTimeLink.h"

#include "core/Differs.h"

namespace Lathe::DataModel::Objects {

CCaptureParamTimeLink::CCaptureParamTimeLink(System::ITimerProvider* timerProvider,
                                             IConstCaptureParam* source, ICaptureParam* target,
                                             System::CPreciseCPUWatch::TickSource getNow)
    : TCaptureObjectTimeLink(timerProvider, getNow) {
    Join(source, target);
}

bool CCaptureParamTimeLink::StartStep() {
    if (!GetSource() || !GetTarget())
        return false;
    m_StartValue = GetTarget()->GetValue();
    m_EndValue = GetSource()->GetValue();
    return Core::Differs(m_StartValue, m_EndValue);
}

bool CCaptureParamTimeLink::Step(double ratio) {
    if (!IsAway())
        return false;
    // The end itself, not what rounding makes of it.
    if (GetTarget())
        GetTarget()->SetValue(ratio < 1.0 ? ratio * (m_EndValue - m_StartValue) + m_StartValue
                                          : m_EndValue);
    return IsAway();
}

bool CCaptureParamTimeLink::IsAway() const {
    return !GetTarget() || Core::Differs(GetTarget()->GetValue(), m_EndValue);
}

} // namespace Lathe::DataModel::Objects
