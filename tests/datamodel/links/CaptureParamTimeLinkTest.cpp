// Proves that a link over time goes the straight line in the time that it has, that it keeps the
// target's bracket open until it arrives, and that whatever happens on the way leads to an end.

#include "datamodel/links/CaptureParamTimeLink.h"
#include "core/threads/ManualTime.h"
#include "datamodel/links/Params.h"

#include <memory>

namespace Lathe::DataModel::Objects {

namespace {

// 250 ms, with a tick every 50 ms, from 0 in the range from 0 to 100.
struct CParamTimeLink : testing::Test {
    void Advance(int milliseconds) { m_Timers.Advance(milliseconds); }

    CManualTimerProvider m_Timers;
    CRangedParam m_Source{0, 100, 0}, m_Target{0, 100, 0};
    CCaptureParamTimeLink m_Link{&m_Timers, &m_Source, &m_Target, &CManualTimerProvider::GetNow};
    CJournal m_Journal{m_Target};
};

TEST_F(CParamTimeLink, GoesAStraightLine) {
    m_Source.Move(100);
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
    std::make_unique<CCaptureParamTimeLink>(&m_Timers, &m_Source, &m_Target).reset();
    EXPECT_EQ(m_Timers.GetCount(), 1) << "one that dies leaves no timer";
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
}

TEST_F(CParamTimeLink, KeepsTheBracketOpenToTheEnd) {
    m_Source.Move(100);
    Advance(100);
    m_Source.Capture(); // A second gesture on the way.
    Advance(500);
    EXPECT_EQ(m_Journal.Take(), "bvvvvv");
    m_Source.Release();
    EXPECT_EQ(m_Journal.Take(), "e");
    m_Target.GetInfo().SetMax(50);
    m_Source.Move(90);
    Advance(250);
    EXPECT_EQ(m_Journal.Take(), "vbe") << "though it never gets there";
    m_Source.Move(10);
    m_Target.SetValue(10);
    Advance(50);
    EXPECT_EQ(m_Journal.Take(), "bve") << "it has arrived by itself";
    m_Source.Move(30);
    m_Source.SetValue(10);
    EXPECT_EQ(m_Journal.Take(), "be") << "no way to go any more";
}

TEST_F(CParamTimeLink, GivesTheBracketBackWhenItIsCutOnTheWay) {
    CRangedParam other(0, 100, 0);
    m_Link.SetOnModifyOnly(true);
    for (int cut = 0; cut < 5; ++cut) {
        m_Source.Move(m_Source.GetValue() + 10);
        Advance(50);
        cut == 0   ? m_Link.SetEnable(false)
        : cut == 1 ? m_Link.SetTarget(&other)
        : cut == 2 ? m_Link.SetSource(&other)
        : cut == 3 ? m_Link.SetTarget(&m_Target)
                   : m_Link.Disconnect();
        EXPECT_FALSE(m_Target.IsCaptured()) << cut;
        m_Target.Capture(); // Somebody else's.
        Advance(500);
        EXPECT_TRUE(m_Target.IsCaptured()) << cut;
        EXPECT_EQ(other.GetValue(), 0) << "it has no part in the old way";
        m_Target.Release();
        m_Link.SetEnable(true);
        m_Link.SetSource(&m_Source);
        m_Link.SetTarget(&m_Target);
    }
}

TEST_F(CParamTimeLink, TellsItsStepsAndStartsAgainFromThem) {
    CActionCommand command([&] {
        EXPECT_TRUE(m_Link.IsInStep());
        if (m_Target.GetValue() >= 100)
            m_Source.SetValue(0);
    });
    m_Target.GetValueChangedEvent().AddCommand(command);
    m_Source.SetValue(100);
    Advance(250);
    EXPECT_EQ(m_Target.GetValue(), 100);
    EXPECT_FALSE(m_Link.IsInStep());
    Advance(250);
    EXPECT_EQ(m_Target.GetValue(), 0);
    m_Target.GetValueChangedEvent().RemoveCommand(command);
}

} // namespace

} // namespace Lathe::DataModel::Objects
