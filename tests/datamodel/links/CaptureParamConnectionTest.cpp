// Proves that a connection keeps two parameters in step both ways, that it settles alone and in
// rings, and that it leaves nothing behind on a parameter that it lost.

#include "datamodel/links/CaptureParamConnection.h"
#include "datamodel/links/CaptureParamLink.h"
#include "datamodel/links/Params.h"
#include "math/ValueCurve.h"

#include <list>
#include <map>
#include <memory>

namespace Lathe::DataModel::Objects {

namespace {

// On, with the constraint if asked for.

std::unique_ptr<CCaptureParamConnection> Join(ICaptureParam& first, ICaptureParam& second,
                                              bool constraint = false) {
    auto connection = std::make_unique<CCaptureParamConnection>();
    connection->SetConstraint(constraint);
    connection->SetFirst(&first);
    connection->SetSecond(&second);
    connection->SetEnable(true);
    return connection;
}

TEST(CaptureParamConnection, LeadsBackByTheWayItWent) {
    struct {
        double m_FirstMax, m_SecondMax;
        bool m_Normalized;
    } const ranges[] = {{1, 1, false}, {1, 1, true}, {100, 20, true}};
    for (const auto& row : ranges)
        for (int number = 0; number < 52; ++number) {
            CRangedParam first(0, row.m_FirstMax, 0), second(0, row.m_SecondMax, 0);
            const auto connection = Join(first, second, number & 1);
            connection->SetNormalized(row.m_Normalized);
            connection->SetReverse(number & 2);
            connection->SetResponseCurve(static_cast<Math::EParamValueCurve>(number / 4));
            // What a link makes of it, in the direction that it has.
            CRangedParam linked(0, row.m_SecondMax, 0);
            CCaptureParamLink link(&first, &linked);
            link.SetNormalized(row.m_Normalized);
            link.SetReverse(number & 2);
            link.SetResponseCurve(static_cast<Math::EParamValueCurve>(number / 4));
            first.SetValue(0.3 * row.m_FirstMax);
            const double there = second.GetValue();
            EXPECT_NEAR(there, linked.GetValue(), 1e-12 * row.m_SecondMax) << number;
            EXPECT_NEAR(first.GetValue(), 0.3 * row.m_FirstMax, 1e-12 * row.m_FirstMax) << number;
            first.SetValue(0.8 * row.m_FirstMax);
            second.SetValue(there);
            EXPECT_NEAR(first.GetValue(), 0.3 * row.m_FirstMax, 1e-12 * row.m_FirstMax) << number;
        }
    CRangedParam first(0, 100, 30), second(0, 10, 0);
    const auto connection = Join(first, second);
    connection->SetReverse(true);
    EXPECT_EQ(second.GetValue(), 0) << "mirrored in the range of the side that takes it";
    second.SetValue(10);
    EXPECT_EQ(first.GetValue(), 90);
}

TEST(CaptureParamConnection, MovesOnlyAsFarAsBothCan) {
    for (const bool constraint : {false, true}) {
        CRangedParam first(0, 100, 0), second(0, 10, 0);
        const auto connection = Join(first, second, constraint);
        CJournal journal(first), other(second);
        for (const double value : {50, 70}) { // The second stays where it is the second time.
            first.SetValue(value);
            EXPECT_EQ(first.GetValue(), constraint ? 10 : value);
            EXPECT_EQ(second.GetValue(), 10);
            EXPECT_EQ(journal.Take(), constraint ? "vv" : "v");
        }
        EXPECT_EQ(other.Take(), "v");
    }
}

TEST(CaptureParamConnection, TakesStepsInDifferenceMode) {
    CRangedParam first(0, 100, 10), second(0, 100, 50);
    CCaptureParamConnection connection;
    connection.SetDiff(true);
    connection.SetConstraint(true); // Without effect.
    connection.SetFirst(&first);
    connection.SetSecond(&second);
    connection.SetEnable(true);
    const auto check = [&](CRangedParam& moved, double to, double a, double b) {
        moved.SetValue(to);
        EXPECT_EQ(first.GetValue(), a) << to;
        EXPECT_EQ(second.GetValue(), b) << to;
    };
    check(first, 30, 30, 70);
    check(second, 60, 20, 60);
    check(first, 80, 80, 100);
    check(second, 90, 70, 90);
    connection.SetReverse(true);
    check(first, 80, 80, 80);
    connection.SetPaused(true);
    check(first, 90, 90, 80);
    connection.SetPaused(false);
    EXPECT_EQ(second.GetValue(), 70) << "the step that it slept through";
    connection.SetDiff(false);
    EXPECT_EQ(second.GetValue(), 10);
}

// A connection between two parameters, and a spare one for either side.
struct SBench {
    CRangedParam m_First{0, 100, 1}, m_Second{0, 100, 7}, m_Other{0, 100, 5};
    std::unique_ptr<CCaptureParamConnection> m_Connection = Join(m_First, m_Second);
};

using Operation = void (*)(SBench&);
const std::map<char, Operation> Operations = {
    {'+', [](SBench& b) { b.m_First.SetValue(b.m_First.GetValue() + 1); }},
    {'*', [](SBench& b) { b.m_Second.SetValue(b.m_Second.GetValue() + 1); }},
    {'[', [](SBench& b) { b.m_First.Capture(); }},
    {']', [](SBench& b) { b.m_First.Release(); }},
    {'(', [](SBench& b) { b.m_Second.Capture(); }},
    {')', [](SBench& b) { b.m_Second.Release(); }},
    {'e', [](SBench& b) { b.m_Connection->SetEnable(false); }},
    {'E', [](SBench& b) { b.m_Connection->SetEnable(true); }},
    {'p', [](SBench& b) { b.m_Connection->SetPaused(true); }},
    {'P', [](SBench& b) { b.m_Connection->SetPaused(false); }},
    {'1', [](SBench& b) { b.m_Connection->SetFirst(&b.m_First); }},
    {'o', [](SBench& b) { b.m_Connection->SetFirst(&b.m_Other); }},
    {'2', [](SBench& b) { b.m_Connection->SetSecond(&b.m_Second); }},
    {'O', [](SBench& b) { b.m_Connection->SetSecond(&b.m_Other); }},
    {'R', [](SBench& b) { b.m_Connection->SetReverse(!b.m_Connection->IsReversed()); }},
    {'D', [](SBench& b) { b.m_Connection->Disconnect(); }},
};

TEST(CaptureParamConnection, PlaysValuesAndBracketsByItsState) {
    struct {
        const char *m_Script, *m_First,
            *m_Second; // The events of each, and "!" for enabled changed.
    } const cases[] = {
        {"[++]", "bvve", "bvve"}, {"(*)", "bve", "bve"},       {"e[+]*", "!bve", "!v"},
        {"e[E]", "!b!e", "!b!e"}, {"e(E)", "!b!e", "!b!e"},    {"e[Ee]", "!b!!e", "!b!e!"},
        {"e*E", "!!", "!vv!"},    {"p[++*]P", "bvve", "bvev"}, {"o+[", "vb", "v"},
        {"D+(*", "v", "bv"},      {"D2*1", "", "vv"},
    };
    for (const auto& row : cases) {
        SBench bench;
        std::string told[2];
        CJournal first(bench.m_First), second(bench.m_Second);
        CActionCommand enabled([&] {
            told[0] += first.Take() + '!';
            told[1] += second.Take() + '!';
        });
        bench.m_Connection->GetEnableChangedEvent().AddCommand(enabled);
        for (const char* letter = row.m_Script; *letter; ++letter)
            Operations.at (*letter)(bench);
        EXPECT_EQ(told[0] + first.Take(), row.m_First) << row.m_Script;
        EXPECT_EQ(told[1] + second.Take(), row.m_Second) << row.m_Script;
    }
}

TEST(CaptureParamConnection, TakesAnyOperationFromTheEventsThatItCauses) {
    for (const auto& [letter, operation] : Operations) {
        SBench bench;
        CActionCommand command([&bench, run = operation] { run(bench); });
        const auto forEachEvent = [&](auto act) {
            for (const CRangedParam* param : {&bench.m_First, &bench.m_Second, &bench.m_Other})
                for (auto* event : {&param->GetValueChangedEvent(), &param->GetBeginCaptureEvent(),
                                    &param->GetEndCaptureEvent()})
                    act(*event);
            act(bench.m_Connection->GetEnableChangedEvent());
            act(bench.m_Connection->GetReverseChangedEvent());
        };
        forEachEvent([&](Core::IEventProvider& event) { event.AddCommand(command); });
        for (const char script : std::string("[+1*2+eEpP]D(1*2)R[o2O1]e(E*12)D"))
            Operations.at(script)(bench);
        forEachEvent([&](Core::IEventProvider& event) { event.RemoveCommand(command); });
        // Whatever it did, the connection serves its present ends and no others.
        bench.m_Connection->Disconnect();
        bench.m_Connection->SetPaused(false);
        bench.m_Connection->SetReverse(false);
        bench.m_Connection->SetEnable(true);
        bench.m_Connection->SetFirst(&bench.m_Other);
        bench.m_Connection->SetSecond(&bench.m_First);
        bench.m_Other.SetValue(60);
        EXPECT_EQ(bench.m_First.GetValue(), 60) << letter;
        bench.m_First.SetValue(70);
        EXPECT_EQ(bench.m_Other.GetValue(), 70) << letter;
        bench.m_Second.SetValue(20);
        EXPECT_EQ(bench.m_First.GetValue(), 70) << letter;
        bench.m_Connection.reset();
        bench.m_First.SetValue(30);
        EXPECT_EQ(bench.m_Other.GetValue(), 70) << letter;
    }
}

TEST(CaptureParamConnection, SettlesInRings) {
    for (const bool constraint : {false, true}) {
        SRing ring(100, 10, 50);
        const auto ab = Join(ring.m_A, ring.m_B, constraint);
        const auto bc = Join(ring.m_B, ring.m_C, constraint);
        const auto ca = Join(ring.m_C, ring.m_A, constraint);
        EXPECT_EQ(ring.Move(5), "bve bve bve");
        EXPECT_EQ(ring.Move(80), "bvve bve bve") << "pulled back round the ring";
        EXPECT_EQ(ring.m_A.GetValue() + ring.m_B.GetValue() + ring.m_C.GetValue(), 30);
        // One that is never in step goes round once; with a link in it too.
        ring.m_B.GetInfo().SetMax(100);
        ring.m_C.GetInfo().SetMax(100);
        ca->SetReverse(true);
        ring.Move(40);
        EXPECT_EQ(ring.Move(20), "bvve bve bve") << constraint;
        EXPECT_EQ(ring.m_A.GetValue(), 80);
        SRing pair;
        const auto there = Join(pair.m_A, pair.m_B, constraint);
        CCaptureParamLink back(&pair.m_B, &pair.m_A);
        EXPECT_EQ(pair.Move(30), "bve bve ");
        back.SetReverse(true);
        pair.Move(10);
        EXPECT_EQ(pair.Move(40), "bvve bve ") << constraint;
        EXPECT_EQ(pair.m_A.GetValue(), 60);
        SRing self;
        const auto own = Join(self.m_A, self.m_A, constraint);
        EXPECT_EQ(self.Move(30), "bve  ");
    }
    SRing self;
    const auto own = Join(self.m_A, self.m_A);
    own->SetReverse(true);
    self.Move(10);
    EXPECT_EQ(self.Move(30), "bvvve  ") << "mirrored by either side";
}

} // namespace

} // namespace Lathe::DataModel::Objects
