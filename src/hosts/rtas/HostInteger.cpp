#include "hosts/rtas/HostInteger.h"

#include <cmath>

namespace LatheExt::RTASPlugin {

namespace {

constexpr double Above = 2147483647.0;
constexpr double Below = 2147483648.0;

} // namespace

std::int32_t PositionToHostInteger(double position) {
    if (!(position > 0.0))
        position = 0.0;
    else if (position > 1.0)
        position = 1.0;
    return static_cast<std::int32_t>(std::floor(0.5 + (Above + Below) * position - Below));
}

double HostIntegerToPosition(long value) {
    return (static_cast<double>(value) + Below) / (Above + Below);
}

} // namespace LatheExt::RTASPlugin
