// Values of types that the framework does not know: it stores, copies and passes them on.
#pragma once

#include "core/runtime/DynamicObject.h"
#include "serialization/Serializable.h"

namespace Lathe::DataModel::Objects {

class IDynamicPropertyValue : public virtual Runtime::IDynamicObject,
                              public virtual Serialization::ITypeSerializable {
public:
    static const char* InterfaceId() { return "{DED55871-A4C3-4ccf-856E-9EBFB0637FD9}"; }

    // A deep copy, which the caller owns.
    virtual IDynamicPropertyValue* Clone() const = 0;
    // True when the other object answers to this object's class id.
    virtual bool IsSameType(const IDynamicPropertyValue& other) const = 0;
};

// No value at all: it stores nothing, and both its storing and its loading succeed.
class CEmptyDynamicPropertyValue : public IDynamicPropertyValue {
public:
    static const char* ClassId() { return "{161949FE-1A10-44e5-80F6-0B946CA65F5B}"; }

    const void* QueryInterface(const char* id) const override;
    void* QueryInterface(const char* id) override;
    const char* GetClassId() const override { return ClassId(); }
    bool Serialize(Serialization::IWriteDataStream&) const override { return true; }
    bool DeSerialize(const Serialization::IReadDataStream&) override { return true; }
    CEmptyDynamicPropertyValue* Clone() const override;
    bool IsSameType(const IDynamicPropertyValue& other) const override;
};

} // namespace Lathe::DataModel::Objects
