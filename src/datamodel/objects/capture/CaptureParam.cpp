#include "datamodel/objects/capture/CaptureParam.h"

#include "core/Differs.h"

namespace Lathe::DataModel::Objects {

CCaptureParam::CCaptureParam() : m_InfoChangedCommand(*this, &CCaptureParam::OnInfoChanged) {
    m_Info.GetChangedEvent().AddCommand(m_InfoChangedCommand);
}

CCaptureParam::~CCaptureParam() {
    m_Info.GetChangedEvent().RemoveCommand(m_InfoChangedCommand);
}

void CCaptureParam::SetValue(double value) {
    Store(Clamp(value));
    m_ValueSet.Notify();
}

double CCaptureParam::Clamp(double value) const {
    const double min = m_Info.GetMin();
    if (min > value)
        value = min;
    const double max = m_Info.GetMax();
    return max >= value ? value : max;
}

void CCaptureParam::Store(double value) {
    if (!Core::Differs(value, m_Value))
        return;
    m_Value = value;
    NotifyValueChanged();
}

} // namespace Lathe::DataModel::Objects
