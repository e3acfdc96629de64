// Proves what streams say of their samples, who frees them, and that copying, clearing and
// crossfading touch exactly the samples that they should.

#include "dsp/streams/DynamicAudioStream.h"
#include "dsp/streams/EmptyStream.h"
#include "dsp/streams/StreamFunctions.h"

#include "core/containers/Collection.h"
#include "dsp/streams/TestStreams.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace Lathe::Audio::DSP {

namespace {

// A tenth of each sample is its channel, the rest its number.
CTestStreams Make(int channels, int stride, int samples, float first) {
    CTestStreams streams(channels, stride, samples);
    streams.Fill(
        [&](int c, int i) { return first + static_cast<float>(i) + 0.1f * static_cast<float>(c); });
    return streams;
}

TEST(AudioStream, CountsSamplesByItsStride) {
    float memory[1000] = {};
    const struct {
        int m_Offset, m_Total, m_Stride, m_Size;
    } cases[] = {{0, 1000, 1, 1000}, {0, 1000, 0, 1000}, {1, 1000, 2, 500}, {10, 9, 2, 4}};
    for (const auto& row : cases) {
        CAudioStream stream(memory, row.m_Offset, row.m_Total, row.m_Stride, false);
        EXPECT_EQ(stream.GetSize(), row.m_Size);
        EXPECT_EQ(stream.GetStride(), row.m_Stride);
        EXPECT_EQ(stream.GetData(), memory + row.m_Offset);
        stream.Aim(memory + 3, 7);
        EXPECT_EQ(std::as_const(stream).GetData(), memory + 3);
        EXPECT_EQ(stream.GetSize(), 7);
        EXPECT_EQ(stream.GetStride(), 1);
    }
    EXPECT_EQ(CAudioStream(nullptr, 5, 0, 1, false).GetData(), nullptr);
}

// The leak check of a sanitized build sees what is freed twice or never.
TEST(AudioStream, OwnersFreeOnceAlsoAfterAMove) {
    CAudioStream owner(new float[4]{1.0f}, 0, 4, 1, true);
    CAudioStream moved(std::move(owner));
    CAudioStream other(new float[2]{2.0f}, 0, 2, 1, true);
    other = std::move(moved);
    EXPECT_EQ(other.GetData()[0], 1.0f);
    const CAudioStreams streams(new CAudioStream[2], 2, true);
    EXPECT_EQ(streams.GetCount(), 2);
    CAudioStreamToStreams one(new CAudioStream(std::move(other)), true);
    EXPECT_EQ(one.GetElement(0).GetData()[0], 1.0f);
    EXPECT_EQ(one.GetCount(), 1);
}

TEST(AudioStream, NothingGivesEmptyVectors) {
    EXPECT_EQ(CAudioStreams(nullptr, 5, true).GetCount(), 0);
    EXPECT_EQ(CAudioStreamToStreams(nullptr, true).GetCount(), 0);
    EXPECT_EQ(CConstAudioStreamToStreams(nullptr).GetCount(), 0);
}

TEST(EmptyStream, IsOneZeroThatNobodyWrites) {
    CEmptyStream stream(100);
    EXPECT_EQ(*std::as_const(stream).GetData(), 0.0f);
    EXPECT_EQ(stream.GetData(), nullptr);
    EXPECT_EQ(stream.GetStride(), 0);
    EXPECT_EQ(stream.GetSize(), 100);
    const CEmptyStreams streams(100, 3);
    EXPECT_EQ(streams.GetCount(), 3);
    EXPECT_EQ(&streams.GetElement(0), &streams.GetElement(2));
}

TEST(DynamicAudioStream, CopiesItsSamples) {
    CoreUtilities::TDynamicCollection<CDynamicAudioStream, IAudioStream> streams(1);
    streams[0].SetSize(3);
    std::fill_n(streams[0].GetData(), 3, 5.0f);
    const CDynamicAudioStream copy(streams[0]);
    streams[0].GetData()[2] = 6.0f;
    EXPECT_EQ(copy.GetSize(), 3);
    EXPECT_EQ(copy.GetData()[2], 5.0f);
    EXPECT_EQ(streams.GetElement(0).GetStride(), 1);
}

TEST(CopyStreams, CopyWithEachSidesStrideTheChannelsThatBothHave) {
    for (const int fromStride : {0, 1, 2, 3}) {
        for (const int toStride : {0, 1, 2, 3}) {
            for (const int channels : {1, 2, 3}) {
                SCOPED_TRACE(testing::Message() << fromStride << " to " << toStride);
                CTestStreams from = Make(channels, fromStride, 5, 10.0f);
                CTestStreams to(2, toStride, 5);
                CopyStreams(from, to, 4);
                for (int c = 0; c < std::min(channels, 2); ++c) {
                    for (int i = 0; i < 4; ++i)
                        EXPECT_EQ(to.Get(c, i), from.Get(c, toStride == 0 ? 3 : i));
                }
                if (channels == 1) {
                    EXPECT_EQ(to.Get(1, 0), CTestStreams::s_Untouched);
                }
                if (toStride != 0) {
                    EXPECT_EQ(to.Get(0, 4), CTestStreams::s_Untouched);
                }
                EXPECT_TRUE(to.AreGapsUntouched());
            }
        }
    }
}

TEST(CopyStream, OntoItselfOrIntoNothingIsNoCopyAndFromNothingIsSilence) {
    CTestStreams buffer = Make(1, 1, 4, 1.0f);
    CopyStream(buffer.GetElement(0), buffer.GetElement(0), 4);
    EXPECT_EQ(buffer.Get(0, 3), 4.0f);
    CEmptyStream nowhere(4);
    CopyStream(buffer.GetElement(0), nowhere, 4);
    EXPECT_EQ(*std::as_const(nowhere).GetData(), 0.0f);
    // The same memory by another stride is another stream.
    CAudioStream everySecond(&buffer.Get(0, 0), 0, 4, 2, false);
    CopyStream(everySecond, buffer.GetElement(0), 2);
    EXPECT_EQ(buffer.Get(0, 1), 3.0f);
    CopyStream(CAudioStream(), everySecond, 2);
    EXPECT_EQ(buffer.Get(0, 0), 0.0f);
    EXPECT_EQ(buffer.Get(0, 1), 3.0f);
    EXPECT_EQ(buffer.Get(0, 2), 0.0f);
}

TEST(ClearStreams, ClearsEverySampleAndNothingBetween) {
    for (const int stride : {0, 1, 2, 3}) {
        CTestStreams streams = Make(2, stride, 4, 1.0f);
        ClearStreams(streams);
        for (int i = 0; i < 8; ++i)
            EXPECT_EQ(streams.Get(i / 4, i % 4), 0.0f);
        EXPECT_TRUE(streams.AreGapsUntouched());
    }
    CAudioStream noData;
    CAudioStreamToStreams nothing(&noData, false);
    ClearStreams(nothing);
}

TEST(CrossfadeStreams, EndsAfterAnyNumberOfSteps) {
    const CEmptyStreams silence(1000, 1);
    float cell = 0.0f;
    CAudioStream swallow(&cell, 0, 1000, 0, false);
    CAudioStreamToStreams output(&swallow, false);
    for (int samples = 1; samples <= 1000; ++samples) {
        const float step = 1.0f / static_cast<float>(samples);
        for (const float start : {0.0f, 1.0f}) {
            float position = start;
            const float move = start > 0.0f ? -step : step;
            ASSERT_EQ(CrossfadeStreams(silence, silence, output, samples - 1, &position, move),
                      samples > 1);
            position = start;
            ASSERT_FALSE(CrossfadeStreams(silence, silence, output, samples, &position, move));
            ASSERT_EQ(position, 1.0f - start) << samples;
        }
    }
}

TEST(CrossfadeStreams, MovesEachChannelFromOneToTheOther) {
    const struct {
        float m_Position, m_Step;
        float m_End;
        bool m_GoesOn;
    } cases[] = {
        {0.0f, 0.125f, 0.5f, true},  {0.5f, 0.25f, 1.0f, false}, {1.0f, -0.125f, 0.5f, true},
        {0.5f, -0.25f, 0.0f, false}, {0.0f, 0.0f, 0.0f, false},  {1.0f, 0.0f, 1.0f, false},
        {0.25f, 0.0f, 0.25f, true},  {0.9f, 0.25f, 1.0f, false},
    };
    for (const auto& row : cases) {
        for (const int stride : {1, 2}) {
            SCOPED_TRACE(testing::Message() << row.m_Position << " by " << row.m_Step);
            CTestStreams from = Make(2, stride, 4, 1.0f);
            CTestStreams to = Make(3, 1, 4, -20.0f);
            CTestStreams out(4, stride, 4);
            float position = row.m_Position;
            EXPECT_EQ(CrossfadeStreams(from, to, out, 4, &position, row.m_Step), row.m_GoesOn);
            EXPECT_EQ(position, row.m_End);
            for (int c = 0; c < 2; ++c) {
                for (int i = 0; i < 4; ++i) {
                    // The steps are powers of two, so that every weight is exact.
                    const float weight =
                        std::clamp(row.m_Position + row.m_Step * static_cast<float>(i), 0.0f, 1.0f);
                    EXPECT_EQ(out.Get(c, i),
                              (to.Get(c, i) - from.Get(c, i)) * weight + from.Get(c, i));
                }
            }
            EXPECT_EQ(out.Get(2, 0), CTestStreams::s_Untouched) << "one of the three lacks it";
            EXPECT_TRUE(out.AreGapsUntouched());
        }
    }
}

TEST(CrossfadeStreams, NoDataReadsAsSilenceAndSwallowsWhatIsWritten) {
    CTestStreams streams = Make(1, 1, 4, 1.0f);
    CAudioStream noData;
    CAudioStreamToStreams nothing(&noData, false);
    float position = 0.5f;
    EXPECT_TRUE(CrossfadeStreams(streams, nothing, streams, 4, &position, 0.0f));
    EXPECT_EQ(streams.Get(0, 3), 2.0f);
    EXPECT_TRUE(CrossfadeStreams(nothing, streams, nothing, 4, &position, 0.0f));
    EXPECT_EQ(streams.Get(0, 3), 2.0f);
}

} // namespace

} // namespace Lathe::Audio::DSP
