// The loop of the cascade, which every version compiles with lanes of its own.
//
// The recursion of a section waits for a multiplication and two additions a sample, and nothing
// shortens that without changing the bits. So all six chains run side by side, each section a group
// of frames behind the one before it, whose samples have then arrived. A test for samples to flush
// would lengthen the recursion: the loop only watches whether there are any, and whoever calls it
// runs it again, with the test, over frames that have some.
#pragma once

#include "dsp/kernel/CascadeLanes.h"

namespace Lathe::Audio::DSP::Kernel {

// L holds the chains in vectors of its processor. It stands in an unnamed namespace, so that code
// for one processor is not shared with sources that are compiled for another. Its members:
//   V          a double for each chain
//   F          a float for each chain
//   CWatch     sees the F of all groups, and tells whether any was zero or denormal
//   CInput     the samples of a group of frames for the first section
//   CMask      the chains of the sections from a first one up to a last one
//   Load, Store, Multiply, Add, Round (V to F), Flush (F and V)
//   Select     V of the chains of a mask, else another V; SelectOrOne: F, else 1
//   Feed       the input of frame K of a group for the first section, F for those behind it
//   Write      the samples of the last section of a group's frames
template <class L, bool Flushing>
class TCascadeLoop {
public:
    static bool Run(const SCascadeGroups& groups) {
        SChainHistory before = *groups.m_History;
        SState state(before);
        const int steps = groups.m_Groups + Sections - 1;
        for (int step = 0; step < steps; ++step) {
            // The last section begins some steps after the first one, and ends as much later.
            const bool isPartial = step < Sections - 1 || step >= groups.m_Groups;
            if (isPartial) [[unlikely]]
                state.StoreHistory(before);
            RunGroup(groups, step, state);
            if (isPartial) [[unlikely]]
                state.EndPartialStep(
                    before, {step < groups.m_Groups ? 0 : step - groups.m_Groups + 1, step});
            else
                state.m_Watch.See(state.m_Given);
        }
        const bool flushed = state.m_Watch.HasSeenTiny(groups.m_IsSilent);
        if (Flushing || !flushed)
            state.StoreHistory(*groups.m_History);
        return flushed;
    }

private:
    using V = typename L::V;
    using F = typename L::F;

    struct SState {
        explicit SState(const SChainHistory& h)
            : m_x1(L::Load(h.m_x1)),
              m_x2(L::Load(h.m_x2)),
              m_y1(L::Load(h.m_y1)),
              m_y2(L::Load(h.m_y2)) {}
        void StoreHistory(SChainHistory& h) const {
            L::Store(h.m_x1, m_x1);
            L::Store(h.m_x2, m_x2);
            L::Store(h.m_y1, m_y1);
            L::Store(h.m_y2, m_y2);
        }

        // Takes back what chains have done whose section hasn't begun or has ended.
        void EndPartialStep(const SChainHistory& before, const typename L::CMask& running) {
            m_x1 = L::Select(running, m_x1, L::Load(before.m_x1));
            m_x2 = L::Select(running, m_x2, L::Load(before.m_x2));
            m_y1 = L::Select(running, m_y1, L::Load(before.m_y1));
            m_y2 = L::Select(running, m_y2, L::Load(before.m_y2));
            F seen[GroupFrames];
            for (int k = 0; k < GroupFrames; ++k)
                seen[k] = L::SelectOrOne(running, m_Given[k]);
            m_Watch.See(seen);
        }

        V m_x1, m_x2, m_y1, m_y2;
        // What each chain gave for the group before.
        F m_Given[GroupFrames] = {};
        typename L::CWatch m_Watch;
    };

    // Steady coefficients too are read for each frame: there are more of them than registers.
    template <int K>
    [[gnu::always_inline]] static void RunFrame(const SChainCoefficients& c,
                                                const typename L::CInput& input, SState& s) {
        const V x = L::template Feed<K>(input, s.m_Given[K]);
        V y = L::Multiply(L::Load(c.m_b1), s.m_x1);
        y = L::Add(y, L::Multiply(L::Load(c.m_b2), s.m_x2));
        y = L::Add(y, L::Multiply(L::Load(c.m_b0), x));
        y = L::Add(y, L::Multiply(L::Load(c.m_a1), s.m_y1));
        y = L::Add(y, L::Multiply(L::Load(c.m_a2), s.m_y2));
        s.m_Given[K] = L::Round(y);
        if constexpr (Flushing)
            L::Flush(s.m_Given[K], y);
        s.m_x2 = s.m_x1;
        s.m_x1 = x;
        s.m_y2 = s.m_y1;
        s.m_y1 = y;
    }

    [[gnu::always_inline]] static void RunGroup(const SCascadeGroups& groups, int step, SState& s) {
        // Behind the end no section takes the input any more.
        const int read = step < groups.m_Groups ? step : groups.m_Groups - 1;
        const typename L::CInput input(groups.m_Inputs[0] + read * GroupFrames,
                                       groups.m_Inputs[1] + read * GroupFrames);
        const int stride = groups.m_CoefficientsStride;
        const SChainCoefficients* const c = groups.m_Coefficients + step * GroupFrames * stride;
        RunFrame<0>(c[0], input, s);
        RunFrame<1>(c[stride], input, s);
        RunFrame<2>(c[2 * stride], input, s);
        RunFrame<3>(c[3 * stride], input, s);
        const int written = step - (Sections - 1);
        if (written >= 0)
            L::Write(s.m_Given, groups.m_Outputs[0] + written * GroupFrames,
                     groups.m_Outputs[1] + written * GroupFrames);
    }
};

// A version of the cascade.
template <class L>
bool RunCascadeWith(const SCascadeGroups& groups) {
    return groups.m_Flushing ? TCascadeLoop<L, true>::Run(groups)
                             : TCascadeLoop<L, false>::Run(groups);
}

} // namespace Lathe::Audio::DSP::Kernel
