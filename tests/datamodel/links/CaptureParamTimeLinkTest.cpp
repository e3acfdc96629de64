// Proves that a link over time goes the straight line in the time that it has, that it keeps the
// target's bracket open until it arrives, and that whatever happens on the way leads to an end.

#include "datamodel/links/CaptureParamTimeLink.h"
#include "core/threads/ManualTime.h"
#include "datamodel/links/Params.h"

namespace Lathe::DataModel::Objects {

namespace {

// 250 ms, with a tick every 50 ms, from 0 in the range from 0 to 100.
struct CParamTimeLink : testing::Test {
    CParamTimeLink() { s_Now = 0; }
    void Advance(int milliseconds) {
        for (; milliseconds > 0; --milliseconds) {
            s_Now += 1'000'000;
            m_Timers.Advance(1);
        }
    }

    static inline std::uint64_t s_Now = 0; // ns
    CManualTimerProvider m_Timers;
    CRangedParam m_Source{0, 100, 0}, m_Target{0, 100, 0};
    CCaptureParamTimeLink m_Link{&m_Timers, &m_Source, &m_Target, [] { return s_Now; }};
    CJournal m_Journal{m_Target};
};

TEST_F(CParamTimeLink, GoesAStraightLine) {
    m_Source.Capture();
    m_Source.SetValue(100);
    m_Source.Release();
    EXPECT_EQ(m_Journal.Take(), "b") << "nothing moves before the timer ticks";
    for (const double value : {20, 40, 60, 80, 100}) {
        EXPECT_TRUE(m_Target.IsCaptured());
        Advance(50);
        EXPECT_DOUBLE_EQ(m_Target.GetValue(), value);
    }
    EXPECT_EQ(m_Journal.Take(), "vvvvve");
    Advance(500);
    EXPECT_EQ(m_Journal.Take(), "");
    m_Link.SetRefreshTime(100);
    m_Link.SetDuration(400);
    m_Source.SetValue(0);
    Advance(100);
    EXPECT_DOUBLE_EQ(m_Target.GetValue(), 75);
    m_Source.SetValue(25); // Turns round where it stands.
    Advance(200);
    EXPECT_DOUBLE_EQ(m_Target.GetValue(), 50);
    Advance(200);
    EXPECT_EQ(m_Target.GetValue(), 25);
    EXPECT_EQ(m_Journal.Take(), "vvvvv");
    EXPECT_EQ(m_Timers.GetCount(), 1);
}

TEST_F(CParamTimeLink, WritesAtOnceWithoutDuration) {
    m_Source.SetValue(50);
    Advance(100);
    m_Link.SetPaused(true);
    m_Link.SetDuration(-1);
    EXPECT_DOUBLE_EQ(m_Target.GetValue(), 20) << "not in the pause";
    m_Link.SetPaused(false);
    EXPECT_EQ(m_Target.GetValue(), 50);
    m_Source.SetValue(0.3);
    EXPECT_EQ(m_Target.GetValue(), 0.3);
    m_Link.SetDuration(1000);
    m_Source.SetValue(60);
    EXPECT_EQ(m_Target.GetValue(), 0.3);
    m_Link.SetDuration(0);
    EXPECT_EQ(m_Target.GetValue(), 60);
}

TEST_F(CParamTimeLink, KeepsTheBracketOpenToTheEnd) {
    // A second gesture on the way, then one that moves nothing.
    m_Source.Capture();
    m_Source.SetValue(100);
    m_Source.Release();
    Advance(100);
    m_Source.Capture();
    Advance(500);
    EXPECT_EQ(m_Journal.Take(), "bvvvvv");
    m_Source.Release();
    m_Source.Capture();
    m_Source.Release();
    EXPECT_EQ(m_Journal.Take(), "ebe");
    // A target that never gets there; and one that arrives by itself.
    m_Target.GetInfo().SetMax(50);
    m_Journal.Take();
    m_Source.Capture();
    m_Source.SetValue(90);
    m_Source.Release();
    Advance(250);
    EXPECT_EQ(m_Journal.Take(), "be");
    m_Source.Capture();
    m_Source.SetValue(10);
    m_Source.Release();
    m_Target.SetValue(10);
    Advance(50);
    EXPECT_EQ(m_Journal.Take(), "bve");
    // Back where the target stands, with no way to go.
    m_Source.Capture();
    m_Source.SetValue(30);
    m_Source.Release();
    m_Source.SetValue(10);
    EXPECT_EQ(m_Journal.Take(), "be");
}

TEST_F(CParamTimeLink, GivesTheBracketBackWhenItIsCutOnTheWay) {
    CRangedParam other(0, 100, 0);
    void (*const cuts[])(CParamTimeLink&, CRangedParam&) = {
        [](CParamTimeLink& t, CRangedParam&) { t.m_Link.SetEnable(false); },
        [](CParamTimeLink& t, CRangedParam& o) { t.m_Link.SetTarget(&o); },
        [](CParamTimeLink& t, CRangedParam& o) { t.m_Link.SetSource(&o); },
        [](CParamTimeLink& t, CRangedParam&) { t.m_Link.Disconnect(); },
    };
    m_Link.SetOnModifyOnly(true);
    for (const auto cut : cuts) {
        m_Source.Capture();
        m_Source.SetValue(m_Source.GetValue() + 10);
        m_Source.Release();
        Advance(50);
        cut(*this, other);
        EXPECT_FALSE(m_Target.IsCaptured());
        m_Target.Capture(); // Somebody else's.
        Advance(500);
        EXPECT_TRUE(m_Target.IsCaptured());
        m_Target.Release();
        EXPECT_EQ(other.GetValue(), 0) << "it has no part in the old way";
        m_Link.SetEnable(true);
        m_Link.SetSource(&m_Source);
        m_Link.SetTarget(&m_Target);
    }
}

TEST_F(CParamTimeLink, TellsItsStepsAndStartsAgainFromThem) {
    EXPECT_FALSE(m_Link.IsInStep());
    CActionCommand command([&] {
        EXPECT_TRUE(m_Link.IsInStep());
        if (m_Target.GetValue() >= 100)
            m_Source.SetValue(0);
    });
    m_Target.GetValueChangedEvent().AddCommand(command);
    m_Source.SetValue(100);
    Advance(250);
    EXPECT_EQ(m_Target.GetValue(), 100);
    Advance(250);
    EXPECT_EQ(m_Target.GetValue(), 0);
    m_Target.GetValueChangedEvent().RemoveCommand(command);
    EXPECT_FALSE(m_Link.IsInStep());
}

TEST_F(CParamTimeLink, LeavesNoTimerBehind) {
    {
        CCaptureParamTimeLink link(&m_Timers, &m_Target, &m_Target);
        EXPECT_EQ(m_Timers.GetCount(), 2);
    }
    EXPECT_EQ(m_Timers.GetCount(), 1);
}

} // namespace

} // namespace Lathe::DataModel::Objects
