// Proves what streams say of their samples, who frees them, and that copying, clearing and
// crossfading touch exactly the samples that they should.

#include "dsp/FilterTestSupport.h"
#include "dsp/streams/StreamFunctions.h"

namespace Lathe::Audio::DSP {

using Testing::CBuffers;

TEST(Streams, TellTheirSamplesAndFreeThemOnce) {
    float memory[20] = {};
    for (const int stride : {0, 1, 2})
        EXPECT_EQ(CAudioStream(memory, 10, 9, stride, false).GetSize(), stride == 2 ? 4 : 9);
    EXPECT_EQ(CAudioStream(nullptr, 5, 0, 1, false).GetData(), nullptr);
    EXPECT_EQ(CAudioStreamToStreams(nullptr, true).GetCount(), 0);
    // The leak check of a sanitized build sees what is freed twice or never.
    CAudioStream owner(new float[4]{1.0f}, 0, 4, 1, true);
    CAudioStream other(new float[2]{2.0f}, 0, 2, 1, true);
    other = std::move(owner);
    const CAudioStreamToStreams one(new CAudioStream(std::move(other)), true);
    EXPECT_EQ(one.GetElement(0).GetData()[0], 1.0f);
}

TEST(StreamFunctions, CopyAndClearWithEachSidesStrideTheChannelsThatBothHave) {
    const Testing::CSignals ramp(3, {1.0f, 2.0f, 3.0f, 4.0f, 5.0f});
    for (const int fromStride : {1, 3}) {
        for (const int toStride : {1, 2}) {
            CBuffers from(ramp, fromStride);
            CBuffers to(4, 5, 7.0f, toStride);
            CopyStreams(from, to, 4);
            CopyStreams(from, from, 5);
            EXPECT_EQ(from.Read(), ramp);
            EXPECT_EQ(to.Read()[2], (Testing::CSignal{1.0f, 2.0f, 3.0f, 4.0f, 7.0f}));
            EXPECT_EQ(to.Read()[3], Testing::CSignal(5, 7.0f));
            ClearStreams(to);
            EXPECT_EQ(to.Read(), CBuffers(4, 5, 0.0f).Read());
        }
    }
}

TEST(StreamFunctions, TakeNoDataAsSilenceAndSwallowWhatGoesThere) {
    float samples[] = {1.0f, 2.0f, 3.0f, 4.0f};
    CAudioStream stream(samples, 0, 4, 1, false);
    CAudioStream everySecond(samples, 0, 4, 2, false);
    CAudioStream nothing;
    // The same memory by another stride is another stream.
    CopyStream(everySecond, stream, 2);
    CopyStream(nothing, everySecond, 2);
    EXPECT_EQ(std::vector(samples, samples + 4), (std::vector{0.0f, 3.0f, 0.0f, 4.0f}));
    CopyStream(stream, nothing, 4);
    CAudioStreamToStreams one(&stream, false);
    CAudioStreamToStreams nowhere(&nothing, false);
    ClearStreams(nowhere);
    float position = 0.5f;
    EXPECT_TRUE(CrossfadeStreams(one, nowhere, one, 4, &position, 0.0f));
    EXPECT_TRUE(CrossfadeStreams(nowhere, one, nowhere, 4, &position, 0.0f));
    EXPECT_EQ(samples[3], 2.0f);
}

TEST(CrossfadeStreams, EndsAfterAnyNumberOfSteps) {
    CBuffers silence(1, 1000, 0.0f);
    for (int samples = 1; samples <= 1000; ++samples) {
        for (const float start : {0.0f, 1.0f}) {
            const float step = (1.0f - 2.0f * start) / static_cast<float>(samples);
            float position = start;
            EXPECT_EQ(CrossfadeStreams(silence, silence, silence, samples - 1, &position, step),
                      samples > 1);
            EXPECT_FALSE(CrossfadeStreams(silence, silence, silence, 1, &position, step));
            EXPECT_EQ(position, 1.0f - start) << samples;
        }
    }
}

TEST(CrossfadeStreams, MovesEachChannelFromOneToTheOther) {
    const struct {
        float m_Position, m_Step, m_End;
        bool m_GoesOn;
        Testing::CSignal m_Output;
    } cases[] = {{0.0f, 0.125f, 0.5f, true, {0.0f, 1.0f, 2.0f, 3.0f, 9.0f}},
                 {0.5f, -0.25f, 0.0f, false, {4.0f, 2.0f, 0.0f, 0.0f, 9.0f}},
                 {0.25f, 0.0f, 0.25f, true, {2.0f, 2.0f, 2.0f, 2.0f, 9.0f}},
                 {0.75f, 0.25f, 1.0f, false, {6.0f, 8.0f, 8.0f, 8.0f, 9.0f}}};
    for (const auto& row : cases) {
        CBuffers out(2, 5, 9.0f, 3);
        float position = row.m_Position;
        const CBuffers from(2, 5, 0.0f, 2);
        const CBuffers to(3, 5, 8.0f);
        EXPECT_EQ(CrossfadeStreams(from, to, out, 4, &position, row.m_Step), row.m_GoesOn);
        EXPECT_EQ(position, row.m_End);
        EXPECT_EQ(out.Read(), (Testing::CSignals{row.m_Output, row.m_Output}));
    }
}

} // namespace Lathe::Audio::DSP
