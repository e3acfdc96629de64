// The cascade for any processor, in plain arrays.
#include "dsp/kernel/CascadeLoop.h"

#include "dsp/filters/Denormal.h"

namespace Lathe::Audio::DSP::Kernel {

namespace {

struct SLanes {
    struct V {
        double m_Chains[Chains];
    };
    struct F {
        float m_Chains[Chains];
    };

    struct CMask {
        CMask(int first, int last) : m_Begin(first * Channels), m_End((last + 1) * Channels) {}
        bool Has(int chain) const { return chain >= m_Begin && chain < m_End; }
        int m_Begin;
        int m_End;
    };

    struct CWatch {
        void See(const F* given) {
            for (int k = 0; k < GroupFrames; ++k) {
                for (int i = 0; i < Chains; ++i)
                    m_Tiny[i % Channels] |= Filters::IsZeroOrDenormal(given[k].m_Chains[i]);
            }
        }
        bool HasSeenTiny(const bool* isSilent) const {
            return (m_Tiny[0] && !isSilent[0]) || (m_Tiny[1] && !isSilent[1]);
        }
        bool m_Tiny[Channels] = {};
    };

    struct CInput {
        CInput(const float* first, const float* second) {
            for (int k = 0; k < GroupFrames; ++k) {
                m_Frames[k][0] = first[k];
                m_Frames[k][1] = second[k];
            }
        }
        float m_Frames[GroupFrames][Channels];
    };

    static V Load(const double* from) {
        V v;
        for (int i = 0; i < Chains; ++i)
            v.m_Chains[i] = from[i];
        return v;
    }
    static void Store(double* to, const V& v) {
        for (int i = 0; i < Chains; ++i)
            to[i] = v.m_Chains[i];
    }
    static V Multiply(V a, const V& b) {
        for (int i = 0; i < Chains; ++i)
            a.m_Chains[i] *= b.m_Chains[i];
        return a;
    }
    static V Add(V a, const V& b) {
        for (int i = 0; i < Chains; ++i)
            a.m_Chains[i] += b.m_Chains[i];
        return a;
    }
    static F Round(const V& v) {
        F given;
        for (int i = 0; i < Chains; ++i)
            given.m_Chains[i] = static_cast<float>(v.m_Chains[i]);
        return given;
    }
    static void Flush(F& given, V& y) {
        for (int i = 0; i < Chains; ++i) {
            if (Filters::IsZeroOrDenormal(given.m_Chains[i])) {
                given.m_Chains[i] = 0.0f;
                y.m_Chains[i] = 0.0;
            }
        }
    }
    template <int K>
    static V Feed(const CInput& input, const F& given) {
        V v;
        for (int i = 0; i < Chains; ++i)
            v.m_Chains[i] = static_cast<double>(i < Channels ? input.m_Frames[K][i]
                                                             : given.m_Chains[i - Channels]);
        return v;
    }
    static void Write(const F* given, float* first, float* second) {
        for (int k = 0; k < GroupFrames; ++k) {
            first[k] = given[k].m_Chains[Chains - 2];
            second[k] = given[k].m_Chains[Chains - 1];
        }
    }
    static V Select(const CMask& mask, const V& yes, const V& no) {
        V v;
        for (int i = 0; i < Chains; ++i)
            v.m_Chains[i] = mask.Has(i) ? yes.m_Chains[i] : no.m_Chains[i];
        return v;
    }
    static F SelectOrOne(const CMask& mask, F given) {
        for (int i = 0; i < Chains; ++i)
            given.m_Chains[i] = mask.Has(i) ? given.m_Chains[i] : 1.0f;
        return given;
    }
};

} // namespace

bool RunCascadePortable(const SCascadeGroups& groups) {
    return RunCascadeWith<SLanes>(groups);
}

} // namespace Lathe::Audio::DSP::Kernel
