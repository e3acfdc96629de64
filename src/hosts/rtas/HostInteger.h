// The host's integers, which span all of 32 bits, and the travel that they stand for.
#pragma once

#include "core/Realtime.h"

#include <cstdint>

namespace LatheExt::RTASPlugin {

// The position is 0 to 1, limited to that; a NaN gives the bottom. Rounds to the nearest integer,
// so that every integer comes back as it was.
std::int32_t PositionToHostInteger(double position) LATHE_REALTIME;
double HostIntegerToPosition(long value) LATHE_REALTIME;

} // namespace LatheExt::RTASPlugin
