#include "datamodel/objects/capture/CaptureCurve.h"

#include "math/PlainFunction.h"

namespace Lathe::DataModel::Objects {

CConstCaptureCurve::CConstCaptureCurve(const Math::IFunction* value, bool owned)
    : TConstCaptureClone(
          value ? value : Math::TFunction<&Math::FunctionsLibrary::Identity>::GetInstance().Clone(),
          !value || owned) {}

} // namespace Lathe::DataModel::Objects
