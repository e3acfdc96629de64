#include "platform/rtas/Process.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

std::int32_t ToHostValue(long value) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<long>(value, Limits::min(), Limits::max()));
}

} // namespace

CProcess::~CProcess() = default;

void CProcess::Initialize() {
    for (const std::unique_ptr<CPluginControl>& control : m_Controls)
        control->SetValue(control->GetDefaultValue());
}

void CProcess::SetSampleRate(long rate) {
    m_Setup.m_SampleRate = rate;
}

void CProcess::OnControlValueChanged(long control, long value) {
    UpdateControlValue(control, value);
}

long CProcess::GetDelaySamples(long* samples) {
    *samples = 0;
    return 0;
}

const void* CProcess::QueryTable(std::uint32_t /*selector*/, long* size) {
    *size = 0;
    return nullptr;
}

bool CProcess::PluginCommand(const char* name, const char* /*argument*/, std::string& result) {
    result = std::string("Unknown command: ") + name;
    return false;
}

void CProcess::AddControl(std::unique_ptr<CPluginControl> control) {
    if (!control)
        return;
    if (auto* const stock = dynamic_cast<CPluginControl_Stock*>(control.get()))
        stock->SetControlNumber(GetControlCount() + 1);
    m_Controls.push_back(std::move(control));
}

void CProcess::SetMasterBypassControl(long control) {
    m_MasterBypass = control;
    AddSpecialControl(control);
}

void CProcess::AddSpecialControl(long control) {
    m_SpecialControls.insert(control);
}

void CProcess::SetControlValue(long control, long value) {
    if (!GetControl(control))
        return;
    const std::int32_t hostValue = ToHostValue(value);
    if (m_Setup.m_Calls.controlChanged)
        m_Setup.m_Calls.controlChanged(m_Setup.m_Calls.context, static_cast<std::int32_t>(control),
                                       hostValue);
    OnControlValueChanged(control, hostValue);
}

void CProcess::UpdateControlValue(long control, long value) {
    if (CPluginControl* const updated = GetControl(control))
        updated->SetValue(ToHostValue(value));
}

void CProcess::TouchControl(long control) {
    if (m_Setup.m_Calls.controlTouched && GetControl(control))
        m_Setup.m_Calls.controlTouched(m_Setup.m_Calls.context, static_cast<std::int32_t>(control));
}

void CProcess::ReleaseControl(long control) {
    if (m_Setup.m_Calls.controlReleased && GetControl(control))
        m_Setup.m_Calls.controlReleased(m_Setup.m_Calls.context,
                                        static_cast<std::int32_t>(control));
}

void CProcess::CountChange() {
    m_ChangeCount.fetch_add(1, std::memory_order_relaxed);
}

CPluginControl* CProcess::GetControl(long control) const {
    if (control < 1 || control > GetControlCount())
        return nullptr;
    return m_Controls[static_cast<std::size_t>(control - 1)].get();
}

bool CProcess::IsSpecialControl(long control) const {
    return m_SpecialControls.contains(control);
}
