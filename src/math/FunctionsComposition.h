// A chain of functions, each applied to the result of the one before.
#pragma once

#include "math/FunctionsAggregate.h"

namespace Lathe::Math {

class CFunctionsComposition : public TNFunctionsAggregate<IFunction> {
public:
    static const char* ClassId() { return "{C6B18AB7-10C4-46c3-975E-91255060ECA9}"; }

    const char* GetClassId() const override { return ClassId(); }
    // Skips null entries; an empty list gives x.
    double Evaluate(double x) const LATHE_REALTIME override {
        for (int i = 0; i < GetCount(); ++i) {
            if (const IFunction* function = GetFunction(i))
                x = function->Evaluate(x);
        }
        return x;
    }
    CFunctionsComposition* Clone() const override { return new CFunctionsComposition(*this); }
};

} // namespace Lathe::Math
