// The cascade for processors with AVX2: the first section in a vector of two doubles, the other two
// in one of four.

// The loop has more values than registers, and waits for those that are spilled: so few as can be,
// in everything that this source compiles.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC optimize("schedule-insns", "sched-pressure")
#endif

#include "dsp/kernel/CascadeFloats.h"
#include "dsp/kernel/CascadeFormulas.h"
#include "dsp/kernel/CascadeLoop.h"

#if defined(__AVX2__)

#include <immintrin.h>

namespace Lathe::Audio::DSP::Kernel {

namespace {

struct SLanes {
    // Two frames.
    using CDoubles [[gnu::vector_size(4 * sizeof(double))]] = double;

    struct V {
        V(__m128d first, __m256d rest) : m_First(first), m_Rest(rest) {}
        // Written out, since the compiler's own copies the padding too, by way of the stack.
        V(const V& other) : m_First(other.m_First), m_Rest(other.m_Rest) {}
        V& operator=(const V& other) {
            m_First = other.m_First;
            m_Rest = other.m_Rest;
            return *this;
        }
        __m128d m_First;
        __m256d m_Rest;
    };
    // The lower two floats of the first.
    struct F {
        __m128 m_First;
        __m128 m_Rest;
    };

    // The first section's, then the second's.
    using CPassed = __m128;

    // The least magnitudes.
    struct CWatch {
        void See(__m128 passed) { m_Passed = Least(m_Passed, passed); }
        void See(__m128 first, __m128 second) {
            m_First = Least(m_First, first);
            m_Second = Least(m_Second, second);
        }
        bool HasSeenTiny(const bool* isSilent) const {
            return IsAnyTiny(GetTiny(m_Passed), GetTiny(m_First), GetTiny(m_Second), isSilent);
        }

    private:
        // Twice the bits of a float are in the order of its magnitude.
        static __m128i Least(__m128i least, __m128 given) {
            const __m128i bits = _mm_castps_si128(given);
            return _mm_min_epu32(least, _mm_add_epi32(bits, bits));
        }
        // A bit for each lane that has seen an exponent of zero.
        static int GetTiny(__m128i least) {
            const __m128i isTiny = _mm_cmpeq_epi32(_mm_srli_epi32(least, 24), _mm_setzero_si128());
            return _mm_movemask_ps(_mm_castsi128_ps(isTiny));
        }

        // Of both channels in turns; of each alone.
        __m128i m_Passed = _mm_set1_epi32(-1);
        __m128i m_First = m_Passed;
        __m128i m_Second = m_Passed;
    };

    // Frames 0 and 1, and frames 2 and 3.
    struct CInput {
        CInput(const CGroup& first, const CGroup& second)
            : m_Pairs{_mm256_cvtps_pd(_mm_unpacklo_ps(first, second)),
                      _mm256_cvtps_pd(_mm_unpackhi_ps(first, second))} {}
        __m256d m_Pairs[2];
    };

    static V Load(const double* from) { return {_mm_load_pd(from), _mm256_loadu_pd(from + 2)}; }
    // The history, which has been written in twos: in fours it would have to wait for them.
    static V LoadPairs(const double* from) {
        return {_mm_load_pd(from), _mm256_set_m128d(_mm_load_pd(from + 4), _mm_load_pd(from + 2))};
    }
    static void Store(double* to, const V& v) {
        _mm_store_pd(to, v.m_First);
        _mm256_storeu_pd(to + 2, v.m_Rest);
    }
    static V Multiply(const V& a, const V& b) {
        return {_mm_mul_pd(a.m_First, b.m_First), _mm256_mul_pd(a.m_Rest, b.m_Rest)};
    }
    static V Add(const V& a, const V& b) {
        return {_mm_add_pd(a.m_First, b.m_First), _mm256_add_pd(a.m_Rest, b.m_Rest)};
    }
    static F Round(const V& v) { return {_mm_cvtpd_ps(v.m_First), _mm256_cvtpd_ps(v.m_Rest)}; }
    static void Flush(F& given, V& y) {
        const __m128i isFirstTiny = IsTiny(given.m_First);
        const __m128i isRestTiny = IsTiny(given.m_Rest);
        given.m_First = _mm_andnot_ps(_mm_castsi128_ps(isFirstTiny), given.m_First);
        given.m_Rest = _mm_andnot_ps(_mm_castsi128_ps(isRestTiny), given.m_Rest);
        y.m_First = _mm_andnot_pd(_mm_castsi128_pd(_mm_cvtepi32_epi64(isFirstTiny)), y.m_First);
        y.m_Rest =
            _mm256_andnot_pd(_mm256_castsi256_pd(_mm256_cvtepi32_epi64(isRestTiny)), y.m_Rest);
    }
    template <int K>
    static V Feed(const CInput& input, CPassed passed) {
        return {_mm256_extractf128_pd(input.m_Pairs[K / 2], K % 2), _mm256_cvtps_pd(passed)};
    }
    static CPassed Pass(const F& given) { return _mm_movelh_ps(given.m_First, given.m_Rest); }
    template <int Channel>
    static CGroup Collect(const F* given) {
        const __m128 early = _mm_movehl_ps(given[1].m_Rest, given[0].m_Rest);
        const __m128 late = _mm_movehl_ps(given[3].m_Rest, given[2].m_Rest);
        return PickChannel<Channel>(early, late);
    }
    template <int First, int Last>
    static V Select(const V& yes, const V& no) {
        constexpr int running = (First <= 1 && Last >= 1 ? 3 : 0) | (Last >= 2 ? 12 : 0);
        return {First == 0 ? yes.m_First : no.m_First,
                _mm256_blend_pd(no.m_Rest, yes.m_Rest, running)};
    }
    template <int First, int Last>
    static CPassed SelectOrOne(CPassed passed) {
        constexpr int running = (First <= 1 && Last >= 1 ? 3 : 0) | (Last >= 2 ? 12 : 0);
        return _mm_blend_ps(_mm_set1_ps(1.0f), passed, running);
    }
};

} // namespace

bool RunCascadeAVX2(const SCascadeGroups& groups) {
    return RunCascadeWith<SLanes>(groups);
}

void ComputeSectionAVX2(const SSectionFrames& section) {
    TCascadeFormulas<SLanes>::Compute(section);
}

} // namespace Lathe::Audio::DSP::Kernel

#endif
