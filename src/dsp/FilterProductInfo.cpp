#include "dsp/FilterProductInfo.h"

namespace Lathe::Audio::DSP {

CFilterProductInfo::CFilterProductInfo(const char* company, const char* name, const char* version,
                                       const char* copyright, const char* description, int category,
                                       const char* shortName)
    : m_Company(company),
      m_Name(name),
      m_ShortName(shortName),
      m_Version(version),
      m_Copyright(copyright),
      m_Description(description),
      m_Category(category) {}

void CFilterProductInfo::SetCategory(int category) {
    if (category == m_Category)
        return;
    m_Category = category;
    m_Changed.Notify();
}

void CFilterProductInfo::Assign(const IConstFilterProductInfo& other) {
    SetDescription(other.GetDescription());
    SetCopyright(other.GetCopyright());
    SetCompany(other.GetCompany());
    SetName(other.GetName());
    SetShortName(other.GetShortName());
    SetVersion(other.GetVersion());
    SetCategory(other.GetCategory());
}

void CFilterProductInfo::Set(Core::CCharString& field, const char* value) {
    if (field == value)
        return;
    field = value;
    m_Changed.Notify();
}

} // namespace Lathe::Audio::DSP
