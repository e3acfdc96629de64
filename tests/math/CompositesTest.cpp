// Proves what composite functions compute from their children, what stands in for missing ones,
// and that nothing is deleted but what is owned.

#include "math/Constant.h"
#include "math/FunctionComposition.h"
#include "math/FunctionProxy.h"
#include "math/FunctionsCombination.h"
#include "math/FunctionsComposition.h"
#include "math/FunctionsOperation.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace Lathe::Math {

namespace {

using namespace FunctionsLibrary;

// Counts how many of its kind are alive.
class CCountedFunction : public CConstantFunction {
public:
    explicit CCountedFunction(int& alive) : m_Alive(alive) { ++m_Alive; }
    CCountedFunction(const CCountedFunction& other)
        : CConstantFunction(other), m_Alive(other.m_Alive) {
        ++m_Alive;
    }
    ~CCountedFunction() override { --m_Alive; }
    CCountedFunction* Clone() const override { return new CCountedFunction(*this); }

private:
    int& m_Alive;
};

TEST(FunctionsComposition, PipesThroughTheListAndSkipsNull) {
    CFunctionsComposition composition;
    EXPECT_EQ(composition.Evaluate(3.0), 3.0);
    composition.SetCount(3);
    EXPECT_EQ(composition.Evaluate(3.0), 3.0);
    composition.SetFunction(0, &TFunction<Negate>::GetInstance(), false);
    composition.SetFunction(2, &TFunction<Exp>::GetInstance(), false);
    EXPECT_EQ(composition.Evaluate(0.0), 1.0);
    EXPECT_LT(composition.Evaluate(3.0), 1.0) << "the first entry comes first";
    composition.SetCount(1);
    EXPECT_EQ(composition.Evaluate(3.0), -3.0);
    composition.SetCount(2);
    EXPECT_EQ(composition.GetFunction(1), nullptr);
}

template <PlainBinaryFunction F>
double Operate(const std::vector<const double*>& values) {
    TFunctionsOperation<F> operation;
    operation.SetCount(static_cast<int>(values.size()));
    for (int i = 0; i < operation.GetCount(); ++i) {
        if (const double* value = values[static_cast<std::size_t>(i)])
            operation.SetFunction(i, new CConstantFunction(*value), true);
    }
    return operation.Evaluate(1e9);
}

TEST(FunctionsOperation, FoldsFromTheLeft) {
    const double numbers[] = {24.0, 4.0, 3.0};
    const double *a = &numbers[0], *b = &numbers[1], *c = &numbers[2];
    const struct {
        std::vector<const double*> m_Values;
        double m_Sum, m_Difference, m_Product, m_Division;
    } cases[] = {
        {{}, 0.0, 0.0, 0.0, 0.0},
        {{a}, 24.0, 24.0, 24.0, 24.0},
        {{a, b, c}, 31.0, 17.0, 288.0, 2.0},
        {{a, nullptr, c}, 27.0, 21.0, 72.0, 8.0},
        {{nullptr, b, c}, 7.0, -7.0, 0.0, 0.0},
        {{nullptr}, 0.0, 0.0, 0.0, 0.0},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(Operate<Sum>(test.m_Values), test.m_Sum);
        EXPECT_EQ(Operate<Difference>(test.m_Values), test.m_Difference);
        EXPECT_EQ(Operate<Product>(test.m_Values), test.m_Product);
        EXPECT_EQ(Operate<Division>(test.m_Values), test.m_Division);
    }
}

TEST(Composites, MissingChildrenAreTheDefaults) {
    // 0 for a constant, the identity of one argument, the average of two.
    EXPECT_EQ(CConstantComposition().Evaluate(), 0.0);
    EXPECT_EQ(CConstantsCombination().Evaluate(), 0.0);
    EXPECT_EQ(CFunctionProxy().Evaluate(5.0), 5.0);
    EXPECT_EQ(CFunctionsCombination().Evaluate(5.0), 5.0);
    EXPECT_EQ(CBinaryFunctionProxy().Evaluate(5.0, 8.0), 6.5);
    EXPECT_EQ(CBinaryFunctionComposition().Evaluate(5.0, 8.0), 6.5);
    EXPECT_EQ(CBinaryFunctionsCombination().Evaluate(5.0, 8.0), 6.5);

    const std::unique_ptr<IConstant> zero(CConstantsCombination().CreateDefaultChild());
    EXPECT_STREQ(zero->GetClassId(), CConstant::ClassId());
    CFunctionProxy proxy(new CConstantFunction(1.0));
    proxy.SetFunction(nullptr, true);
    EXPECT_EQ(&proxy.GetFunction(), &TFunction<Identity>::GetInstance());
}

TEST(Composites, ApplyTheirChildrenInTheirPlaces) {
    const auto divide = [] { return TBinaryFunction<Division>::GetInstance().Clone(); };
    EXPECT_EQ(CConstantComposition(new TFunction<Square>, new CConstant(-3.0)).Evaluate(), 9.0);
    EXPECT_EQ(CBinaryFunctionComposition(new TFunction<Negate>, divide()).Evaluate(6.0, 2.0), -3.0);
    EXPECT_EQ(
        CFunctionsCombination(new TFunction<Square>, new TFunction<Negate>, divide()).Evaluate(3.0),
        -3.0);
    EXPECT_EQ(CBinaryFunctionsCombination(new TBinaryFunction<Sum>, new TBinaryFunction<Difference>,
                                          divide())
                  .Evaluate(5.0, 3.0),
              4.0);
    EXPECT_EQ(CConstantsCombination(new CConstant(6.0), new CConstant(4.0), divide()).Evaluate(),
              1.5);
}

TEST(Composites, FollowALiveChildAndClonesDoNot) {
    CConstantFunction live(1.0);
    CFunctionsComposition composition;
    composition.SetCount(2);
    composition.SetFunction(0, &live, false);
    TFunctionsOperation<Product> product;
    product.SetCount(1);
    product.SetFunction(0, &composition, false);
    const CFunctionProxy proxy(&product, false);
    const std::unique_ptr<IFunction> clone(proxy.Clone());
    live.SetValue(7.0);
    EXPECT_EQ(proxy.Evaluate(0.0), 7.0);
    EXPECT_EQ(clone->Evaluate(0.0), 1.0);
}

TEST(Composites, DeleteWhatTheyOwnOnce) {
    int alive = 0;
    {
        CCountedFunction kept(alive);
        TFunctionsOperation<Sum> sum;
        sum.SetCount(3);
        sum.SetFunction(0, &kept, false);
        sum.SetFunction(1, new CCountedFunction(alive), true);
        CFunctionProxy proxy(&sum, false);
        CFunctionsCombination combination(new CCountedFunction(alive), new CFunctionProxy(proxy));
        EXPECT_EQ(alive, 5) << "the copied proxy owns a clone of both";
        sum.SetFunction(1, nullptr, false);
        EXPECT_EQ(alive, 4);
        proxy.SetFunction(&kept, false);
        sum.SetCount(0);
        EXPECT_EQ(alive, 4) << "a function that is not owned outlives its holders";
    }
    EXPECT_EQ(alive, 0);
}

} // namespace

} // namespace Lathe::Math
