// The description that every named thing has: a name, a description and an event.
#pragma once

#include "core/events/EventProvider.h"
#include "core/text/CharString.h"

namespace Lathe::DataModel {

class IConstObjectInfo {
public:
    virtual const char* GetName() const = 0;
    virtual const char* GetDescription() const = 0;
    // Fires after any change of the info.
    virtual Core::IEventProvider& GetChangedEvent() const = 0;
    virtual ~IConstObjectInfo() = default;
};

// Texts are copied. Each of the operations fires the changed event, whatever the old value was.
class IObjectInfo : public virtual IConstObjectInfo {
public:
    virtual void SetName(const char* name) = 0;
    virtual void SetDescription(const char* description) = 0;
    virtual void Copy(const IConstObjectInfo& other) = 0;

    IObjectInfo() = default;
    IObjectInfo(const IObjectInfo&) = default;
    IObjectInfo& operator=(const IObjectInfo& other) {
        Copy(other);
        return *this;
    }
    IObjectInfo& operator=(const IConstObjectInfo& other) {
        Copy(other);
        return *this;
    }
};

// Null texts read back as "".
class CObjectInfo : public virtual IObjectInfo {
public:
    explicit CObjectInfo(const char* name = nullptr, const char* description = nullptr)
        : m_Name(name), m_Description(description) {}
    CObjectInfo(const CObjectInfo& other) = default;
    CObjectInfo& operator=(const CObjectInfo& other) {
        Copy(other);
        return *this;
    }
    using IObjectInfo::operator=;

    const char* GetName() const override { return m_Name.GetText(); }
    const char* GetDescription() const override { return m_Description.GetText(); }
    Core::IEventProvider& GetChangedEvent() const override { return m_Changed; }
    void SetName(const char* name) override;
    void SetDescription(const char* description) override;
    void Copy(const IConstObjectInfo& other) override;

protected:
    // Copy without the event, for subclasses that have more to copy before they fire it.
    void CopyTexts(const IConstObjectInfo& other);
    void NotifyChanged() { m_Changed.Notify(); }

private:
    mutable Core::CEventProvider m_Changed;
    Core::CCharString m_Name;
    Core::CCharString m_Description;
};

} // namespace Lathe::DataModel

namespace Lathe::DataModel::Objects {

using DataModel::CObjectInfo;
using DataModel::IConstObjectInfo;
using DataModel::IObjectInfo;

} // namespace Lathe::DataModel::Objects
