// Proves that locks exclude, that events wake whom they must and threads can be cancelled; that a
// loop runs messages in order and on its thread, that nobody who waits for it hangs when it stops
// or goes, that what was removed doesn't run, whoever removes it and whatever it does meanwhile.
#include "core/Fixtures.h"
#include "core/threads/LockableBool.h"
#include "core/threads/MessageLoopThread.h"
#include "core/threads/ThreadedTimer.h"

#include <atomic>
#include <thread>

using namespace Lathe::Core;
using namespace Lathe::System;

namespace {

constexpr int Hour = 3600000;

void YieldOften() {
    for (int i = 0; i < 1000; ++i)
        std::this_thread::yield();
}

void Call(IThreadInvoker& invoker, std::function<void()> action) {
    invoker.Invoke(new CActionCommand(std::move(action)), true);
}
void Post(IThreadInvoker& invoker, std::function<void()> action) {
    invoker.Post(new CActionCommand(std::move(action)), true);
}

struct CRunningLoop : CMessageLoopThread {
    CRunningLoop() { Start(); }
};

// Removals from several threads while the command, which runs all the time, adds and removes
// timers, itself too: none deadlocks, and when one has returned the command has ended.
void CheckRemovalWaits(ITimerProvider& timers) {
    CActionCommand other([] {});
    for (int round = 0; round < 100; ++round) {
        CEvent running;
        std::atomic<bool> removed{false};
        CActionCommand command([&] {
            running.Set();
            for (int i = 0; i < 20; ++i) {
                timers.AddTimer(Hour, &other);
                timers.RemoveTimer(&other, false);
                std::this_thread::yield();
            }
            if (round % 2)
                timers.RemoveTimer(&command, false);
            if (round % 4 == 3)
                timers.AddTimer(Hour, &command);
            EXPECT_FALSE(removed);
        });
        timers.AddTimer(0, &command);
        running.Wait(-1);
        const auto remove = [&] {
            timers.RemoveTimer(&command, false);
            removed = true;
        };
        std::jthread second(remove);
        remove();
        second.join();
        timers.RemoveTimer(&command, false); // Where it has added itself once more.
    }
    // At any moment, also just before the command would run: the sanitizers see one that does.
    for (int round = 0; round < 1000; ++round) {
        auto* command = new CActionCommand([] {});
        timers.AddTimer(0, command);
        for (int i = 0; i < round % 100; ++i)
            timers.AddTimer(Hour, &other);
        timers.RemoveTimer(command, true);
    }
    timers.RemoveTimer(&other, false);
}

} // namespace

TEST(ThreadTest, EventsWakeWhomTheyMust) {
    CEvent event(true);
    EXPECT_TRUE(event.Wait(-1) && event.Wait(-1)) << "set until reset";
    event.Reset();
    EXPECT_TRUE(event.Wait(0) && event.Wait(1) && !event.IsSignaled()) << "time-outs don't fail";
    CWaitableEvent waitable(true);
    EXPECT_TRUE(waitable.Wait(60000)) << "set from the start";
    waitable.Signal();
    waitable.Signal();
    EXPECT_TRUE(waitable.Wait(-1));
    CPreciseCPUWatch watch;
    watch.Start();
    EXPECT_TRUE(waitable.Wait(20));
    watch.Stop();
    EXPECT_GE(watch.GetElapsedTicks(), watch.MillisecondsToTicks(10)) << "two signals are one";
    const auto wait = [&] {
        event.Wait(-1);
        waitable.Wait(-1);
        waitable.Signal(); // For the next.
    };
    std::jthread first(wait), second(wait), third(wait);
    event.Set();
    waitable.Signal();
    EXPECT_EQ(watch.TicksToMilliseconds(watch.MillisecondsToTicks(2000000000) - 1), 1999999999U);
}

TEST(ThreadTest, ACancelledThreadLetsGoOfItsLocks) {
    CLockableBool held;
    CEvent about, never;
    CThread* self = nullptr;
    CActionCommand command([&] {
        self->Join(-1); // Doesn't wait for itself.
        EXPECT_TRUE(self->IsCurrent() && !held.TryLock());
        about.Set();
        never.Wait(-1);
    });
    CCommandThread thread(&command, false, false);
    self = &thread;
    const CAutoLock lock(held);
    thread.Start();
    about.Wait(-1);
    thread.Join(1000); // Returns while the thread still waits.
    EXPECT_TRUE(!thread.IsCurrent() && held.TryLock()) << "recursive";
    held.Unlock();
    thread.Cancel();
    thread.Join(-1);
    never.Set(); // Hangs if the lock is still held.
}

TEST(ThreadTest, ARemovalWaitsForTheNotification) {
    CMTEventProvider event;
    CEvent running;
    std::atomic<bool> removed{false};
    CActionCommand other([] {}), command([&] {
        running.Set();
        event.AddCommand(other); // The lock is recursive.
        YieldOften();
        EXPECT_FALSE(removed);
    });
    event.AddCommand(command);
    std::jthread notifier([&] { event.Notify(); });
    running.Wait(-1);
    event.RemoveCommand(command);
    removed = true;
}

TEST(MessageLoopTest, RunsMessagesInOrderOnTheThreadOfTheProcess) {
    const CSharedMessageLoop holder;
    CMessageLoop& loop = CSharedMessageLoop().Get();
    CTimerSerializer& timers = loop.GetTimerSerializer();
    CEvent ticked;
    ICommand* tick = new CActionCommand([&] {
        timers.RemoveTimer(tick, true); // The last one, in its own tick.
        ticked.Set();
    });
    std::string log; // Unlocked: an Invoke orders what it runs with what the caller does.
    std::thread::id thread;
    Post(loop, [&] { log += 'a'; });
    Call(loop, [&] {
        thread = std::this_thread::get_id();
        Post(loop, [&] { log += 'e'; });
        Call(loop, [&] { log += 'b'; });
        timers.AddTimer(10, tick);
        log += 'c';
    });
    ticked.Wait(-1);
    loop.Invoke(nullptr, true);
    loop.Post(nullptr, true);
    loop.AddTimer(0, nullptr);
    bool gone = false;
    std::shared_ptr<void> held(nullptr, [&gone](void*) { YieldOften(), gone = true; });
    Call(loop,
         [&, held = std::move(held)] { log += thread == std::this_thread::get_id() ? 'f' : '-'; });
    EXPECT_TRUE(gone) << "the command goes before the caller goes on";
    EXPECT_EQ(log, "abcef") << "invoked within at once, posted within behind";
    EXPECT_NE(thread, std::this_thread::get_id());
}

TEST(MessageLoopTest, StopsAndStartsAgainAndGoesWithAFullQueue) {
    for (int round = 0; round < 50; ++round) {
        CRunningLoop loop;
        CEvent blocked, go, last;
        bool left = false, ended = false;
        const auto stop = [&] { loop.Stop(); };
        Post(loop, [&] {
            if (round % 2)
                loop.Stop();
            blocked.Set();
            go.Wait(-1);
            loop.Stop();
            loop.Start(); // Not on the loop's thread.
            YieldOften();
            left = true;
        });
        blocked.Wait(-1);
        Post(loop, stop);
        std::thread waiting([&] {
            Call(loop, [] { ADD_FAILURE() << "ran after the stop"; });
            EXPECT_TRUE(left) << "the thread is still there";
        });
        std::this_thread::yield();
        go.Set();
        waiting.join(); // Whoever waits is let go.
        // Each start finds a message that stops the loop at once, and comes to the next.
        for (int i = 0; i < 5; ++i)
            Post(loop, stop);
        Post(loop, [&] {
            last.Set();
            YieldOften();
            ended = true;
        });
        while (!last.IsSignaled())
            loop.Start();
        std::jthread other(stop);
        loop.Stop();
        EXPECT_TRUE(ended) << "either stop has joined the thread";
        other.join();
        loop.Start(); // Returns with the thread running: the stop is not lost.
        loop.Stop();
        Call(loop, [] { ADD_FAILURE() << "invoked without a thread"; });
        Post(loop, stop);
        std::shared_ptr<void> posting(nullptr, [&loop](void*) { Post(loop, [] {}); });
        Post(loop, [posting] { ADD_FAILURE() << "ran after the stop"; });
        posting.reset(); // It posts as the loop goes.
        loop.Start();    // Goes while it runs.
    }
}

TEST(MessageLoopTest, ATimerAddedAgainRestartsAndStarvesNobody) {
    CRunningLoop loop;
    CEvent done;
    int ticks = 0;
    CActionCommand command([&] { ++ticks; });
    const std::function<void()> again = [&] { // The queue is never empty.
        ticks < 100 ? Post(loop, again) : done.Set();
    };
    for (int round = 0; round < 10; ++round) {
        loop.AddTimer(Hour, &command);
        loop.AddTimer(0, &command); // Due all the time.
        Post(loop, again);
        done.Wait(-1);
        Call(loop, [&] { // Falls due before the loop can come to it.
            loop.AddTimer(Hour, &command);
            done.Reset();
            ticks = 0;
        });
        Call(loop, [] {});
        Call(loop, [&] { EXPECT_EQ(ticks, 0) << "a period of its own, from now"; });
    }
    loop.RemoveTimer(&command, false);
    CheckRemovalWaits(loop);
}

TEST(ThreadedTimerTest, KeepsItsTimersWhileItIsOff) {
    CRunningLoop invoker;
    CThreadedTimer timer(&invoker, false), enabled(&invoker, true);
    CEvent ran;
    std::thread::id thread;
    int changes = 0;
    CActionCommand countChange([&] { ++changes; }), command([&] {
        thread = std::this_thread::get_id();
        ran.Set();
    });
    timer.GetEnabledChangedEvent().AddCommand(countChange);
    timer.AddTimer(0, &command);
    timer.SetEnabled(false);
    EXPECT_TRUE(changes == 0 && !ran.IsSignaled());
    for (int round = 1; round <= 3; ++round) {
        timer.SetEnabled(true);
        ran.Wait(-1);
        timer.SetEnabled(false); // What was posted before this runs before the next call.
        Call(invoker, [&] { EXPECT_EQ(thread, std::this_thread::get_id()); });
        ran.Reset();
        YieldOften();
        Call(invoker, [] {});
        EXPECT_TRUE(!ran.IsSignaled() && !timer.GetEnabled() && changes == 2 * round);
    }
    CheckRemovalWaits(enabled);
}
