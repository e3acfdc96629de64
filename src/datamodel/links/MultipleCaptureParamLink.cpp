#include "datamodel/links/MultipleCaptureParamLink.h"

#include "datamodel/objects/ParamInfo.h"
#include "math/Function.h"
#include "math/FunctionsLibrary.h"

#include <algorithm>

namespace Lathe::DataModel::Objects {

using Math::FunctionsLibrary::Denormalize;
using Math::FunctionsLibrary::Normalize;

CMultipleCaptureParamLink::CMultipleCaptureParamLink() : m_MuxFunction(FindMuxFunction("mean")) {
    SetResponseCurve(Math::EParamValueCurve::Linear);
}

void CMultipleCaptureParamLink::SetReverse(bool reverse) {
    m_Reverse = reverse;
    UpdateOnce(nullptr);
    m_ReverseChanged.Notify();
}

void CMultipleCaptureParamLink::SetResponseCurve(Math::EParamValueCurve curve) {
    const Math::IFunction* inverse = nullptr;
    Math::GetCurveFunctions(curve, m_Function, inverse);
}

void CMultipleCaptureParamLink::SetTriggerMin(double min) {
    m_TriggerMin = min;
    m_TriggerMinOn = true;
}

void CMultipleCaptureParamLink::SetTriggerMax(double max) {
    m_TriggerMax = max;
    m_TriggerMaxOn = true;
}

void CMultipleCaptureParamLink::Update(const IConstCaptureParam* changed) {
    if (!TriggerPasses(changed) || GetSourceCount() == 0 || !m_MuxFunction)
        return;
    const double result = Combine();
    const bool onlyOutside = !changed && IsTriggerOn();
    ForEachTarget(changed, [this, result, onlyOutside](ICaptureParam& target) {
        if (!onlyOutside || !TriggerPasses(&target))
            Write(target, result);
    });
}

bool CMultipleCaptureParamLink::TriggerPasses(const IConstCaptureParam* object) const {
    if (!object)
        return true;
    const double value = GetSeenValue(*object);
    return (!m_TriggerMinOn || value >= m_TriggerMin) && !(m_TriggerMaxOn && value > m_TriggerMax);
}

double CMultipleCaptureParamLink::GetSeenValue(const IConstCaptureParam& object) const {
    const double value = object.GetValue();
    const IConstParamInfo& info = object.GetInfo();
    return m_Normalized ? Normalize(value, info.GetMin(), info.GetMax()) : value;
}

double CMultipleCaptureParamLink::Combine() {
    m_Values.clear();
    for (int i = 0; i < GetSourceCount(); ++i)
        m_Values.push_back(GetSeenValue(GetSource(i)));
    double result = m_Function->Evaluate(m_MuxFunction(m_Values));
    if (m_Normalized)
        result = std::clamp(result, 0.0, 1.0);
    return m_Reverse ? 1.0 - result : result;
}

void CMultipleCaptureParamLink::Write(ICaptureParam& target, double result) const {
    const IConstParamInfo& info = target.GetInfo();
    target.SetValue(m_Normalized ? Denormalize(result, info.GetMin(), info.GetMax()) : result);
}

} // namespace Lathe::DataModel::Objects
