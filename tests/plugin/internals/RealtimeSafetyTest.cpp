// The audio thread of an instance allocates nothing, frees nothing and waits for no lock but those
// it may wait for, whatever other threads do meanwhile; and nothing of the filter overlaps.
#include "plugin/PluginTestFilter.h"
#include "plugin/TestHost.h"

#include "math/Constant.h"
#include "serialization/MemDataObject.h"
#include "support/AllocationCounter.h"
#include "support/LockLog.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <random>
#include <string>
#include <thread>

namespace Lathe::Audio::Plugin {
namespace {

using DataModel::Objects::IDynamicPropertyValue;

// At least: blocks go on until every other thread has done its rounds.
constexpr int s_Blocks = 10000;
constexpr int s_Rounds = 100;
constexpr int s_Frames = 32;

template <class TVector>
void TakeEventLocks(TVector& objects) {
    CCountCommand command;
    for (int i = 0; i < objects.GetCount(); ++i) {
        auto& object = objects.GetElement(i);
        for (Core::IEventProvider* event :
             {&object.GetValueChangedEvent(), &object.GetBeginCaptureEvent(),
              &object.GetEndCaptureEvent()})
            event->RemoveAllCommands(&command);
    }
}

// Takes every lock that the audio thread may wait for, so that a log of locks knows them: that of
// the inputs, of processing a filter with a state, and of the events that it raises.
void TakePermittedLocks(CTestHost& host) {
    CCountCommand command;
    const IPluginGUIConnections& connections = host->GetConnections();
    auto& text = dynamic_cast<Core::ILock&>(connections.GetInputStrings()->GetElement(0));
    text.Lock();
    text.Unlock();
    host->LockProcessing();
    host->UnlockProcessing();
    TakeEventLocks(*connections.GetOutputParams());
    TakeEventLocks(*connections.GetOutputStrings());
    TakeEventLocks(*connections.GetOutputCurves());
    TakeEventLocks(*connections.GetOutputSurfaces());
    TakeEventLocks(*connections.GetOutputCustomProperties());
    TakeEventLocks(host.m_Inputs); // A controller moves the host's own objects.
    const CMIDICCMessage& message = host->GetMIDIController().GetLastMessage();
    message.GetContentsChangedEvent().RemoveAllCommands(&command);
    message.GetReceivedEvent().RemoveAllCommands(&command);
}

// One thread that does its work again and again until the end.
class CWorker {
public:
    CWorker(const std::atomic<bool>& end, std::function<void()> work)
        : m_Thread([this, &end, work = std::move(work)] {
              while (!end) {
                  work();
                  ++m_Rounds;
              }
          }) {}
    ~CWorker() { m_Thread.join(); }
    bool HasDoneItsShare() const { return m_Rounds >= s_Rounds; }

private:
    std::atomic<int> m_Rounds{0};
    std::thread m_Thread;
};

void WriteInputs(CTestHost& host, std::mt19937& random) {
    const IPluginGUIConnections& connections = host->GetConnections();
    const double number = static_cast<double>(random() % 1000);
    host.SetParam(1, number / 500.0);
    connections.GetInputStrings()->GetElement(0).SetValue(std::to_string(number).c_str());
    connections.GetInputCurves()->GetElement(0).SetValue(Math::CConstantFunction(number));
    connections.GetInputSurfaces()->GetElement(0).SetValue(Math::CConstantBinaryFunction(number));
    connections.GetInputCustomProperties()->GetElement(0).SetValue(CTestProperty(number));
}

void ReadOutputs(CTestHost& host) {
    const IPluginGUIConnections& connections = host->GetConnections();
    const std::unique_ptr<char[]> text(connections.GetOutputStrings()->GetElement(0).GetValue());
    const std::unique_ptr<Math::IFunction> curve(
        connections.GetOutputCurves()->GetElement(0).GetValue());
    const std::unique_ptr<Math::IBinaryFunction> surface(
        connections.GetOutputSurfaces()->GetElement(0).GetValue());
    const std::unique_ptr<IDynamicPropertyValue> property(
        connections.GetOutputCustomProperties()->GetElement(0).GetValue());
    // Each is whole, whichever of the written ones it is.
    EXPECT_GE(curve->Evaluate(0.0), 0.0);
    EXPECT_GE(surface->Evaluate(0.0, 0.0), 0.0);
    EXPECT_GE(dynamic_cast<const CTestProperty&>(*property).m_Number, 0.0);
}

void ChangeMIDISettings(CTestHost& host, std::mt19937& random) {
    IMIDICCSetting& input = host->GetMIDIController().GetInputSettings()[1];
    input.SetMIDIEnabled(random() % 2 == 0);
    input.SetNumber(static_cast<int>(random() % 3));
    host->GetMIDIController().GetOutputSettings()[0].SetNumber(static_cast<int>(random() % 3));
    host->GetConnections().GetDefaultSettings()->SetRefreshRate(
        100.0 + static_cast<double>(random() % 1000));
}

void StepThroughHistory(CTestHost& host, std::mt19937& random) {
    Serialization::IHistoryManager& history = host->GetHistory();
    switch (random() % 3) {
    case 0:
        history.RecordState();
        break;
    case 1:
        history.Undo();
        break;
    default:
        history.Redo();
    }
}

TEST(RealtimeSafety, BlocksNeitherAllocateNorWaitWhileOthersDoEverything) {
    const CTemporaryHome home;
    STestFilterSetup setup;
    setup.m_HasState = true;
    auto owned = std::make_unique<CPluginTestFilter>(setup);
    CPluginTestFilter& filter = *owned;
    filter.SetLatency(100);
    CTestHost host(std::move(owned));
    host.Connect();
    host.Prepare(48000.0, s_Frames);

    // Settings of its own, which the states then hold.
    host->GetConnections().GetMIDIInputDefault()->SetValue(false);
    host->GetConnections().GetMIDIOutputDefault()->SetValue(false);
    host->GetMIDIController().GetOutputSettings()[0].SetMIDIEnabled(true);

    CLockScope permitted;
    TakePermittedLocks(host);
    std::atomic<bool> end{false};
    std::atomic<int> allocations{0};
    std::atomic<bool> waitedElsewhere{false};
    {
        std::mt19937 random[4] = {std::mt19937(1), std::mt19937(2), std::mt19937(3),
                                  std::mt19937(4)};
        const CWorker writer(end, [&] { WriteInputs(host, random[0]); });
        const CWorker reader(end, [&] { ReadOutputs(host); });
        const CWorker session(end, [&] {
            Serialization::CMemDataObject state;
            host->SerializeState(state);
            host->DeSerializeState(state);
        });
        const CWorker editor(end, [&] {
            StepThroughHistory(host, random[1]);
            ChangeMIDISettings(host, random[2]);
        });
        std::thread audio([&] {
            const CLockScope locks;
            const CAllocationScope scope;
            const auto isOver = [&](int block) {
                return block >= s_Blocks && writer.HasDoneItsShare() && reader.HasDoneItsShare() &&
                       session.HasDoneItsShare() && editor.HasDoneItsShare();
            };
            for (int block = 0; !isOver(block); ++block) {
                host.SetParam(0, random[3]() % 64 == 0 ? 1.0 : 0.0);
                host.Control(1, static_cast<int>(random[3]() % 3), block % 128);
                host.Block(s_Frames, block % 50 < 10 ? 0.0f : 0.25f);
            }
            allocations = scope.GetCount();
            waitedElsewhere = !locks.IsWithin(permitted);
            end = true;
        });
        audio.join();
    }
    EXPECT_EQ(allocations, 0);
    EXPECT_FALSE(waitedElsewhere);
    EXPECT_EQ(filter.GetOverlaps(), 0);
    EXPECT_GT(host.m_SentEvents, 0);
    host->Shutdown();
}

} // namespace
} // namespace Lathe::Audio::Plugin
