// The cascade for processors with AVX2: the first two sections in one vector of four doubles, the
// last one in a vector of two.
#include "dsp/kernel/CascadeLoop.h"

#if defined(__AVX2__)

#include <immintrin.h>

namespace Lathe::Audio::DSP::Kernel {

namespace {

struct SLanes {
    struct V {
        V(__m256d wide, __m128d last) : m_Wide(wide), m_Last(last) {}
        // Written out, since the compiler's own copies the padding too, by way of the stack.
        V(const V& other) : m_Wide(other.m_Wide), m_Last(other.m_Last) {}
        V& operator=(const V& other) {
            m_Wide = other.m_Wide;
            m_Last = other.m_Last;
            return *this;
        }
        __m256d m_Wide;
        __m128d m_Last;
    };
    // The lower two floats of the last.
    struct F {
        __m128 m_Wide;
        __m128 m_Last;
    };

    // The chains of the sections from the first to the last one.
    struct CMask {
        CMask(int first, int last)
            : m_Floats(
                  _mm_castsi128_ps(_mm_setr_epi32(Bits(0, first, last), Bits(0, first, last),
                                                  Bits(1, first, last), Bits(1, first, last)))),
              m_Wide(_mm256_castsi256_pd(Widen(_mm_castps_si128(m_Floats)))),
              m_Last(_mm_castsi128_pd(_mm_set1_epi32(Bits(2, first, last)))) {}
        static int Bits(int section, int first, int last) {
            return section >= first && section <= last ? -1 : 0;
        }
        __m128 m_Floats;
        __m256d m_Wide;
        __m128d m_Last;
    };

    // The least magnitudes, of each channel in every other lane.
    struct CWatch {
        void See(const F* given) {
            for (int k = 0; k < GroupFrames; ++k)
                See(given[k].m_Wide);
            See(_mm_movelh_ps(given[0].m_Last, given[1].m_Last));
            See(_mm_movelh_ps(given[2].m_Last, given[3].m_Last));
        }
        // A NaN leaves the second operand.
        void See(__m128 given) {
            const __m128 magnitude = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
            m_Least = _mm_min_ps(_mm_and_ps(given, magnitude), m_Least);
        }
        bool HasSeenTiny(const bool* isSilent) const {
            const int ofInterest = (isSilent[0] ? 0 : 5) | (isSilent[1] ? 0 : 10);
            return (_mm_movemask_ps(_mm_castsi128_ps(IsTiny(m_Least))) & ofInterest) != 0;
        }
        __m128 m_Least = _mm_set1_ps(1.0f);
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

    static V Load(const double* from) { return {_mm256_loadu_pd(from), _mm_loadu_pd(from + 4)}; }
    static void Store(double* to, const V& v) {
        _mm256_storeu_pd(to, v.m_Wide);
        _mm_storeu_pd(to + 4, v.m_Last);
    }
    static V Multiply(const V& a, const V& b) {
        return {_mm256_mul_pd(a.m_Wide, b.m_Wide), _mm_mul_pd(a.m_Last, b.m_Last)};
    }
    static V Add(const V& a, const V& b) {
        return {_mm256_add_pd(a.m_Wide, b.m_Wide), _mm_add_pd(a.m_Last, b.m_Last)};
    }
    static F Round(const V& v) { return {_mm256_cvtpd_ps(v.m_Wide), _mm_cvtpd_ps(v.m_Last)}; }
    static void Flush(F& given, V& y) {
        const __m128i isWideTiny = IsTiny(given.m_Wide);
        const __m128i isLastTiny = IsTiny(given.m_Last);
        given.m_Wide = _mm_andnot_ps(_mm_castsi128_ps(isWideTiny), given.m_Wide);
        given.m_Last = _mm_andnot_ps(_mm_castsi128_ps(isLastTiny), given.m_Last);
        y.m_Wide = _mm256_andnot_pd(_mm256_castsi256_pd(Widen(isWideTiny)), y.m_Wide);
        y.m_Last = _mm_andnot_pd(_mm_castsi128_pd(WidenLower(isLastTiny)), y.m_Last);
    }
    template <int K>
    static V Feed(const CInput& input, const F& given) {
        constexpr int half = K % 2 == 0 ? _MM_SHUFFLE(1, 0, 1, 0) : _MM_SHUFFLE(1, 0, 3, 2);
        return {_mm256_cvtps_pd(_mm_shuffle_ps(input.m_Pairs[K / 2], given.m_Wide, half)),
                _mm_cvtps_pd(_mm_movehl_ps(given.m_Wide, given.m_Wide))};
    }
    static void Write(const F* given, float* first, float* second) {
        const __m128 early = _mm_movelh_ps(given[0].m_Last, given[1].m_Last);
        const __m128 late = _mm_movelh_ps(given[2].m_Last, given[3].m_Last);
        _mm_storeu_ps(first, _mm_shuffle_ps(early, late, _MM_SHUFFLE(2, 0, 2, 0)));
        _mm_storeu_ps(second, _mm_shuffle_ps(early, late, _MM_SHUFFLE(3, 1, 3, 1)));
    }
    static V Select(const CMask& mask, const V& yes, const V& no) {
        return {_mm256_blendv_pd(no.m_Wide, yes.m_Wide, mask.m_Wide),
                _mm_blendv_pd(no.m_Last, yes.m_Last, mask.m_Last)};
    }
    static F SelectOrOne(const CMask& mask, const F& given) {
        const __m128 one = _mm_set1_ps(1.0f);
        return {_mm_blendv_ps(one, given.m_Wide, mask.m_Floats),
                _mm_blendv_ps(one, given.m_Last, _mm_castpd_ps(mask.m_Last))};
    }

private:
    // All bits of the exponent are zero.
    static __m128i IsTiny(__m128 v) {
        const __m128i exponent = _mm_and_si128(_mm_castps_si128(v), _mm_set1_epi32(0x7f800000));
        return _mm_cmpeq_epi32(exponent, _mm_setzero_si128());
    }
    static __m256i Widen(__m128i mask) { return _mm256_cvtepi32_epi64(mask); }
    static __m128i WidenLower(__m128i mask) { return _mm_cvtepi32_epi64(mask); }
};

} // namespace

bool RunCascadeAVX2(const SCascadeGroups& groups) {
    return RunCascadeWith<SLanes>(groups);
}

} // namespace Lathe::Audio::DSP::Kernel

#endif
