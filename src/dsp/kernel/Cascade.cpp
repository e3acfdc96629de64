#include "dsp/kernel/Cascade.h"

#include "dsp/Filter.h"
#include "dsp/adapters/MidSideMatrix.h"
#include "dsp/filters/BiquadFilter.h"
#include "dsp/filters/Gain.h"
#include "dsp/kernel/CascadeVersions.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace Lathe::Audio::DSP::Kernel {

namespace {

// Frames that are run at a time, and again if there is something to flush. The coefficients of
// those that move stay in the nearest cache.
constexpr int s_SteadyChunk = 512;
constexpr int s_MovingChunk = 128;
static_assert(s_MovingChunk <= Filters::SRampFrames::MaxFrames);
// Of each section the coefficients begin one group later than those of the section before, and end
// with those of the frame behind the chunk.
constexpr int s_MovingRoom = s_MovingChunk + (Sections - 1) * GroupFrames + 1;

void StoreCoefficients(const Filters::SBiquadCoefficients& from, SChainCoefficients& to,
                       int chain) {
    to.m_b0[chain] = from.m_b0;
    to.m_b1[chain] = from.m_b1;
    to.m_b2[chain] = from.m_b2;
    to.m_a1[chain] = from.m_a1;
    to.m_a2[chain] = from.m_a2;
}

Filters::SBiquadCoefficients GetCoefficients(const SChainCoefficients& from, int chain) {
    return {from.m_b0[chain], from.m_b1[chain], from.m_b2[chain], from.m_a1[chain],
            from.m_a2[chain]};
}

void ClearCoefficients(SChainCoefficients* coefficients, int section, int frames) {
    const int chain = Channels * section;
    for (int i = 0; i < frames; ++i) {
        for (double* values : {coefficients[i].m_b0, coefficients[i].m_b1, coefficients[i].m_b2,
                               coefficients[i].m_a1, coefficients[i].m_a2})
            std::fill_n(values + chain, Channels, 0.0);
    }
}

// Where a section hasn't begun yet or has ended, a version reads coefficients all the same.
void ClearEnds(SChainCoefficients* coefficients, int frames) {
    for (int s = 0; s < Sections; ++s) {
        const int begin = s * GroupFrames;
        const int behind = (Sections - 1) * GroupFrames - begin;
        ClearCoefficients(coefficients, s, begin);
        ClearCoefficients(coefficients + begin + frames, s, behind);
    }
}

// The frames of the next chunk: whole groups, or none when there are too few.
int GetChunk(int left, int chunk) {
    const int frames = std::min(left, chunk) & -GroupFrames;
    return frames >= MinGroups * GroupFrames ? frames : 0;
}

bool Overlap(const float* a, const float* b, int samples) {
    const auto first = reinterpret_cast<std::uintptr_t>(a);
    const auto second = reinterpret_cast<std::uintptr_t>(b);
    const auto size = static_cast<std::uintptr_t>(samples) * sizeof(float);
    return first < second + size && second < first + size;
}

} // namespace

bool CCascade::Aim(const CFilterProcessData& data) {
    m_Version = GetCascadeVersion();
    m_Samples = data.m_SamplesCount;
    if (!m_Version || m_Samples <= 0 || !HasChannels(data, Channels, Channels))
        return false;
    for (int c = 0; c < Channels; ++c) {
        const IAudioStream& input = data.m_pInputs->GetElement(c);
        IAudioStream& output = data.m_pOutputs->GetElement(c);
        m_Inputs[c] = input.GetData();
        m_Outputs[c] = output.GetData();
        if (!m_Inputs[c] || !m_Outputs[c] || input.GetStride() != 1 || output.GetStride() != 1)
            return false;
    }
    for (int c = 0; c < Channels; ++c) {
        const int other = 1 - c;
        if (Overlap(m_Outputs[c], m_Inputs[other], m_Samples) ||
            (m_Outputs[c] != m_Inputs[c] && Overlap(m_Outputs[c], m_Inputs[c], m_Samples)))
            return false;
    }
    return !Overlap(m_Outputs[0], m_Outputs[1], m_Samples);
}

void CCascade::Run(const CMidSideMatrix* matrix) {
    m_Matrix = matrix;
    RunRest(m_Channels[0].m_SectionOrders > 0 ? RunChunks<true>() : RunChunks<false>());
}

void CCascade::Prepare(float* const (&to)[Channels], int start, int count) {
    const float* inputs[Channels] = {m_Inputs[0] + start, m_Inputs[1] + start};
    if (m_Matrix) {
        m_Matrix->Encode(inputs[0], inputs[1], to[0], to[1], count);
        inputs[0] = to[0];
        inputs[1] = to[1];
    }
    for (int c = 0; c < Channels; ++c)
        m_Channels[c].m_Gain->ScaleSamples(inputs[c], to[c], count, m_Channels[c].m_GainOrders);
}

bool CCascade::IsSilent(int channel, int start, int count, const SChainHistory& history,
                        const SChainCoefficients& coefficients) {
    // By their bits, since only zeros without a sign stay what they are.
    const auto isZero = [](double past) { return std::bit_cast<std::uint64_t>(past) == 0; };
    for (int i = channel; i < Chains; i += Channels) {
        if (!isZero(history.m_x1[i]) || !isZero(history.m_x2[i]) || !isZero(history.m_y1[i]) ||
            !isZero(history.m_y2[i]) || !(coefficients.m_b0[i] > 0.0))
            return false;
    }
    // A gain that moves would move on.
    if (m_Channels[channel].m_GainOrders > 0)
        return false;
    float samples[Channels][s_SteadyChunk];
    Prepare({samples[0], samples[1]}, start, count);
    return std::all_of(samples[channel], samples[channel] + count,
                       [](float sample) { return std::bit_cast<std::uint32_t>(sample) == 0; });
}

void CCascade::LoadHistory(SChainHistory& history) const {
    for (int i = 0; i < Chains; ++i) {
        const Filters::SBiquadHistory& h =
            m_Channels[i % Channels].m_Sections[i / Channels]->GetHistory(0);
        history.m_x1[i] = h.m_x1;
        history.m_x2[i] = h.m_x2;
        history.m_y1[i] = h.m_y1;
        history.m_y2[i] = h.m_y2;
    }
}

void CCascade::StoreHistory(const SChainHistory& history) {
    for (int i = 0; i < Chains; ++i)
        m_Channels[i % Channels].m_Sections[i / Channels]->SetHistory(
            0, {history.m_x1[i], history.m_x2[i], history.m_y1[i], history.m_y2[i]});
}

void CCascade::LoadCoefficients(SChainCoefficients& coefficients) const {
    for (int i = 0; i < Chains; ++i)
        StoreCoefficients(m_Channels[i % Channels].m_Sections[i / Channels]->GetCoefficients(),
                          coefficients, i);
}

void CCascade::ComputeRamps(SChainCoefficients* coefficients, int count) {
    Filters::SRampFrames ramp;
    for (int s = 0; s < Sections; ++s) {
        Filters::CBiquadFilter& left = *m_Channels[0].m_Sections[s];
        Filters::CBiquadFilter& right = *m_Channels[1].m_Sections[s];
        SChainCoefficients* const frames = coefficients + s * GroupFrames;
        const int chain = Channels * s;
        StoreCoefficients(left.GetCoefficients(), frames[0], chain);
        StoreCoefficients(right.GetCoefficients(), frames[0], chain + 1);
        left.MovePair(right, ramp, count, m_Channels[0].m_SectionOrders);
        m_Version->m_ComputeSection({left.GetFormula(), &ramp, count, frames + 1, chain});
        left.SetCoefficients(GetCoefficients(frames[count], chain));
        right.SetCoefficients(GetCoefficients(frames[count], chain + 1));
    }
}

void CCascade::RunGroups(SCascadeGroups& groups) const {
    bool hasSeenTiny = m_Version->m_Run(groups);
    if (hasSeenTiny && !groups.m_Flushing) {
        groups.m_Flushing = true;
        hasSeenTiny = m_Version->m_Run(groups);
    }
    // What had something to flush goes on to have.
    groups.m_Flushing = hasSeenTiny;
}

template <bool Moving>
int CCascade::RunChunks() {
    constexpr int chunk = Moving ? s_MovingChunk : s_SteadyChunk;
    SChainHistory history;
    LoadHistory(history);
    SChainCoefficients coefficients[Moving ? s_MovingRoom : 1];
    if constexpr (Moving)
        ClearEnds(coefficients, std::min(m_Samples, chunk) & -GroupFrames);
    else
        LoadCoefficients(coefficients[0]);
    const SMatrixFactors matrix = m_Matrix ? m_Matrix->GetFactors() : SMatrixFactors();
    float gains[Channels][chunk];
    const bool gainsMove = m_Channels[0].m_GainOrders > 0;
    float copies[Channels][chunk];

    // Every member, so that none is cleared before.
    SCascadeGroups groups = {.m_Inputs = {m_Inputs[0], m_Inputs[1]},
                             .m_Outputs = {m_Outputs[0], m_Outputs[1]},
                             .m_Groups = 0,
                             .m_Matrix = m_Matrix ? &matrix : nullptr,
                             .m_Gains = {gains[0], gains[1]},
                             .m_GainsStride = gainsMove ? 1 : 0,
                             .m_Coefficients = coefficients,
                             .m_CoefficientsStride = Moving ? 1 : 0,
                             .m_Flushing = false,
                             .m_IsSilent = {false, false},
                             .m_History = &history};
    int start = 0;
    for (int count; (count = GetChunk(m_Samples - start, chunk)) > 0; start += count) {
        groups.m_Groups = count / GroupFrames;
        for (int c = 0; c < Channels; ++c) {
            groups.m_Inputs[c] = m_Inputs[c] + start;
            groups.m_Outputs[c] = m_Outputs[c] + start;
            // A second run needs the input again.
            if (groups.m_Inputs[c] == groups.m_Outputs[c]) {
                std::copy_n(groups.m_Inputs[c], count, copies[c]);
                groups.m_Inputs[c] = copies[c];
            }
            groups.m_IsSilent[c] = !Moving && IsSilent(c, start, count, history, coefficients[0]);
        }
        m_Channels[0].m_Gain->FillPairGains(*m_Channels[1].m_Gain, gains[0], gains[1],
                                            gainsMove ? count : GroupFrames,
                                            m_Channels[0].m_GainOrders);
        if constexpr (Moving)
            ComputeRamps(coefficients, count);
        RunGroups(groups);
    }
    StoreHistory(history);
    return start;
}

// Too few frames for a version.
void CCascade::RunRest(int start) {
    const int count = m_Samples - start;
    if (count == 0)
        return;
    float samples[Channels][MinGroups * GroupFrames];
    Prepare({samples[0], samples[1]}, start, count);
    for (int c = 0; c < Channels; ++c) {
        for (int s = 0; s < Sections; ++s)
            m_Channels[c].m_Sections[s]->FilterSamples(samples[c], samples[c], count,
                                                       m_Channels[c].m_SectionOrders);
        std::copy_n(samples[c], count, m_Outputs[c] + start);
    }
    if (m_Matrix)
        m_Matrix->Decode(m_Outputs[0] + start, m_Outputs[1] + start, count);
}

} // namespace Lathe::Audio::DSP::Kernel
