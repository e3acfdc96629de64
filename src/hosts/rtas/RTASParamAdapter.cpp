#include "hosts/rtas/RTASParamAdapter.h"

#include "core/Differs.h"
#include "hosts/rtas/HostInteger.h"
#include "platform/rtas/Process.h"
#include "plugin/midi/MIDICCMapping.h"

namespace LatheExt::RTASPlugin {

using namespace Lathe::Audio::Plugin;

void CRTASParamAdapter::Setup(CProcess* process, const IConstParamInfo& info,
                              const IMIDICCSetting& setting, int controlNumber) {
    m_ControlNumber = controlNumber;
    m_Process = process;
    m_Info.Copy(info);
    m_Setting = &setting;
    m_Value.store(info.GetDefault(), std::memory_order_relaxed);
}

void CRTASParamAdapter::SetValue(double value) {
    Replace(value, &CProcess::SetControlValue);
}

void CRTASParamAdapter::SetValueQuietly(double value) {
    Replace(value, &CProcess::UpdateControlValue);
}

void CRTASParamAdapter::Replace(double value, Tell tell) {
    if (!Lathe::Core::Differs(value, GetValue()))
        return;
    m_Value.store(value, std::memory_order_relaxed);
    (m_Process->*tell)(m_ControlNumber, ToHost(value));
    NotifyValueChanged();
}

void CRTASParamAdapter::SetFromHost(long value) {
    if (ToHost(GetValue()) == value)
        return;
    m_Value.store(FromHost(value), std::memory_order_relaxed);
    NotifyValueChanged();
}

// The host hears of a gesture before anybody else does.
void CRTASParamAdapter::Capture() {
    if (IsCaptured())
        return;
    m_Process->TouchControl(m_ControlNumber);
    BeginCapture();
}

void CRTASParamAdapter::Release() {
    if (!IsCaptured())
        return;
    m_Process->ReleaseControl(m_ControlNumber);
    EndCapture();
}

long CRTASParamAdapter::ToHost(double value) const {
    return PositionToHostInteger(MapValueToController(value, m_Info, *m_Setting));
}

double CRTASParamAdapter::FromHost(long value) const {
    return MapControllerToValue(HostIntegerToPosition(value), m_Info, *m_Setting);
}

} // namespace LatheExt::RTASPlugin
