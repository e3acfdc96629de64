// The matrix between left/right and the two channels of a filter, which moves between left/right
// and mid/side without a crossfade of two paths.
#pragma once

#include "core/Realtime.h"
#include "dsp/filters/Denormal.h"
#include "dsp/kernel/CascadeLanes.h"
#include "dsp/streams/AudioStream.h"

#include <array>

namespace Lathe::Audio::DSP {

// Ramp of the matrix parameter: its value, from -1 (left/right) to 0 (mid/side), followed by its
// rates per sample by order.
using CMatrixRamp = std::array<double, 3>;

// The matrix at one value of its parameter.
class CMidSideMatrix {
public:
    explicit CMidSideMatrix(double parameter) LATHE_REALTIME {
        float x = static_cast<float>(parameter);
        if (Filters::IsZeroOrDenormal(x))
            x = 0.0f;
        m_IsIdentity = x == -1.0f;
        m_a = 1.0f + x;
        m_b = 1.0f - x;
        m_n = 1.0f / (x * x + 1.0f);
    }

    // Left and right are the channels. The formulas give that too, but would mix a NaN or an
    // infinity of one side into the other.
    bool IsIdentity() const LATHE_REALTIME { return m_IsIdentity; }

    // Whether decoding leaves zeros what they are, without a sign: for every mode in its range.
    bool KeepsZeros() const LATHE_REALTIME { return m_a >= 0.0f && m_b >= 0.0f; }

    Kernel::SMatrixFactors GetFactors() const LATHE_REALTIME { return {m_a, m_b, m_n}; }

    struct SPair {
        float m_First;
        float m_Second;
    };
    // Left and right to the channels.
    SPair Encode(float left, float right) const LATHE_REALTIME {
        return {(m_a * right + m_b * left) * 0.5f, (m_b * right - m_a * left) * 0.5f};
    }
    // The channels to left and right.
    SPair Decode(float c1, float c2) const LATHE_REALTIME {
        return {(m_b * c1 - m_a * c2) * m_n, (m_b * c2 + m_a * c1) * m_n};
    }
    // The same for many; inputs and outputs don't overlap.
    void Encode(const float* left, const float* right, float* channel1, float* channel2,
                int samples) const LATHE_REALTIME;
    void Decode(float* channel1, float* channel2, int samples) const LATHE_REALTIME;

private:
    bool m_IsIdentity;
    float m_a;
    float m_b;
    float m_n;
};

// With a = 1 + x and b = 1 - x: c1 = (a R + b L) / 2, c2 = (b R - a L) / 2. At x = -1 the channels
// are exactly L and R, whatever their samples are. A stream without data reads as zeros. Advances
// the ramp by the samples.
void EncodeMidSide(const IAudioStream& left, const IAudioStream& right, float* channel1,
                   float* channel2, int samples, CMatrixRamp& ramp, int orders) LATHE_REALTIME;

// The inverse, in place, for streams that both have data: with n = 1 / (x x + 1),
// R = (b c2 + a c1) n and L = (b c1 - a c2) n.
void DecodeMidSide(IAudioStream& stream1, IAudioStream& stream2, int samples, CMatrixRamp& ramp,
                   int orders) LATHE_REALTIME;

} // namespace Lathe::Audio::DSP
