// Proves the matrix between left/right and mid/side: its formulas, its inverse, its ramp, and that
// left/right is left alone to the bit.

#include "dsp/adapters/MidSideMatrix.h"
#include "dsp/FilterTestSupport.h"

#include <bit>
#include <cstdint>
#include <limits>

namespace Lathe::Audio::DSP {

namespace {

using namespace Testing;

CSignals Encode(const CSignals& sides, CMatrixRamp& ramp, int orders, int stride = 1) {
    const CBuffers inputs(sides, stride);
    CSignals channels(2, CSignal(sides[0].size(), std::nanf("")));
    EncodeMidSide(inputs.GetElement(0), inputs.GetElement(1), channels[0].data(),
                  channels[1].data(), static_cast<int>(sides[0].size()), ramp, orders);
    return channels;
}
CSignals Encode(const CSignals& sides, double x) {
    CMatrixRamp ramp{x, 0.0, 0.0};
    return Encode(sides, ramp, 0);
}

CSignals Decode(const CSignals& channels, CMatrixRamp& ramp, int orders, int stride = 1) {
    CBuffers buffers(channels, stride);
    DecodeMidSide(buffers.GetElement(0), buffers.GetElement(1),
                  static_cast<int>(channels[0].size()), ramp, orders);
    return buffers.Read();
}
CSignals Decode(const CSignals& channels, double x) {
    CMatrixRamp ramp{x, 0.0, 0.0};
    return Decode(channels, ramp, 0);
}

TEST(MidSideMatrix, IsHalfTheSumAndHalfTheDifferenceAtZero) {
    const CSignals sides = {{1.0f, 0.0f, 0.75f, 0.5f}, {0.0f, 1.0f, 0.75f, -0.5f}};
    const CSignals channels = {{0.5f, 0.5f, 0.75f, 0.0f}, {-0.5f, 0.5f, 0.0f, -0.5f}};
    const double denormal = static_cast<double>(std::numeric_limits<float>::denorm_min()) * 1000.0;
    for (double x : {0.0, denormal, -denormal, -1e-300}) {
        EXPECT_EQ(Encode(sides, x), channels) << x;
        EXPECT_EQ(Decode(channels, x), sides) << x;
    }
}

TEST(MidSideMatrix, PassesLeftAndRightToTheBit) {
    const CSignals sides = {{NAN, 1.0f, -0.0f, 3e38f, INFINITY, 1e-45f},
                            {2.0f, INFINITY, 1.0f, 1.0f, NAN, -0.0f}};
    const auto bits = [](const CSignals& signals) {
        std::vector<std::uint32_t> all;
        for (const CSignal& signal : signals) {
            for (float sample : signal)
                all.push_back(std::bit_cast<std::uint32_t>(sample));
        }
        return all;
    };
    EXPECT_EQ(bits(Encode(sides, -1.0)), bits(sides));
    EXPECT_EQ(bits(Decode(sides, -1.0)), bits(sides));
    CMatrixRamp ramp{-1.0, 0.0, 0.0};
    EXPECT_EQ(bits(Encode(sides, ramp, 1, 2)), bits(sides));
    EXPECT_EQ(bits(Decode(sides, ramp, 1, 2)), bits(sides));
}

TEST(MidSideMatrix, DecodesWhatItEncoded) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    for (int run = 0; run < 100; ++run) {
        const double x = random.Between(-1.0, 0.0);
        const CSignals sides = {random.Noise(50), random.Noise(50)};
        const CSignals channels = Encode(sides, x);
        const CSignals decoded = Decode(channels, x);
        for (std::size_t c = 0; c < 2; ++c)
            CheckClose(decoded[c], sides[c], 5e-7); // A few roundings of floats.
        // A rotation, but for its length.
        for (std::size_t i = 0; i < 50; ++i) {
            const auto power = [i](const CSignals& s) {
                return std::hypot(static_cast<double>(s[0][i]), static_cast<double>(s[1][i]));
            };
            EXPECT_NEAR(power(channels), power(sides) * std::sqrt((1.0 + x * x) / 2.0), 1e-6);
        }
    }
}

TEST(MidSideMatrix, RampsSampleBySampleInEveryLayout) {
    CRandom random;
    SCOPED_TRACE(GetSeed());
    const int samples = 200;
    const CSignals sides = {random.Noise(samples), random.Noise(samples)};
    // The second order is one that bends the ramp.
    for (const CMatrixRamp& start :
         {CMatrixRamp{-1.0, 1.0 / samples, 0.0}, CMatrixRamp{0.0, -1.0 / samples, 1e-5}}) {
        const int orders = start[2] > 0.0 ? 2 : 1;
        CMatrixRamp encoded = start;
        const CSignals channels = Encode(sides, encoded, orders);
        double x = start[0];
        double rate = start[1];
        for (std::size_t i = 0; i < samples; ++i) {
            const auto l = static_cast<double>(sides[0][i]);
            const auto r = static_cast<double>(sides[1][i]);
            ASSERT_NEAR(channels[0][i], ((1.0 + x) * r + (1.0 - x) * l) / 2.0, 2e-7) << i;
            ASSERT_NEAR(channels[1][i], ((1.0 - x) * r - (1.0 + x) * l) / 2.0, 2e-7) << i;
            rate += start[2]; // The highest order moves first.
            x += rate;
        }
        EXPECT_NEAR(encoded[0], x, 1e-12);
        CMatrixRamp strided = start;
        EXPECT_EQ(Encode(sides, strided, orders, 3), channels);
        EXPECT_EQ(strided, encoded);

        CMatrixRamp decoded = start;
        const CSignals back = Decode(channels, decoded, orders);
        for (std::size_t c = 0; c < 2; ++c)
            CheckClose(back[c], sides[c], 5e-7);
        EXPECT_EQ(decoded, encoded) << "both passes run the same path";
        strided = start;
        EXPECT_EQ(Decode(channels, strided, orders, 2), back);
    }
}

} // namespace

} // namespace Lathe::Audio::DSP
