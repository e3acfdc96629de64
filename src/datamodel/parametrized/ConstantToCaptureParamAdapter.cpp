#include "datamodel/parametrized/ConstantToCaptureParamAdapter.h"

#include "math/Constant.h"

namespace Lathe::DataModel::Objects {

CConstantToCaptureParamAdapter::CConstantToCaptureParamAdapter(Math::IConstant* constant,
                                                               bool owned)
    : m_Constant(constant ? constant : new Math::CConstant, !constant || owned) {}

CConstantToCaptureParamAdapter::~CConstantToCaptureParamAdapter() = default;

double CConstantToCaptureParamAdapter::GetValue() const {
    return m_Constant->Evaluate();
}

} // namespace Lathe::DataModel::Objects
