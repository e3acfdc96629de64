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

// The way of a controller: its curve, and the positions of its ends.
struct STravel {
    STravel(const IConstParamInfo& info, const IMIDICCSetting& setting)
        : m_Mapper(info.GetPositionMapper()),
          m_Bottom(m_Mapper.ValueToPosition(setting.GetMin())),
          m_Top(m_Mapper.ValueToPosition(setting.GetMax())) {
        Math::GetCurveFunctions(setting.GetCurve(), m_Direct, m_Inverse);
    }

    const IParamPositionMapper& m_Mapper;
    const double m_Bottom;
    const double m_Top;
    const Math::IFunction* m_Direct = nullptr;
    const Math::IFunction* m_Inverse = nullptr;
};

} // namespace

double MapControllerToValue(double controller, const IConstParamInfo& info,
                            const IMIDICCSetting& setting) {
    const STravel travel(info, setting);
    const double position =
        (travel.m_Top - travel.m_Bottom) * travel.m_Direct->Evaluate(controller) + travel.m_Bottom;
    return Clamp(travel.m_Mapper.PositionToValue(position), info.GetMin(), info.GetMax());
}

double MapValueToController(double value, const IConstParamInfo& info,
                            const IMIDICCSetting& setting) {
    const STravel travel(info, setting);
    const double above = travel.m_Mapper.ValueToPosition(value) - travel.m_Bottom;
    const double part = Core::Differs(travel.m_Bottom, travel.m_Top)
                            ? above / (travel.m_Top - travel.m_Bottom)
                            : above;
    return travel.m_Inverse->Evaluate(Clamp(part, 0.0, 1.0));
}

} // namespace Lathe::Audio::Plugin
