// The audio thread of an instance allocates nothing, frees nothing and waits for no lock but those
// it may wait for, whatever other threads do meanwhile; and nothing of the filter overlaps.
#include "plugin/TestHost.h"

#include "serialization/MemDataObject.h"
#include "support/AllocationCounter.h"
#include "support/LockLog.h"

#include <gtest/gtest.h>

#include <future>
#include <random>

namespace Lathe::Audio::Plugin {
namespace {

// At least: blocks go on until every other thread has done its rounds.
constexpr int s_Blocks = 10000;
constexpr int s_Rounds = 100;
constexpr int s_Frames = 32;

// Takes every lock that the audio thread may wait for, so that a log of locks knows them: that of
// the inputs, of processing a filter with a state, and of the events that it raises.
void TakePermittedLocks(SRig& rig) {
    CCountCommand command;
    const auto takeEventLocks = [&](auto& objects) {
        for (int i = 0; i < objects.GetCount(); ++i) {
            auto& object = objects.GetElement(i);
            for (Core::IEventProvider* event :
                 {&object.GetValueChangedEvent(), &object.GetBeginCaptureEvent(),
                  &object.GetEndCaptureEvent()})
                event->RemoveAllCommands(&command);
        }
    };
    { const Core::CAutoLock inputs(dynamic_cast<Core::ILock&>(rig.GetText())); }
    rig.m_Host->LockProcessing();
    rig.m_Host->UnlockProcessing();
    takeEventLocks(*rig.Get().GetOutputParams());
    takeEventLocks(*rig.Get().GetOutputStrings());
    takeEventLocks(*rig.Get().GetOutputCurves());
    takeEventLocks(*rig.Get().GetOutputSurfaces());
    takeEventLocks(*rig.Get().GetOutputCustomProperties());
    takeEventLocks(rig.m_Host.m_Inputs); // A controller moves the host's own objects.
    const CMIDICCMessage& message = rig.m_Host->GetMIDIController().GetLastMessage();
    message.GetContentsChangedEvent().RemoveAllCommands(&command);
    message.GetReceivedEvent().RemoveAllCommands(&command);
}

TEST(RealtimeSafety, BlocksNeitherAllocateNorWaitWhileOthersDoEverything) {
    SRig rig({.m_HasState = true});
    CTestHost& host = rig.m_Host;
    rig.m_Filter->SetLatency(100);
    host.Prepare(48000.0, s_Frames);
    // Settings of its own, which the states then hold.
    rig.Get().GetMIDIInputDefault()->SetValue(false);
    rig.Get().GetMIDIOutputDefault()->SetValue(false);
    host->GetMIDIController().GetOutputSettings()[0].SetMIDIEnabled(true);

    CLockScope permitted;
    TakePermittedLocks(rig);
    std::atomic<bool> end{false};
    std::atomic<int> busy{4};
    const auto repeat = [&](auto round) {
        return std::async(std::launch::async, [&, random = std::mt19937(4711), round]() mutable {
            for (int i = 1; i <= s_Rounds || !end; ++i) {
                round(random);
                busy -= i == s_Rounds;
            }
        });
    };
    const std::future<void> others[] = {
        repeat([&](std::mt19937& random) {
            const double number = static_cast<double>(random() % 1000);
            host.SetParam(1, number / 500.0);
            rig.GetText().SetValue(std::to_string(number).c_str());
            SetObjects(rig.Get(), number, number, number);
        }),
        repeat([&](std::mt19937&) {
            // Each is whole, whichever of the written ones it is.
            EXPECT_EQ(ShowOutputs(rig.Get()).find('-'), std::string::npos);
        }),
        repeat([&](std::mt19937&) {
            Serialization::CMemDataObject state;
            host->SerializeState(state);
            host->DeSerializeState(state);
        }),
        repeat([&](std::mt19937& random) {
            const auto draw = [&] { return static_cast<int>(random() % 3); };
            using History = Serialization::IHistoryManager;
            void (History::*const steps[])() = {&History::RecordState, &History::Undo,
                                                &History::Redo};
            (host->GetHistory().*steps[draw()])();
            IMIDICCSetting& input = host->GetMIDIController().GetInputSettings()[1];
            input.SetMIDIEnabled(random() % 2 == 0);
            input.SetNumber(draw());
            host->GetMIDIController().GetOutputSettings()[0].SetNumber(draw());
            rig.Get().GetDefaultSettings()->SetRefreshRate(100.0 + 300.0 * draw());
        })};
    std::async(std::launch::async, [&] {
        const CLockScope locks;
        const CAllocationScope scope;
        std::mt19937 random(1);
        for (int block = 0; block < s_Blocks || busy > 0; ++block) {
            host.SetParam(0, random() % 64 == 0 ? 1.0 : 0.0);
            host.Control(1, static_cast<int>(random() % 3), block % 128);
            host.Block(s_Frames, block % 50 < 10 ? 0.0f : 0.25f);
        }
        end = true;
        EXPECT_EQ(scope.GetCount(), 0);
        EXPECT_TRUE(locks.IsWithin(permitted));
    }).get();
    EXPECT_EQ(rig.m_Filter->GetOverlaps(), 0);
    EXPECT_GT(host.m_SentEvents, 0);
}

} // namespace
} // namespace Lathe::Audio::Plugin
