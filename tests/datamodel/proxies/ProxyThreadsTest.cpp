// Proves, with threads that run as they like, that a proxy ends with the last value of its source,
// and can die on any thread amid updates and writes, with nothing executed after.
#include "core/threads/MessageLoopThread.h"
#include "datamodel/proxies/ProxyKinds.h"

#include <atomic>
#include <thread>

namespace Lathe::DataModel::Objects {
namespace {

struct CRunningLoop : System::CMessageLoopThread {
    CRunningLoop() { Start(); }
    void Call(std::function<void()> action) { Invoke(new CActionCommand(std::move(action)), true); }
    void Send(std::function<void()> action) { Post(new CActionCommand(std::move(action)), true); }
};

template <class TKind>
struct TTimers {
    using Source = typename TKind::MTSource;
    using Proxy = typename TKind::TimerProxy;

    static std::unique_ptr<Proxy> Make(CRunningLoop& reader, CRunningLoop&, Source& source) {
        auto proxy = std::make_unique<Proxy>(source, reader);
        proxy->SetRefreshTime(0); // All the time.
        return proxy;
    }
    static void Finish(Proxy& proxy) { proxy.UpdateValue(); } // As the next tick.
};
template <class TKind>
struct TThreads {
    using Source = typename TKind::Object;
    using Proxy = typename TKind::MTProxy;

    static std::unique_ptr<Proxy> Make(CRunningLoop& reader, CRunningLoop& sourceThread,
                                       Source& source) {
        return std::make_unique<Proxy>(&reader, sourceThread, source);
    }
    static void Finish(const Proxy& proxy) { EXPECT_FALSE(proxy.IsCaptured()); }
};

template <class TFamily>
void CheckLastValue() {
    typename TFamily::Source source;
    CRunningLoop reader, sourceThread;
    std::unique_ptr<typename TFamily::Proxy> proxy;
    reader.Call([&] { proxy = TFamily::Make(reader, sourceThread, source); });
    for (int round = 0; round < 300; ++round) {
        sourceThread.Send([&] {
            for (int i = 0; i <= 10 + round % 2; ++i) {
                SetNumber(source, i % 2); // Back and forth to what the reader may have.
                i % 2 ? source.Release() : source.Capture();
            }
            source.Release();
        });
        if (round % 3 == 0)
            reader.Send([&] { SetNumber(*proxy, round); });
        reader.Call([] {});       // The write is done,
        sourceThread.Call([] {}); // the changes are,
        reader.Call([&] {         // and what they posted.
            TFamily::Finish(*proxy);
            EXPECT_EQ(GetNumberOf(*proxy), GetNumberOf(source)) << round;
        });
    }
    proxy.reset();
}

template <class TFamily>
void CheckDeathAmidAStorm() {
    typename TFamily::Source source;
    CRunningLoop reader, sourceThread;
    std::atomic<bool> end{false};
    std::jthread storm([&] {
        for (int i = 0; !end; ++i)
            sourceThread.Call([&] {
                SetNumber(source, i);
                i % 2 ? source.Release() : source.Capture();
            });
    });
    for (int round = 0; round < 60; ++round) {
        std::unique_ptr<typename TFamily::Proxy> owner;
        typename TFamily::Proxy* proxy = nullptr;
        std::atomic<bool> alive{true};
        System::CEvent fired;
        CActionCommand listener([&] {
            EXPECT_TRUE(alive);
            EXPECT_GE(GetNumberOf(*proxy), 0);
            if (round % 3) // The source's thread waits for this in the other rounds.
                SetNumber(*proxy, round);
            fired.Set();
        });
        reader.Call([&] {
            owner = TFamily::Make(reader, sourceThread, source);
            proxy = owner.get();
            proxy->GetValueChangedEvent().AddCommand(listener);
            proxy->GetBeginCaptureEvent().AddCommand(listener);
        });
        fired.Wait(-1);
        const auto die = [&] {
            owner.reset();
            alive = false;
        };
        if (round % 3 == 0)
            sourceThread.Call(die);
        else if (round % 3 == 1)
            reader.Call(die);
        else
            die();
    }
    end = true;
}

template <class TKind>
class ProxyThreads : public testing::Test {};
TYPED_TEST_SUITE(ProxyThreads, Kinds);

TYPED_TEST(ProxyThreads, EndWithTheLastValueOfAStorm) {
    CheckLastValue<TTimers<TypeParam>>();
    CheckLastValue<TThreads<TypeParam>>();
}

TYPED_TEST(ProxyThreads, DieOnAnyThreadAmidAStorm) {
    CheckDeathAmidAStorm<TTimers<TypeParam>>();
    CheckDeathAmidAStorm<TThreads<TypeParam>>();
}

TEST(ThreadProxy, LivesOnWhenTheSourcesThreadHasStopped) {
    CRunningLoop sourceThread;
    CManualInvoker reader;
    CWideParam source;
    {
        sourceThread.Stop();
        CCaptureParamMTProxy proxy(&reader, sourceThread, source);
        source.SetValue(3.0);
        reader.Run();
        EXPECT_EQ(proxy.GetValue(), 3.0);
    }
    source.SetValue(4.0);
    EXPECT_TRUE(reader.m_Queue.empty());
}

} // namespace
} // namespace Lathe::DataModel::Objects
