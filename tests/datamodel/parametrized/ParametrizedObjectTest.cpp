// Proves that a formula follows its live inputs of every kind, tells each change that reached it,
// and shows any number of captured inputs as one bracket.

#include "datamodel/links/Params.h"
#include "datamodel/parametrized/ParametrizedCaptureObject.h"
#include "math/FormulaBuilders.h"
#include "math/PlainFunction.h"

namespace Lathe::DataModel::Objects {

namespace {

using Math::FunctionsLibrary::Product;
using Math::FunctionsLibrary::Square;

// The object's formula at (3, 2) is band(3) * gain + height(3, 2) + gain.
template <class TObject, class TFormula, class TEvaluate>
void CheckFollowing(TFormula* formula, TEvaluate evaluate) {
    CRangedParam gain(10.0), other(1.0);
    CCaptureCurve band(new Math::TFunction<Square>), unused;
    CCaptureSurface height(new Math::TBinaryFunction<Product>);
    TObject object(formula);
    CJournal journal(object);
    const auto check = [&](const std::function<void()>& act, double value, const char* events) {
        act();
        EXPECT_EQ(evaluate(object.GetValue()), value);
        EXPECT_EQ(journal.Take(), events);
    };
    check([&] { object.ConnectCurve("band", band); }, 2.5, "v"); // An average of 3 and 2 yet.
    check([&] { object.ConnectSurface("height", height); }, 6.0, "v");
    check([&] { object.ConnectParam("gain", gain); }, 106.0, "v");
    check([&] { gain.SetValue(2.0); }, 26.0, "v");
    check([&] { band.SetValue(Math::CConstantFunction(1.0)); }, 10.0, "v");
    check([&] { height.SetValue(Math::CConstantBinaryFunction(5.0)); }, 9.0, "v");
    check([&] { object.ConnectParam("band", other); }, 9.0, ""); // Of another kind.
    check([&] { object.ConnectCurve("unused", unused); }, 9.0, "");
    check([&] { object.ConnectParam("gain", other); }, 7.0, "v");
    check([&] { gain.SetValue(3.0); }, 7.0, "");
    check([&] { object.Disconnect(), other.SetValue(0.0); }, 7.0, "");
}

TEST(ParametrizedObjects, FollowInputsOfEveryKind) {
    CheckFollowing<CParametrizedCaptureParam>(
        Math::BuildParametrizedConstant("band(3) * gain + height(3, 2) + gain"),
        [](double value) { return value; });
    CheckFollowing<CParametrizedCaptureCurve>(
        Math::BuildParametrizedFunction("band(x) * gain + height(x, 2) + gain", "x"),
        [](const Math::IFunction& value) { return value.Evaluate(3.0); });
    CheckFollowing<CParametrizedCaptureSurface>(
        Math::BuildParametrizedBinaryFunction("band(x) * gain + height(x, y) + gain", "x", "y"),
        [](const Math::IBinaryFunction& value) { return value.Evaluate(3.0, 2.0); });
}

class FormulaOfTwo : public testing::Test {
protected:
    void Check(const std::function<void()>& act, const char* events) {
        act();
        EXPECT_EQ(m_Journal.Take(), events);
    }

    // First, so that the objects let go of it.
    CActionCommand m_Handler{nullptr};
    CRangedParam a{0.0}, b{0.0};
    CCaptureCurve m_Curve;
    CParametrizedCaptureParam m_Formula{Math::BuildParametrizedConstant("a * 10 + b + b")};
    CJournal m_Journal{m_Formula};
};

TEST_F(FormulaOfTwo, ShowsCapturedInputsAsOneBracket) {
    m_Formula.ConnectParam("a", a);
    m_Formula.ConnectParam("b", b);
    m_Formula.ConnectCurve("a", m_Curve);
    m_Journal.Take();
    Check([&] { a.Capture(); }, "b");
    Check([&] { b.Capture(), m_Curve.Capture(), a.Release(), m_Curve.Release(); }, "");
    EXPECT_TRUE(m_Formula.IsCaptured());
    Check([&] { b.Release(); }, "e");
    Check([&] { m_Formula.ConnectCurve("b", m_Curve), m_Curve.Capture(); }, "b");
    Check([&] { m_Curve.Release(); }, "e"); // One object under two names.
    b.Capture();
    Check([&] { m_Formula.ConnectParam("a", b), m_Formula.ConnectParam("b", a); }, "bvv");
    Check([&] { m_Formula.ConnectParam("a", a); }, "ev");
    Check([&] { b.Release(), b.Capture(), a.Capture(); }, "b");
    Check([&] { m_Formula.Disconnect(), a.Release(); }, "");
    EXPECT_FALSE(m_Formula.IsCaptured());
    Check([&] { m_Formula.ConnectParam("a", a), a.Capture(), a.Release(); }, "vbe");
}

TEST_F(FormulaOfTwo, LetsHandlersReplaceTheInput) {
    m_Formula.ConnectParam("a", a);
    m_Formula.GetValueChangedEvent().AddCommand(m_Handler);
    b.SetValue(4.0);
    m_Journal.Take();
    m_Handler.m_Action = [&] { m_Formula.ConnectParam("a", b); };
    Check([&] { a.SetValue(7.0); }, "vv");
    EXPECT_EQ(m_Formula.GetValue(), 40.0);
    m_Handler.m_Action = [&] { m_Formula.Disconnect(); };
    Check([&] { b.SetValue(5.0), b.SetValue(6.0); }, "v");
    EXPECT_EQ(m_Formula.GetValue(), 50.0);
}

TEST(ConstantToCaptureParamAdapter, HasAValueWithoutAConstant) {
    EXPECT_EQ(CConstantToCaptureParamAdapter(nullptr, false).GetValue(), 0.0);
}

} // namespace

} // namespace Lathe::DataModel::Objects
