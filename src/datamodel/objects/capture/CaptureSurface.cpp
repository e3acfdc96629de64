#include "datamodel/objects/capture/CaptureSurface.h"

#include "math/PlainFunction.h"

namespace Lathe::DataModel::Objects {

CConstCaptureSurface::CConstCaptureSurface(const Math::IBinaryFunction* value, bool owned)
    : TConstCaptureClone(
          value ? value : Math::TBinaryFunction<&Math::FunctionsLibrary::X>::GetInstance().Clone(),
          !value || owned) {}

} // namespace Lathe::DataModel::Objects
