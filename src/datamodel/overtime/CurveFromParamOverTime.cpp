#include "datamodel/overtime/CurveFromParamOverTime.h"

namespace Lathe::DataModel::Objects {

void SCurveFromParam::TakeInfo(const IConstParamInfo& source, CCurveInfo& info,
                               Math::CSweptValues& history) {
    history.SetDefaultValue(source.GetDefault());
    info.SetYInfo(source);
}

} // namespace Lathe::DataModel::Objects
