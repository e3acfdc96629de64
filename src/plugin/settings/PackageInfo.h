// A product as three stored texts.
#pragma once

#include "core/text/CharString.h"
#include "plugin/interfaces/PackageInfo.h"

namespace Lathe::Audio::Plugin {

class CPackageInfo : public IConstPackageInfo {
public:
    // Null is stored as the empty text.
    CPackageInfo(const char* maker, const char* product, const char* variant)
        : m_Maker(maker), m_Product(product), m_Variant(variant) {}

    const char* GetMaker() const override { return m_Maker.GetText(); }
    const char* GetProduct() const override { return m_Product.GetText(); }
    const char* GetVariant() const override { return m_Variant.GetText(); }

private:
    Core::CCharString m_Maker;
    Core::CCharString m_Product;
    Core::CCharString m_Variant;
};

} // namespace Lathe::Audio::Plugin
