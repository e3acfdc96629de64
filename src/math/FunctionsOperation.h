// Sums, differences, products and quotients of any number of functions.
#pragma once

#include "math/FunctionsAggregate.h"
#include "math/PlainFunction.h"

namespace Lathe::Math {

// Stored trees hold these ids, so none of them changes.
inline constexpr SFunctionClassId<PlainBinaryFunction> FunctionsOperationClassIds[] = {
    {FunctionsLibrary::Sum, "{B8280134-87FF-44ae-809E-1B645160B214}"},
    {FunctionsLibrary::Difference, "{F95377FF-6828-4a2d-8CB9-2A63C47EA65D}"},
    {FunctionsLibrary::Product, "{3D5E106B-C306-476c-8817-24E755168A5C}"},
    {FunctionsLibrary::Division, "{41B8F3B2-540C-4c85-B874-FFA435C71129}"},
};

// The operation runs through the list from the left.
template <PlainBinaryFunction F>
class TFunctionsOperation : public TNFunctionsAggregate<IFunction> {
public:
    static const char* ClassId() { return FindClassId<FunctionsOperationClassIds, F>(); }

    const char* GetClassId() const override { return ClassId(); }
    // 0 for an empty list. A null first entry counts as 0, and later ones are skipped.
    double Evaluate(double x) const LATHE_REALTIME override {
        if (GetCount() == 0)
            return 0.0;
        const IFunction* first = GetFunction(0);
        double result = first ? first->Evaluate(x) : 0.0;
        for (int i = 1; i < GetCount(); ++i) {
            if (const IFunction* function = GetFunction(i))
                result = F(result, function->Evaluate(x));
        }
        return result;
    }
    TFunctionsOperation* Clone() const override { return new TFunctionsOperation(*this); }
};

} // namespace Lathe::Math
