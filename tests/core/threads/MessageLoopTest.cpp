// Proves that a loop runs messages in order and on its thread, that nobody who waits for it hangs
// when it stops or goes, that a removed timer doesn't run, whoever removes it and whatever its
// command does meanwhile, and that nothing owned leaks.
#include "core/Fixtures.h"
#include "core/threads/ManualTime.h"
#include "core/threads/MessageLoopThread.h"
#include "core/threads/ThreadedTimer.h"

#include <atomic>
#include <thread>

using namespace Lathe::Core;
using namespace Lathe::System;

namespace {

constexpr int Hour = 3600000;

// Counts the living, on any thread.
struct COwned : CActionCommand {
    explicit COwned(std::function<void()> action) : CActionCommand(std::move(action)) { ++s_Alive; }
    ~COwned() override { --s_Alive; }
    static inline std::atomic<int> s_Alive{0};
};

struct CRunningLoop : CMessageLoopThread {
    CRunningLoop() { Start(); }
    void Call(std::function<void()> action) { Invoke(new COwned(std::move(action)), true); }
    void PostCall(std::function<void()> action) { Post(new COwned(std::move(action)), true); }
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
        std::thread second(remove);
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

TEST(MessageLoopTest, RunsMessagesInOrderOnItsThread) {
    {
        CRunningLoop loop;
        std::string log; // Unlocked: an Invoke orders what it runs with what the caller does.
        std::thread::id thread;
        loop.PostCall([&] { log += 'a'; });
        loop.Call([&] {
            thread = std::this_thread::get_id();
            loop.PostCall([&] { log += 'e'; });
            loop.Call([&] { log += 'b'; });
            loop.GetTimerSerializer().RemoveTimer(nullptr, false);
            log += 'c';
        });
        loop.Call([&] { log += thread == std::this_thread::get_id() ? 'f' : '-'; });
        EXPECT_EQ(COwned::s_Alive, 0) << "they went before the caller went on";
        EXPECT_NE(thread, std::this_thread::get_id());
        EXPECT_EQ(log, "abcef") << "invoked within at once, posted within behind";
        loop.Invoke(nullptr, true);
        loop.Post(nullptr, true);
        loop.AddTimer(0, nullptr);
        loop.RemoveTimer(nullptr, true);
        loop.Call([&] { log.clear(); });
        EXPECT_EQ(log, "");
    }
    EXPECT_EQ(COwned::s_Alive, 0);
}

TEST(MessageLoopTest, StopsAndStartsAgainWithWhatItHas) {
    CRunningLoop loop;
    loop.Stop();
    loop.Stop();
    CEvent ran;
    CActionCommand timer([&] { ran.Set(); });
    int posted = 0;
    for (int round = 1; round <= 50; ++round) {
        loop.PostCall([&] { ++posted; });
        loop.Call([] { ADD_FAILURE() << "invoked without a thread"; });
        ran.Reset();
        loop.AddTimer(1, &timer);
        loop.Start();
        loop.Start();
        ran.Wait(-1);
        loop.RemoveTimer(&timer, false);
        loop.Call([&] { EXPECT_EQ(posted, round); });
        std::jthread other([&] { loop.Stop(); });
        loop.Stop();
        EXPECT_EQ(posted, round) << "either stop has joined the thread";
        other.join();
        loop.Start(); // Returns with the thread running: the stop is not lost.
        loop.Stop();
    }
}

TEST(MessageLoopTest, StopsItselfAndFreesWhoeverWaits) {
    for (int round = 0; round < 50; ++round) {
        CRunningLoop loop;
        CEvent blocked, go;
        loop.PostCall([&] {
            blocked.Set();
            go.Wait(-1);
            loop.Stop();
            loop.Start(); // Not on the loop's thread.
        });
        blocked.Wait(-1);
        loop.PostCall([&] { loop.Stop(); });
        std::jthread waiting([&] { loop.Call([] { ADD_FAILURE() << "ran after the stop"; }); });
        std::this_thread::yield();
        go.Set();
        waiting.join();
        // Each start finds a message that stops the loop at once, and comes to the next.
        CEvent last;
        for (int i = 0; i < 5; ++i)
            loop.PostCall([&] { loop.Stop(); });
        loop.PostCall([&] { last.Set(); });
        while (!last.IsSignaled())
            loop.Start();
    }
    EXPECT_EQ(COwned::s_Alive, 0) << "what it never came to has gone with it";
}

TEST(MessageLoopTest, GoesWhileItRunsWithAFullQueue) {
    struct CPosting : COwned {
        explicit CPosting(CRunningLoop& loop)
            : COwned([] { ADD_FAILURE() << "ran after the stop"; }), m_Loop(loop) {}
        ~CPosting() override {
            m_Loop.RemoveTimer(this, false);
            m_Loop.Post(new COwned([] {}), true);
        }
        CRunningLoop& m_Loop;
    };
    {
        CRunningLoop loop;
        CEvent stopping;
        loop.PostCall([&] {
            stopping.Set();
            loop.Stop();
        });
        stopping.Wait(-1);
        for (int i = 0; i < 10; ++i)
            loop.Post(new CPosting(loop), true);
    }
    EXPECT_EQ(COwned::s_Alive, 0);
}

TEST(MessageLoopTest, AddingATimerAgainRestartsIt) {
    CRunningLoop loop;
    CEvent ran;
    CActionCommand command([&] { ran.Set(); });
    loop.AddTimer(Hour, &command);
    loop.AddTimer(0, &command);
    ran.Wait(-1);
    loop.Call([&] { // Falls due before the loop can come to it.
        loop.AddTimer(Hour, &command);
        ran.Reset();
    });
    loop.Call([] {});
    loop.Call([&] { EXPECT_FALSE(ran.IsSignaled()) << "a period of its own, from now"; });
    loop.RemoveTimer(&command, false);
}

TEST(MessageLoopTest, NeitherMessagesNorTimersStarve) {
    CRunningLoop loop;
    CEvent done;
    int ticks = 0;
    CActionCommand command([&] { ++ticks; });
    loop.AddTimer(0, &command); // Due all the time.
    const std::function<void()> again = [&] {
        if (ticks < 100)
            loop.PostCall(again); // The queue is never empty.
        else
            done.Set();
    };
    loop.PostCall(again);
    done.Wait(-1);
    loop.RemoveTimer(&command, false);
}

TEST(MessageLoopTest, ATimerRemovesAndDestroysItself) {
    {
        CRunningLoop loop;
        CEvent done;
        ICommand* command = nullptr;
        command = new COwned([&] {
            loop.RemoveTimer(command, true);
            done.Set();
        });
        loop.AddTimer(0, command);
        done.Wait(-1);
        loop.RemoveTimer(new COwned([] {}), true); // Unknown, and destroyed all the same.
    }
    EXPECT_EQ(COwned::s_Alive, 0);
}

TEST(MessageLoopTest, ARemovalWaitsForTheCommand) {
    CRunningLoop loop;
    CheckRemovalWaits(loop);
}

TEST(MessageLoopTest, ManyCommandsShareOneTimerOfTheLoop) {
    CRunningLoop loop;
    CEvent first, second;
    CActionCommand setFirst([&] { first.Set(); }), setSecond([&] { second.Set(); });
    CTimerSerializer& timers = loop.GetTimerSerializer();
    loop.Call([&] {
        timers.AddTimer(10, &setFirst);
        timers.AddTimer(20, &setSecond);
    });
    first.Wait(-1);
    second.Wait(-1);
    loop.Call([&] { timers.RemoveTimer(&setFirst, false); });
}

TEST(SharedMessageLoopTest, RunsFromTheFirstHolderToTheLast) {
    for (int round = 0; round < 3; ++round) {
        const CSharedMessageLoop holder, other(holder);
        int runs = 0;
        CActionCommand count([&] { ++runs; });
        holder.Get().Invoke(&count, false);
        CSharedMessageLoop().Get().Invoke(&count, false);
        EXPECT_TRUE(runs == 2 && &holder.Get() == &other.Get());
        holder.Get().Post(new COwned([] {}), true);
    }
    EXPECT_EQ(COwned::s_Alive, 0);
}

TEST(ThreadedTimerTest, ARemovalWaitsForTheCommandOnTheOtherThread) {
    CRunningLoop invoker;
    CThreadedTimer timer(&invoker, true);
    CheckRemovalWaits(timer);
}

TEST(ThreadedTimerTest, KeepsItsTimersWhileItIsOff) {
    CRunningLoop invoker;
    CThreadedTimer timer(&invoker, false);
    int changes = 0;
    CActionCommand countChange([&] { ++changes; });
    timer.GetEnabledChangedEvent().AddCommand(countChange);
    CEvent ran;
    std::thread::id thread;
    invoker.Call([&] { thread = std::this_thread::get_id(); });
    CActionCommand command([&] {
        EXPECT_EQ(thread, std::this_thread::get_id());
        ran.Set();
    });
    timer.AddTimer(0, &command);
    timer.SetEnabled(false);
    EXPECT_TRUE(changes == 0 && !ran.IsSignaled());
    for (int round = 1; round <= 3; ++round) {
        ran.Reset();
        timer.SetEnabled(true);
        ran.Wait(-1);
        timer.SetEnabled(false);
        invoker.Call([] {}); // What was posted before the stop has run.
        ran.Reset();
        invoker.Call([] {});
        EXPECT_TRUE(!ran.IsSignaled() && !timer.GetEnabled() && changes == 2 * round);
    }
}
