// The description of a text value.
#pragma once

#include "datamodel/objects/ObjectInfo.h"

namespace Lathe::DataModel::Objects {

class IConstStringInfo : public virtual IConstObjectInfo {
public:
    // Never null; valid until the info changes.
    virtual const char* GetDefaultValue() const = 0;
};

class CStringInfo : public CObjectInfo, public virtual IConstStringInfo {
public:
    explicit CStringInfo(const char* name = nullptr, const char* description = nullptr,
                         const char* defaultValue = nullptr)
        : CObjectInfo(name, description), m_DefaultValue(defaultValue) {}
    CStringInfo(const CStringInfo& other) = default;
    CStringInfo& operator=(const CStringInfo& other) {
        Copy(other);
        return *this;
    }
    CStringInfo& operator=(const IConstStringInfo& other) {
        Copy(other);
        return *this;
    }

    const char* GetDefaultValue() const override { return m_DefaultValue.GetText(); }
    // Fires the changed event always.
    void SetDefaultValue(const char* defaultValue) {
        m_DefaultValue = defaultValue;
        NotifyChanged();
    }
    using CObjectInfo::Copy;
    // Copies the default as well, and fires once.
    void Copy(const IConstStringInfo& other) {
        CopyTexts(other);
        m_DefaultValue = other.GetDefaultValue();
        NotifyChanged();
    }

private:
    Core::CCharString m_DefaultValue;
};

} // namespace Lathe::DataModel::Objects
