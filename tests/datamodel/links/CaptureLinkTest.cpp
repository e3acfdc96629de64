// Proves what one-way links write and when, that they play brackets again and always give them
// back, that rings of them settle, and that any operation may be called from the events that they
// cause.

#include "datamodel/links/CaptureCurveLink.h"
#include "datamodel/links/CaptureCustomPropertyLink.h"
#include "datamodel/links/CaptureParamLink.h"
#include "datamodel/links/CaptureParamToStringLink.h"
#include "datamodel/links/CaptureStringLink.h"
#include "datamodel/links/Params.h"
#include "datamodel/objects/capture/CaptureCurve.h"
#include "datamodel/objects/capture/CaptureCustomProperty.h"
#include "datamodel/objects/capture/CaptureString.h"
#include "datamodel/objects/text/EnumToText.h"
#include "math/Constant.h"
#include "math/PlainFunction.h"
#include "math/ValueCurve.h"

#include <list>
#include <map>
#include <memory>
#include <string>

namespace Lathe::DataModel::Objects {

namespace {

using enum Math::EParamValueCurve;

struct CNumberProperty : CEmptyDynamicPropertyValue {
    explicit CNumberProperty(double number) : m_Number(number) {}
    CNumberProperty* Clone() const override { return new CNumberProperty(m_Number); }
    double m_Number;
};

// As a model does it: made without ends, joined, used, cut.
template <class TLink, class TObject, class TValue>
void CheckCopying(const TValue& first, const TValue& second, auto read) {
    TObject source, target;
    TLink link(nullptr, nullptr);
    link.SetTarget(&target);
    link.SetSource(&source);
    CJournal journal(target);
    source.Capture();
    source.SetValue(first);
    source.Release();
    EXPECT_EQ(journal.Take(), "bve");
    EXPECT_EQ(read(target), read(source));
    link.Disconnect();
    source.SetValue(second);
    EXPECT_EQ(journal.Take(), "");
    EXPECT_NE(read(target), read(source));
    EXPECT_TRUE(link.IsEnabled());
}

TEST(CaptureObjectLink, CopiesEachKindOfValue) {
    using namespace Math;
    CheckCopying<CCaptureCurveLink, CCaptureCurve>(
        CConstantFunction(3.0), CConstantFunction(4.0),
        [](const auto& curve) { return curve.GetValue().Evaluate(0.5); });
    CheckCopying<CCaptureStringLink, CCaptureString>(
        "a", "b", [](const auto& string) { return std::string(string.GetValue()); });
    CheckCopying<CCaptureCustomPropertyLink, CCaptureCustomProperty>(
        CNumberProperty(3.0), CNumberProperty(4.0), [](const auto& property) {
            return dynamic_cast<const CNumberProperty&>(property.GetValue()).m_Number;
        });
}

// A link between two parameters, and spare ends.
struct SBench {
    CRangedParam m_Source{0, 100, 1}, m_Target{0, 100, 1}, m_OtherSource{0, 100, 5},
        m_OtherTarget{0, 100, 5};
    std::unique_ptr<CCaptureParamLink> m_Link =
        std::make_unique<CCaptureParamLink>(&m_Source, &m_Target);
};

using Operation = void (*)(SBench&);
const std::map<char, Operation> Operations = {
    {'+', [](SBench& b) { b.m_Source.SetValue(b.m_Source.GetValue() + 1); }},
    {'[', [](SBench& b) { b.m_Source.Capture(); }},
    {']', [](SBench& b) { b.m_Source.Release(); }},
    {'e', [](SBench& b) { b.m_Link->SetEnable(false); }},
    {'E', [](SBench& b) { b.m_Link->SetEnable(true); }},
    {'p', [](SBench& b) { b.m_Link->SetPaused(true); }},
    {'P', [](SBench& b) { b.m_Link->SetPaused(false); }},
    {'s', [](SBench& b) { b.m_Link->SetSource(&b.m_Source); }},
    {'o', [](SBench& b) { b.m_Link->SetSource(&b.m_OtherSource); }},
    {'t', [](SBench& b) { b.m_Link->SetTarget(&b.m_Target); }},
    {'T', [](SBench& b) { b.m_Link->SetTarget(&b.m_OtherTarget); }},
    {'R', [](SBench& b) { b.m_Link->SetReverse(!b.m_Link->IsReversed()); }},
    {'D', [](SBench& b) { b.m_Link->Disconnect(); }},
};

TEST(CaptureParamLink, PlaysValuesAndBracketsByItsState) {
    struct {
        const char *m_Script, *m_Events; // The events of the target, and "!" for enabled changed.
        bool m_Captured;                 // The target, at the end; never once the link is gone.
    } const cases[] = {
        {"[++]", "bvve", false}, {"e[+]E", "!v!", false},   {"e+[E", "!bv!", true},
        {"[eE", "be!b!", true},  {"[ee+]", "be!", false},   {"p[+]P", "v", false},
        {"[p+]", "b", true},     {"[p+]P", "bev", false},   {"[p+P", "bebv", true},
        {"pe+PE", "!v!", false}, {"[s", "beb", true},       {"[t", "b", true},
        {"[o", "bev", false},    {"[T", "be", false},       {"[D+]", "be", false},
        {"De[+s", "!", false},   {"De[+stE", "!bv!", true}, {"D[+s]", "", false},
    };
    for (const auto& row : cases) {
        SBench bench;
        std::string told;
        CJournal journal(bench.m_Target);
        CActionCommand enabled([&] { told += journal.Take() + '!'; });
        bench.m_Link->GetEnableChangedEvent().AddCommand(enabled);
        for (const char* letter = row.m_Script; *letter; ++letter)
            Operations.at (*letter)(bench);
        EXPECT_EQ(told + journal.Take(), row.m_Events) << row.m_Script;
        EXPECT_EQ(bench.m_Target.IsCaptured(), row.m_Captured) << row.m_Script;
        bench.m_Link.reset();
        EXPECT_FALSE(bench.m_Target.IsCaptured()) << row.m_Script;
        bench.m_Source.SetValue(50);
        EXPECT_NE(bench.m_Target.GetValue(), 50) << row.m_Script;
    }
}

TEST(CaptureParamLink, TakesAnyOperationFromTheEventsThatItCauses) {
    for (const auto& [letter, operation] : Operations) {
        SBench bench;
        std::list<CJournal> listeners;
        CActionCommand command([&bench, run = operation] { run(bench); });
        const auto forEachEvent = [&](auto act) {
            for (const CRangedParam* target : {&bench.m_Target, &bench.m_OtherTarget})
                for (auto* event : {&target->GetValueChangedEvent(),
                                    &target->GetBeginCaptureEvent(), &target->GetEndCaptureEvent()})
                    act(*event);
            act(bench.m_Link->GetEnableChangedEvent());
        };
        forEachEvent([&](Core::IEventProvider& event) { event.AddCommand(command); });
        for (const char script : std::string("[+s+T+eEpP]D[s+t]R[oTs]D"))
            Operations.at(script)(bench);
        forEachEvent([&](Core::IEventProvider& event) { event.RemoveCommand(command); });
        // Whatever it did, the link serves its present ends and no others.
        for (const char script : std::string("EPD"))
            Operations.at(script)(bench);
        bench.m_Link->SetReverse(false);
        bench.m_Link->SetSource(&bench.m_OtherSource);
        bench.m_Link->SetTarget(&bench.m_OtherTarget);
        bench.m_Source.SetValue(70);
        bench.m_OtherSource.SetValue(60);
        EXPECT_EQ(bench.m_OtherTarget.GetValue(), 60) << letter;
        EXPECT_NE(bench.m_Target.GetValue(), 60) << letter;
        bench.m_Link.reset();
        bench.m_Source.SetValue(30);
        bench.m_OtherSource.SetValue(20);
    }
}

TEST(CaptureParamLink, TransfersByFunctionModeAndRanges) {
    struct {
        CRangedParam m_Source, m_Target;
        Math::EParamValueCurve m_Curve;
        bool m_Reverse, m_Normalized;
        double m_Result;
    } cases[] = {
        {{0, 10, 3}, {-5, 20, 0}, Linear, false, false, 3},
        {{0, 100, 50}, {0, 10, 0}, Linear, false, false, 10}, // The target clamps.
        {{0, 200, 120}, {100, 200, 100}, Linear, true, false, 180},
        {{0, 10, 3}, {0, 100, 0}, Square, false, false, 9}, // Of the bare value.
        {{0, 10, 5}, {0, 100, 0}, Square, false, true, 25},
        {{0, 10, 5}, {0, 100, 0}, Square, true, true, 75},
        {{0, 10, 2.5}, {100, 200, 100}, Linear, true, true, 175},
        {{4, 4, 4}, {-1, 1, 0}, Linear, false, true, -1}, // An empty range.
    };
    for (auto& row : cases) {
        CCaptureParamLink link(&row.m_Source, &row.m_Target);
        CJournal journal(link.GetReverseChangedEvent());
        link.SetNormalized(row.m_Normalized);
        link.SetResponseCurve(row.m_Curve);
        link.SetReverse(row.m_Reverse);
        link.SetReverse(row.m_Reverse);
        EXPECT_EQ(row.m_Target.GetValue(), row.m_Result) << &row - cases;
        EXPECT_EQ(journal.Take(), row.m_Reverse ? "c" : "");
    }
    CRangedParam source(0, 1, 0.25), target(0, 10, 0);
    CCaptureParamLink link(&source, &target);
    link.SetNormalized(true);
    target.GetInfo().SetMax(20);
    EXPECT_EQ(target.GetValue(), 5) << "it follows the range";
    link.SetFunction(new Math::CConstantFunction(0.5), true);
    EXPECT_EQ(target.GetValue(), 10);
    link.SetFunction(nullptr, true);
    EXPECT_EQ(target.GetValue(), 5) << "the identity";
}

TEST(CaptureParamLink, WritesOnModificationOnly) {
    CRangedParam source(0, 100, 5), target(0, 100, 7);
    CCaptureParamLink link(nullptr, nullptr);
    link.SetOnModifyOnly(true);
    link.SetSource(&source);
    link.SetTarget(&target);
    link.SetEnable(false);
    link.SetEnable(true);
    link.SetPaused(true);
    link.SetPaused(false);
    link.SetReverse(true);
    link.SetNormalized(true);
    link.SetResponseCurve(Linear);
    link.SetDiff(true);
    link.SetDiff(false);
    target.GetInfo().SetMax(50);
    dynamic_cast<Core::INotify&>(source.GetValueChangedEvent()).Notify(); // Without a change.
    EXPECT_EQ(target.GetValue(), 7);
    source.SetValue(10);
    EXPECT_EQ(target.GetValue(), 45);
}

TEST(CaptureParamLink, TakesStepsInDifferenceMode) {
    for (const bool reverse : {false, true}) {
        CRangedParam source(0, 100, 10), target(0, 100, 50);
        CCaptureParamLink link(nullptr, &target);
        link.SetDiff(true);
        link.SetReverse(reverse);
        link.SetSource(&source);
        EXPECT_EQ(target.GetValue(), 50) << "no step at the start";
        source.SetValue(30);
        EXPECT_EQ(target.GetValue(), reverse ? 30 : 70);
        link.SetEnable(false);
        source.SetValue(90);
        link.SetEnable(true);
        EXPECT_EQ(target.GetValue(), reverse ? 30 : 70) << "nor for what it slept through";
        link.SetNormalized(true);
        link.SetFunction(&Math::TFunction<Math::FunctionsLibrary::Exp>::GetInstance(), false);
        source.SetValue(95);
        EXPECT_EQ(target.GetValue(), reverse ? 30 : 70) << "both positions clamp to 1";
        link.SetDiff(false);
        EXPECT_EQ(target.GetValue(), reverse ? 0 : 100);
    }
}

TEST(CaptureObjectLink, SettlesInRings) {
    for (const bool reverse : {false, true}) {
        SRing ring;
        CCaptureParamLink ab(&ring.m_A, &ring.m_B), bc(&ring.m_B, &ring.m_C),
            ca(&ring.m_C, &ring.m_A);
        EXPECT_EQ(ring.Move(20), "bve bve bve");
        // A ring that is never in step goes round once.
        bc.SetReverse(reverse);
        ring.Move(40);
        EXPECT_EQ(ring.Move(30), reverse ? "bvve bve bve" : "bve bve bve");
        EXPECT_EQ(ring.m_A.GetValue(), reverse ? 70 : 30);
    }
    SRing ring;
    CCaptureParamLink self(&ring.m_A, &ring.m_A);
    EXPECT_EQ(ring.Move(20), "bve  ");
    self.SetReverse(true);
    EXPECT_EQ(ring.m_A.GetValue(), 20) << "once there, and once back";
    ring.m_JournalA.Take();
    EXPECT_EQ(ring.Move(30), "bvve  ");
    EXPECT_EQ(ring.m_A.GetValue(), 70);
    // Curves tell each set, also of what they have.
    CCaptureCurve a, b, c;
    CCaptureCurveLink there(&a, &b), back(&b, &a), own(&c, &c);
    CJournal journalA(a), journalB(b), journalC(c);
    a.SetValue(Math::CConstantFunction(3.0));
    c.SetValue(Math::CConstantFunction(3.0));
    EXPECT_EQ(journalA.Take() + ' ' + journalB.Take() + ' ' + journalC.Take(), "vv v vv");
    EXPECT_EQ(a.GetValue().Evaluate(0) + b.GetValue().Evaluate(0) + c.GetValue().Evaluate(0), 9);
}

TEST(CaptureParamToStringLink, WritesTheTextOfTheValue) {
    CRangedParam source(0, 10, 3);
    CCaptureString target("none");
    CCaptureParamToStringLink link(nullptr, nullptr);
    link.SetTarget(&target);
    EXPECT_STREQ(target.GetValue(), "none");
    link.SetSource(&source);
    EXPECT_STREQ(target.GetValue(), "3.00 ");
    source.GetInfo().SetUnit("Hz");
    EXPECT_STREQ(target.GetValue(), "3.00 Hz");
    source.GetInfo().SetValueToText(new CEnumToText("a;b;c;d", 0), true);
    link.GetFormatter().SetPattern("{value}={text_value}");
    EXPECT_STREQ(target.GetValue(), "3.0=d");
    CJournal journal(target);
    source.Capture();
    source.SetValue(1);
    source.Release();
    EXPECT_EQ(journal.Take(), "bve");
    EXPECT_STREQ(target.GetValue(), "1.0=b");
    link.SetOnModifyOnly(true);
    source.GetInfo().SetValueToText(nullptr, true);
    EXPECT_STREQ(target.GetValue(), "1.0=b");
    source.SetValue(2);
    EXPECT_STREQ(target.GetValue(), "2.0=2.00");
    link.Disconnect();
    source.GetInfo().SetUnit("dB");
    EXPECT_EQ(journal.Take(), "v");
}

} // namespace

} // namespace Lathe::DataModel::Objects
