// What a version of the cascade works on: two channels by three sections as six chains side by
// side, in plain arrays, so that a source compiled for a newer processor takes no code from here.
#pragma once

#include "core/Realtime.h"

namespace Lathe::Audio::DSP::Filters {
enum class ESectionFormula;
struct SRampFrames;
} // namespace Lathe::Audio::DSP::Filters

namespace Lathe::Audio::DSP::Kernel {

constexpr int Channels = 2;
constexpr int Sections = 3;
// The chain of a section and a channel has the index Channels * section + channel.
constexpr int Chains = Channels * Sections;

// Frames that a version takes at a time. It runs each section so many frames behind the one before
// it, so that no section waits for the sample that the other has just begun.
constexpr int GroupFrames = 4;
// Every section but the last one begins before the first one ends.
constexpr int MinGroups = Sections - 1;

struct alignas(16) SChainCoefficients {
    double m_b0[Chains];
    double m_b1[Chains];
    double m_b2[Chains];
    double m_a1[Chains];
    double m_a2[Chains];
};

struct alignas(16) SChainHistory {
    double m_x1[Chains];
    double m_x2[Chains];
    double m_y1[Chains];
    double m_y2[Chains];
};

// The samples of a group of one channel, whose arithmetic every processor has.
using CGroup [[gnu::vector_size(GroupFrames * sizeof(float))]] = float;

// The factors of a CMidSideMatrix.
struct SMatrixFactors {
    float m_a;
    float m_b;
    float m_n;
};

// Some groups of frames; inputs and outputs don't overlap.
struct SCascadeGroups {
    const float* m_Inputs[Channels];
    float* m_Outputs[Channels];
    // At least MinGroups.
    int m_Groups;
    // Null for none.
    const SMatrixFactors* m_Matrix;
    // Of each frame with stride 1; with stride 0 those of a group, for all.
    const float* m_Gains[Channels];
    int m_GainsStride;
    // With stride 0 the same for all frames. With stride 1 those of each frame, and of GroupFrames
    // more for each section behind the first: the chains of section s find theirs s groups later.
    const SChainCoefficients* m_Coefficients;
    int m_CoefficientsStride;
    // Whether samples that are zero or denormal as floats are flushed as they come. Where not, and
    // there were some, the answer is true, and what was written is void: no history, and outputs
    // that have to be written anew.
    bool m_Flushing;
    // The channels that are known to stay zero, without anything to flush.
    bool m_IsSilent[Channels];
    SChainHistory* m_History;
};

// Some frames of a section whose parameters move.
struct SSectionFrames {
    Filters::ESectionFormula m_Formula;
    const Filters::SRampFrames* m_Ramp;
    // Whole groups.
    int m_Frames;
    // The coefficients of each frame, and of the section's two chains the first.
    SChainCoefficients* m_To;
    int m_Chain;
};

// The versions: a loop, which gives true when a sample was met that needs flushing, and the
// formulas of the sections.
bool RunCascadePortable(const SCascadeGroups& groups) LATHE_REALTIME;
void ComputeSectionPortable(const SSectionFrames& section) LATHE_REALTIME;
bool RunCascadeSSE2(const SCascadeGroups& groups) LATHE_REALTIME;
void ComputeSectionSSE2(const SSectionFrames& section) LATHE_REALTIME;
bool RunCascadeAVX2(const SCascadeGroups& groups) LATHE_REALTIME;
void ComputeSectionAVX2(const SSectionFrames& section) LATHE_REALTIME;

} // namespace Lathe::Audio::DSP::Kernel
