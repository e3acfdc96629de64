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
        SState state(*groups.m_History);
        int step = 0;
        // The last section begins some steps after the first one, and ends as much later.
        for (; step < Sections - 1; ++step)
            RunPartialStep(groups, step, state);
        for (; step < groups.m_Groups; ++step) {
            RunStep(groups, step, step, state);
            Write(groups, step, state);
            state.m_Watch.See(state.m_Given);
        }
        for (; step < groups.m_Groups + Sections - 1; ++step)
            RunPartialStep(groups, step, state);
        const bool hasSeenTiny = state.m_Watch.HasSeenTiny(groups.m_IsSilent);
        if (Flushing || !hasSeenTiny)
            state.StoreHistory(*groups.m_History);
        return hasSeenTiny;
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

    // The chains of a section do the group that the section has reached.
    [[gnu::always_inline]] static void RunStep(const SCascadeGroups& groups, int step,
                                               int inputGroup, SState& s) {
        const typename L::CInput input(groups.m_Inputs[0] + inputGroup * GroupFrames,
                                       groups.m_Inputs[1] + inputGroup * GroupFrames);
        const int stride = groups.m_CoefficientsStride;
        const SChainCoefficients* const c = groups.m_Coefficients + step * GroupFrames * stride;
        RunFrame<0>(c[0], input, s);
        RunFrame<1>(c[stride], input, s);
        RunFrame<2>(c[2 * stride], input, s);
        RunFrame<3>(c[3 * stride], input, s);
    }

    [[gnu::always_inline]] static void Write(const SCascadeGroups& groups, int step,
                                             const SState& s) {
        const int frame = (step - (Sections - 1)) * GroupFrames;
        L::Write(s.m_Given, groups.m_Outputs[0] + frame, groups.m_Outputs[1] + frame);
    }

    // Takes back what chains have done whose section hasn't begun or has ended.
    [[gnu::always_inline]] static void RunPartialStep(const SCascadeGroups& groups, int step,
                                                      SState& s) {
        const int ended = step - groups.m_Groups;
        const typename L::CMask running(ended < 0 ? 0 : ended + 1, step);
        const V x1 = s.m_x1;
        const V x2 = s.m_x2;
        const V y1 = s.m_y1;
        const V y2 = s.m_y2;
        // Behind the end no section takes the input any more.
        RunStep(groups, step, ended < 0 ? step : groups.m_Groups - 1, s);
        s.m_x1 = L::Select(running, s.m_x1, x1);
        s.m_x2 = L::Select(running, s.m_x2, x2);
        s.m_y1 = L::Select(running, s.m_y1, y1);
        s.m_y2 = L::Select(running, s.m_y2, y2);
        F seen[GroupFrames];
        for (int k = 0; k < GroupFrames; ++k)
            seen[k] = L::SelectOrOne(running, s.m_Given[k]);
        s.m_Watch.See(seen);
        if (step >= Sections - 1)
            Write(groups, step, s);
    }
};

// A version of the cascade.
template <class L>
bool RunCascadeWith(const SCascadeGroups& groups) {
    return groups.m_Flushing ? TCascadeLoop<L, true>::Run(groups)
                             : TCascadeLoop<L, false>::Run(groups);
}

} // namespace Lathe::Audio::DSP::Kernel
