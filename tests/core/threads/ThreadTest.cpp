// Proves that locks exclude and recurse, that events wake whom they must, that a thread runs what
// it is given, once each start, and lets go of locks when it is cancelled, and that a removal from
// a shared event waits for the notification in progress.
#include "core/Fixtures.h"
#include "core/threads/CommandThread.h"
#include "core/threads/Event.h"
#include "core/threads/LockableBool.h"
#include "core/threads/MTEventProvider.h"
#include "core/threads/PreciseCPUWatch.h"
#include "core/threads/WaitableEvent.h"

#include <atomic>
#include <thread>

using namespace Lathe::Core;
using namespace Lathe::System;

namespace {

bool TryLockElsewhere(ILock& lock) {
    bool taken = false;
    std::thread([&] {
        if ((taken = lock.TryLock()))
            lock.Unlock();
    }).join();
    return taken;
}

struct CTrackedCommand : ICommand, CTracked {
    void Execute() override { ++m_Number; }
};

// Waits for ever, and tells when it is about to.
struct CEndless {
    CEvent m_About, m_Never;
    static void Wait(void* endless) {
        auto* self = static_cast<CEndless*>(endless);
        self->m_About.Set();
        self->m_Never.Wait(-1);
        ADD_FAILURE() << "outlived its cancellation";
    }
};

} // namespace

TEST(CriticalSectionTest, ExcludesOthersUntilTheLastUnlock) {
    CLockableBool lock;
    {
        const CAutoLock outer(lock);
        EXPECT_TRUE(lock.TryLock() && !lock.m_Value) << "recursive";
        lock.Unlock();
        EXPECT_FALSE(TryLockElsewhere(lock));
    }
    EXPECT_TRUE(TryLockElsewhere(lock));
}

TEST(EventTest, StaysSetUntilReset) {
    CEvent event(true);
    EXPECT_TRUE(event.Wait(-1) && event.Wait(-1) && event.IsSignaled());
    event.Reset();
    EXPECT_TRUE(event.Wait(0) && event.Wait(1)) << "a wait that ran out is none that failed";
    EXPECT_FALSE(event.IsSignaled());
    std::vector<std::jthread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&event] { EXPECT_TRUE(event.Wait(-1)); });
    event.Set();
}

TEST(WaitableEventTest, ASignalIsForOneWait) {
    CWaitableEvent event(true);
    EXPECT_TRUE(event.Wait(60000)) << "set from the start";
    event.Signal();
    event.Signal();
    EXPECT_TRUE(event.Wait(-1));
    CPreciseCPUWatch watch;
    watch.Start();
    EXPECT_TRUE(event.Wait(20));
    EXPECT_GE(watch.GetElapsedMilliseconds(), 10U) << "two signals are one, and it was taken";
    // Two who wait need two signals; the second wakes the one that the first has left.
    std::atomic<int> woken{0};
    const auto wait = [&] { woken += event.Wait(-1); };
    std::jthread first(wait), second(wait);
    while (woken < 2) {
        event.Signal();
        std::this_thread::yield();
    }
}

TEST(PreciseCPUWatchTest, MeasuresFromTheLastStartToTheStop) {
    CPreciseCPUWatch watch;
    EXPECT_EQ(watch.GetElapsedTicks(), 0U);
    watch.Start();
    while (watch.GetElapsedMilliseconds() < 2) {
    }
    watch.Stop();
    const std::uint64_t stopped = watch.GetElapsedTicks();
    EXPECT_GE(stopped, watch.MillisecondsToTicks(2));
    watch.Stop();
    EXPECT_EQ(watch.GetElapsedTicks(), stopped) << "stands still";
    EXPECT_EQ(watch.TicksToMilliseconds(watch.MillisecondsToTicks(2000000000)), 2000000000U);
    EXPECT_EQ(watch.TicksToMilliseconds(watch.MillisecondsToTicks(3) - 1), 2U) << "truncated";
    EXPECT_EQ(watch.MillisecondsToTicks(-1), 0U);
}

TEST(ThreadTest, RunsItsCommandOncePerStart) {
    {
        CTrackedCommand kept;
        CCommandThread thread(&kept, false, false);
        thread.Join(-1);
        EXPECT_TRUE(kept.m_Number == 0 && thread.GetHandle() == 0) << "not yet started";
        for (int run = 1; run <= 20; ++run) {
            thread.Start();
            thread.Join(-1);
            ASSERT_EQ(kept.m_Number, run);
        }
        CCommandThread owning(new CTrackedCommand, true, true), empty(nullptr, false, true);
        owning.Join(-1);
        empty.Join(-1);
    }
    EXPECT_EQ(CTracked::s_Alive, 0);
}

TEST(ThreadTest, KnowsItselfAndIsNotJoinedByItself) {
    CEvent go, done;
    CCommandThread* self = nullptr;
    CActionCommand command([&] {
        go.Wait(-1);
        self->Join(-1);
        EXPECT_TRUE(self->IsCurrent());
        done.Set();
    });
    CCommandThread thread(&command, false, false);
    self = &thread;
    thread.Start();
    EXPECT_FALSE(thread.IsCurrent());
    thread.Join(1000); // Returns while the thread still waits.
    go.Set();
    done.Wait(-1);
    thread.Join(-1);
    EXPECT_FALSE(thread.IsCurrent());
}

TEST(ThreadTest, ACancelledThreadLetsGoOfItsLocks) {
    CEndless endless;
    CThread thread(CEndless::Wait, &endless, true);
    endless.m_About.Wait(-1);
    thread.Cancel();
    thread.Join(-1);
    thread.Cancel();
    endless.m_Never.Set(); // Hangs if the lock is still held.
    CThread without(CEndless::Wait, nullptr, true), null(nullptr, &endless, true);
    without.Join(-1);
    null.Join(-1);
}

TEST(MTEventProviderTest, ARemovalWaitsForTheNotification) {
    CMTEventProvider event;
    CEvent running;
    std::atomic<bool> removed{false};
    int other = 0;
    CActionCommand counting([&] { ++other; });
    CActionCommand command([&] {
        running.Set();
        event.AddCommand(counting); // The lock is recursive.
        for (int i = 0; i < 1000; ++i)
            std::this_thread::yield();
        EXPECT_FALSE(removed);
    });
    event.AddCommand(command);
    std::jthread notifier([&] { event.Notify(); });
    running.Wait(-1);
    event.RemoveCommand(command);
    removed = true;
    notifier.join();
    event.Notify();
    EXPECT_EQ(other, 1);
}
