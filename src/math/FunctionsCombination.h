// Two functions of one kind whose results a function of two variables combines.
#pragma once

#include "math/FunctionChild.h"

namespace Lathe::Math {

// I is IFunction, IBinaryFunction or IConstant. Null children become the default functions.
template <class I>
class TNFunctionsCombination : public I {
public:
    bool Serialize(Serialization::IWriteDataStream& output) const override;
    bool DeSerialize(const Serialization::IReadDataStream& input) override;

    // What takes the place of a first or second function that can't be read; the caller owns it.
    virtual I* CreateDefaultChild() const { return GetDefaultFunction<I>().Clone(); }

protected:
    TNFunctionsCombination(const I* func1, const I* func2, const IBinaryFunction* combineFunction,
                           bool owned)
        : m_Func1(func1, owned), m_Func2(func2, owned), m_CombineFunction(combineFunction, owned) {}

    // The results of both functions at the arguments, combined.
    template <class... TArguments>
    double Combine(TArguments... arguments) const LATHE_REALTIME {
        return m_CombineFunction->Evaluate(m_Func1->Evaluate(arguments...),
                                           m_Func2->Evaluate(arguments...));
    }

private:
    bool ReadChild(const Serialization::IReadDataStream& input, const char* name,
                   TFunctionChild<I>& child) const;

    TFunctionChild<I> m_Func1;
    TFunctionChild<I> m_Func2;
    TFunctionChild<IBinaryFunction> m_CombineFunction;
};

class CFunctionsCombination : public TNFunctionsCombination<IFunction> {
public:
    static const char* ClassId() { return "{FA439331-DF20-4e00-8922-1FEEE83F9B39}"; }

    explicit CFunctionsCombination(const IFunction* func1 = nullptr,
                                   const IFunction* func2 = nullptr,
                                   const IBinaryFunction* combineFunction = nullptr,
                                   bool owned = true)
        : TNFunctionsCombination(func1, func2, combineFunction, owned) {}

    const char* GetClassId() const override { return ClassId(); }
    double Evaluate(double x) const LATHE_REALTIME override { return Combine(x); }
    CFunctionsCombination* Clone() const override { return new CFunctionsCombination(*this); }
};

class CBinaryFunctionsCombination : public TNFunctionsCombination<IBinaryFunction> {
public:
    static const char* ClassId() { return "{A8FBFEF4-0FFE-41a6-83AC-D8B94B84AABF}"; }

    explicit CBinaryFunctionsCombination(const IBinaryFunction* func1 = nullptr,
                                         const IBinaryFunction* func2 = nullptr,
                                         const IBinaryFunction* combineFunction = nullptr,
                                         bool owned = true)
        : TNFunctionsCombination(func1, func2, combineFunction, owned) {}

    const char* GetClassId() const override { return ClassId(); }
    double Evaluate(double x, double y) const LATHE_REALTIME override { return Combine(x, y); }
    CBinaryFunctionsCombination* Clone() const override {
        return new CBinaryFunctionsCombination(*this);
    }
};

class CConstantsCombination : public TNFunctionsCombination<IConstant> {
public:
    static const char* ClassId() { return "{5145420A-1DCF-449e-8AC4-0006CF96D0F2}"; }

    explicit CConstantsCombination(const IConstant* func1 = nullptr,
                                   const IConstant* func2 = nullptr,
                                   const IBinaryFunction* combineFunction = nullptr,
                                   bool owned = true)
        : TNFunctionsCombination(func1, func2, combineFunction, owned) {}

    const char* GetClassId() const override { return ClassId(); }
    double Evaluate() const LATHE_REALTIME override { return Combine(); }
    CConstantsCombination* Clone() const override { return new CConstantsCombination(*this); }
};

} // namespace Lathe::Math
