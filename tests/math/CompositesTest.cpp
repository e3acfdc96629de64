// Proves what composite functions compute from their children, what stands in for missing ones,
// and that clones own all that they need. The address sanitizer watches what is deleted.

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

TEST(FunctionsComposition, PipesThroughTheListAndSkipsNull) {
    CFunctionsComposition composition;
    EXPECT_EQ(composition.Evaluate(3.0), 3.0);
    composition.SetCount(3);
    EXPECT_EQ(composition.Evaluate(3.0), 3.0);
    composition.SetFunction(0, &TFunction<Negate>::GetInstance(), false);
    composition.SetFunction(2, &TFunction<Square>::GetInstance(), false);
    EXPECT_EQ(composition.Evaluate(3.0), 9.0) << "the first entry comes first";
    composition.SetCount(1);
    composition.SetCount(2);
    EXPECT_EQ(composition.GetFunction(1), nullptr);
    EXPECT_EQ(composition.Evaluate(3.0), -3.0);
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
    };
    for (const auto& test : cases) {
        EXPECT_EQ(Operate<Sum>(test.m_Values), test.m_Sum);
        EXPECT_EQ(Operate<Difference>(test.m_Values), test.m_Difference);
        EXPECT_EQ(Operate<Product>(test.m_Values), test.m_Product);
        EXPECT_EQ(Operate<Division>(test.m_Values), test.m_Division);
    }
}

TEST(Composites, ApplyTheirChildrenInTheirPlaces) {
    const auto divide = [] { return new TBinaryFunction<Division>; };
    const CConstantComposition constant(new TFunction<Square>, new CConstant(-3.0));
    EXPECT_EQ(constant.Evaluate(), 9.0);
    const CBinaryFunctionComposition binary(new TFunction<Negate>, divide());
    EXPECT_EQ(binary.Evaluate(6.0, 2.0), -3.0);
    const CFunctionsCombination functions(new TFunction<Square>, new TFunction<Negate>, divide());
    EXPECT_EQ(functions.Evaluate(3.0), -3.0);
    const CBinaryFunctionsCombination binaries(new TBinaryFunction<Sum>,
                                               new TBinaryFunction<Difference>, divide());
    EXPECT_EQ(binaries.Evaluate(5.0, 3.0), 4.0);
    const CConstantsCombination constants(new CConstant(6.0), new CConstant(4.0), divide());
    EXPECT_EQ(constants.Evaluate(), 1.5);
    EXPECT_EQ(std::unique_ptr<IConstant>(constants.CreateDefaultChild())->Evaluate(), 0.0);
}

TEST(Composites, FollowALiveChildAndClonesDoNot) {
    CConstantFunction live(1.0);
    std::unique_ptr<IFunction> clone;
    {
        CFunctionsComposition composition;
        composition.SetCount(1);
        composition.SetFunction(0, &live, false);
        composition.SetCount(50);
        TFunctionsOperation<Product> product;
        product.SetCount(1);
        product.SetFunction(0, &composition, false);
        CFunctionProxy proxy(&product, false);
        clone.reset(proxy.Clone());
        live.SetValue(7.0);
        EXPECT_EQ(proxy.Evaluate(0.0), 7.0);
        proxy.SetFunction(new CConstantFunction(5.0), true);
        EXPECT_EQ(proxy.Evaluate(0.0), 5.0);
        proxy.SetFunction(nullptr, true);
        EXPECT_EQ(&proxy.GetFunction(), &TFunction<Identity>::GetInstance());
    }
    EXPECT_EQ(clone->Evaluate(0.0), 1.0);
}

} // namespace

} // namespace Lathe::Math
