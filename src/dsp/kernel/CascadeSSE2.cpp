// The cascade for every x86-64 processor: the two channels of a section in one vector.
#include "dsp/kernel/CascadeFloats.h"
#include "dsp/kernel/CascadeFormulas.h"
#include "dsp/kernel/CascadeLoop.h"

#if defined(__SSE2__)

#include <emmintrin.h>

namespace Lathe::Audio::DSP::Kernel {

namespace {

struct SLanes {
    using CDoubles [[gnu::vector_size(2 * sizeof(double))]] = double;

    struct V {
        __m128d m_Sections[Sections];
    };
    // The lower two floats of each.
    struct F {
        __m128 m_Sections[Sections];
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
        // A NaN leaves the second operand.
        static __m128 Least(__m128 least, __m128 given) {
            const __m128 magnitude = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
            return _mm_min_ps(_mm_and_ps(given, magnitude), least);
        }
        // A bit for each lane that has seen an exponent of zero.
        static int GetTiny(__m128 least) {
            return _mm_movemask_ps(_mm_castsi128_ps(IsTiny(least)));
        }

        // Of both channels in turns; of each alone.
        __m128 m_Passed = _mm_set1_ps(1.0f);
        __m128 m_First = m_Passed;
        __m128 m_Second = m_Passed;
    };

    // Frames 0 and 1, and frames 2 and 3, of both channels in turns.
    struct CInput {
        CInput(const CGroup& first, const CGroup& second)
            : m_Pairs{_mm_unpacklo_ps(first, second), _mm_unpackhi_ps(first, second)} {}
        __m128 m_Pairs[2];
    };

    static V Load(const double* from) {
        return {_mm_load_pd(from), _mm_load_pd(from + 2), _mm_load_pd(from + 4)};
    }
    static V LoadPairs(const double* from) { return Load(from); }
    static void Store(double* to, const V& v) {
        for (int s = 0; s < Sections; ++s)
            _mm_store_pd(to + Channels * s, v.m_Sections[s]);
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
    static V Feed(const CInput& input, CPassed passed) {
        const __m128 pair = input.m_Pairs[K / 2];
        return {_mm_cvtps_pd(K % 2 == 0 ? pair : _mm_movehl_ps(pair, pair)), _mm_cvtps_pd(passed),
                _mm_cvtps_pd(_mm_movehl_ps(passed, passed))};
    }
    static CPassed Pass(const F& given) {
        return _mm_movelh_ps(given.m_Sections[0], given.m_Sections[1]);
    }
    template <int Channel>
    static CGroup Collect(const F* given) {
        const __m128 early = _mm_movelh_ps(given[0].m_Sections[2], given[1].m_Sections[2]);
        const __m128 late = _mm_movelh_ps(given[2].m_Sections[2], given[3].m_Sections[2]);
        return PickChannel<Channel>(early, late);
    }
    template <int First, int Last>
    static V Select(const V& yes, const V& no) {
        V v = no;
        for (int s = First; s <= Last; ++s)
            v.m_Sections[s] = yes.m_Sections[s];
        return v;
    }
    template <int First, int Last>
    static CPassed SelectOrOne(CPassed passed) {
        const __m128 one = _mm_set1_ps(1.0f);
        const __m128 lower = First <= 1 && Last >= 1 ? passed : one;
        return _mm_shuffle_ps(lower, Last >= 2 ? passed : one, _MM_SHUFFLE(3, 2, 1, 0));
    }
};

} // namespace

bool RunCascadeSSE2(const SCascadeGroups& groups) {
    return RunCascadeWith<SLanes>(groups);
}

void ComputeSectionSSE2(const SSectionFrames& section) {
    TCascadeFormulas<SLanes>::Compute(section);
}

} // namespace Lathe::Audio::DSP::Kernel

#endif
