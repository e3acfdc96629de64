#include "datamodel/objects/capture/MTCaptureParam.h"

#include "core/Differs.h"

namespace Lathe::DataModel::Objects {

void CMTCaptureParam::SetInfo(const IConstParamInfo& info) {
    m_Info.Copy(info);
    SetValue(m_Info.GetDefault());
}

void CMTCaptureParam::SetValue(double value) {
    if (value < m_Info.GetMin())
        value = m_Info.GetMin();
    if (value > m_Info.GetMax())
        value = m_Info.GetMax();
    if (!Core::Differs(value, GetValue()))
        return;
    m_Value.store(value, std::memory_order_relaxed);
    NotifyValueChanged();
}

} // namespace Lathe::DataModel::Objects
