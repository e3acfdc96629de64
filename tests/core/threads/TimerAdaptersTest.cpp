// Proves what the adapters between timers and invokers do with ticks and calls: how many they let
// through, when, and none for what was removed; with time and threads in the test's hand.
#include "core/Fixtures.h"
#include "core/threads/AsyncCommand.h"
#include "core/threads/ManualTime.h"
#include "core/threads/MessageLoopThread.h"
#include "core/threads/ThreadInvokerSerializer.h"
#include "core/threads/TimerCommandAdapter.h"
#include "core/threads/TimerWithThreadSynchronization.h"

#include <atomic>
#include <climits>
#include <thread>

using namespace Lathe::Core;
using namespace Lathe::System;

namespace {

struct CCounting : ICommand, CTracked {
    void Execute() override { ++m_Number; }
    int TakeCount() { return std::exchange(m_Number, 0); }
};

struct TimerSerializerTest : testing::Test {
    CManualTimerProvider m_Time, m_Other;
    CCounting m_First, m_Second, m_Third, m_Changes;
    CTimerSerializer m_Timers{&m_Time};
};

} // namespace

TEST_F(TimerSerializerTest, TicksAtTheDivisorOfTheRoundedPeriods) {
    constexpr int removed = INT_MIN, longest = INT_MAX / 10 * 10;
    CCounting* const commands[] = {&m_First, &m_Second, &m_Third, nullptr};
    struct {
        std::vector<std::pair<int, std::size_t>> m_Periods; // Each with its command.
        int m_Tick;
        std::vector<int> m_Runs; // In 3.59 s.
    } const cases[] = {
        {{{25, 0}, {40, 1}}, 10, {119, 89}},
        {{{5, 0}, {removed, 1}, {1, 3}, {removed, 3}}, 10, {359}},
        {{{-3, 0}, {0, 1}}, 10, {359, 359}},
        {{{100, 0}, {51, 1}}, 20, {35, 59}},
        {{{90, 0}, {30, 1}, {60, 2}}, 30, {39, 119, 59}},
        {{{INT_MAX, 0}, {longest - 1, 1}, {longest - 9, 2}}, longest, {0, 0, 0}},
        {{{40, 0}, {60, 1}, {removed, 0}}, 60, {0, 59}},
        {{{60, 0}, {80, 0}}, 80, {44}},
        {{{removed, 0}}, -1, {0}},
        {{{60, 0}, {removed, 0}, {50, 0}}, 50, {71}},
    };
    m_Timers.GetEnabledChangedEvent().AddCommand(m_Changes);
    for (const auto& [periods, tick, runs] : cases) {
        for (const auto& [period, i] : periods)
            period == removed ? m_Timers.RemoveTimer(commands[i], false)
                              : m_Timers.AddTimer(period, commands[i]);
        m_Time.Advance(35);
        m_Changes.TakeCount();
        m_Timers.SetEnabled(true);
        m_Timers.SetEnabled(false);
        EXPECT_TRUE(m_Time.GetCount() == 0 && m_Changes.TakeCount() == 1) << tick;
        m_Timers.SetProvider(&m_Other);
        m_Timers.SetEnabled(true);
        m_Timers.SetProvider(&m_Time);
        EXPECT_EQ(m_Other.GetCount(), 0);
        m_Timers.Restart();
        for (std::size_t i = 0; i < runs.size(); ++i)
            commands[i]->TakeCount();
        m_Time.Advance(3590);
        EXPECT_TRUE(m_Timers.GetTick() == tick && m_Time.GetCount() == (tick > 0)) << tick;
        for (std::size_t i = 0; i < runs.size(); ++i) {
            EXPECT_EQ(commands[i]->TakeCount(), runs[i]) << tick;
            m_Timers.RemoveTimer(commands[i], false);
        }
    }
}

TEST_F(TimerSerializerTest, CommandsChangeTheListThatRunsThem) {
    int restarts = 0;
    CActionCommand restart([&] { // Goes to the end of the list: which must end all the same.
        m_Timers.RemoveTimer(&restart, false);
        m_Timers.AddTimer(10, &restart);
        if (++restarts == 1)
            m_Timers.AddTimer(10, &m_Changes);
    });
    ICommand* self = new CActionCommand([&] {
        m_Timers.RemoveTimer(&m_First, false);
        m_Timers.RemoveTimer(&m_Third, false);
        m_Timers.RemoveTimer(self, true);
    });
    const std::vector<ICommand*> commands{&restart, self, &m_First, &m_Second, &m_Third};
    for (ICommand* command : commands)
        m_Timers.AddTimer(10, command);
    m_Time.Advance(10);
    EXPECT_TRUE(restarts == 1 && m_Changes.m_Number == 0) << "the next tick is for what is added";
    m_Time.Advance(10);
    EXPECT_TRUE(restarts == 2 && m_Changes.m_Number == 1 && m_Second.m_Number == 2);
    EXPECT_EQ(m_First.m_Number + m_Third.m_Number, 0);
}

TEST(ThreadSyncTest, LosesTicksWhileOneWaitsAndAllThatAreOlderThanTheRemoval) {
    CManualTimerProvider time, runner;
    CThreadInvokerSerializer invoker(nullptr, &runner, 1);
    invoker.Start();
    CCounting command;
    const auto run = [&](int ticks) {
        time.Advance(20 * ticks);
        runner.Advance(1);
        return command.TakeCount();
    };
    {
        CTimerWithThreadSynchronization timers(&time, &invoker);
        timers.AddTimer(30, &command);
        timers.AddTimer(20, &command); // A new period, no second timer.
        timers.AddTimer(20, nullptr);
        timers.RemoveTimer(new CCounting, true);
        // The 17th that finds one waiting goes out, though the first never ran.
        for (const auto& [ticks, runs] :
             {std::pair{1, 1}, {1, 1}, {17, 1}, {18, 2}, {34, 2}, {35, 3}, {1, 1}})
            EXPECT_EQ(run(ticks), runs) << ticks;
        for (int round = 0; round < 2; ++round) {
            time.Advance(20);
            timers.RemoveTimer(&command, false);
            EXPECT_EQ(time.GetCount(), 0);
            timers.AddTimer(20, &command); // Another timer: the tick is not its own.
            EXPECT_EQ(run(0), 0);
        }
        time.Advance(20);
    }
    EXPECT_TRUE(run(0) == 0 && time.GetCount() == 0 && CTracked::s_Alive == 1);
}

TEST(TimerCommandAdapterTest, GathersCallsUpToTheTick) {
    CManualTimerProvider time;
    int runs = 0, seen = 0;
    {
        CTimerCommandAdapter adapter(&time, new CActionCommand([&] { runs += seen; }), true);
        std::atomic<bool> called{false};
        std::jthread caller([&] {
            seen = 1; // The thread sanitizer sees whether the tick may read it.
            adapter.Execute();
            called.store(true, std::memory_order_relaxed);
        });
        while (!called.load(std::memory_order_relaxed))
            std::this_thread::yield();
        adapter.Execute();
        time.Advance(49);
        EXPECT_EQ(runs, 0);
        time.Advance(51);
        adapter.SetEnabled(false);
        adapter.Execute();
        time.Advance(50);
        EXPECT_EQ(runs, 1);
        adapter.SetEnabled(true);
        adapter.SetRefreshTime(10);
        time.Advance(20);
        EXPECT_TRUE(runs == 2 && adapter.GetRefreshTime() == 10);
    }
    EXPECT_EQ(time.GetCount(), 0);
}

TEST(ThreadInvokerSerializerTest, QueuesUpToTheTick) {
    CManualTimerProvider time;
    CMessageLoopThread loop;
    CCounting kept;
    {
        CThreadInvokerSerializer serializer(&loop, &time, 20);
        CActionCommand stopping([&] { serializer.Stop(); });
        TAsyncCommand<CCounting> posting(kept, &CCounting::Execute, &serializer);
        serializer.Post(&posting, false);
        serializer.Post(nullptr, false);
        serializer.Execute();
        serializer.SetPeriod(30);
        serializer.Invoke(&kept, false); // The loop has no thread yet.
        EXPECT_TRUE(kept.m_Number == 0 && time.GetCount() == 0) << "stopped from the start";
        loop.Start();
        serializer.Invoke(&kept, false);
        serializer.Start();
        serializer.SetPeriod(50);
        time.Advance(49);
        EXPECT_EQ(kept.TakeCount(), 1) << "past the queue";
        time.Advance(1);
        EXPECT_EQ(kept.TakeCount(), 1) << "in the same tick as the one that posted it";
        serializer.Post(&stopping, false);
        serializer.Post(new CCounting, true);
        time.Advance(100);
        EXPECT_TRUE(time.GetCount() == 0 && CTracked::s_Alive == 2) << "stopped amid the queue";
        serializer.Clear();
        serializer.Post(new CCounting, true);
        serializer.Start();
        EXPECT_EQ(CTracked::s_Alive, 2);
    }
    EXPECT_TRUE(time.GetCount() == 0 && CTracked::s_Alive == 1);
}
