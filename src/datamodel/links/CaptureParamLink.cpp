#include "datamodel/links/CaptureParamLink.h"

#include "core/Differs.h"
#include "datamodel/links/ParamTransfer.h"
#include "datamodel/objects/ParamInfo.h"
#include "math/PlainFunction.h"
#include "math/ValueCurve.h"

#include <utility>

namespace Lathe::DataModel::Objects {

namespace {

const Math::IFunction& GetIdentity() {
    return Math::TFunction<Math::FunctionsLibrary::Identity>::GetInstance();
}

} // namespace

CCaptureParamLink::CCaptureParamLink(IConstCaptureParam* source, ICaptureParam* target)
    : m_Function(&GetIdentity(), false),
      m_TargetInfoCommand(*this, &CCaptureParamLink::OnTargetInfoChanged) {
    Join(source, target);
}

CCaptureParamLink::~CCaptureParamLink() {
    Disconnect();
}

void CCaptureParamLink::SetReverse(bool reverse) {
    if (reverse == m_Reverse)
        return;
    m_Reverse = reverse;
    UpdateAfterSetting();
    m_ReverseChanged.Notify();
}

void CCaptureParamLink::SetNormalized(bool normalized) {
    if (normalized == m_Normalized)
        return;
    m_Normalized = normalized;
    UpdateAfterSetting();
}

void CCaptureParamLink::SetDiff(bool diff) {
    if (diff == m_Diff)
        return;
    m_Diff = diff;
    if (!m_Diff)
        UpdateAfterSetting();
}

void CCaptureParamLink::SetResponseCurve(Math::EParamValueCurve curve) {
    const Math::IFunction* direct = nullptr;
    const Math::IFunction* inverse = nullptr;
    Math::GetCurveFunctions(curve, direct, inverse);
    SetFunction(direct, false);
}

void CCaptureParamLink::SetFunction(const Math::IFunction* function, bool owned) {
    if (function)
        m_Function.Set(function, owned);
    else
        m_Function.Set(&GetIdentity(), false);
    UpdateAfterSetting();
}

void CCaptureParamLink::Update() {
    if (!GetSource())
        return;
    const double value = GetSource()->GetValue();
    // Noted before the target's handlers run, which may lead back here.
    const double previous = std::exchange(m_PreviousValue, value);
    if (!GetTarget() || (IsOnModifyOnly() && !Core::Differs(value, previous)))
        return;
    // The step comes first, so that a step of 0 leaves the target exactly where it is.
    GetTarget()->SetValue(m_Diff ? GetTarget()->GetValue() + (Transfer(value) - Transfer(previous))
                                 : Transfer(value));
}

// A step begins where the source stands now.
void CCaptureParamLink::OnEnabled() {
    if (GetSource())
        m_PreviousValue = GetSource()->GetValue();
}

void CCaptureParamLink::BeforeTargetChange() {
    if (GetTarget())
        GetTarget()->GetInfo().GetChangedEvent().RemoveCommand(m_TargetInfoCommand);
}

void CCaptureParamLink::AfterTargetChange() {
    if (GetTarget())
        GetTarget()->GetInfo().GetChangedEvent().AddCommand(m_TargetInfoCommand);
}

double CCaptureParamLink::Transfer(double value) const {
    return TransferParamValue(value, {*m_Function, m_Reverse, m_Normalized}, GetSource()->GetInfo(),
                              GetTarget()->GetInfo());
}

void CCaptureParamLink::UpdateAfterSetting() {
    if (!IsOnModifyOnly())
        Update();
}

void CCaptureParamLink::OnTargetInfoChanged() {
    if (!IsOnModifyOnly())
        OnSourceValueChanged();
}

} // namespace Lathe::DataModel::Objects
