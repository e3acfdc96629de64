// Proves which events each capture object fires and in which order, what it keeps of what it is
// given, and when an action runs.

#include "core/Fixtures.h"
#include "datamodel/Journal.h"
#include "datamodel/objects/Action.h"
#include "datamodel/objects/capture/CaptureCurve.h"
#include "datamodel/objects/capture/CaptureCustomProperty.h"
#include "datamodel/objects/capture/CaptureParam.h"
#include "datamodel/objects/capture/CaptureString.h"
#include "datamodel/objects/capture/CaptureSurface.h"
#include "datamodel/objects/capture/CaptureText.h"

#include <cmath>

namespace Lathe::DataModel::Objects {

namespace {

template <class TObject>
class CaptureObjects : public testing::Test {};
using Kinds = testing::Types<CCaptureParam, CCaptureCurve, CCaptureSurface, CCaptureString,
                             CCaptureCustomProperty, CCaptureText>;
TYPED_TEST_SUITE(CaptureObjects, Kinds);

TYPED_TEST(CaptureObjects, BracketTheirGesturesWithoutCounting) {
    TypeParam object;
    CJournal journal(object);
    object.Release();
    object.Capture();
    object.Capture();
    EXPECT_TRUE(object.IsCaptured());
    object.Release();
    object.Release();
    EXPECT_FALSE(object.IsCaptured());
    EXPECT_EQ(journal.Take(), "be");
}

TEST(CaptureParam, ClampsAndFiresInOrder) {
    CCaptureParam param;
    CJournal journal(param);
    journal.Listen(param.GetValueSetEvent(), 's');
    param.GetInfo().SetMax(1.0);
    param.GetInfo().SetType(EParamType::Integer);
    const auto check = [&](double set, double value, const char* events) {
        param.SetValue(set);
        EXPECT_EQ(param.GetValue(), value) << set;
        EXPECT_EQ(journal.Take(), events) << set;
    };
    check(2.0, 1.0, "vs");
    check(3.0, 1.0, "s");
    check(-1.0, 0.0, "vs");
    check(NAN, 1.0, "vs");
    check(0.75, 0.75, "vs");
    param.GetInfo().SetMax(0.5);
    param.GetInfo().SetMax(0.7);
    EXPECT_EQ(param.GetValue(), 0.5) << "the range moves the value";
    EXPECT_EQ(journal.Take(), "v") << "once, and not as a set";
    param.GetInfo().SetMin(0.9);
    check(0.8, 0.7, "vs"); // Of an upside-down range, the maximum wins.
}

// A value that counts its kind.
template <class TBase>
struct TCounted : TBase, CTracked {
    TCounted* Clone() const override { return new TCounted(*this); }
};

template <class TObject, class TValue>
void CheckCloning() {
    const TCounted<TValue> original;
    {
        TObject object(&original, false);
        CJournal journal(object);
        object.SetValue(original);
        EXPECT_NE(&object.GetValue(), &original) << "a clone, not what it was handed";
        object.SetValue(object.GetValue());
        EXPECT_EQ(journal.Take(), "vv") << "an equal value fires as well";
        const TObject owner(new TCounted<TValue>, true);
        EXPECT_EQ(CTracked::s_Alive, 3);
    }
    EXPECT_EQ(CTracked::s_Alive, 1) << "only the borrowed original is left";
}

TEST(CaptureClones, KeepFreshClonesAndAlwaysHaveAValue) {
    CheckCloning<CCaptureCurve, Math::CConstantFunction>();
    CheckCloning<CCaptureSurface, Math::CConstantBinaryFunction>();
    CheckCloning<CCaptureCustomProperty, CEmptyDynamicPropertyValue>();
    EXPECT_EQ(CConstCaptureCurve(nullptr, false).GetValue().Evaluate(0.3), 0.3);
    EXPECT_EQ(CConstCaptureSurface(nullptr, false).GetValue().Evaluate(0.3, 0.7), 0.3);
    const CConstCaptureCustomProperty property(nullptr, false);
    EXPECT_TRUE(property.GetValue().IsSameType(CEmptyDynamicPropertyValue()));
}

template <class TObject>
void CheckTexts(const char* events) {
    TObject object("a");
    CJournal journal(object);
    for (const char* text : {"a", "b", "b", "", static_cast<const char*>(nullptr)})
        object.SetValue(text);
    EXPECT_STREQ(object.GetValue(), "");
    EXPECT_EQ(journal.Take(), events);
}

TEST(CaptureTexts, FireForOtherLettersOrAlways) {
    CheckTexts<CCaptureString>("vv");
    CheckTexts<CCaptureText>("vvvvv");
}

TEST(Action, RunsItsCommandWhileEnabled) {
    const auto runs = std::make_shared<int>(0);
    CAction action(new CActionCommand([runs] { ++*runs; }), true);
    CJournal journal(action.GetEnableChangedEvent());
    action.SetEnable(true);
    action.Execute();
    action.SetEnable(false);
    action.Execute();
    EXPECT_EQ(*runs, 1);
    EXPECT_EQ(journal.Take(), "c");
    action.Disconnect();
    EXPECT_EQ(runs.use_count(), 1) << "the command is gone";
    action.SetEnable(true);
    action.Execute();
}

} // namespace

} // namespace Lathe::DataModel::Objects
