// A function of one variable applied to the result of a constant or of a function of two.
#pragma once

#include "math/FunctionChild.h"

namespace Lathe::Math {

// Null children become the default functions.
class CConstantComposition : public IConstant {
public:
    static const char* ClassId() { return "{83F37E7C-0ABF-4083-9F35-DD6310CC0951}"; }

    explicit CConstantComposition(const IFunction* function = nullptr,
                                  const IConstant* constFunction = nullptr, bool owned = true)
        : m_Function(function, owned), m_ConstFunction(constFunction, owned) {}

    bool Serialize(Serialization::IWriteDataStream& output) const override;
    const char* GetClassId() const override { return ClassId(); }
    double Evaluate() const LATHE_REALTIME override {
        return m_Function->Evaluate(m_ConstFunction->Evaluate());
    }
    CConstantComposition* Clone() const override { return new CConstantComposition(*this); }
    bool DeSerialize(const Serialization::IReadDataStream& input) override;

private:
    TFunctionChild<IFunction> m_Function;
    TFunctionChild<IConstant> m_ConstFunction;
};

// Null children become the default functions.
class CBinaryFunctionComposition : public IBinaryFunction {
public:
    static const char* ClassId() { return "{D9BEEC6F-C530-46c7-A19C-FF009E5E2C26}"; }

    explicit CBinaryFunctionComposition(const IFunction* function = nullptr,
                                        const IBinaryFunction* binaryFunction = nullptr,
                                        bool owned = true)
        : m_Function(function, owned), m_BinaryFunction(binaryFunction, owned) {}

    bool Serialize(Serialization::IWriteDataStream& output) const override;
    const char* GetClassId() const override { return ClassId(); }
    double Evaluate(double x, double y) const LATHE_REALTIME override {
        return m_Function->Evaluate(m_BinaryFunction->Evaluate(x, y));
    }
    CBinaryFunctionComposition* Clone() const override {
        return new CBinaryFunctionComposition(*this);
    }
    bool DeSerialize(const Serialization::IReadDataStream& input) override;

private:
    TFunctionChild<IFunction> m_Function;
    TFunctionChild<IBinaryFunction> m_BinaryFunction;
};

} // namespace Lathe::Math
