// The many-to-many link of curves: the sum, difference, product or quotient of all sources goes to
// every target.
#pragma once

#include "datamodel/links/MultipleCaptureObjectLink.h"
#include "datamodel/objects/capture/CaptureObject.h"
#include "math/FunctionsAggregate.h"

#include <memory>

namespace Lathe::DataModel::Objects {

class CMultipleCaptureCurveLink
    : public TMultipleCaptureObjectLink<IConstCaptureCurve, ICaptureCurve> {
public:
    using Operator = Math::TNFunctionsAggregate<Math::IFunction>;

    // Keeps a clone, which counts from the next event on; with null, as at first, the link writes
    // nothing.
    void SetOperator(const Operator* combine) {
        m_Operator.reset(combine ? combine->Clone() : nullptr);
    }

protected:
    void Update(const IConstCaptureCurve* changed) override;

private:
    // Over clones of the sources' functions.
    std::unique_ptr<Operator> Combine() const;

    std::unique_ptr<Operator> m_Operator;
};

} // namespace Lathe::DataModel::Objects
