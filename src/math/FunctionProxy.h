// Functions that stand for another one, which can be replaced at run time.
#pragma once

#include "math/FunctionChild.h"

namespace Lathe::Math {

// What both have in common: the function stood for, and its stored form.
template <class I>
class TFunctionProxyBase : public I {
public:
    bool Serialize(Serialization::IWriteDataStream& output) const override {
        return m_Function.Serialize(output, "value");
    }
    bool DeSerialize(const Serialization::IReadDataStream& input) override {
        return m_Function.DeSerialize(input, "value");
    }

    const I& GetFunction() const LATHE_REALTIME { return m_Function.Get(); }
    // An owned function is deleted by this object, one that is not owned outlives it; null gives
    // the default function. Not while another thread evaluates the object.
    void SetFunction(const I* function, bool owned) { m_Function.Set(function, owned); }

protected:
    TFunctionProxyBase(const I* function, bool owned) : m_Function(function, owned) {}

private:
    TFunctionChild<I> m_Function;
};

// The identity until it is told otherwise.
class CFunctionProxy : public TFunctionProxyBase<IFunction> {
public:
    static const char* ClassId() { return "{709DCE8B-8C2B-44c4-AF00-EF02D7F53121}"; }

    explicit CFunctionProxy(const IFunction* function = nullptr, bool owned = true)
        : TFunctionProxyBase(function, owned) {}

    const char* GetClassId() const override { return ClassId(); }
    double Evaluate(double x) const LATHE_REALTIME override { return GetFunction().Evaluate(x); }
    CFunctionProxy* Clone() const override { return new CFunctionProxy(*this); }
};

// The average of both arguments until it is told otherwise.
class CBinaryFunctionProxy : public TFunctionProxyBase<IBinaryFunction> {
public:
    static const char* ClassId() { return "{3F409A8F-20F5-4531-80DA-99441215C125}"; }

    explicit CBinaryFunctionProxy(const IBinaryFunction* function = nullptr, bool owned = true)
        : TFunctionProxyBase(function, owned) {}

    const char* GetClassId() const override { return ClassId(); }
    double Evaluate(double x, double y) const LATHE_REALTIME override {
        return GetFunction().Evaluate(x, y);
    }
    CBinaryFunctionProxy* Clone() const override { return new CBinaryFunctionProxy(*this); }
};

} // namespace Lathe::Math
