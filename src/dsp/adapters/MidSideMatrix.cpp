#include "dsp/adapters/MidSideMatrix.h"

#include <algorithm>

namespace Lathe::Audio::DSP {

namespace {

void Advance(CMatrixRamp& ramp, int orders) {
    for (auto order = static_cast<std::size_t>(orders); order > 0; --order)
        ramp[order - 1] += ramp[order];
}

} // namespace

void CMidSideMatrix::Encode(const float* left, const float* right, float* channel1, float* channel2,
                            int samples) const {
    for (int i = 0; i < samples; ++i) {
        const SPair pair = Encode(left[i], right[i]);
        channel1[i] = pair.m_First;
        channel2[i] = pair.m_Second;
    }
}

void CMidSideMatrix::Decode(float* channel1, float* channel2, int samples) const {
    for (int i = 0; i < samples; ++i) {
        const SPair pair = Decode(channel1[i], channel2[i]);
        channel1[i] = pair.m_First;
        channel2[i] = pair.m_Second;
    }
}

void EncodeMidSide(const IAudioStream& left, const IAudioStream& right, float* channel1,
                   float* channel2, int samples, CMatrixRamp& ramp, int orders) {
    const float zero = 0.0f;
    const float* l = left.GetData() ? left.GetData() : &zero;
    const float* r = right.GetData() ? right.GetData() : &zero;
    const int lStride = left.GetData() ? left.GetStride() : 0;
    const int rStride = right.GetData() ? right.GetStride() : 0;
    if (orders == 0 && lStride == 1 && rStride == 1) {
        const CMidSideMatrix matrix(ramp[0]);
        if (matrix.IsIdentity()) {
            std::copy_n(l, samples, channel1);
            std::copy_n(r, samples, channel2);
            return;
        }
        matrix.Encode(l, r, channel1, channel2, samples);
        return;
    }
    for (int i = 0, lAt = 0, rAt = 0; i < samples; ++i, lAt += lStride, rAt += rStride) {
        const CMidSideMatrix matrix(ramp[0]);
        const CMidSideMatrix::SPair pair = matrix.IsIdentity()
                                               ? CMidSideMatrix::SPair{l[lAt], r[rAt]}
                                               : matrix.Encode(l[lAt], r[rAt]);
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
        const CMidSideMatrix matrix(ramp[0]);
        if (matrix.IsIdentity())
            return;
        if (stride1 == 1 && stride2 == 1) {
            matrix.Decode(c1, c2, samples);
            return;
        }
    }
    for (int i = 0, at1 = 0, at2 = 0; i < samples; ++i, at1 += stride1, at2 += stride2) {
        const CMidSideMatrix matrix(ramp[0]);
        if (!matrix.IsIdentity()) {
            const CMidSideMatrix::SPair pair = matrix.Decode(c1[at1], c2[at2]);
            c1[at1] = pair.m_First;
            c2[at2] = pair.m_Second;
        }
        Advance(ramp, orders);
    }
}

} // namespace Lathe::Audio::DSP
