#include "datamodel/links/MultipleCaptureCurveLink.h"

namespace Lathe::DataModel::Objects {

void CMultipleCaptureCurveLink::Update(const IConstCaptureCurve* changed) {
    if (!m_Operator)
        return;
    const std::unique_ptr<Operator> combined = Combine();
    ForEachTarget(changed, [&combined](ICaptureCurve& target) { target.SetValue(*combined); });
}

std::unique_ptr<CMultipleCaptureCurveLink::Operator> CMultipleCaptureCurveLink::Combine() const {
    std::unique_ptr<Operator> combined(m_Operator->Clone());
    combined->SetCount(GetSourceCount());
    for (int i = 0; i < GetSourceCount(); ++i)
        combined->SetFunction(i, GetSource(i).GetValue().Clone(), true);
    return combined;
}

} // namespace Lathe::DataModel::Objects
