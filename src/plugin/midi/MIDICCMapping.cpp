#include "plugin/midi/MIDICCMapping.h"

#include "core/Differs.h"
#include "datamodel/objects/ParamInfo.h"
#include "math/Function.h"
#include "plugin/interfaces/MIDICCSetting.h"

namespace Lathe::Audio::Plugin {

namespace {

using DataModel::Objects::IConstParamInfo;
using DataModel::Objects::IParamPositionMapper;

// A NaN gives the minimum.
double Clamp(double value, double min, double max) {
    if (!(value > min))
        return min;
    return value > max ? max : value;
}

} // namespace

double MapControllerToValue(double controller, const IConstParamInfo& info,
                            const IMIDICCSetting& setting) {
    const Math::IFunction *direct = nullptr, *inverse = nullptr;
    Math::GetCurveFunctions(setting.GetCurve(), direct, inverse);
    const IParamPositionMapper& mapper = info.GetPositionMapper();
    const double a = mapper.ValueToPosition(setting.GetMin());
    const double b = mapper.ValueToPosition(setting.GetMax());
    const double value = mapper.PositionToValue((b - a) * direct->Evaluate(controller) + a);
    return Clamp(value, info.GetMin(), info.GetMax());
}

double MapValueToController(double value, const IConstParamInfo& info,
                            const IMIDICCSetting& setting) {
    const Math::IFunction *direct = nullptr, *inverse = nullptr;
    Math::GetCurveFunctions(setting.GetCurve(), direct, inverse);
    const IParamPositionMapper& mapper = info.GetPositionMapper();
    const double a = mapper.ValueToPosition(setting.GetMin());
    const double b = mapper.ValueToPosition(setting.GetMax());
    const double above = mapper.ValueToPosition(value) - a;
    const double travel = Core::Differs(a, b) ? above / (b - a) : above;
    return inverse->Evaluate(Clamp(travel, 0.0, 1.0));
}

} // namespace Lathe::Audio::Plugin
