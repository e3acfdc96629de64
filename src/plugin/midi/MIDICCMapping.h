// Between the travel of a controller and the values of a parameter, by the range and the curve of
// the parameter's setting.
//
// With a and b the positions of the setting's minimum and maximum: the value lies at the position
// (b - a) curve(controller) + a, and the other way is its inverse.
#pragma once

#include "core/Realtime.h"

namespace Lathe::DataModel::Objects {
class IConstParamInfo;
}

namespace Lathe::Audio::Plugin {

class IMIDICCSetting;

// The controller is 0 to 1. The value is within the description's range, whatever the setting
// holds; where its numbers lead to none, the minimum.
double MapControllerToValue(double controller, const DataModel::Objects::IConstParamInfo& info,
                            const IMIDICCSetting& setting) LATHE_REALTIME;

// 0 to 1, also for values outside the setting's range. An empty range gives how far the value lies
// above it.
double MapValueToController(double value, const DataModel::Objects::IConstParamInfo& info,
                            const IMIDICCSetting& setting) LATHE_REALTIME;

} // namespace Lathe::Audio::Plugin
