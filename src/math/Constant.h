// Functions that are one number, whatever their arguments.
#pragma once

#include "math/Function.h"

namespace Lathe::Math {

// What the three have in common: the number and its stored form.
class CConstantValue : public virtual Serialization::ISerializable {
public:
    explicit CConstantValue(double value) : m_Value(value) {}

    bool Serialize(Serialization::IWriteDataStream& output) const override;
    bool DeSerialize(const Serialization::IReadDataStream& input) override;

    double GetValue() const LATHE_REALTIME { return m_Value; }
    // Not while another thread evaluates the object.
    void SetValue(double value) LATHE_REALTIME { m_Value = value; }

private:
    double m_Value;
};

class CConstant : public CConstantValue, public IConstant {
public:
    static const char* ClassId() { return "{8794ACBA-1CC8-4ab8-902F-3A2C352E66CE}"; }

    explicit CConstant(double value = 0.0) : CConstantValue(value) {}

    const char* GetClassId() const override { return ClassId(); }
    double Evaluate() const LATHE_REALTIME override { return GetValue(); }
    CConstant* Clone() const override { return new CConstant(*this); }
};

class CConstantFunction : public CConstantValue, public IFunction {
public:
    static const char* ClassId() { return "{72E2E475-5248-41cb-BBE2-9E1F1E4BAF30}"; }

    explicit CConstantFunction(double value = 0.0) : CConstantValue(value) {}

    const char* GetClassId() const override { return ClassId(); }
    double Evaluate(double) const LATHE_REALTIME override { return GetValue(); }
    CConstantFunction* Clone() const override { return new CConstantFunction(*this); }
};

class CConstantBinaryFunction : public CConstantValue, public IBinaryFunction {
public:
    static const char* ClassId() { return "{D21815E0-885C-4996-B493-90E08E953055}"; }

    explicit CConstantBinaryFunction(double value = 0.0) : CConstantValue(value) {}

    const char* GetClassId() const override { return ClassId(); }
    double Evaluate(double, double) const LATHE_REALTIME override { return GetValue(); }
    CConstantBinaryFunction* Clone() const override { return new CConstantBinaryFunction(*this); }
};

} // namespace Lathe::Math
