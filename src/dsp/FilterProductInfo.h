// Who a filter is: its product names, version and category.
#pragma once

#include "core/events/EventProvider.h"
#include "core/text/CharString.h"
#include "datamodel/objects/ProductInfo.h"

namespace Lathe::Audio::DSP {

class IConstFilterProductInfo : public virtual DataModel::Objects::IConstProductInfo {
public:
    virtual const char* GetCompany() const = 0;
    // The name when no short one was given.
    virtual const char* GetShortName() const = 0;
    virtual const char* GetVersion() const = 0;
    virtual const char* GetCopyright() const = 0;
    virtual int GetCategory() const = 0;
};

// Each setter notifies only on a change.
class CFilterProductInfo : public IConstFilterProductInfo {
public:
    CFilterProductInfo(const char* company, const char* name, const char* version,
                       const char* copyright, const char* description, int category,
                       const char* shortName);

    const char* GetName() const override { return m_Name.GetText(); }
    const char* GetDescription() const override { return m_Description.GetText(); }
    Core::IEventProvider& GetChangedEvent() const override { return m_Changed; }
    const char* GetCompany() const override { return m_Company.GetText(); }
    const char* GetShortName() const override {
        return m_ShortName.IsEmpty() ? m_Name.GetText() : m_ShortName.GetText();
    }
    const char* GetVersion() const override { return m_Version.GetText(); }
    const char* GetCopyright() const override { return m_Copyright.GetText(); }
    int GetCategory() const override { return m_Category; }

    void SetCompany(const char* company) { Set(m_Company, company); }
    void SetName(const char* name) { Set(m_Name, name); }
    void SetShortName(const char* shortName) { Set(m_ShortName, shortName); }
    void SetVersion(const char* version) { Set(m_Version, version); }
    void SetCopyright(const char* copyright) { Set(m_Copyright, copyright); }
    void SetDescription(const char* description) { Set(m_Description, description); }
    void SetCategory(int category);

    // Each value that differs notifies on its own.
    void Assign(const IConstFilterProductInfo& other);

private:
    void Set(Core::CCharString& field, const char* value);

    Core::CCharString m_Company;
    Core::CCharString m_Name;
    Core::CCharString m_ShortName;
    Core::CCharString m_Version;
    Core::CCharString m_Copyright;
    Core::CCharString m_Description;
    int m_Category;
    mutable Core::CEventProvider m_Changed;
};

} // namespace Lathe::Audio::DSP
