#include "datamodel/links/CaptureParamConnection.h"

#include "core/Differs.h"
#include "datamodel/links/ParamTransfer.h"
#include "datamodel/objects/ParamInfo.h"
#include "math/ValueCurve.h"

namespace Lathe::DataModel::Objects {

namespace {

bool IsCaptured(const ICaptureParam* param) {
    return param && param->IsCaptured();
}

} // namespace

void CCaptureParamConnection::SCommands::Unsubscribe(const ICaptureParam* param) {
    if (!param)
        return;
    param->GetValueChangedEvent().RemoveCommand(m_ValueChanged);
    param->GetBeginCaptureEvent().RemoveCommand(m_BeginCapture);
    param->GetEndCaptureEvent().RemoveCommand(m_EndCapture);
}

void CCaptureParamConnection::SCommands::Subscribe(const ICaptureParam* param) {
    Unsubscribe(param);
    if (!param)
        return;
    param->GetValueChangedEvent().AddCommand(m_ValueChanged);
    param->GetBeginCaptureEvent().AddCommand(m_BeginCapture);
    param->GetEndCaptureEvent().AddCommand(m_EndCapture);
}

CCaptureParamConnection::CCaptureParamConnection()
    : m_FirstCommands{{*this, &CCaptureParamConnection::OnFirstValueChanged},
                      {*this, &CCaptureParamConnection::OnFirstBeginCapture},
                      {*this, &CCaptureParamConnection::OnFirstEndCapture}},
      m_SecondCommands{{*this, &CCaptureParamConnection::OnSecondValueChanged},
                       {*this, &CCaptureParamConnection::OnSecondBeginCapture},
                       {*this, &CCaptureParamConnection::OnSecondEndCapture}} {
    Math::GetCurveFunctions(Math::EParamValueCurve::Linear, m_Function, m_InverseFunction);
}

CCaptureParamConnection::~CCaptureParamConnection() {
    Switch(false);
}

void CCaptureParamConnection::SetEnabled(bool enabled) {
    if (enabled == m_Enabled)
        return;
    Switch(enabled);
    m_EnabledChanged.Notify();
}

void CCaptureParamConnection::SetPaused(bool paused) {
    if (paused == m_Paused)
        return;
    m_Paused = paused;
    OnFirstValueChanged();
}

void CCaptureParamConnection::Disconnect() {
    SetFirst(nullptr);
    SetSecond(nullptr);
}

void CCaptureParamConnection::SetReverse(bool reverse) {
    if (reverse == m_Reverse)
        return;
    m_Reverse = reverse;
    OnFirstValueChanged();
    m_ReverseChanged.Notify();
}

void CCaptureParamConnection::SetResponseCurve(Math::EParamValueCurve curve) {
    Math::GetCurveFunctions(curve, m_Function, m_InverseFunction);
    OnFirstValueChanged();
}

void CCaptureParamConnection::SetNormalized(bool normalized) {
    m_Normalized = normalized;
    OnFirstValueChanged();
}

void CCaptureParamConnection::SetDiff(bool diff) {
    if (diff == m_Diff)
        return;
    m_Diff = diff;
    if (!m_Diff)
        OnFirstValueChanged();
}

void CCaptureParamConnection::Switch(bool enabled) {
    if (enabled == m_Enabled)
        return;
    m_Enabled = enabled;
    if (m_Enabled)
        Join();
    else
        Part();
}

// Captures come before the subscriptions to the side that they reach, so that it doesn't answer. A
// handler of theirs may switch off again.
void CCaptureParamConnection::Join() {
    if (IsCaptured(m_First))
        OnFirstBeginCapture();
    if (!m_Enabled)
        return;
    m_FirstCommands.Subscribe(m_First);
    if (!IsCaptured(m_First) && IsCaptured(m_Second))
        OnSecondBeginCapture();
    if (!m_Enabled)
        return;
    m_SecondCommands.Subscribe(m_Second);
    ReadPreviousValues();
    OnFirstValueChanged();
}

void CCaptureParamConnection::Part() {
    Unsubscribe();
    if (m_FirstCaptured)
        OnFirstEndCapture();
    if (m_SecondCaptured)
        OnSecondEndCapture();
}

void CCaptureParamConnection::Replace(ICaptureParam*& side, ICaptureParam* param) {
    const bool enabled = m_Enabled;
    Switch(false);
    // A handler may have switched on again.
    m_Enabled = false;
    Unsubscribe();
    side = param;
    Switch(enabled);
}

void CCaptureParamConnection::Unsubscribe() {
    m_FirstCommands.Unsubscribe(m_First);
    m_SecondCommands.Unsubscribe(m_Second);
}

// A call on the way comes of the change that this connection itself made. It is not let through
// even under the constraint: the way back is rarely exact, and would move what somebody has just
// set.
void CCaptureParamConnection::Sync(bool forward) {
    if (m_Depth == 0)
        Pass(forward);
}

void CCaptureParamConnection::Pass(bool forward) {
    if (m_Paused || !m_Enabled)
        return;
    ++m_Depth;
    MoveOther(forward);
    ReadPreviousValues();
    --m_Depth;
}

void CCaptureParamConnection::MoveOther(bool forward) {
    const ICaptureParam* from = forward ? m_First : m_Second;
    ICaptureParam* to = forward ? m_Second : m_First;
    if (!from || !to)
        return;
    const double mapped = Map(from->GetValue(), forward);
    if (m_Diff) {
        const double previous = forward ? m_FirstPrevious : m_SecondPrevious;
        // The step comes first, so that a step of 0 leaves the side exactly where it is.
        to->SetValue(to->GetValue() + (mapped - Map(previous, forward)));
        return;
    }
    to->SetValue(mapped);
    if (m_Constraint && m_Depth < 2 && Core::Differs(to->GetValue(), mapped))
        Pass(!forward);
}

double CCaptureParamConnection::Map(double value, bool forward) const {
    const IConstParamInfo& first = m_First->GetInfo();
    const IConstParamInfo& second = m_Second->GetInfo();
    return forward
               ? TransferParamValue(value, {*m_Function, m_Reverse, m_Normalized}, first, second)
               : TransferParamValue(value, {*m_InverseFunction, m_Reverse, m_Normalized, true},
                                    second, first);
}

void CCaptureParamConnection::ReadPreviousValues() {
    if (m_First)
        m_FirstPrevious = m_First->GetValue();
    if (m_Second)
        m_SecondPrevious = m_Second->GetValue();
}

void CCaptureParamConnection::OnFirstBeginCapture() {
    m_FirstCaptured = true;
    if (m_Second)
        m_Second->Capture();
}

void CCaptureParamConnection::OnFirstEndCapture() {
    m_FirstCaptured = false;
    if (m_Second)
        m_Second->Release();
}

void CCaptureParamConnection::OnSecondBeginCapture() {
    m_SecondCaptured = true;
    if (m_First)
        m_First->Capture();
}

void CCaptureParamConnection::OnSecondEndCapture() {
    m_SecondCaptured = false;
    if (m_First)
        m_First->Release();
}

} // namespace Lathe::DataModel::Objects
