// The test by which filters flush denormal samples.
#pragma once

#include "core/Realtime.h"

#include <bit>
#include <cstdint>

namespace Lathe::Audio::DSP::Filters {

// True for zeros and denormals: all exponent bits are zero.
inline bool IsZeroOrDenormal(float value) LATHE_REALTIME {
    return (std::bit_cast<std::uint32_t>(value) & 0x7f800000u) == 0;
}

} // namespace Lathe::Audio::DSP::Filters
