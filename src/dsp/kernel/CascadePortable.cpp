// The cascade for any processor, in plain arrays.
#include "dsp/kernel/CascadeFormulas.h"
#include "dsp/kernel/CascadeLoop.h"

#include "dsp/filters/Denormal.h"

namespace Lathe::Audio::DSP::Kernel {

namespace {

struct SLanes {
    using CDoubles [[gnu::vector_size(2 * sizeof(double))]] = double;

    struct V {
        double m_Chains[Chains];
    };
    struct F {
        float m_Chains[Chains];
    };

    struct CPassed {
        float m_Chains[Chains - Channels];
    };

    struct CWatch {
        void See(const CPassed& passed) {
            for (int i = 0; i < Chains - Channels; ++i)
                m_Tiny[i % Channels] |= Filters::IsZeroOrDenormal(passed.m_Chains[i]);
        }
        void See(const CGroup& first, const CGroup& second) {
            for (int k = 0; k < GroupFrames; ++k) {
                m_Tiny[0] |= Filters::IsZeroOrDenormal(first[k]);
                m_Tiny[1] |= Filters::IsZeroOrDenormal(second[k]);
            }
        }
        bool HasSeenTiny(const bool* isSilent) const {
            return (m_Tiny[0] && !isSilent[0]) || (m_Tiny[1] && !isSilent[1]);
        }
        bool m_Tiny[Channels] = {};
    };

    struct CInput {
        CInput(const CGroup& first, const CGroup& second) : m_Channels{first, second} {}
        CGroup m_Channels[Channels];
    };

    static V Load(const double* from) {
        V v;
        for (int i = 0; i < Chains; ++i)
            v.m_Chains[i] = from[i];
        return v;
    }
    static V LoadPairs(const double* from) { return Load(from); }
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
    static V Feed(const CInput& input, const CPassed& passed) {
        V v;
        for (int i = 0; i < Chains; ++i)
            v.m_Chains[i] = static_cast<double>(i < Channels ? input.m_Channels[i][K]
                                                             : passed.m_Chains[i - Channels]);
        return v;
    }
    static CPassed Pass(const F& given) {
        CPassed passed;
        for (int i = 0; i < Chains - Channels; ++i)
            passed.m_Chains[i] = given.m_Chains[i];
        return passed;
    }
    template <int Channel>
    static CGroup Collect(const F* given) {
        constexpr int chain = Chains - Channels + Channel;
        return CGroup{given[0].m_Chains[chain], given[1].m_Chains[chain], given[2].m_Chains[chain],
                      given[3].m_Chains[chain]};
    }
    template <int First, int Last>
    static V Select(const V& yes, const V& no) {
        V v = no;
        for (int i = First * Channels; i < (Last + 1) * Channels; ++i)
            v.m_Chains[i] = yes.m_Chains[i];
        return v;
    }
    template <int First, int Last>
    static CPassed SelectOrOne(CPassed passed) {
        for (int i = 0; i < Chains - Channels; ++i) {
            const int to = i / Channels + 1;
            passed.m_Chains[i] = to >= First && to <= Last ? passed.m_Chains[i] : 1.0f;
        }
        return passed;
    }
};

} // namespace

bool RunCascadePortable(const SCascadeGroups& groups) {
    return RunCascadeWith<SLanes>(groups);
}

void ComputeSectionPortable(const SSectionFrames& section) {
    TCascadeFormulas<SLanes>::Compute(section);
}

} // namespace Lathe::Audio::DSP::Kernel
