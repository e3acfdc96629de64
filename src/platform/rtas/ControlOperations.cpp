#include "platform/rtas/Instance.h"
#include "platform/rtas/Operations.h"
#include "platform/rtas/Process.h"

namespace RTASLibrary {

namespace {

// Finds room for a text in order, and makes the text empty; null for a control that isn't there.
const CPluginControl* PrepareText(const CInstance& instance, const RTASControlText& call) {
    const CPluginControl* const control = instance.GetProcess().GetControl(call.control);
    if (!control || !call.text || call.length < 0)
        return nullptr;
    call.text[0] = '\0';
    return control;
}

} // namespace

std::int32_t GetControlCount(CInstance& instance, RTASProcessCall& call) {
    call.value = static_cast<std::int32_t>(instance.GetProcess().GetControlCount());
    return RTAS_OK;
}

std::int32_t GetControlInfo(CInstance& instance, RTASControlInfo& info) {
    const CProcess& process = instance.GetProcess();
    const CPluginControl* const control = process.GetControl(info.control);
    if (!control)
        return RTAS_WRONG_ARGUMENT;
    info.steps = static_cast<std::int32_t>(control->GetNumberOfSteps());
    info.isContinuous = control->IsContinuous();
    info.isAutomatable = control->IsAutomatable();
    info.defaultValue = static_cast<std::int32_t>(control->GetDefaultValue());
    info.isMasterBypass = process.IsMasterBypass(info.control);
    info.isSpecial = process.IsSpecialControl(info.control);
    return RTAS_OK;
}

std::int32_t GetControlName(CInstance& instance, RTASControlText& call) {
    const CPluginControl* const control = PrepareText(instance, call);
    if (!control)
        return RTAS_WRONG_ARGUMENT;
    control->GetNameOfLength(call.text, call.length);
    return RTAS_OK;
}

std::int32_t GetControlValue(CInstance& instance, RTASControlText& call) {
    const CPluginControl* const control = instance.GetProcess().GetControl(call.control);
    if (!control)
        return RTAS_WRONG_ARGUMENT;
    call.value = static_cast<std::int32_t>(control->GetValue());
    return RTAS_OK;
}

std::int32_t SetControlValue(CInstance& instance, RTASControlText& call) {
    CProcess& process = instance.GetProcess();
    if (!process.GetControl(call.control))
        return RTAS_WRONG_ARGUMENT;
    process.OnControlValueChanged(call.control, call.value);
    return RTAS_OK;
}

std::int32_t ControlValueToText(CInstance& instance, RTASControlText& call) {
    const CPluginControl* const control = PrepareText(instance, call);
    if (!control)
        return RTAS_WRONG_ARGUMENT;
    control->GetValueString(call.text, call.length, call.value);
    return RTAS_OK;
}

std::int32_t ControlTextToValue(CInstance& instance, RTASControlText& call) {
    const CPluginControl* const control = instance.GetProcess().GetControl(call.control);
    if (!control || !call.text)
        return RTAS_WRONG_ARGUMENT;
    call.value = static_cast<std::int32_t>(control->ConvertStringToValue(call.text));
    return RTAS_OK;
}

} // namespace RTASLibrary
