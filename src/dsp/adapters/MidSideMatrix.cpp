#include "dsp/adapters/MidSideMatrix.h"

#include "dsp/filters/Denormal.h"

#include <algorithm>

namespace Lathe::Audio::DSP {

namespace {

struct SPair {
    float m_First;
    float m_Second;
};

// The matrix at one value of its parameter.
class CMatrix {
public:
    explicit CMatrix(double parameter) {
        float x = static_cast<float>(parameter);
        if (Filters::IsZeroOrDenormal(x))
            x = 0.0f;
        m_IsIdentity = x == -1.0f;
        m_a = 1.0f + x;
        m_b = 1.0f - x;
        m_n = 1.0f / (x * x + 1.0f);
    }

    bool IsIdentity() const { return m_IsIdentity; }

    // Left and right to the channels. The formulas give the identity too, but would mix a NaN or
    // an infinity of one side into the other.
    SPair Encode(float left, float right) const {
        return {(m_a * right + m_b * left) * 0.5f, (m_b * right - m_a * left) * 0.5f};
    }
    // The channels to left and right.
    SPair Decode(float c1, float c2) const {
        return {(m_b * c1 - m_a * c2) * m_n, (m_b * c2 + m_a * c1) * m_n};
    }

private:
    bool m_IsIdentity;
    float m_a;
    float m_b;
    float m_n;
};

void Advance(CMatrixRamp& ramp, int orders) {
    for (auto order = static_cast<std::size_t>(orders); order > 0; --order)
        ramp[order - 1] += ramp[order];
}

} // namespace

void EncodeMidSide(const IAudioStream& left, const IAudioStream& right, float* channel1,
                   float* channel2, int samples, CMatrixRamp& ramp, int orders) {
    const float zero = 0.0f;
    const float* l = left.GetData() ? left.GetData() : &zero;
    const float* r = right.GetData() ? right.GetData() : &zero;
    const int lStride = left.GetData() ? left.GetStride() : 0;
    const int rStride = right.GetData() ? right.GetStride() : 0;
    if (orders == 0 && lStride == 1 && rStride == 1) {
        const CMatrix matrix(ramp[0]);
        if (matrix.IsIdentity()) {
            std::copy_n(l, samples, channel1);
            std::copy_n(r, samples, channel2);
            return;
        }
        for (int i = 0; i < samples; ++i) {
            const SPair pair = matrix.Encode(l[i], r[i]);
            channel1[i] = pair.m_First;
            channel2[i] = pair.m_Second;
        }
        return;
    }
    for (int i = 0, lAt = 0, rAt = 0; i < samples; ++i, lAt += lStride, rAt += rStride) {
        const CMatrix matrix(ramp[0]);
        const SPair pair =
            matrix.IsIdentity() ? SPair{l[lAt], r[rAt]} : matrix.Encode(l[lAt], r[rAt]);
        channel1[i] = pair.m_First;
        channel2[i] = pair.m_Second;
        Advance(ramp, orders);
    }
}

void DecodeMidSide(IAudioStream& stream1, IAudioStream& stream2, int samples, CMatrixRamp& ramp,
                   int orders) {
    float* c1 = stream1.GetData();
    float* c2 = stream2.GetData();
    if (!c1 || !c2)
        return;
    const int stride1 = stream1.GetStride();
    const int stride2 = stream2.GetStride();
    if (orders == 0) {
        const CMatrix matrix(ramp[0]);
        if (matrix.IsIdentity())
            return;
        if (stride1 == 1 && stride2 == 1) {
            for (int i = 0; i < samples; ++i) {
                const SPair pair = matrix.Decode(c1[i], c2[i]);
                c1[i] = pair.m_First;
                c2[i] = pair.m_Second;
            }
            return;
        }
    }
    for (int i = 0, at1 = 0, at2 = 0; i < samples; ++i, at1 += stride1, at2 += stride2) {
        const CMatrix matrix(ramp[0]);
        if (!matrix.IsIdentity()) {
            const SPair pair = matrix.Decode(c1[at1], c2[at2]);
            c1[at1] = pair.m_First;
            c2[at2] = pair.m_Second;
        }
        Advance(ramp, orders);
    }
}

} // namespace Lathe::Audio::DSP
