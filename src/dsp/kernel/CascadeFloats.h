// What the versions of the cascade for x86-64 do alike with floats of its vectors.
//
// Always inlined, so that sources for different processors share no code.
#pragma once

#include "core/Realtime.h"
#include "dsp/kernel/CascadeLanes.h"

#if defined(__SSE2__)

#include <emmintrin.h>

namespace Lathe::Audio::DSP::Kernel {

// All bits of the exponent are zero.
[[gnu::always_inline]] inline __m128i IsTiny(__m128 v) LATHE_REALTIME {
    const __m128i exponent = _mm_and_si128(_mm_castps_si128(v), _mm_set1_epi32(0x7f800000));
    return _mm_cmpeq_epi32(exponent, _mm_setzero_si128());
}

// From bits for what is tiny: of both channels in turns, and of each alone.
[[gnu::always_inline]] inline bool IsAnyTiny(int passed, int first, int second,
                                             const bool* isSilent) LATHE_REALTIME {
    const bool isFirstTiny = (passed & 5) != 0 || first != 0;
    const bool isSecondTiny = (passed & 10) != 0 || second != 0;
    return (isFirstTiny && !isSilent[0]) || (isSecondTiny && !isSilent[1]);
}

// Of frames 0 and 1, and of frames 2 and 3, of both channels in turns.
template <int Channel>
[[gnu::always_inline]] inline CGroup PickChannel(__m128 early, __m128 late) LATHE_REALTIME {
    return _mm_shuffle_ps(early, late, _MM_SHUFFLE(2 + Channel, Channel, 2 + Channel, Channel));
}

} // namespace Lathe::Audio::DSP::Kernel

#endif
