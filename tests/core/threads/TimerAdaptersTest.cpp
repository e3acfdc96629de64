// Proves what the adapters between timers and invokers do with ticks and calls: how many they let
// through, when, and none for what was removed; with time and threads in the test's hand.
#include "core/Fixtures.h"
#include "core/threads/AsyncCommand.h"
#include "core/threads/ManualTime.h"
#include "core/threads/ThreadInvokerSerializer.h"
#include "core/threads/TimerCommandAdapter.h"
#include "core/threads/TimerSerializer.h"
#include "core/threads/TimerWithThreadSynchronization.h"

#include <atomic>
#include <thread>

using namespace Lathe::Core;
using namespace Lathe::System;

namespace {

struct CCounting : ICommand, CTracked {
    void Execute() override { ++m_Number; }
    int TakeCount() { return std::exchange(m_Number, 0); }
};

struct SSerializer {
    CManualTimerProvider m_Time;
    CTimerSerializer m_Timers{&m_Time};
    CCounting m_First, m_Second, m_Third;

    void CheckTick(int tick) {
        EXPECT_EQ(m_Timers.GetTick(), tick);
        EXPECT_EQ(m_Time.GetPeriod(&m_Timers), tick);
    }
};

struct SSynchronized {
    CManualTimerProvider m_Time;
    CQueueInvoker m_Invoker;
    CTimerWithThreadSynchronization m_Timers{&m_Time, &m_Invoker};
};

} // namespace

TEST(TimerSerializerTest, TicksAtTheDivisorOfTheRoundedPeriods) {
    struct {
        std::vector<int> m_Given, m_Rounded;
        int m_Tick;
    } const cases[] = {
        {{25, 40}, {30, 40}, 10},
        {{5}, {10}, 10},
        {{-3, 0}, {10, 10}, 10},
        {{100, 51}, {100, 60}, 20},
        {{90, 30, 60}, {90, 30, 60}, 30},
        {{11, 10}, {20, 10}, 10},
        {{2147483647, 2147483639, 2147483631}, {2147483640, 2147483640, 2147483640}, 2147483640},
    };
    for (const auto& [given, rounded, tick] : cases) {
        SSerializer test;
        std::vector<CCounting> commands(given.size());
        for (std::size_t i = 0; i < given.size(); ++i)
            test.m_Timers.AddTimer(given[i], &commands[i]);
        test.CheckTick(tick);
        EXPECT_EQ(test.m_Time.GetCount(), 1);
        test.m_Time.Advance(3600);
        for (std::size_t i = 0; i < given.size(); ++i)
            EXPECT_EQ(commands[i].m_Number, 3600 / rounded[i]) << given[i];
    }
}

TEST(TimerSerializerTest, TheTickFollowsWhatIsThere) {
    SSerializer test;
    test.CheckTick(-1);
    test.m_Timers.AddTimer(40, &test.m_First);
    test.m_Timers.AddTimer(60, &test.m_Second);
    test.CheckTick(20);
    test.m_Timers.RemoveTimer(&test.m_First, false);
    test.CheckTick(60);
    test.m_Timers.AddTimer(80, &test.m_Second); // The one entry, restarted.
    test.CheckTick(80);
    test.m_Timers.RemoveTimer(&test.m_First, false);
    test.m_Timers.RemoveTimer(new CCounting, true);
    test.m_Timers.RemoveTimer(nullptr, true);
    test.m_Timers.AddTimer(10, nullptr);
    EXPECT_EQ(CTracked::s_Alive, 3);
    test.CheckTick(80);
    test.m_Timers.RemoveTimer(&test.m_Second, false);
    test.CheckTick(-1);
    test.m_Timers.AddTimer(50, &test.m_Second);
    test.CheckTick(50);
}

TEST(TimerSerializerTest, RestartsAndSwitches) {
    SSerializer test;
    CCounting changes;
    test.m_Timers.AddTimer(20, &test.m_First);
    test.m_Timers.AddTimer(30, &test.m_Second);
    test.m_Timers.GetEnabledChangedEvent().AddCommand(changes);
    test.m_Time.Advance(10);
    test.m_Timers.Restart();
    test.m_Time.Advance(20);
    EXPECT_TRUE(test.m_First.TakeCount() == 1 && test.m_Second.TakeCount() == 0);
    test.m_Timers.SetEnabled(true);
    EXPECT_EQ(changes.TakeCount(), 0);
    test.m_Timers.SetEnabled(false);
    test.m_Timers.AddTimer(5, &test.m_Third);
    EXPECT_TRUE(test.m_Time.GetCount() == 0 && changes.TakeCount() == 1);
    test.m_Timers.SetEnabled(true);
    test.CheckTick(10);
    CManualTimerProvider other;
    test.m_Timers.SetProvider(&other);
    EXPECT_TRUE(test.m_Time.GetCount() == 0 && other.GetPeriod(&test.m_Timers) == 10);
    test.m_Timers.SetProvider(nullptr);
    EXPECT_TRUE(other.GetCount() == 0 && test.m_Timers.GetEnabled());
}

TEST(TimerSerializerTest, CommandsChangeTheListThatRunsThem) {
    SSerializer test;
    CTimerSerializer& timers = test.m_Timers;
    CCounting added;
    // Each adds itself anew, at the end of the list: which must end all the same.
    std::function<void(CActionCommand&)> restart;
    int restarts = 0;
    CActionCommand first([&] { restart(first); }), second([&] { restart(second); });
    restart = [&](CActionCommand& command) {
        ++restarts;
        timers.RemoveTimer(&command, false);
        timers.AddTimer(10, &command);
        timers.AddTimer(10, &added);
    };
    timers.AddTimer(10, &first);
    timers.AddTimer(10, &second);
    test.m_Time.Advance(10);
    EXPECT_TRUE(restarts == 2 && added.TakeCount() == 0) << "what is added waits for the next tick";
    test.m_Time.Advance(10);
    EXPECT_EQ(restarts, 4);
    timers.RemoveTimer(&first, false);
    timers.RemoveTimer(&second, false);
    timers.RemoveTimer(&added, false);
    // The first removes the next, and itself with the last of the list; then there is none.
    auto* self = new CActionCommand([] {});
    self->m_Action = [&, self] {
        timers.RemoveTimer(&test.m_First, false);
        timers.RemoveTimer(&test.m_Third, false);
        timers.RemoveTimer(self, true);
    };
    timers.AddTimer(10, self);
    timers.AddTimer(10, &test.m_First);
    timers.AddTimer(10, &test.m_Second);
    timers.AddTimer(10, &test.m_Third);
    test.m_Time.Advance(10);
    EXPECT_EQ(test.m_First.m_Number + test.m_Third.m_Number, 0);
    EXPECT_EQ(test.m_Second.m_Number, 1);
}

TEST(ThreadSyncTest, LosesTicksWhileOneWaits) {
    SSynchronized test;
    CCounting command;
    test.m_Timers.AddTimer(20, &command);
    const auto fire = [&](int count) {
        for (int i = 0; i < count; ++i)
            test.m_Time.Fire();
        return test.m_Invoker.GetPosted();
    };
    EXPECT_EQ(fire(1), 1);
    EXPECT_EQ(fire(16), 1);
    EXPECT_EQ(fire(1), 2) << "the 17th goes out, though the first never ran";
    EXPECT_EQ(fire(16), 2);
    EXPECT_EQ(fire(1), 3);
    EXPECT_EQ(test.m_Invoker.RunAll(), 3);
    EXPECT_EQ(command.TakeCount(), 3);
    for (int posted = 4; posted < 10; ++posted) {
        EXPECT_EQ(fire(1), posted) << "none is lost once it runs";
        test.m_Invoker.RunAll();
    }
    EXPECT_EQ(command.TakeCount(), 6);
}

TEST(ThreadSyncTest, ATickThatIsOlderThanTheRemovalDoesNothing) {
    CQueueInvoker invoker;
    CManualTimerProvider time;
    {
        CTimerWithThreadSynchronization timers(&time, &invoker);
        CCounting command;
        const auto queue = [&] {
            timers.AddTimer(20, &command);
            time.Fire();
        };
        queue();
        timers.RemoveTimer(&command, false);
        EXPECT_TRUE(invoker.RunAll() == 1 && time.GetCount() == 0);
        queue();
        timers.RemoveTimer(&command, false);
        timers.AddTimer(30, &command); // Another timer: the tick is not its own.
        invoker.RunAll();
        EXPECT_EQ(command.TakeCount(), 0);
        queue();
        EXPECT_EQ(time.GetCount(), 1) << "a new period, no second timer";
        timers.AddTimer(20, nullptr);
        timers.RemoveTimer(new CCounting, true);
        auto* self = new CActionCommand([] {});
        self->m_Action = [&, self] { timers.RemoveTimer(self, true); };
        timers.AddTimer(40, self);
        time.Fire();
        EXPECT_TRUE(invoker.RunAll() == 2 && command.TakeCount() == 1 && time.GetCount() == 1);
        time.Fire();
    }
    EXPECT_TRUE(invoker.RunAll() == 1 && time.GetCount() == 0 && CTracked::s_Alive == 0);
}

TEST(TimerCommandAdapterTest, GathersCallsUpToTheTick) {
    CManualTimerProvider time;
    {
        auto* command = new CCounting;
        CTimerCommandAdapter adapter(&time, command, true);
        time.Advance(50);
        adapter.Execute();
        adapter.Execute();
        EXPECT_EQ(command->TakeCount(), 0);
        time.Advance(49);
        EXPECT_EQ(command->TakeCount(), 0);
        time.Advance(51);
        EXPECT_EQ(command->TakeCount(), 1);
        adapter.SetEnabled(false);
        adapter.Execute();
        time.Advance(50);
        EXPECT_EQ(command->TakeCount(), 0);
        adapter.SetEnabled(true);
        adapter.SetRefreshTime(10);
        time.Advance(20);
        EXPECT_TRUE(command->TakeCount() == 1 && adapter.GetRefreshTime() == 10);
    }
    EXPECT_TRUE(time.GetCount() == 0 && CTracked::s_Alive == 0);
}

TEST(TimerCommandAdapterTest, TheTickSeesWhatEachCallerDid) {
    CManualTimerProvider time;
    int first = 0, second = 0; // The thread sanitizer sees one that the calls don't hand over.
    CActionCommand command([&] { EXPECT_TRUE(first == 1 && second == 2); });
    CTimerCommandAdapter adapter(&time, &command, false);
    std::atomic<int> called{0};
    const auto call = [&](int& data, int value) {
        while (called.load(std::memory_order_relaxed) != value - 1)
            std::this_thread::yield();
        data = value;
        adapter.Execute();
        called.store(value, std::memory_order_relaxed);
    };
    std::jthread one([&] { call(first, 1); }), other([&] { call(second, 2); });
    while (called.load(std::memory_order_relaxed) != 2)
        std::this_thread::yield();
    time.Advance(50);
}

TEST(ThreadInvokerSerializerTest, QueuesUpToTheTick) {
    CManualTimerProvider time;
    CQueueInvoker invoker;
    CCounting kept;
    {
        CThreadInvokerSerializer serializer(&invoker, &time, 20);
        const auto post = [&] { serializer.Post(new CCounting(kept), true); };
        serializer.Invoke(&kept, false);
        EXPECT_TRUE(invoker.GetInvoked() == 1 && kept.TakeCount() == 1);
        CActionCommand posting([&] { serializer.Post(&kept, false); });
        serializer.Post(&posting, false);
        serializer.Post(nullptr, false);
        serializer.Execute();
        EXPECT_TRUE(kept.m_Number == 0 && time.GetCount() == 0) << "stopped from the start";
        serializer.Start();
        time.Advance(19);
        EXPECT_EQ(kept.m_Number, 0);
        time.Advance(1);
        EXPECT_EQ(kept.TakeCount(), 1) << "in the same tick as the one that posted it";
        serializer.SetPeriod(50);
        EXPECT_EQ(time.GetPeriod(&serializer), 50);
        CActionCommand stopping([&] { serializer.Stop(); });
        serializer.Post(&stopping, false);
        post();
        time.Advance(100);
        serializer.SetPeriod(10);
        EXPECT_TRUE(time.GetCount() == 0 && CTracked::s_Alive == 2) << "stopped amid the queue";
        serializer.Clear();
        EXPECT_EQ(CTracked::s_Alive, 1);
        post();
        serializer.Start();
    }
    EXPECT_TRUE(time.GetCount() == 0 && CTracked::s_Alive == 1 && kept.m_Number == 0);
}

TEST(AsyncCommandTest, RunsOnceForEachCallLater) {
    CQueueInvoker invoker;
    CCounting target;
    TAsyncCommand<CCounting> command(target, &CCounting::Execute, &invoker);
    command.Execute();
    command.Execute();
    EXPECT_TRUE(target.m_Number == 0 && invoker.GetWaiting() == 2);
    EXPECT_EQ(invoker.RunAll(), 2);
    EXPECT_EQ(target.m_Number, 2);
}
