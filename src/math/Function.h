// Functions of one variable, of two, and of none: immutable in use, cloneable, and stored by class
// id. A tree that nobody modifies can be evaluated on any number of threads.
#pragma once

#include "core/Realtime.h"
#include "serialization/Serializable.h"

namespace Lathe::Math {

class IFunction : public virtual Serialization::ITypeSerializable {
public:
    static const char* InterfaceId() { return "{EC7456EE-AA8C-421c-B49E-3E5CA6519665}"; }

    // x in the units of the caller's X axis; nothing is checked.
    virtual double Evaluate(double x) const LATHE_REALTIME = 0;
    // A deep copy, which the caller owns.
    virtual IFunction* Clone() const = 0;
};

class IBinaryFunction : public virtual Serialization::ITypeSerializable {
public:
    static const char* InterfaceId() { return "{C3FE0CFA-7AAC-413b-B803-A9B885B86EE1}"; }

    virtual double Evaluate(double x, double y) const LATHE_REALTIME = 0;
    // A deep copy, which the caller owns.
    virtual IBinaryFunction* Clone() const = 0;
};

class IConstant : public virtual Serialization::ITypeSerializable {
public:
    static const char* InterfaceId() { return "{EAD44198-7EE3-4880-BC12-476597EF40AA}"; }

    virtual double Evaluate() const LATHE_REALTIME = 0;
    // A deep copy, which the caller owns.
    virtual IConstant* Clone() const = 0;
};

} // namespace Lathe::Math
