// A parameter that reads a curve where another parameter points.
#pragma once

#include "datamodel/overtime/FunctionValueParam.h"

namespace Lathe::DataModel::Objects {

class CCaptureCurveValueParam : public TFunctionValueParam<IConstCaptureCurve> {
public:
    CCaptureCurveValueParam(const IConstCaptureCurve* curve, const IConstCaptureParam* x);

    double GetValue() const override { return Evaluate(m_X); }
    void Disconnect() override;

    // Each can be null, and outlives its connection.
    void SetCurve(const IConstCaptureCurve* curve) { SetFunction(curve); }
    void SetX(const IConstCaptureParam* x) { m_X.Set(x); }

private:
    CParamInput m_X{*this};
};

} // namespace Lathe::DataModel::Objects
