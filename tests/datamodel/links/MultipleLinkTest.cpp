// Proves what many-to-many links write to which targets and when, that they forward a gesture as
// one bracket, and that cycles and handlers that meddle with the link come to rest.

#include "datamodel/links/CaptureParamConnection.h"
#include "datamodel/links/MultipleCaptureCurveLink.h"
#include "datamodel/links/MultipleCaptureParamLink.h"
#include "datamodel/links/MultipleCaptureStringLink.h"
#include "datamodel/links/Params.h"
#include "datamodel/objects/capture/CaptureCurve.h"
#include "datamodel/objects/capture/CaptureString.h"

#include <array>

namespace Lathe::DataModel::Objects {

namespace {

template <class TLink, class TSources, class TTargets>
void Join(TLink& link, const TSources& sources, const TTargets& targets) {
    for (auto* source : sources)
        link.AddSource(source);
    for (auto* target : targets)
        link.AddTarget(target);
}

TEST(MuxFunctions, AreFoundByNameAndSeeAllNeighbours) {
    const auto check = [](const char* name, std::vector<double> values, double result) {
        EXPECT_EQ(FindMuxFunction(name)(values), result) << (name ? name : "null");
    };
    check("max", {1.0, 4.0, -7.0}, 4.0);
    check("min", {1.0, 4.0, -7.0}, -7.0);
    check("mean", {1.0, 4.0, -7.0, 4.0}, 0.5);
    check("-max", {1.0, 4.0, -7.0}, -4.0);
    check("-min", {1.0, 4.0, -7.0}, 7.0);
    check("-mean", {1.0, 4.0}, -2.5);
    check("<", {1.0, 2.0, 2.0}, 0.0);
    check("<=", {1.0, 2.0, 2.0}, 1.0);
    check(">", {3.0, 3.0, 1.0}, 0.0);
    check(">=", {3.0, 3.0, 1.0}, 1.0);
    check("=", {3.0, 3.0, 1.0}, 0.0);
    for (const char* name : {"max", "min", "mean", "-max", "-min", "-mean"})
        check(name, {}, 0.0);
    for (const char* name : {"<", "<=", ">", ">=", "="})
        check(name, {5.0}, 1.0);
    for (const char* name : {"Max", static_cast<const char*>(nullptr)})
        check(name, {1.0, 4.0}, 2.5);
}

TEST(MultipleParamLink, WritesEachTargetByItsRange) {
    using Curve = Math::EParamValueCurve;
    // From 0..10 and 0..100 to -1000..1000 and 100..200.
    const auto check = [](const char* mux, Curve curve, bool normalized, bool reverse, double first,
                          double second, double wide, double narrow) {
        CRangedParam a(0.0, 10.0, first), b(0.0, 100.0, second), c(0.0), d(100.0, 200.0, 100.0);
        CMultipleCaptureParamLink link;
        link.SetMuxFunction(FindMuxFunction(mux));
        link.SetResponseCurve(curve);
        link.SetNormalized(normalized);
        Join(link, std::array{&a, &b}, std::array{&c, &d});
        EXPECT_EQ(c.GetValue(), 0.0) << "joining writes nothing";
        link.SetReverse(reverse);
        EXPECT_NEAR(c.GetValue(), wide, 1e-9) << mux << normalized << reverse;
        EXPECT_NEAR(d.GetValue(), narrow, 1e-9) << mux << normalized << reverse;
    };
    check("max", Curve::Square, false, false, 2.0, 12.0, 144.0, 144.0);
    check("mean", Curve::Linear, false, true, 2.0, 40.0, -20.0, 100.0);
    check("min", Curve::Linear, true, false, 2.5, 75.0, -500.0, 125.0);
    check("min", Curve::SquareRoot, true, false, 2.5, 75.0, 0.0, 150.0);
    check("min", Curve::SquareRoot, true, true, 6.4, 75.0, -600.0, 120.0);
    check("-max", Curve::Linear, true, true, 2.5, 75.0, 1000.0, 200.0);
}

TEST(MultipleParamLink, WritesAsItsTriggersSay) {
    // From and to 0..10; a limit of 0 stays off, and those below 1 are of the normalised mode.
    const auto check = [](double min, double max, double set, double target, double onChange,
                          double onEnable) {
        CRangedParam a(0.0, 10.0, 5.0), b(0.0, 10.0, target);
        CMultipleCaptureParamLink link;
        link.SetNormalized(min > 0.0 && min < 1.0);
        if (min > 0.0)
            link.SetTriggerMin(min);
        if (max > 0.0)
            link.SetTriggerMax(max);
        Join(link, std::array{&a}, std::array{&b});
        a.SetValue(set);
        EXPECT_EQ(b.GetValue(), onChange) << min << " " << max << " change to " << set;
        b.SetValue(target);
        link.SetEnable(false);
        link.SetEnable(true);
        EXPECT_EQ(b.GetValue(), onEnable) << min << " " << max << " enabled over " << target;
    };
    check(4.0, 0.0, 3.0, 1.0, 1.0, 3.0);
    check(4.0, 0.0, 4.0, 6.0, 4.0, 6.0);
    check(0.0, 4.0, 4.0, 6.0, 4.0, 4.0);
    check(0.0, 4.0, 6.0, 1.0, 1.0, 1.0);
    check(0.4, 0.6, 7.0, 1.0, 1.0, 7.0);
    check(0.4, 0.6, 5.5, 5.0, 5.5, 5.0);
}

// The model's way: paused until all ends are joined, then woken.
TEST(MultipleParamLink, CatchesUpWhenItGoesOn) {
    CRangedParam a(1.0), b(0.0);
    CMultipleCaptureParamLink link;
    CJournal journal(link.GetEnableChangedEvent());
    journal.Listen(link.GetReverseChangedEvent(), 'r');
    const auto check = [&](const std::function<void()>& act, double value, const char* events) {
        act();
        EXPECT_EQ(b.GetValue(), value);
        EXPECT_EQ(journal.Take(), events);
    };
    const std::array<CRangedParam*, 2> sources{nullptr, &a}, targets{nullptr, &b};
    check([&] { link.SetPaused(true), Join(link, sources, targets); }, 0.0, "");
    check([&] { link.SetReverse(true), a.SetValue(2.0); }, 0.0, "r");
    check([&] { link.SetPaused(false); }, -1.0, "");
    check([&] { link.SetReverse(false); }, 2.0, "r");
    check([&] { link.SetEnable(false), a.SetValue(3.0); }, 2.0, "c");
    check([&] { link.SetPaused(true), link.SetEnable(true); }, 2.0, "c");
    check([&] { link.SetPaused(false), link.SetEnable(true); }, 3.0, "");
    check([&] { link.SetMuxFunction(nullptr), a.SetValue(4.0); }, 3.0, "");
}

// From a and b to b and c, some of them twice.
class MultipleParamLinkOfThree : public testing::Test {
protected:
    MultipleParamLinkOfThree() { Join(m_Link, std::array{&a, &b, &a}, std::array{&b, &c, &c}); }
    void Check(const std::function<void()>& act, const char* eventsOfB, const char* eventsOfC) {
        act();
        EXPECT_EQ(m_OfB.Take(), eventsOfB);
        EXPECT_EQ(m_OfC.Take(), eventsOfC);
    }

    // First, so that the objects let go of it.
    CActionCommand m_Handler{nullptr};
    CRangedParam a{0.0}, b{0.0}, c{0.0};
    CMultipleCaptureParamLink m_Link;
    CJournal m_OfB{b}, m_OfC{c};
};

TEST_F(MultipleParamLinkOfThree, ForwardsOneBracketAndGivesItBack) {
    Check([&] { a.Capture(); }, "b", "b");
    Check([&] { m_Link.SetEnable(false); }, "e", "e");
    Check([&] { m_Link.SetEnable(true); }, "b", "b");
    Check([&] { m_Link.SetPaused(true); }, "", "");
    Check([&] { m_Link.SetPaused(false); }, "eb", "eb");
    Check([&] { m_Link.SetPaused(true), m_Link.SetEnable(false); }, "e", "e");
    Check([&] { m_Link.SetEnable(true); }, "", "");
    Check([&] { m_Link.SetPaused(false); }, "b", "b");
    Check([&] { a.Release(); }, "e", "e");
    Check([&] { b.Capture(), b.Release(); }, "be", "be");
    Check([&] { c.Capture(), a.Capture(); }, "b", "b");
    Check([&] { m_Link.Disconnect(); }, "e", "e");
    Check([&] { a.Release(), a.Capture(), a.SetValue(1.0); }, "", "");
}

TEST_F(MultipleParamLinkOfThree, HoldsNothingWhenTheGestureEndsOnTheWay) {
    m_Handler.m_Action = [&] { a.Release(); };
    b.GetBeginCaptureEvent().AddCommand(m_Handler);
    Check([&] { a.Capture(); }, "be", "");
    m_Handler.m_Action = [&] { m_Link.Disconnect(); };
    Check([&] { a.Capture(); }, "be", "");
}

TEST_F(MultipleParamLinkOfThree, LetsHandlersMeddle) {
    b.GetValueChangedEvent().AddCommand(m_Handler);
    double value = 0.0;
    const auto check = [&](const std::function<void()>& meddle, const char* eventsOfB,
                           const char* eventsOfC) {
        m_Handler.m_Action = [&] { m_Handler.m_Action = [] {}, meddle(); };
        Check([&] { a.SetValue(value += 64.0); }, eventsOfB, eventsOfC);
        m_Link.SetPaused(false);
        m_Link.SetEnable(true);
        m_OfB.Take(), m_OfC.Take();
    };
    check([&] { m_Link.SetEnable(false); }, "v", "");
    check([&] { m_Link.SetPaused(true); }, "v", "");
    check([&] { m_Link.AddTarget(&b), m_Link.AddTarget(&c), m_Link.AddSource(&a); }, "vvv", "vvv");
    check([&] { m_Link.Disconnect(); }, "v", "");
}

TEST_F(MultipleParamLinkOfThree, SettlesWithAConnectionInside) {
    c.GetInfo().SetMax(10.0);
    CCaptureParamConnection inside;
    inside.SetFirst(&b);
    inside.SetSecond(&c);
    inside.SetConstraint(true);
    inside.SetEnable(true);
    // For each of its two places, a moves b, and c can't follow and pulls it back.
    Check([&] { a.SetValue(30.0); }, "vvvv", "v");
    EXPECT_EQ(b.GetValue(), 10.0);
    Check([&] { b.SetValue(-30.0); }, "v", "v");
    EXPECT_EQ(c.GetValue(), -30.0) << "the mean is 10 still, and the connection comes behind";
}

TEST_F(MultipleParamLinkOfThree, SettlesInCycles) {
    CMultipleCaptureParamLink back;
    Join(back, std::array{&c}, std::array{&a});
    back.SetMuxFunction(FindMuxFunction("-max"));
    CJournal ofA(a);
    Check([&] { b.SetValue(9.0); }, "v", "v"); // c takes the mean of 0, 9 and 0.
    EXPECT_EQ(a.GetValue(), -3.0);
    // For each of its two places, a moves b and c, and c moves it back.
    Check([&] { a.SetValue(6.0); }, "vv", "vv");
    EXPECT_EQ(ofA.Take(), "vvvv");
}

TEST(MultipleCurveLink, CombinesAllSources) {
    const auto check = [](const char* name, double result) {
        CCaptureCurve a(new Math::CConstantFunction(9.0)), b(new Math::CConstantFunction(4.0)), c;
        CMultipleCaptureCurveLink link;
        CJournal ofB(b), ofC(c);
        Join(link, std::array{&a, &b, &b}, std::array{&b, &c});
        a.SetValue(a.GetValue());
        link.SetOperator(FindCurveOperator(name));
        b.SetValue(Math::CConstantFunction(2.0));
        EXPECT_EQ(c.GetValue().Evaluate(0.0), result) << name;
        EXPECT_EQ(ofB.Take(), "v") << "what changed is left alone";
        EXPECT_EQ(ofC.Take(), "vv") << "none without operator, two for the two places of b";
    };
    check("+", 9.0 + 2.0 + 2.0);
    check("-", 9.0 - 2.0 - 2.0);
    check("*", 9.0 * 2.0 * 2.0);
    check("/", 9.0 / 2.0 / 2.0);
    EXPECT_FALSE(FindCurveOperator("max") || FindCurveOperator(nullptr));
}

TEST(MultipleStringLink, JoinsAllSources) {
    CCaptureString a("one"), b("two"), c;
    CMultipleCaptureStringLink link;
    Join(link, std::array{&a, &b, &a}, std::array{&c});
    b.SetValue("2");
    EXPECT_STREQ(c.GetValue(), "one2one");
    link.SetSeparator(", ");
    b.SetValue(nullptr);
    EXPECT_STREQ(c.GetValue(), "one, , one");
}

} // namespace

} // namespace Lathe::DataModel::Objects
