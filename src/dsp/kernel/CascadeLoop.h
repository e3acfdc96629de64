// The loop of the cascade, which every version compiles with lanes of its own.
//
// The recursion of a section waits for a multiplication and two additions a sample, and nothing
// shortens that without changing the bits. So all six chains run side by side, each section a group
// of frames behind the one before it, whose samples have then arrived. A test for samples to flush
// would lengthen the recursion: the loop only watches whether there are any, and whoever calls it
// runs it again, with the test, over frames that have some.
#pragma once

#include "dsp/kernel/CascadeLanes.h"

#include <cstdint>

namespace Lathe::Audio::DSP::Kernel {

// L holds the chains in vectors of its processor. It stands in an unnamed namespace, so that code
// for one processor is not shared with sources that are compiled for another. Its members:
//   V             a double for each chain
//   F             a float for each chain
//   CPassed       the floats that sections pass on to the ones behind them
//   CInput        the samples of a group of frames for the first section
//   CWatch        sees the floats of all groups, and tells whether any was zero or denormal
//   Load, Store, Multiply, Add
//   LoadPairs     as Load, of what was written a section at a time
//   Round, Flush  V to F; F and V
//   Pass          F to CPassed
//   Feed          the input of frame K of a group for the first section, what was passed for others
//   Collect       the samples of the last section of a group's frames
//   Select        V of the chains of the sections First to Last, else another V
//   SelectOrOne   what has been passed to those sections, else 1
template <class L, bool Flushing, bool HasMatrix>
class TCascadeLoop {
public:
    static bool Run(const SCascadeGroups& groups) {
        TCascadeLoop loop(groups);
        int step = 0;
        // The last section begins some steps after the first one, and ends as much later.
        loop.template RunStep<0, 0>(step++);
        loop.template RunStep<0, 1>(step++);
        while (step < groups.m_Groups)
            loop.template RunStep<0, 2>(step++);
        loop.template RunStep<1, 2>(step++);
        loop.template RunStep<2, 2>(step++);
        const bool hasSeenTiny = loop.m_State.m_Watch.HasSeenTiny(groups.m_IsSilent);
        if (Flushing || !hasSeenTiny)
            loop.m_State.StoreHistory(*groups.m_History);
        return hasSeenTiny;
    }

private:
    using V = typename L::V;
    using F = typename L::F;

    static_assert(Sections == 3);

    explicit TCascadeLoop(const SCascadeGroups& groups)
        : m_Groups(groups),
          m_Matrix(HasMatrix ? *groups.m_Matrix : SMatrixFactors()),
          m_State(*groups.m_History) {}

    struct SState {
        explicit SState(const SChainHistory& h)
            : m_x1(L::LoadPairs(h.m_x1)),
              m_x2(L::LoadPairs(h.m_x2)),
              m_y1(L::LoadPairs(h.m_y1)),
              m_y2(L::LoadPairs(h.m_y2)) {}
        void StoreHistory(SChainHistory& h) const {
            L::Store(h.m_x1, m_x1);
            L::Store(h.m_x2, m_x2);
            L::Store(h.m_y1, m_y1);
            L::Store(h.m_y2, m_y2);
        }

        V m_x1, m_x2, m_y1, m_y2;
        // For the group before.
        typename L::CPassed m_Passed[GroupFrames] = {};
        typename L::CWatch m_Watch;
    };

    static CGroup LoadGroup(const float* from) {
        CGroup group;
        __builtin_memcpy(&group, from, sizeof group);
        return group;
    }
    static void StoreGroup(float* to, const CGroup& group) {
        __builtin_memcpy(to, &group, sizeof group);
    }

    // The gain stage.
    CGroup Scale(int channel, int group, const CGroup& samples) const {
        using CBits [[gnu::vector_size(GroupFrames * sizeof(float))]] = std::int32_t;
        const int gains = group * GroupFrames * m_Groups.m_GainsStride;
        const CGroup scaled = LoadGroup(m_Groups.m_Gains[channel] + gains) * samples;
        const CBits bits = reinterpret_cast<CBits>(scaled);
        return reinterpret_cast<CGroup>(bits & ((bits & 0x7f800000) != 0));
    }

    // The input through matrix and gain.
    typename L::CInput Read(int group) const {
        const CGroup left = LoadGroup(m_Groups.m_Inputs[0] + group * GroupFrames);
        const CGroup right = LoadGroup(m_Groups.m_Inputs[1] + group * GroupFrames);
        const auto& [a, b, n] = m_Matrix;
        if constexpr (HasMatrix)
            return {Scale(0, group, (a * right + b * left) * 0.5f),
                    Scale(1, group, (b * right - a * left) * 0.5f)};
        else
            return {Scale(0, group, left), Scale(1, group, right)};
    }

    void Write(int group, const F* given) {
        const CGroup first = L::template Collect<0>(given);
        const CGroup second = L::template Collect<1>(given);
        m_State.m_Watch.See(first, second);
        float* const left = m_Groups.m_Outputs[0] + group * GroupFrames;
        float* const right = m_Groups.m_Outputs[1] + group * GroupFrames;
        const auto& [a, b, n] = m_Matrix;
        if constexpr (HasMatrix) {
            StoreGroup(left, (b * first - a * second) * n);
            StoreGroup(right, (b * second + a * first) * n);
        } else {
            StoreGroup(left, first);
            StoreGroup(right, second);
        }
    }

    // Steady coefficients too are read for each frame: there are more of them than registers.
    template <int K, int First, int Last>
    [[gnu::always_inline]] static F RunFrame(const SChainCoefficients& c,
                                             const typename L::CInput& input, SState& s) {
        // Here and not where it was passed, which would hold up the recursion of the next group.
        s.m_Watch.See(L::template SelectOrOne<First, Last>(s.m_Passed[K]));
        const V x = L::template Feed<K>(input, s.m_Passed[K]);
        V y = L::Multiply(L::Load(c.m_b1), s.m_x1);
        y = L::Add(y, L::Multiply(L::Load(c.m_b2), s.m_x2));
        y = L::Add(y, L::Multiply(L::Load(c.m_b0), x));
        y = L::Add(y, L::Multiply(L::Load(c.m_a1), s.m_y1));
        y = L::Add(y, L::Multiply(L::Load(c.m_a2), s.m_y2));
        F given = L::Round(y);
        if constexpr (Flushing)
            L::Flush(given, y);
        s.m_Passed[K] = L::Pass(given);
        s.m_x2 = s.m_x1;
        s.m_x1 = x;
        s.m_y2 = s.m_y1;
        s.m_y1 = y;
        return given;
    }

    // The chains of the sections First to Last do the group that their section has reached; what
    // the others do, which haven't begun or have ended, is taken back.
    template <int First, int Last>
    [[gnu::always_inline]] void RunStep(int step) {
        SState& s = m_State;
        const V x1 = s.m_x1;
        const V x2 = s.m_x2;
        const V y1 = s.m_y1;
        const V y2 = s.m_y2;
        // Behind the end no section takes the input any more.
        const typename L::CInput input = Read(First == 0 ? step : 0);
        const int stride = m_Groups.m_CoefficientsStride;
        const SChainCoefficients* const c = m_Groups.m_Coefficients + step * GroupFrames * stride;
        const F given[GroupFrames] = {RunFrame<0, First, Last>(c[0], input, s),
                                      RunFrame<1, First, Last>(c[stride], input, s),
                                      RunFrame<2, First, Last>(c[2 * stride], input, s),
                                      RunFrame<3, First, Last>(c[3 * stride], input, s)};
        s.m_x1 = L::template Select<First, Last>(s.m_x1, x1);
        s.m_x2 = L::template Select<First, Last>(s.m_x2, x2);
        s.m_y1 = L::template Select<First, Last>(s.m_y1, y1);
        s.m_y2 = L::template Select<First, Last>(s.m_y2, y2);
        if constexpr (Last == Sections - 1)
            Write(step - (Sections - 1), given);
    }

    // A copy, which no store to the outputs can change.
    const SCascadeGroups m_Groups;
    const SMatrixFactors m_Matrix;
    SState m_State;
};

// A version of the cascade.
template <class L>
bool RunCascadeWith(const SCascadeGroups& groups) {
    if (groups.m_Matrix)
        return groups.m_Flushing ? TCascadeLoop<L, true, true>::Run(groups)
                                 : TCascadeLoop<L, false, true>::Run(groups);
    return groups.m_Flushing ? TCascadeLoop<L, true, false>::Run(groups)
                             : TCascadeLoop<L, false, false>::Run(groups);
}

} // namespace Lathe::Audio::DSP::Kernel
