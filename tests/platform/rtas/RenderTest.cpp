// Blocks: audio and MIDI through the plug-in, what a block must not carry, and what the audio
// thread must not do.

#include "platform/rtas/TestPlugin.h"
#include "support/AllocationCounter.h"
#include "support/LockLog.h"

#include <atomic>
#include <limits>
#include <thread>

namespace {

class CRenderTest : public CModuleTest {};

std::vector<RTASMIDIEvent> MakeEvents(int count) {
    std::vector<RTASMIDIEvent> events;
    for (int i = 0; i < count; ++i)
        events.push_back({i, 3, {0xB0, 7, static_cast<std::uint8_t>(i + 1), 0}});
    return events;
}

TEST_F(CRenderTest, AudioGoesThroughInPlaceToo) {
    RTASProcess* const process = New();
    float in[]{1.0f, 2.0f, 3.0f};
    float out[2][3]{};
    float* const inputs[]{in, in};
    float* const outputs[]{out[0], out[1]};
    auto render = MakeCall<RTASRender>(process);
    render.inputs = inputs;
    render.outputs = outputs;
    render.numSamples = 2;
    EXPECT_EQ(Dispatch(RTAS_RENDER, &render), RTAS_OK);
    EXPECT_EQ(out[1][1], 4.0f);
    EXPECT_EQ(out[1][2], 0.0f);
    float* const place[]{in, out[0]};
    render.inputs = render.outputs = place;
    EXPECT_EQ(Dispatch(RTAS_RENDER, &render), RTAS_OK);
    EXPECT_EQ(in[1], 4.0f);
}

TEST_F(CRenderTest, MIDIComesInAndGoesOutWithTheBlock) {
    RTASProcess* const process = New();
    const std::vector<RTASMIDIEvent> events = MakeEvents(6);
    std::vector<RTASMIDIEvent> out(3);
    auto render = MakeCall<RTASRender>(process);
    float samples[64]{};
    float* const buffers[]{samples, samples};
    render.inputs = render.outputs = buffers;
    render.numSamples = 64;
    render.midiIn = events.data();
    render.midiInCount = 2;
    render.midiOut = out.data();
    render.midiOutRoom = 3;
    EXPECT_EQ(Dispatch(RTAS_RENDER, &render), RTAS_OK);
    ASSERT_EQ(render.midiOutCount, 2);
    EXPECT_EQ(out[1].offset, 1);
    EXPECT_EQ(out[1].data[2], 2);
    EXPECT_EQ(m_HostHeard,
              (std::vector<std::string>{"touch", "2=1", "release", "touch", "2=2", "release"}));
    EXPECT_EQ(Value(process, 2), 2);
    EXPECT_EQ(Value(process, 3), 2);
    // The plug-in's buffer takes 4 events, then as many as the stream has shown.
    render.midiInCount = 6;
    for (const int taken : {4, 6}) {
        EXPECT_EQ(Dispatch(RTAS_RENDER, &render), RTAS_OK);
        EXPECT_EQ(Value(process, 3), taken);
        EXPECT_EQ(render.midiOutCount, 3);
    }
    // What didn't fit doesn't come later; and without events there is a stream, an empty one.
    render.midiIn = nullptr;
    render.midiInCount = 0;
    EXPECT_EQ(Dispatch(RTAS_RENDER, &render), RTAS_OK);
    EXPECT_EQ(render.midiOutCount, 0);
    EXPECT_EQ(Value(process, 3), 0);
}

TEST_F(CRenderTest, NodesWorkOnlyOnceCreated) {
    const std::vector<RTASMIDIEvent> events = MakeEvents(2);
    CEffectMIDINode input("In", 4);
    input.AttachStream(events.data(), 2);
    EXPECT_FALSE(input.HasStream());
    EXPECT_NE(input.FetchEvents(64), 0);
    EXPECT_NE(input.Create(0, 1), 0);
    CEffectMIDIRTASBufferedOutputNode output("Out", 1);
    EXPECT_FALSE(output.Post(events[0]));
    EXPECT_EQ(output.Create(1), 0);
    EXPECT_TRUE(output.Post(events[0]));
    EXPECT_FALSE(output.Post(events[1]));
}

TEST_F(CRenderTest, OfflineThereIsNoMIDIAndNoTransport) {
    RTASProcess* const process = New(true);
    const std::vector<RTASMIDIEvent> events = MakeEvents(1);
    const RTASTransport transport{};
    RTASRender render{};
    render.midiIn = events.data();
    render.midiInCount = 1;
    render.transport = &transport;
    bool isPlaying = false;
    long status = 0;
    g_Plan.m_LastProcess->m_InBlock = [&](CTestProcess& plugin) {
        status = plugin.GetHostTransport().IsPlaying(&isPlaying);
    };
    EXPECT_EQ(Render(process, 8, render), RTAS_OK);
    EXPECT_NE(status, 0);
    EXPECT_TRUE(m_HostHeard.empty());
}

TEST_F(CRenderTest, UnsoundBlocksNeverReachThePlugin) {
    RTASProcess* const process = New();
    int blocks = 0;
    g_Plan.m_LastProcess->m_InBlock = [&blocks](CTestProcess&) { ++blocks; };
    for (const int numSamples : {-1, 65, std::numeric_limits<int>::max()})
        EXPECT_EQ(Render(process, numSamples), RTAS_WRONG_ARGUMENT);
    constexpr RTASMIDIEvent unsound[][2]{
        {{0, 0, {}}, {0, 1, {}}}, {{0, 5, {}}, {0, 1, {}}}, {{-1, 1, {}}, {0, 1, {}}},
        {{0, 1, {}}, {8, 1, {}}}, {{1, 1, {}}, {0, 1, {}}},
    };
    RTASRender render{};
    render.midiInCount = 2;
    for (const RTASMIDIEvent(&events)[2] : unsound) {
        render.midiIn = events;
        EXPECT_EQ(Render(process, 8, render), RTAS_WRONG_ARGUMENT);
    }
    render.midiIn = nullptr;
    EXPECT_EQ(Render(process, 8, render), RTAS_WRONG_ARGUMENT);
    render.midiInCount = 0;
    render.midiOutRoom = 1;
    EXPECT_EQ(Render(process, 8, render), RTAS_WRONG_ARGUMENT);
    auto call = MakeCall<RTASRender>(process);
    float* const buffers[2]{};
    for (float* const* const channels : {static_cast<float* const*>(nullptr), buffers}) {
        call.inputs = call.outputs = channels;
        EXPECT_EQ(Dispatch(RTAS_RENDER, &call), RTAS_WRONG_ARGUMENT);
    }
    EXPECT_EQ(blocks, 0);
    EXPECT_EQ(Render(process, 0), RTAS_OK);
    EXPECT_EQ(blocks, 1);
}

// The main thread makes, moves and deletes instances meanwhile.
TEST_F(CRenderTest, NeitherAllocatesNorWaits) {
    RTASNewProcess made = MakeNewProcess();
    ASSERT_EQ(Dispatch(RTAS_NEW_PROCESS, &made), RTAS_OK);
    g_Plan.m_LastProcess->m_InBlock = [](CTestProcess& plugin) { plugin.CountChange(); };
    std::atomic<bool> isOver{false};
    std::thread audio([&] {
        const std::vector<RTASMIDIEvent> events = MakeEvents(8);
        std::vector<RTASMIDIEvent> out(8);
        const RTASTransport transport{};
        float samples[64]{};
        float* const buffers[]{samples, samples};
        auto render = MakeCall<RTASRender>(made.process);
        render.inputs = render.outputs = buffers;
        render.numSamples = 64;
        render.midiIn = events.data();
        render.midiInCount = 8;
        render.midiOut = out.data();
        render.midiOutRoom = 8;
        render.transport = &transport;
        int failures = 0;
        const CAllocationScope allocations;
        const CLockScope locks;
        do
            failures += Dispatch(RTAS_RENDER, &render) != RTAS_OK;
        while (!isOver.load());
        EXPECT_EQ(allocations.GetCount(), 0);
        EXPECT_EQ(locks.GetCount(), 0);
        EXPECT_EQ(failures, 0);
    });
    auto change = MakeCall<RTASControlText>(made.process);
    change.control = 2;
    for (int i = 0; i < 50; ++i) {
        auto other = MakeCall<RTASProcessCall>(New());
        EXPECT_NE(other.process, made.process);
        EXPECT_EQ(Dispatch(RTAS_DELETE_PROCESS, &other), RTAS_OK);
        change.value = i;
        EXPECT_EQ(Dispatch(RTAS_SET_CONTROL_VALUE, &change), RTAS_OK);
        auto count = MakeCall<RTASProcessCall>(made.process);
        EXPECT_EQ(Dispatch(RTAS_GET_CHANGE_COUNT, &count), RTAS_OK);
    }
    isOver = true;
    audio.join();
}

} // namespace
