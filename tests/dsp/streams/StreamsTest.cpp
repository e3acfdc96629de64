// Proves what streams say of their samples, who frees them, and that copying, clearing and
// crossfading touch exactly the samples that they should.

#include "dsp/streams/DynamicAudioStream.h"
#include "dsp/streams/EmptyStream.h"
#include "dsp/streams/StreamFunctions.h"

#include "core/containers/Collection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace Lathe::Audio::DSP {

namespace {

constexpr float s_Untouched = -99.0f;

// Samples of any stride, with gaps and an end that nobody may touch.
struct SBuffer {
    SBuffer(int samples, int stride, float first = s_Untouched)
        : m_Memory(static_cast<std::size_t>(samples * std::max(stride, 1) + 1), s_Untouched),
          m_Stream(m_Memory.data(), 0, stride == 0 ? samples : samples * stride, stride, false) {
        for (int i = 0; first != s_Untouched && i < samples; ++i)
            m_Memory[static_cast<std::size_t>(i * stride)] = first + static_cast<float>(i);
    }
    float Get(int sample) const {
        return m_Memory[static_cast<std::size_t>(sample * m_Stream.GetStride())];
    }
    // Whether all but the samples is as it was.
    bool AreGapsUntouched() const {
        for (std::size_t i = 0; i < m_Memory.size(); ++i) {
            const auto stride = static_cast<std::size_t>(m_Stream.GetStride());
            const bool isSample = stride == 0 ? i == 0 : i % stride == 0 && i + 1 < m_Memory.size();
            if (!isSample && m_Memory[i] != s_Untouched)
                return false;
        }
        return true;
    }

    std::vector<float> m_Memory;
    CAudioStream m_Stream;
};

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

TEST(CopyStream, CopiesWithEachSidesStride) {
    for (const int fromStride : {0, 1, 2, 3}) {
        for (const int toStride : {0, 1, 2, 3}) {
            SCOPED_TRACE(testing::Message() << fromStride << " to " << toStride);
            SBuffer from(5, fromStride, 10.0f);
            SBuffer to(5, toStride);
            CopyStream(from.m_Stream, to.m_Stream, 4);
            for (int i = 0; i < 4; ++i)
                EXPECT_EQ(to.Get(i), from.Get(toStride == 0 ? 3 : i));
            EXPECT_TRUE(toStride == 0 || to.Get(4) == s_Untouched);
            EXPECT_TRUE(to.AreGapsUntouched());
            CopyStream(CAudioStream(), to.m_Stream, 3);
            for (int i = 0; i < 3; ++i)
                EXPECT_EQ(to.Get(i), 0.0f) << "no source reads as zeros";
        }
    }
}

TEST(CopyStream, OntoItselfOrIntoNothingIsNoCopy) {
    SBuffer buffer(4, 1, 1.0f);
    const std::vector<float> before = buffer.m_Memory;
    CopyStream(buffer.m_Stream, buffer.m_Stream, 4);
    EXPECT_EQ(buffer.m_Memory, before);
    CEmptyStream nowhere(4);
    CopyStream(buffer.m_Stream, nowhere, 4);
    EXPECT_EQ(*std::as_const(nowhere).GetData(), 0.0f);
    // The same memory by another stride is another stream.
    CAudioStream everySecond(buffer.m_Memory.data(), 0, 4, 2, false);
    CopyStream(everySecond, buffer.m_Stream, 2);
    EXPECT_EQ(buffer.m_Memory[1], 3.0f);
}

// Two channels of one block, with strides of their own.
struct SPair {
    SPair(int samples, int stride, float first)
        : m_Left(samples, stride, first), m_Right(samples, stride, first + 50.0f) {
        m_Channels[0] = CAudioStream(m_Left.m_Memory.data(), 0, samples * stride, stride, false);
        m_Channels[1] = CAudioStream(m_Right.m_Memory.data(), 0, samples * stride, stride, false);
    }
    SBuffer m_Left;
    SBuffer m_Right;
    CAudioStream m_Channels[2];
    CAudioStreams m_Streams{m_Channels, 2, false};
    CAudioStreams m_LeftOnly{m_Channels, 1, false};
};

TEST(CopyStreams, CopiesTheChannelsThatBothHave) {
    SPair from(3, 2, 1.0f);
    for (const bool fewInputs : {true, false}) {
        SPair to(3, 1, s_Untouched);
        CopyStreams(fewInputs ? from.m_LeftOnly : from.m_Streams,
                    fewInputs ? to.m_Streams : to.m_LeftOnly, 3);
        EXPECT_EQ(to.m_Left.Get(2), 3.0f);
        EXPECT_EQ(to.m_Right.Get(0), s_Untouched + 50.0f);
    }
}

TEST(ClearStreams, ClearsEverySampleAndNothingBetween) {
    for (const int stride : {1, 2, 3}) {
        SPair pair(4, stride, 1.0f);
        ClearStreams(pair.m_Streams);
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(pair.m_Left.Get(i), 0.0f);
            EXPECT_EQ(pair.m_Right.Get(i), 0.0f);
        }
        EXPECT_TRUE(pair.m_Left.AreGapsUntouched());
        EXPECT_TRUE(pair.m_Right.AreGapsUntouched());
    }
    CAudioStream noData;
    CAudioStreamToStreams nothing(&noData, false);
    ClearStreams(nothing);
}

TEST(CrossfadeStreams, EndsAtOneAfterAnyNumberOfSteps) {
    const CEmptyStreams silence(5000, 1);
    float cell = 0.0f;
    CAudioStream swallow(&cell, 0, 5000, 0, false);
    CAudioStreamToStreams output(&swallow, false);
    for (int samples = 1; samples <= 5000; ++samples) {
        const float step = 1.0f / static_cast<float>(samples);
        float position = 0.0f;
        ASSERT_EQ(CrossfadeStreams(silence, silence, output, samples - 1, &position, step),
                  samples > 1);
        position = 0.0f;
        ASSERT_FALSE(CrossfadeStreams(silence, silence, output, samples, &position, step));
        ASSERT_EQ(position, 1.0f) << samples;
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
        {0.25f, 0.0f, 0.25f, true},
    };
    for (const auto& row : cases) {
        for (const int stride : {1, 2}) {
            SCOPED_TRACE(testing::Message() << row.m_Position << " by " << row.m_Step);
            SPair from(4, stride, 1.0f);
            SPair to(4, 1, -20.0f);
            SPair out(4, stride, 1.0f);
            float position = row.m_Position;
            EXPECT_EQ(CrossfadeStreams(from.m_Streams, to.m_Streams, out.m_Streams, 4, &position,
                                       row.m_Step),
                      row.m_GoesOn);
            EXPECT_EQ(position, row.m_End);
            // Steps are powers of two here, so that every weight is exact.
            for (int i = 0; i < 4; ++i) {
                const float weight =
                    std::clamp(row.m_Position + row.m_Step * static_cast<float>(i), 0.0f, 1.0f);
                for (auto channel : {&SPair::m_Left, &SPair::m_Right}) {
                    const float a = (from.*channel).Get(i);
                    const float b = (to.*channel).Get(i);
                    EXPECT_EQ((out.*channel).Get(i), (b - a) * weight + a);
                }
            }
            EXPECT_TRUE(out.m_Right.AreGapsUntouched());
        }
    }
}

TEST(CrossfadeStreams, LeavesTheChannelsThatOneLacks) {
    SPair from(4, 1, 1.0f);
    SPair to(4, 1, 2.0f);
    SPair out(4, 1, 7.0f);
    float position = 1.0f;
    CrossfadeStreams(from.m_Streams, to.m_LeftOnly, out.m_Streams, 4, &position, 0.0f);
    EXPECT_EQ(out.m_Left.Get(0), 2.0f);
    EXPECT_EQ(out.m_Right.Get(0), 57.0f);
    // No data reads as silence and swallows what is written.
    CAudioStream noData;
    CAudioStreamToStreams nothing(&noData, false);
    position = 0.5f;
    EXPECT_TRUE(CrossfadeStreams(from.m_Streams, nothing, out.m_Streams, 4, &position, 0.0f));
    EXPECT_EQ(out.m_Left.Get(3), 2.0f);
    EXPECT_TRUE(CrossfadeStreams(from.m_Streams, to.m_Streams, nothing, 4, &position, 0.0f));
}

} // namespace

} // namespace Lathe::Audio::DSP
