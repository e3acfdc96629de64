// The cascade for every x86-64 processor: the two channels of a section in one vector.
#include "dsp/kernel/CascadeLoop.h"

#if defined(__SSE2__)

#include <emmintrin.h>

namespace Lathe::Audio::DSP::Kernel {

namespace {

struct SLanes {
    struct V {
        __m128d m_Sections[Sections];
    };
    // The lower two floats of each.
    struct F {
        __m128 m_Sections[Sections];
    };

    // The chains of the sections from the first to the last one.
    struct CMask {
        CMask(int first, int last) {
            for (int s = 0; s < Sections; ++s)
                m_Sections[s] = _mm_castsi128_pd(_mm_set1_epi32(s >= first && s <= last ? -1 : 0));
        }
        __m128d m_Sections[Sections];
    };

    // The least magnitudes.
    struct CWatch {
        CWatch() {
            for (__m128& least : m_Least)
                least = _mm_set1_ps(1.0f);
        }
        void See(const F* given) {
            for (int s = 0; s < Sections; ++s) {
                See(s, _mm_movelh_ps(given[0].m_Sections[s], given[1].m_Sections[s]));
                See(s, _mm_movelh_ps(given[2].m_Sections[s], given[3].m_Sections[s]));
            }
        }
        // A NaN leaves the second operand.
        void See(int section, __m128 given) {
            const __m128 magnitude = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
            m_Least[section] = _mm_min_ps(_mm_and_ps(given, magnitude), m_Least[section]);
        }
        bool HasSeenTiny(const bool* isSilent) const {
            const __m128i isTiny =
                IsTiny(_mm_min_ps(_mm_min_ps(m_Least[0], m_Least[1]), m_Least[2]));
            const int ofInterest = (isSilent[0] ? 0 : 5) | (isSilent[1] ? 0 : 10);
            return (_mm_movemask_ps(_mm_castsi128_ps(isTiny)) & ofInterest) != 0;
        }
        __m128 m_Least[Sections];
    };

    // The samples of both channels in turns, of frames 0 and 1 and of frames 2 and 3.
    struct CInput {
        CInput(const float* first, const float* second) {
            const __m128 a = _mm_loadu_ps(first);
            const __m128 b = _mm_loadu_ps(second);
            m_Pairs[0] = _mm_unpacklo_ps(a, b);
            m_Pairs[1] = _mm_unpackhi_ps(a, b);
        }
        __m128 m_Pairs[2];
    };

    static V Load(const double* from) {
        return {_mm_loadu_pd(from), _mm_loadu_pd(from + 2), _mm_loadu_pd(from + 4)};
    }
    static void Store(double* to, const V& v) {
        for (int s = 0; s < Sections; ++s)
            _mm_storeu_pd(to + Channels * s, v.m_Sections[s]);
    }
    static V Multiply(const V& a, const V& b) {
        return {_mm_mul_pd(a.m_Sections[0], b.m_Sections[0]),
                _mm_mul_pd(a.m_Sections[1], b.m_Sections[1]),
                _mm_mul_pd(a.m_Sections[2], b.m_Sections[2])};
    }
    static V Add(const V& a, const V& b) {
        return {_mm_add_pd(a.m_Sections[0], b.m_Sections[0]),
                _mm_add_pd(a.m_Sections[1], b.m_Sections[1]),
                _mm_add_pd(a.m_Sections[2], b.m_Sections[2])};
    }
    static F Round(const V& v) {
        return {_mm_cvtpd_ps(v.m_Sections[0]), _mm_cvtpd_ps(v.m_Sections[1]),
                _mm_cvtpd_ps(v.m_Sections[2])};
    }
    static void Flush(F& given, V& y) {
        for (int s = 0; s < Sections; ++s) {
            const __m128i isTiny = IsTiny(given.m_Sections[s]);
            given.m_Sections[s] = _mm_andnot_ps(_mm_castsi128_ps(isTiny), given.m_Sections[s]);
            const __m128i isWide = _mm_unpacklo_epi32(isTiny, isTiny);
            y.m_Sections[s] = _mm_andnot_pd(_mm_castsi128_pd(isWide), y.m_Sections[s]);
        }
    }
    template <int K>
    static V Feed(const CInput& input, const F& given) {
        const __m128 pair = input.m_Pairs[K / 2];
        return {_mm_cvtps_pd(K % 2 == 0 ? pair : _mm_movehl_ps(pair, pair)),
                _mm_cvtps_pd(given.m_Sections[0]), _mm_cvtps_pd(given.m_Sections[1])};
    }
    static void Write(const F* given, float* first, float* second) {
        const __m128 early = _mm_movelh_ps(given[0].m_Sections[2], given[1].m_Sections[2]);
        const __m128 late = _mm_movelh_ps(given[2].m_Sections[2], given[3].m_Sections[2]);
        _mm_storeu_ps(first, _mm_shuffle_ps(early, late, _MM_SHUFFLE(2, 0, 2, 0)));
        _mm_storeu_ps(second, _mm_shuffle_ps(early, late, _MM_SHUFFLE(3, 1, 3, 1)));
    }
    static V Select(const CMask& mask, const V& yes, const V& no) {
        V v;
        for (int s = 0; s < Sections; ++s)
            v.m_Sections[s] = Select(mask.m_Sections[s], yes.m_Sections[s], no.m_Sections[s]);
        return v;
    }
    static F SelectOrOne(const CMask& mask, const F& given) {
        F f;
        for (int s = 0; s < Sections; ++s)
            f.m_Sections[s] =
                _mm_castpd_ps(Select(mask.m_Sections[s], _mm_castps_pd(given.m_Sections[s]),
                                     _mm_castps_pd(_mm_set1_ps(1.0f))));
        return f;
    }

private:
    static __m128d Select(__m128d mask, __m128d yes, __m128d no) {
        return _mm_or_pd(_mm_and_pd(mask, yes), _mm_andnot_pd(mask, no));
    }
    // All bits of the exponent are zero.
    static __m128i IsTiny(__m128 v) {
        const __m128i exponent = _mm_and_si128(_mm_castps_si128(v), _mm_set1_epi32(0x7f800000));
        return _mm_cmpeq_epi32(exponent, _mm_setzero_si128());
    }
};

} // namespace

bool RunCascadeSSE2(const SCascadeGroups& groups) {
    return RunCascadeWith<SLanes>(groups);
}

} // namespace Lathe::Audio::DSP::Kernel

#endif
