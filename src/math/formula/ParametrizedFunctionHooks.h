// A compiled formula, with the nodes of its tree that stand for its free names.
#pragma once

#include "core/containers/NameHash.h"
#include "core/ownership/Ownership.h"
#include "math/FunctionProxy.h"
#include "math/ParametrizedFunction.h"
#include "math/formula/FormulaKind.h"

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Lathe::Math {

template <class I>
class TParametrizedFunction : public TIParametrizedFunction<I> {
public:
    using typename TIParametrizedFunction<I>::NameIterator;
    using Number = typename TFormulaKind<I>::Number;

    I* GetFunction() override { return m_Function.Get(); }
    bool SetParam(const char* name, double value) override;
    // Of the uses of the name, the first owns a clone, and the others share it.
    bool SetCurveParam(const char* name, const IFunction& function) override;
    bool SetSurfaceParam(const char* name, const IBinaryFunction& function) override;
    NameIterator* GetParamNames() const override;
    NameIterator* GetCurveParamNames() const override;
    NameIterator* GetSurfaceParamNames() const override;
    // The hooks that were added belong to the first root, and are forgotten with it.
    void SetFunction(I* function) override;

    // Each adds one more use of the name, a node of the tree that becomes the root.
    void AddParam(std::string_view name, Number& hook);
    void AddCurveParam(std::string_view name, CFunctionProxy& hook);
    void AddSurfaceParam(std::string_view name, CBinaryFunctionProxy& hook);

private:
    template <class T>
    using HookMap =
        std::unordered_map<std::string, std::vector<T*>, Containers::CNameHash, std::equal_to<>>;

    HookMap<Number> m_Params;
    HookMap<CFunctionProxy> m_CurveParams;
    HookMap<CBinaryFunctionProxy> m_SurfaceParams;
    Core::TOwnership<I> m_Function;
};

} // namespace Lathe::Math
