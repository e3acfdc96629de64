// Proves what each proxy fires and when, that it ends with the last value of its source, and that
// it can die on any thread amid updates and writes, with nothing executed after.
#include "core/Fixtures.h"
#include "core/threads/ManualTime.h"
#include "core/threads/MessageLoopThread.h"
#include "datamodel/Journal.h"
#include "datamodel/objects/capture/CaptureCurve.h"
#include "datamodel/objects/capture/CaptureCustomProperty.h"
#include "datamodel/objects/capture/CaptureParam.h"
#include "datamodel/objects/capture/CaptureString.h"
#include "datamodel/objects/capture/CaptureSurface.h"
#include "datamodel/objects/capture/MTCaptureParam.h"
#include "datamodel/proxies/MakeMTProxy.h"
#include "datamodel/proxies/TimerProxies.h"
#include "math/Constant.h"
#include "support/AllocationCounter.h"
#include "support/LockLog.h"

#include <cmath>
#include <thread>

namespace Lathe::DataModel::Objects {
namespace {

// Values made of numbers, of every kind.
struct CNumberText : std::string {
    explicit CNumberText(int number) : std::string(std::to_string(number)) {}
    operator const char*() const { return c_str(); }
};
struct CNumberProperty : CEmptyDynamicPropertyValue {
    explicit CNumberProperty(int number) : m_Number(number) {}
    CNumberProperty* Clone() const override { return new CNumberProperty(m_Number); }
    int m_Number;
};
struct CNumber {
    static int Of(double value) { return static_cast<int>(value); }
    static int Of(const char* value) { return std::atoi(value); }
    static int Of(const Math::IFunction& value) { return Of(value.Evaluate(0.0)); }
    static int Of(const Math::IBinaryFunction& value) { return Of(value.Evaluate(0.0, 0.0)); }
    static int Of(const IDynamicPropertyValue& value) {
        const auto* property = dynamic_cast<const CNumberProperty*>(&value);
        return property ? property->m_Number : 0;
    }
    // Copies, which a factory gives.
    static int Of(char* copy) { return Of(std::unique_ptr<const char[]>(copy).get()); }
    template <class I>
    static int Of(I* copy) {
        return Of(*std::unique_ptr<I>(copy));
    }
};

// Changes on any thread.
template <class TNumber, class T, class TInfo, class TInfoImpl>
class TTestFactory
    : public TCaptureState<TICaptureObjectFactory<T, TInfo>, System::CMTEventProvider> {
public:
    const TInfoImpl& GetInfo() const override { return m_Info; }
    typename Core::TValueStorage<T>::Copy GetValue() const override {
        const Core::CAutoLock lock(m_Lock);
        return m_Value.MakeCopy();
    }
    void SetValue(T value) override {
        {
            const Core::CAutoLock lock(m_Lock);
            m_Value.Set(value);
        }
        this->NotifyValueChanged();
    }
    void Capture() override { this->BeginCapture(); }
    void Release() override { this->EndCapture(); }

private:
    TInfoImpl m_Info{"", ""};
    Core::TValueStorage<T> m_Value{TNumber(0)};
    mutable System::CCriticalSection m_Lock;
};
struct CWideParam : CCaptureParam {
    CWideParam() { GetInfo().SetMax(1e6); }
};
struct CWideMTParam : CMTCaptureParam {
    CWideMTParam() { SetInfo(CParamInfo(EParamType::Float, 0.0, 1e6, 0.0, "", "", "")); }
};

struct ParamKind {
    using Number = double;
    using Factory = CWideMTParam;
    using ConstTimerProxy = CConstCaptureParamTimerProxy;
    using TimerProxy = CCaptureParamTimerProxy;
    using Object = CWideParam;
    using ConstMTProxy = CConstCaptureParamMTProxy;
    using MTProxy = CCaptureParamMTProxy;
};
template <class TNumber, class T, class TInfo, class TInfoImpl, class TObject, class TConstMT,
          class TMT>
struct TFactoryKind {
    using Number = TNumber;
    using Factory = TTestFactory<TNumber, T, TInfo, TInfoImpl>;
    using ConstTimerProxy = TConstCaptureObjectTimerProxy<T, TInfo>;
    using TimerProxy = TCaptureObjectTimerProxy<T, TInfo>;
    using Object = TObject;
    using ConstMTProxy = TConstMT;
    using MTProxy = TMT;
};
using Kinds = testing::Types<
    ParamKind,
    TFactoryKind<Math::CConstantFunction, const Math::IFunction&, IConstCurveInfo, CCurveInfo,
                 CCaptureCurve, CConstCaptureCurveMTProxy, CCaptureCurveMTProxy>,
    TFactoryKind<Math::CConstantBinaryFunction, const Math::IBinaryFunction&, IConstSurfaceInfo,
                 CSurfaceInfo, CCaptureSurface, CConstCaptureSurfaceMTProxy,
                 CCaptureSurfaceMTProxy>,
    TFactoryKind<CNumberText, const char*, IConstStringInfo, CStringInfo, CCaptureString,
                 CConstCaptureStringMTProxy, CCaptureStringMTProxy>,
    TFactoryKind<CNumberProperty, const IDynamicPropertyValue&, IConstCustomPropertyInfo,
                 CCustomPropertyInfo, CCaptureCustomProperty, CConstCaptureCustomPropertyMTProxy,
                 CCaptureCustomPropertyMTProxy>>;
template <class TKind>
class Proxies : public testing::Test {};
TYPED_TEST_SUITE(Proxies, Kinds);

// Posted commands wait for Run. Takes no lock, and allocates nothing for a post.
struct CManualInvoker : System::IThreadInvoker {
    CManualInvoker() { m_Queue.reserve(1000); }
    void Invoke(Core::ICommand* command, bool owned) override {
        Core::TOwnership<Core::ICommand>(command, owned)->Execute();
    }
    void Post(Core::ICommand* command, bool owned) override {
        m_Queue.emplace_back(command, owned);
    }
    void Run() {
        for (std::size_t i = 0; i < m_Queue.size(); ++i)
            m_Queue[i]->Execute();
        m_Queue.clear();
    }

    std::vector<Core::TOwnership<Core::ICommand>> m_Queue;
};

template <class TKind>
struct TTimerRig {
    typename TKind::Factory m_Source;
    CManualTimerProvider m_Time;
    typename TKind::ConstTimerProxy m_ReadOnly{m_Source, m_Time};
    typename TKind::TimerProxy m_Writable{m_Source, m_Time};

    void Run() { m_Time.Advance(50); }
};
template <class TKind>
struct TThreadRig {
    CManualInvoker m_Reader, m_SourceThread;
    typename TKind::Object m_Source;
    typename TKind::ConstMTProxy m_ReadOnly{&m_Reader, m_SourceThread, m_Source};
    typename TKind::MTProxy m_Writable{&m_Reader, m_SourceThread, m_Source};

    void Run() { m_Reader.Run(); }
};

template <class TRig, class TNumber>
struct CPlayer : TRig {
    CPlayer() {
        m_ReadOnlyJournal.Listen(m_Bar, '|');
        m_WritableJournal.Listen(m_Bar, '|');
    }
    // The source: c changes, b and e capture. The proxies: x and y forbid and allow updates, u
    // updates. The writable one: w writes, C and R capture. A bar lets the tick or the queue run.
    void Play(char step) {
        switch (step) {
        case 'c':
            return this->m_Source.SetValue(TNumber(++m_Number));
        case 'b':
            return this->m_Source.Capture();
        case 'e':
            return this->m_Source.Release();
        case 'x':
        case 'y':
            this->m_ReadOnly.EnableValueUpdate(step == 'y');
            return this->m_Writable.EnableValueUpdate(step == 'y');
        case 'u':
            this->m_ReadOnly.UpdateValue();
            return this->m_Writable.UpdateValue();
        case 'C':
            return this->m_Writable.Capture();
        case 'R':
            return this->m_Writable.Release();
        case 'w':
            this->m_Writable.SetValue(TNumber(++m_Number));
            EXPECT_EQ(CNumber::Of(this->m_Source.GetValue()), m_Number) << "before it returns";
            return;
        default:
            m_Bar.Notify();
            this->Run();
        }
    }

    Core::CEventProvider m_Bar;
    CJournal m_ReadOnlyJournal{this->m_ReadOnly}, m_WritableJournal{this->m_Writable};
    int m_Number = 0;
};

// With answersLater, a write fires as it comes back.
template <class TRig, class TNumber>
void CheckScripts(bool answersLater) {
    struct {
        std::string m_Script, m_ReadOnly, m_Writable, m_WritableLater;
    } const cases[] = {
        {std::string(1000, 'c') + "||", "|v|", "|v|", "|v|"},
        {"be|", "|", "|", "|"},
        {"b|c|e|", "|b|v|e", "|b|v|e", "|b|v|e"},
        {"bc|ce|", "|bv|ve", "|bv|ve", "|bv|ve"},
        {"cu|u", "v|", "v|", "v|"},
        {"xc|u|yu|", "||v|", "||v|", "||v|"},
        {"xc|yc|", "||v", "||v", "||v"},
        {"cw|", "|v", "v|", "|v"},
        {"CwR|", "|v", "bve|", "be|v"},
        {"Cw|R|", "|bv|e", "bv|e|", "b|ve|"},
        {"b|CR|", "|b|e", "|be|", "|be|"},
    };
    CPlayer<TRig, TNumber> player;
    for (const auto& test : cases) {
        for (const char step : test.m_Script)
            player.Play(step);
        EXPECT_EQ(player.m_ReadOnlyJournal.Take(), test.m_ReadOnly) << test.m_Script;
        EXPECT_EQ(player.m_WritableJournal.Take(),
                  answersLater ? test.m_WritableLater : test.m_Writable)
            << test.m_Script;
        EXPECT_EQ(CNumber::Of(player.m_ReadOnly.GetValue()), player.m_Number) << test.m_Script;
        EXPECT_EQ(CNumber::Of(player.m_Writable.GetValue()), player.m_Number) << test.m_Script;
    }
    player.m_Writable.SetValue(player.m_Writable.GetValue());
    EXPECT_EQ(CNumber::Of(player.m_Source.GetValue()), player.m_Number) << "its own value";
    EXPECT_EQ(&player.m_ReadOnly.GetInfo(), &player.m_Source.GetInfo());
}

TYPED_TEST(Proxies, FireOnceForAllChangesInsideTheirBracket) {
    using Number = typename TypeParam::Number;
    CheckScripts<TTimerRig<TypeParam>, Number>(false);
    CheckScripts<TThreadRig<TypeParam>, Number>(
        std::is_reference_v<decltype(std::declval<typename TypeParam::MTProxy>().GetValue())>);
}

TYPED_TEST(Proxies, AreAskedOrLeaveNothingBehindInTimersAndQueues) {
    CManualTimerProvider time;
    CManualInvoker reader;
    typename TypeParam::Factory factory;
    typename TypeParam::Object source;
    {
        System::CMessageLoopThread sourceThread; // Doesn't run, and holds up nobody.
        typename TypeParam::TimerProxy timerProxy(factory, time);
        typename TypeParam::MTProxy proxy(&reader, sourceThread, source);
        typename TypeParam::ConstMTProxy asked(nullptr, sourceThread, source);
        CJournal journal(asked);
        source.SetValue(typename TypeParam::Number(7));
        source.Capture();
        EXPECT_EQ(journal.Take(), "");
        EXPECT_TRUE(CNumber::Of(asked.GetValue()) == 7 && asked.IsCaptured());
        EXPECT_EQ(journal.Take(), "vb");
    }
    source.SetValue(typename TypeParam::Number(8));
    factory.SetValue(typename TypeParam::Number(8));
    EXPECT_TRUE(time.GetCount() == 0 && reader.m_Queue.size() == 2);
    reader.Run();
}

// A param that another thread sets just behind a read or a write, once.
struct CContestedParam : CWideMTParam {
    double GetValue() const override { return Contest(m_BehindRead, CWideMTParam::GetValue()); }
    void SetValue(double value) override {
        CWideMTParam::SetValue(value);
        Contest(m_BehindWrite, value);
    }
    double Contest(double& by, double value) const {
        const Core::CRealtimePermission permission; // For the thread.
        if (const double other = std::exchange(by, 0.0); other > 0.0)
            std::jthread([&] { const_cast<CContestedParam*>(this)->SetValue(other); }).join();
        return value;
    }

    mutable double m_BehindRead = 0.0, m_BehindWrite = 0.0;
};

TEST(TimerProxy, PausesAndWritesAndTicksAsOftenAsItIsTold) {
    TTimerRig<ParamKind> rig;
    CJournal journal(rig.m_Writable);
    rig.m_Writable.SetPaused(true);
    rig.m_Source.Capture();
    rig.m_Source.SetValue(1.0);
    rig.m_Time.Advance(200);
    EXPECT_TRUE(rig.m_Writable.IsPaused() && journal.Take().empty());
    CActionCommand faster([&] { rig.m_Writable.SetRefreshTime(20); }); // Within the tick.
    rig.m_Writable.GetValueChangedEvent().AddCommand(faster);
    rig.m_Writable.SetPaused(false);
    rig.m_Time.Advance(50);
    EXPECT_EQ(journal.Take(), "bv");
    rig.m_Source.SetValue(2.0);
    rig.m_Time.Advance(19);
    rig.m_Writable.SetValue(1.0);
    EXPECT_EQ(journal.Take(), "v") << "the same value, but it was behind its source";
    rig.m_Writable.SetValue(1.0);
    rig.m_Writable.SetValue(NAN);
    EXPECT_TRUE(journal.Take().empty() && rig.m_Writable.GetValue() == 1.0);
}

TEST(TimerProxy, GetsTheLastWordOfAnotherThread) {
    CManualTimerProvider time;
    CContestedParam source;
    CCaptureParamTimerProxy proxy(source, time);
    source.m_BehindWrite = 77.0;
    proxy.SetValue(5.0);
    time.Advance(50);
    EXPECT_EQ(proxy.GetValue(), 77.0);
    source.SetValue(6.0);
    source.m_BehindRead = 88.0;
    time.Advance(100);
    EXPECT_EQ(proxy.GetValue(), 88.0);
}

TEST(ThreadProxy, ShowsWhatIsWrittenUntilTheSourceAnswers) {
    TThreadRig<ParamKind> rig;
    CJournal journal(rig.m_Writable);
    for (int i = 0; i < 2; ++i) { // The second time the source has its maximum, and fires nothing.
        rig.m_Writable.SetValue(2e6);
        EXPECT_EQ(rig.m_Writable.GetValue(), 2e6);
        rig.Run();
        EXPECT_EQ(rig.m_Writable.GetValue(), 1e6);
        EXPECT_EQ(journal.Take(), "vv");
    }
    const CAllocationScope allocations;
    const CLockScope locks;
    for (int i = 0; i < 400; ++i)
        rig.m_Source.SetValue(i);
    EXPECT_EQ(allocations.GetCount() + locks.GetCount(), 0) << "nothing but what a queue takes";
}

// The source's thread has a new value between the reader's look at it and the reader's store.
struct CHurriedHolder : CParamFloatValueHolder {
    CHurriedHolder& operator=(const CHurriedHolder& pending) {
        const double seen = pending.GetValue();
        if (const auto hurry = std::exchange(s_Hurry, nullptr))
            hurry();
        SetValue(seen);
        return *this;
    }
    static inline std::function<void()> s_Hurry;
};

TEST(ThreadProxy, MissesNoValueThatComesDuringAnUpdate) {
    TMTProxyValues<double, CHurriedHolder> values;
    CWideParam source;
    source.SetValue(1.0);
    EXPECT_TRUE(values.Receive(source));
    CHurriedHolder::s_Hurry = [&] {
        source.SetValue(0.0);
        EXPECT_FALSE(values.Receive(source)) << "what the reader still has, so nothing is posted";
    };
    values.Update(true);
    EXPECT_EQ(values.GetValue(), 0.0);
}

TYPED_TEST(Proxies, AreMadeForTheFirstInterfaceThatIsThere) {
    CManualInvoker invoker;
    typename TypeParam::Object source;
    Core::IValueChangedEventProvider* base = &source;
    const auto check = [&]<class TProxy>(TProxy*, bool readOnly) {
        const auto ask = [&]<class I>() {
            return std::is_const_v<I> || !readOnly ? dynamic_cast<I*>(base) : nullptr;
        };
        const auto take = []<class T>(std::unique_ptr<T> proxy) {
            const bool fits = std::is_same_v<T, TProxy>;
            EXPECT_TRUE(fits && CNumber::Of(proxy->GetValue()) == 0);
            return false;
        };
        EXPECT_EQ(MakeMTProxy(ask, take, &invoker, invoker), !base);
    };
    check(static_cast<typename TypeParam::MTProxy*>(nullptr), false);
    check(static_cast<typename TypeParam::ConstMTProxy*>(nullptr), true);
    base = nullptr; // Which has no interface.
    check(static_cast<void*>(nullptr), false);
}

struct CRunningLoop : System::CMessageLoopThread {
    CRunningLoop() { Start(); }
    void Call(std::function<void()> action) { Invoke(new CActionCommand(std::move(action)), true); }
    void Send(std::function<void()> action) { Post(new CActionCommand(std::move(action)), true); }
};

// A source that lives on one thread, a proxy that lives on another.
template <class TSource, class TProxy, class TNumber>
struct TStorm {
    std::unique_ptr<TProxy> Make() {
        if constexpr (requires { &TProxy::SetPaused; }) {
            auto proxy = std::make_unique<TProxy>(m_Source, m_Reader);
            proxy->SetRefreshTime(0); // Ticks all the time.
            return proxy;
        } else {
            return std::make_unique<TProxy>(&m_Reader, m_SourceThread, m_Source);
        }
    }
    void Change(int number) {
        m_Source.SetValue(TNumber(number));
        number % 2 ? m_Source.Release() : m_Source.Capture();
    }

    void CheckLastValue() {
        const std::unique_ptr<TProxy> proxy = Make();
        for (int round = 0; round < 300; ++round) {
            m_SourceThread.Send([&] {
                for (int i = 0; i <= 10 + round % 2; ++i)
                    Change(i % 2); // Back and forth to what the reader may have.
                m_Source.Release();
            });
            if (round % 3 == 0)
                m_Reader.Send([&] { proxy->SetValue(TNumber(round)); });
            proxy->EnableValueUpdate(true); // Amid an update.
            m_Reader.Call([] {});           // The write is done,
            m_SourceThread.Call([] {});     // the changes are,
            m_Reader.Call([&] {             // and what they posted.
                if constexpr (requires { &TProxy::SetPaused; })
                    proxy->UpdateValue(); // As the next tick.
                else
                    EXPECT_FALSE(proxy->IsCaptured());
                EXPECT_EQ(CNumber::Of(proxy->GetValue()), CNumber::Of(m_Source.GetValue()));
            });
        }
    }

    void CheckDeath() {
        std::atomic<bool> end{false};
        std::jthread storm([&] {
            for (int i = 0; !end; ++i)
                m_SourceThread.Call([&] { Change(i); });
        });
        for (int round = 0; round < 60; ++round) {
            std::unique_ptr<TProxy> owner;
            TProxy* proxy = nullptr;
            std::atomic<bool> alive{true};
            System::CEvent fired;
            CActionCommand listener([&] {
                EXPECT_TRUE(alive);
                EXPECT_GE(CNumber::Of(proxy->GetValue()), 0);
                if (round % 3) // Otherwise the source's thread waits for this.
                    proxy->SetValue(TNumber(round));
                fired.Set();
            });
            m_Reader.Call([&] {
                owner = Make();
                proxy = owner.get();
                proxy->GetValueChangedEvent().AddCommand(listener);
                proxy->GetBeginCaptureEvent().AddCommand(listener);
            });
            fired.Wait(-1);
            const auto die = [&] {
                owner.reset();
                alive = false;
            };
            if (round % 3 == 2)
                die();
            else
                (round % 3 ? m_Reader : m_SourceThread).Call(die);
        }
        end = true;
    }

    TSource m_Source;
    CRunningLoop m_Reader, m_SourceThread;
};

TYPED_TEST(Proxies, EndAStormWithTheLastValueAndDieAmidIt) {
    using Number = typename TypeParam::Number;
    TStorm<typename TypeParam::Factory, typename TypeParam::TimerProxy, Number> timers;
    timers.CheckLastValue();
    timers.CheckDeath();
    TStorm<typename TypeParam::Object, typename TypeParam::MTProxy, Number> threads;
    threads.CheckLastValue();
    threads.CheckDeath();
}

} // namespace
} // namespace Lathe::DataModel::Objects
