// A parameter that reads a surface where two other parameters point.
#pragma once

#include "datamodel/overtime/FunctionValueParam.h"

namespace Lathe::DataModel::Objects {

class CCaptureSurfaceValueParam : public TFunctionValueParam<IConstCaptureSurface> {
public:
    CCaptureSurfaceValueParam(const IConstCaptureSurface* surface, const IConstCaptureParam* x,
                              const IConstCaptureParam* y);

    double GetValue() const override { return Evaluate(m_X, m_Y); }
    void Disconnect() override;

    // Each can be null, and outlives its connection.
    void SetSurface(const IConstCaptureSurface* surface) { SetFunction(surface); }
    void SetX(const IConstCaptureParam* x) { m_X.Set(x); }
    void SetY(const IConstCaptureParam* y) { m_Y.Set(y); }

private:
    CParamInput m_X{*this};
    CParamInput m_Y{*this};
};

} // namespace Lathe::DataModel::Objects
