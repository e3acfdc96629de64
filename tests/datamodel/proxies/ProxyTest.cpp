// Proves what each proxy fires and when, and that it and its source hold the newest value after;
// with time, queues and threads in the test's hand.
#include "datamodel/proxies/ProxyKinds.h"
#include "support/AllocationCounter.h"
#include "support/LockLog.h"

#include <cmath>
#include <thread>

namespace Lathe::DataModel::Objects {
namespace {

template <class TKind>
struct TTimerRig {
    typename TKind::MTSource m_Source;
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

// What a proxy fires while a script is played.
struct CLog {
    template <class TProxy>
    explicit CLog(const TProxy& proxy) : m_Journal(proxy) {}
    void Mark() { m_Text += m_Journal.Take() + '|'; }
    std::string Take() { return std::exchange(m_Text, {}) + m_Journal.Take(); }

    CJournal m_Journal;
    std::string m_Text;
};

template <class TRig>
struct CPlayer : TRig {
    // The source: c changes, b and e capture. The proxies: x and y forbid and allow updates, u
    // updates. The writable one: w writes, C and R capture. A bar lets the tick or the queue run.
    void Play(char step) {
        switch (step) {
        case 'c':
            return SetNumber(this->m_Source, ++m_Number);
        case 'b':
            return this->m_Source.Capture();
        case 'e':
            return this->m_Source.Release();
        case 'x':
        case 'y':
            return Both([&](auto& proxy) { proxy.EnableValueUpdate(step == 'y'); });
        case 'u':
            return Both([](auto& proxy) { proxy.UpdateValue(); });
        case 'C':
            return this->m_Writable.Capture();
        case 'R':
            return this->m_Writable.Release();
        case 'w':
            SetNumber(this->m_Writable, ++m_Number);
            EXPECT_EQ(GetNumberOf(this->m_Writable), m_Number);
            EXPECT_EQ(GetNumberOf(this->m_Source), m_Number) << "there before the call returns";
            return;
        default:
            m_ReadOnlyLog.Mark();
            m_WritableLog.Mark();
            this->Run();
        }
    }
    void Both(const auto& operation) {
        operation(this->m_ReadOnly);
        operation(this->m_Writable);
    }
    CLog m_ReadOnlyLog{this->m_ReadOnly}, m_WritableLog{this->m_Writable};
    int m_Number = 0;
};

template <class TRig>
void CheckScripts(bool answersWritesLater) {
    struct {
        std::string m_Script, m_ReadOnly, m_Writable, m_WritableLater;
    } const cases[] = {
        {std::string(1000, 'c') + "||", "|v|", "|v|", {}},
        {"be|", "|", "|", {}},
        {"b|c|e|", "|b|v|e", "|b|v|e", {}},
        {"bc|ce|", "|bv|ve", "|bv|ve", {}},
        {"cu|u", "v|", "v|", {}},
        {"xc|u|yu|", "||v|", "||v|", {}},
        {"xc|y|u", "||v", "||v", {}},
        {"xc|yc|", "||v", "||v", {}},
        {"w|", "|v", "v|", "|v"},
        {"cw|", "|v", "v|", "|v"},
        {"CwR|", "|v", "bve|", "be|v"},
        {"Cw|R|", "|bv|e", "bv|e|", "b|ve|"},
        {"b|CR|", "|b|e", "|be|", "|be|"},
    };
    CPlayer<TRig> player;
    for (const auto& [script, readOnly, writable, writableLater] : cases) {
        for (const char step : script)
            player.Play(step);
        EXPECT_EQ(player.m_ReadOnlyLog.Take(), readOnly) << script;
        const bool later = answersWritesLater && !writableLater.empty();
        EXPECT_EQ(player.m_WritableLog.Take(), later ? writableLater : writable) << script;
        player.Both([&](auto& proxy) {
            EXPECT_EQ(GetNumberOf(proxy), player.m_Number) << script;
            EXPECT_FALSE(proxy.IsCaptured()) << script;
        });
    }
    player.m_Writable.SetValue(player.m_Writable.GetValue());
    EXPECT_EQ(GetNumberOf(player.m_Source), player.m_Number) << "a proxy takes its own value";
    EXPECT_EQ(&player.m_ReadOnly.GetInfo(), &player.m_Source.GetInfo());
}

template <class TKind>
class Proxies : public testing::Test {};
TYPED_TEST_SUITE(Proxies, Kinds);

TYPED_TEST(Proxies, FireOnceForAllChangesInsideTheirBracket) {
    using Value = decltype(std::declval<typename TypeParam::Object>().GetValue());
    CheckScripts<TTimerRig<TypeParam>>(false);
    CheckScripts<TThreadRig<TypeParam>>(std::is_reference_v<Value>);
}

TYPED_TEST(Proxies, WithoutAReadersThreadFireWhenTheyAreAsked) {
    CManualInvoker sourceThread;
    typename TypeParam::Object source;
    typename TypeParam::ConstMTProxy proxy(nullptr, sourceThread, source);
    CJournal journal(proxy);
    SetNumber(source, 7);
    source.Capture();
    EXPECT_EQ(journal.Take(), "");
    EXPECT_EQ(GetNumberOf(proxy), 7);
    EXPECT_TRUE(proxy.IsCaptured());
    EXPECT_EQ(journal.Take(), "vb");
}

TYPED_TEST(Proxies, LeaveNothingBehindInTimersAndQueues) {
    CManualTimerProvider time;
    CManualInvoker reader;
    typename TypeParam::MTSource factory;
    typename TypeParam::Object source;
    {
        CManualInvoker sourceThread;
        typename TypeParam::TimerProxy timerProxy(factory, time);
        typename TypeParam::MTProxy proxy(&reader, sourceThread, source);
        SetNumber(source, 1);
        source.Capture();
    }
    SetNumber(source, 2);
    SetNumber(factory, 2);
    EXPECT_EQ(time.GetCount(), 0);
    EXPECT_EQ(reader.m_Queue.size(), 2U);
    reader.Run();
}

TEST(TimerProxy, CatchesUpAfterAPauseAndTicksAsOftenAsItIsTold) {
    TTimerRig<TKind<CWideMTParam, CConstCaptureParamTimerProxy, CCaptureParamTimerProxy, void, void,
                    void>>
        rig;
    CJournal journal(rig.m_ReadOnly);
    rig.m_ReadOnly.SetPaused(true);
    rig.m_Source.Capture();
    rig.m_Source.SetValue(1.0);
    rig.m_Time.Advance(200);
    EXPECT_TRUE(rig.m_ReadOnly.IsPaused() && journal.Take().empty());
    CActionCommand faster([&] { rig.m_ReadOnly.SetRefreshTime(20); }); // Within the tick.
    rig.m_ReadOnly.GetValueChangedEvent().AddCommand(faster);
    rig.m_ReadOnly.SetPaused(false);
    rig.m_Time.Advance(50);
    EXPECT_EQ(journal.Take(), "bv");
    rig.m_Source.SetValue(2.0);
    rig.m_Time.Advance(19);
    EXPECT_EQ(journal.Take(), "");
    rig.m_Time.Advance(1);
    EXPECT_EQ(journal.Take(), "v");
    EXPECT_EQ(rig.m_ReadOnly.GetRefreshTime(), 20);
}

// A param that another thread changes while a write to it is on its way back.
struct CContestedParam : CWideMTParam {
    void SetValue(double value) override {
        CWideMTParam::SetValue(value);
        std::jthread([this] { CWideMTParam::SetValue(77.0); }).join();
    }
};

TEST(TimerProxy, WritesToAParam) {
    CManualTimerProvider time;
    CWideMTParam source;
    CCaptureParamTimerProxy proxy(source, time);
    CJournal journal(proxy);
    proxy.SetValue(0.0);
    proxy.SetValue(NAN);
    EXPECT_TRUE(journal.Take().empty() && proxy.GetValue() == 0.0);
    source.SetValue(1.0);
    proxy.SetValue(0.0);
    EXPECT_EQ(journal.Take(), "v") << "it was behind its source";
    CContestedParam contested;
    CCaptureParamTimerProxy contestedProxy(contested, time);
    contestedProxy.SetValue(5.0);
    time.Advance(50);
    EXPECT_EQ(contestedProxy.GetValue(), 77.0) << "the last word of another thread gets through";
}

TEST(ThreadProxy, ShowsWhatIsWrittenUntilTheSourceAnswers) {
    TThreadRig<TKind<void, void, void, CWideParam, CConstCaptureParamMTProxy, CCaptureParamMTProxy>>
        rig;
    CJournal journal(rig.m_Writable);
    rig.m_Writable.SetValue(2e6);
    EXPECT_EQ(rig.m_Writable.GetValue(), 2e6);
    rig.Run();
    EXPECT_EQ(rig.m_Writable.GetValue(), 1e6);
    EXPECT_EQ(journal.Take(), "vv");
    const CAllocationScope allocations;
    const CLockScope locks;
    for (int i = 0; i < 900; ++i)
        rig.m_Source.SetValue(i);
    EXPECT_EQ(allocations.GetCount() + locks.GetCount(), 0) << "but what a queue takes";
}

TEST(MakeMTProxy, AsksForTheWritableInterfaceFirst) {
    struct CReadOnlyParam : TCaptureState<IConstCaptureParam> {
        double GetValue() const override { return 3.0; }
        const CParamInfo& GetInfo() const override { return m_Info; }
        CParamInfo m_Info;
    };
    CManualInvoker invoker;
    const auto check = [&]<class TProxy>(Core::IValueChangedEventProvider&& object, TProxy*) {
        const auto ask = [&]<class I>() { return dynamic_cast<I*>(&object); };
        bool fits = false;
        const auto take = [&]<class T>(std::unique_ptr<T> proxy) {
            fits = std::is_same_v<T, TProxy> && GetNumberOf(*proxy) >= 0;
            return false;
        };
        EXPECT_EQ(MakeMTProxy(ask, take, &invoker, invoker), std::is_void_v<TProxy>);
        EXPECT_EQ(fits, !std::is_void_v<TProxy>);
    };
    check(CWideParam(), static_cast<CCaptureParamMTProxy*>(nullptr));
    check(CReadOnlyParam(), static_cast<CConstCaptureParamMTProxy*>(nullptr));
    check(CCaptureCurve(), static_cast<CCaptureCurveMTProxy*>(nullptr));
    check(CConstCaptureCurve(), static_cast<CConstCaptureCurveMTProxy*>(nullptr));
    check(CCaptureSurface(), static_cast<CCaptureSurfaceMTProxy*>(nullptr));
    check(CConstCaptureSurface(), static_cast<CConstCaptureSurfaceMTProxy*>(nullptr));
    check(CCaptureString(), static_cast<CCaptureStringMTProxy*>(nullptr));
    check(CConstCaptureString(), static_cast<CConstCaptureStringMTProxy*>(nullptr));
    check(CCaptureCustomProperty(), static_cast<CCaptureCustomPropertyMTProxy*>(nullptr));
    check(CConstCaptureCustomProperty(), static_cast<CConstCaptureCustomPropertyMTProxy*>(nullptr));
    check(Core::TValue<int, Core::CEventProvider>(), static_cast<void*>(nullptr));
}

} // namespace
} // namespace Lathe::DataModel::Objects
