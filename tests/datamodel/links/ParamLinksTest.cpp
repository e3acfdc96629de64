// Proves that a connection keeps two parameters in step both ways, and of links and connections
// alike that they play brackets and give them back, that they settle in rings, and that any of
// their operations may be called from the events that they cause.

#include "datamodel/links/CaptureParamConnection.h"
#include "datamodel/links/CaptureParamLink.h"
#include "datamodel/links/Params.h"
#include "math/ValueCurve.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace Lathe::DataModel::Objects {

namespace {

// With the operations of a connection.
struct CLink {
    CCaptureParamLink m_Link{nullptr, nullptr};
    CCaptureParamLink* operator->() { return &m_Link; }
    void SetFirst(ICaptureParam* source) { m_Link.SetSource(source); }
    void SetSecond(ICaptureParam* target) { m_Link.SetTarget(target); }
};
struct CConnection {
    explicit CConnection(bool constraint = false) {
        m_Connection.SetConstraint(constraint);
        m_Connection.SetEnable(true);
    }
    CCaptureParamConnection m_Connection;
    CCaptureParamConnection* operator->() { return &m_Connection; }
    void SetFirst(ICaptureParam* first) { m_Connection.SetFirst(first); }
    void SetSecond(ICaptureParam* second) { m_Connection.SetSecond(second); }
};

// Two parameters that are joined, and a spare one for either side.
template <class TLink>
struct TBench {
    TBench() {
        m_Link->SetFirst(&m_First);
        m_Link->SetSecond(&m_Second);
    }
    CRangedParam m_First{0, 100, 1}, m_Second{0, 100, 1}, m_Other{0, 100, 5};
    std::unique_ptr<TLink> m_Link = std::make_unique<TLink>();
};

// What can be done to it, by letters.
template <class TLink>
const std::map<char, std::function<void(TBench<TLink>&)>> Operations = {
    {'+', [](auto& b) { b.m_First.SetValue(b.m_First.GetValue() + 1); }},
    {'*', [](auto& b) { b.m_Second.SetValue(b.m_Second.GetValue() + 1); }},
    {'[', [](auto& b) { b.m_First.Capture(); }},
    {']', [](auto& b) { b.m_First.Release(); }},
    {'(', [](auto& b) { b.m_Second.Capture(); }},
    {')', [](auto& b) { b.m_Second.Release(); }},
    {'e', [](auto& b) { (*b.m_Link)->SetEnable(false); }},
    {'E', [](auto& b) { (*b.m_Link)->SetEnable(true); }},
    {'p', [](auto& b) { (*b.m_Link)->SetPaused(true); }},
    {'P', [](auto& b) { (*b.m_Link)->SetPaused(false); }},
    {'1', [](auto& b) { b.m_Link->SetFirst(&b.m_First); }},
    {'o', [](auto& b) { b.m_Link->SetFirst(&b.m_Other); }},
    {'2', [](auto& b) { b.m_Link->SetSecond(&b.m_Second); }},
    {'O', [](auto& b) { b.m_Link->SetSecond(&b.m_Other); }},
    {'R', [](auto& b) { (*b.m_Link)->SetReverse(!(*b.m_Link)->IsReversed()); }},
    {'D', [](auto& b) { (*b.m_Link)->Disconnect(); }},
};

template <class TLink>
void Run(TBench<TLink>& bench, const char* script) {
    for (; *script; ++script)
        Operations<TLink>.at (*script)(bench);
}

struct SScript {
    const char *m_Script, *m_First, *m_Second; // The events of both, and "!" for enabled changed.
};
const SScript LinkScripts[] = {
    {"[++]", "bvve", "bvve"}, {"e[+]E", "!bve!", "!v!"},   {"e+[E", "!vb!", "!bv!"},
    {"[eE", "b!!", "be!b!"},  {"[ee+]", "b!ve", "be!"},    {"p[+]P", "bve", "v"},
    {"[p+]", "bve", "b"},     {"[p+]P", "bve", "bev"},     {"[p+P", "bv", "bebv"},
    {"pe+PE", "!v!", "!v!"},  {"[1", "b", "beb"},          {"[2", "b", "b"},
    {"[o", "b", "bev"},       {"[O", "b", "be"},           {"[D+]", "bve", "be"},
    {"De[+1", "!bv", "!"},    {"De[+12E", "!bv!", "!bv!"}, {"(*)", "", "bve"},
};
const SScript ConnectionScripts[] = {
    {"[++]", "bvve", "bvve"}, {"(*)", "bve", "bve"},       {"e[+]*", "!bve", "!v"},
    {"e[E]", "!b!e", "!b!e"}, {"e(E)", "!b!e", "!b!e"},    {"e[Ee]", "!b!!e", "!b!e!"},
    {"e*E", "!!", "!vv!"},    {"p[++*]P", "bvve", "bvev"}, {"o+[", "vb", "v"},
    {"D+(*", "v", "bv"},      {"D2*1", "", "vv"},          {"[+", "bv", "bv"},
};

template <class TLink>
void CheckScript(const SScript& row) {
    TBench<TLink> bench;
    std::string first, second;
    CJournal firstJournal(bench.m_First), secondJournal(bench.m_Second);
    CActionCommand enabled([&] {
        first += firstJournal.Take() + '!';
        second += secondJournal.Take() + '!';
    });
    (*bench.m_Link)->GetEnableChangedEvent().AddCommand(enabled);
    Run(bench, row.m_Script);
    EXPECT_EQ(first + firstJournal.Take(), row.m_First) << row.m_Script;
    EXPECT_EQ(second + secondJournal.Take(), row.m_Second) << row.m_Script;
    bench.m_Link.reset();
    EXPECT_FALSE(bench.m_First.IsCaptured() && bench.m_Second.IsCaptured())
        << row.m_Script << ": what was forwarded is given back";
}

TEST(ParamLinks, PlayValuesAndBracketsByTheirState) {
    for (const SScript& row : LinkScripts)
        CheckScript<CLink>(row);
    for (const SScript& row : ConnectionScripts)
        CheckScript<CConnection>(row);
}

// Each operation as a handler of all events, while all operations run; then the link serves its
// present ends and no others, and leaves nothing behind.
template <class TLink>
void CheckHandlers() {
    for (const auto& [letter, operation] : Operations<TLink>) {
        TBench<TLink> bench;
        bool listening = true;
        CActionCommand command([&, run = operation] {
            if (listening)
                run(bench);
        });
        for (const CRangedParam* param : {&bench.m_First, &bench.m_Second, &bench.m_Other}) {
            param->GetValueChangedEvent().AddCommand(command);
            param->GetBeginCaptureEvent().AddCommand(command);
            param->GetEndCaptureEvent().AddCommand(command);
        }
        (*bench.m_Link)->GetEnableChangedEvent().AddCommand(command);
        (*bench.m_Link)->GetReverseChangedEvent().AddCommand(command);
        Run(bench, "[+1*2+eEpP]D(1*2)R[o2O1]e(E*12)[oD");
        listening = false;
        Run(bench, "DEP");
        (*bench.m_Link)->SetReverse(false);
        bench.m_Link->SetFirst(&bench.m_Other);
        bench.m_Link->SetSecond(&bench.m_First);
        bench.m_Other.SetValue(60);
        bench.m_Second.SetValue(20);
        EXPECT_EQ(bench.m_First.GetValue(), 60) << letter;
        bench.m_Link.reset();
        for (CRangedParam* param : {&bench.m_Other, &bench.m_Second, &bench.m_First}) {
            EXPECT_EQ(bench.m_First.GetValue(), 60) << letter;
            param->GetInfo().SetMax(90);
            param->Move(70);
        }
    }
}

TEST(ParamLinks, TakeAnyOperationFromTheEventsThatTheyCause) {
    CheckHandlers<CLink>();
    CheckHandlers<CConnection>();
}

// A gesture at the first of three parameters from 0 to 100, the second perhaps not so far, in a
// ring whose last link may be reversed: the events of each, and where the first ends.
template <class TLink>
void CheckRing(double secondMax, bool reverse, const char* events, double end, auto... constraint) {
    CRangedParam params[] = {{0, 100, 0}, {0, secondMax, 0}, {0, 100, 0}};
    TLink links[] = {TLink(constraint...), TLink(constraint...), TLink(constraint...)};
    for (std::size_t i = 0; i < 3; ++i) {
        links[i].SetFirst(&params[i]);
        links[i].SetSecond(&params[(i + 1) % 3]);
    }
    links[2]->SetReverse(reverse);
    params[0].Move(10);
    CJournal a(params[0]), b(params[1]), c(params[2]);
    params[0].Move(30);
    EXPECT_EQ(a.Take() + ' ' + b.Take() + ' ' + c.Take(), events);
    EXPECT_EQ(params[0].GetValue(), end);
}

// A ring that is never in step goes round once.
TEST(ParamLinks, SettleInRings) {
    CheckRing<CLink>(100, false, "bve bve bve", 30);
    CheckRing<CLink>(20, false, "bvve bve bve", 20);
    CheckRing<CLink>(100, true, "bvve bve bve", 70);
    for (const bool constraint : {false, true}) {
        CheckRing<CConnection>(100, false, "bve bve bve", 30, constraint);
        CheckRing<CConnection>(20, false, "bvve bve bve", 20, constraint);
        CheckRing<CConnection>(100, true, "bvve bve bve", 70, constraint);
    }
}

template <class TLink>
void CheckStart() {
    CRangedParam first(0, 100, 70), second(0, 100, 0.1); // 0.1 + 70 - 70 is not 0.1.
    TLink link;
    link->SetDiff(true);
    link.SetFirst(&first);
    link.SetSecond(&second);
    EXPECT_EQ(second.GetValue(), 0.1);
}

TEST(ParamLinks, StartWithoutAStepInDifferenceMode) {
    CheckStart<CLink>();
    CheckStart<CConnection>();
}

TEST(CaptureParamConnection, LeadsBackByTheWayItWent) {
    for (int number = 0; number < 13 * 8; ++number) {
        CRangedParam first(0, 1, 0), second(0, number & 1 ? 20 : 1, 0),
            linked(0, number & 1 ? 20 : 1, 0);
        CConnection connection(number & 2);
        CLink link;
        const auto join = [&](auto& way, CRangedParam& other) {
            way->SetNormalized(number & 1);
            way->SetReverse(number & 4);
            way->SetResponseCurve(static_cast<Math::EParamValueCurve>(number / 8));
            way.SetFirst(&first);
            way.SetSecond(&other);
        };
        join(connection, second);
        join(link, linked);
        first.SetValue(0.3);
        EXPECT_EQ(first.GetValue(), 0.3) << number << ": what is set stays as it is";
        const double there = second.GetValue();
        EXPECT_NEAR(there, linked.GetValue(), 1e-12) << number << ": as a link does it";
        first.SetValue(0.8);
        second.SetValue(there);
        EXPECT_NEAR(first.GetValue(), 0.3, 1e-12) << number;
    }
}

TEST(CaptureParamConnection, MovesOnlyAsFarAsBothCan) {
    for (const bool constraint : {false, true}) {
        CRangedParam first(0, 100, 0), second(0, 10, 0);
        CConnection connection(constraint);
        connection.SetFirst(&first);
        connection.SetSecond(&second);
        CJournal journal(first), other(second);
        for (const double value : {50, 70}) { // The second time the second doesn't move.
            first.SetValue(value);
            EXPECT_EQ(first.GetValue(), constraint ? 10 : value);
            EXPECT_EQ(journal.Take(), constraint ? "vv" : "v");
        }
        EXPECT_EQ(other.Take(), "v");
    }
}

TEST(CaptureParamConnection, TakesStepsInDifferenceMode) {
    CRangedParam first(0, 100, 10), second(0, 100, 50);
    CConnection connection(true); // The constraint is without effect.
    connection->SetDiff(true);
    connection.SetFirst(&first);
    connection.SetSecond(&second);
    const auto check = [&](CRangedParam& moved, double to, double a, double b) {
        moved.SetValue(to);
        EXPECT_EQ(first.GetValue(), a) << to;
        EXPECT_EQ(second.GetValue(), b) << to;
    };
    check(first, 30, 30, 70);
    check(second, 60, 20, 60);
    check(first, 80, 80, 100);
    connection->SetReverse(true);
    check(second, 90, 90, 90);
    connection->SetPaused(true);
    check(first, 80, 80, 90);
    connection->SetPaused(false);
    EXPECT_EQ(second.GetValue(), 100) << "the step that it slept through";
    connection->SetEnable(false);
    first.SetValue(90);
    connection->SetEnable(true);
    EXPECT_EQ(second.GetValue(), 100) << "none for what it was off for";
    connection->SetDiff(false);
    EXPECT_EQ(second.GetValue(), 10);
}

} // namespace

} // namespace Lathe::DataModel::Objects
