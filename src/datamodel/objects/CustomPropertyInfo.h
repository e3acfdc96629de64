// The description of a value whose type the framework does not know.
#pragma once

#include "datamodel/objects/DynamicPropertyValue.h"
#include "datamodel/objects/ObjectInfo.h"

#include <memory>

namespace Lathe::DataModel::Objects {

class IConstCustomPropertyInfo : public virtual IConstObjectInfo {
public:
    // The info's own; can be null.
    virtual const IDynamicPropertyValue* GetDefaultValue() const = 0;
};

class CCustomPropertyInfo : public CObjectInfo, public virtual IConstCustomPropertyInfo {
public:
    // Takes the default, which can be null.
    explicit CCustomPropertyInfo(const char* name = nullptr, const char* description = nullptr,
                                 const IDynamicPropertyValue* defaultValue = nullptr)
        : CObjectInfo(name, description), m_DefaultValue(defaultValue) {}
    CCustomPropertyInfo(const CCustomPropertyInfo& other)
        : CObjectInfo(other), m_DefaultValue(CloneDefault(other)) {}
    CCustomPropertyInfo& operator=(const CCustomPropertyInfo& other) {
        Copy(other);
        return *this;
    }
    CCustomPropertyInfo& operator=(const IConstCustomPropertyInfo& other) {
        Copy(other);
        return *this;
    }

    const IDynamicPropertyValue* GetDefaultValue() const override { return m_DefaultValue.get(); }
    using CObjectInfo::Copy;
    // Clones the other's default as well, and fires once.
    void Copy(const IConstCustomPropertyInfo& other) {
        CopyTexts(other);
        m_DefaultValue.reset(CloneDefault(other));
        NotifyChanged();
    }

private:
    static const IDynamicPropertyValue* CloneDefault(const IConstCustomPropertyInfo& info) {
        const IDynamicPropertyValue* value = info.GetDefaultValue();
        return value ? value->Clone() : nullptr;
    }

    std::unique_ptr<const IDynamicPropertyValue> m_DefaultValue;
};

} // namespace Lathe::DataModel::Objects
