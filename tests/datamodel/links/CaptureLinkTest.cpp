// Proves what one-way links write, by kind, function, mode and trigger.

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

#include <memory>

namespace Lathe::DataModel::Objects {

namespace {

using enum Math::EParamValueCurve;

struct CNumber : CEmptyDynamicPropertyValue {
    explicit CNumber(double number) : m_Number(number) {}
    CNumber* Clone() const override { return new CNumber(m_Number); }
    double m_Number;
};

// As a model does it: made without ends, then joined.
template <class TLink, class TObject>
void CheckCopying(const auto& value, auto read) {
    TObject source, target;
    auto link = std::make_unique<TLink>(nullptr, nullptr);
    CJournal journal(target);
    link->SetOnModifyOnly(true);
    link->SetTarget(&target);
    link->SetSource(&source);
    source.Capture();
    source.SetValue(value);
    EXPECT_EQ(read(target.GetValue()), read(value));
    CActionCommand atEnd([&] { source.SetValue(TObject().GetValue()); });
    target.GetEndCaptureEvent().AddCommand(atEnd);
    link.reset(); // Its end moves the source once more.
    EXPECT_EQ(journal.Take(), "bvev");
    target.GetEndCaptureEvent().RemoveCommand(atEnd);
}

TEST(CaptureObjectLink, CopiesEachKindOfValue) {
    CheckCopying<CCaptureCurveLink, CCaptureCurve>(
        Math::CConstantFunction(3), [](const Math::IFunction& curve) { return curve.Evaluate(0); });
    CheckCopying<CCaptureStringLink, CCaptureString>(
        "a", [](const char* string) { return std::string(string); });
    CheckCopying<CCaptureCustomPropertyLink, CCaptureCustomProperty>(
        CNumber(3), [](const IDynamicPropertyValue& property) {
            return dynamic_cast<const CNumber&>(property).m_Number;
        });
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
    link.SetFunction(new Math::CConstantFunction(0.5), true);
    target.GetInfo().SetMax(20);
    EXPECT_EQ(target.GetValue(), 10) << "it follows the range";
    link.SetFunction(nullptr, true);
    EXPECT_EQ(target.GetValue(), 5) << "the identity";
}

TEST(CaptureParamLink, WritesOnModificationOnly) {
    CRangedParam source(0, 100, 5), target(0, 100, 7);
    CCaptureParamLink link(nullptr, nullptr);
    link.SetOnModifyOnly(true);
    link.SetSource(&source);
    link.SetTarget(&target);
    for (const bool on : {false, true}) {
        link.SetEnable(on);
        link.SetPaused(!on);
        link.SetReverse(on);
        link.SetNormalized(on);
        link.SetDiff(!on);
        link.SetResponseCurve(Linear);
    }
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

TEST(CaptureParamToStringLink, WritesTheTextOfTheValue) {
    CRangedParam source(0, 10, 3);
    CCaptureString target;
    auto link = std::make_unique<CCaptureParamToStringLink>(nullptr, nullptr);
    link->SetTarget(&target);
    link->SetSource(&source);
    source.GetInfo().SetUnit("Hz");
    EXPECT_STREQ(target.GetValue(), "3.00 Hz");
    source.GetInfo().SetValueToText(new CEnumToText("a;b;c;d", 0), true);
    link->GetFormatter().SetPattern("{value}={text_value}");
    EXPECT_STREQ(target.GetValue(), "3.0=d");
    CJournal journal(target);
    link->SetOnModifyOnly(true);
    source.GetInfo().SetValueToText(nullptr, true);
    source.Move(2);
    EXPECT_STREQ(target.GetValue(), "2.0=2.00");
    link.reset();
    source.GetInfo().SetUnit("dB");
    source.Move(1);
    EXPECT_EQ(journal.Take(), "bve");
}

} // namespace

} // namespace Lathe::DataModel::Objects
