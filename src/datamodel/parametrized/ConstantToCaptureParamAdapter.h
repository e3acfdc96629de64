// A constant, such as a formula without variables, seen as a read-only parameter.
#pragma once

#include "core/ownership/Ownership.h"
#include "datamodel/objects/ParamInfo.h"
#include "datamodel/objects/capture/CaptureObject.h"
#include "datamodel/objects/capture/CaptureState.h"

namespace Lathe::Math {
class IConstant;
}

namespace Lathe::DataModel::Objects {

// For one thread at a time. Subclasses say when the value changes and is captured.
class CConstantToCaptureParamAdapter : public TCaptureState<IConstCaptureParam> {
public:
    // Null gives a constant of 0; what is given is deleted only if owned.
    explicit CConstantToCaptureParamAdapter(Math::IConstant* constant = nullptr, bool owned = true);
    ~CConstantToCaptureParamAdapter() override;

    const CParamInfo& GetInfo() const override { return m_Info; }
    // Empty until the creator fills it. Its range does not limit the value.
    CParamInfo& GetInfo() { return m_Info; }
    // Evaluates the constant at each call.
    double GetValue() const override;

private:
    CParamInfo m_Info;
    Core::TOwnership<Math::IConstant> m_Constant;
};

} // namespace Lathe::DataModel::Objects
