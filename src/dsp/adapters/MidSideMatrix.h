// The matrix between left/right and the two channels of a filter, which moves between left/right
// and mid/side without a crossfade of two paths.
#pragma once

#include "core/Realtime.h"
#include "dsp/streams/AudioStream.h"

#include <array>

namespace Lathe::Audio::DSP {

// Ramp of the matrix parameter: its value, from -1 (left/right) to 0 (mid/side), followed by its
// rates per sample by order.
using CMatrixRamp = std::array<double, 3>;

// With a = 1 + x and b = 1 - x: c1 = (a R + b L) / 2, c2 = (b R - a L) / 2. At x = -1 the channels
// are exactly L and R, whatever their samples are. A stream without data reads as zeros. Advances
// the ramp by the samples.
void EncodeMidSide(const IAudioStream& left, const IAudioStream& right, float* channel1,
                   float* channel2, int samples, CMatrixRamp& ramp, int orders) LATHE_REALTIME;

// The inverse, in place, for streams that both have data: with n = 1 / (x x + 1),
// R = (b c2 + a c1) n and L = (b c1 - a c2) n.
void DecodeMidSide(IAudioStream& stream1, IAudioStream& stream2, int samples, CMatrixRamp& ramp,
                   int orders) LATHE_REALTIME;

} // namespace Lathe::Audio::DSP
