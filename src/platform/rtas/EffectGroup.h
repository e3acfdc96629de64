// What a plug-in module tells the host of itself: its names, and the types of instance that it
// makes.
#pragma once

#include "core/text/CharString.h"

#include <cstdint>
#include <memory>
#include <vector>

class CProcess;

struct SStemFormats {
    long m_Input;
    long m_Output;
};

class CProcessType {
public:
    CProcessType(long typeId, std::uint32_t productId, std::uint32_t category)
        : m_TypeId(typeId), m_ProductId(productId), m_Category(category) {}
    virtual ~CProcessType() = default;

    long GetTypeId() const { return m_TypeId; }
    std::uint32_t GetProductId() const { return m_ProductId; }
    std::uint32_t GetCategory() const { return m_Category; }

private:
    long m_TypeId;
    std::uint32_t m_ProductId;
    std::uint32_t m_Category;
};

class CEffectType : public CProcessType {
public:
    using CProcessType::CProcessType;

    void DefineStemFormats(long input, long output, long options);
    const std::vector<SStemFormats>& GetStemFormats() const { return m_StemFormats; }

private:
    std::vector<SStemFormats> m_StemFormats;
};

class CEffectTypeRTAS : public CEffectType {
public:
    using CEffectType::CEffectType;
};

class CProcessGroup {
public:
    virtual ~CProcessGroup() = default;

    // The one function that the product gives the library.
    static std::unique_ptr<CProcessGroup> CreateProcessGroup();

    // The group's first operation.
    virtual void Initialize() {}
    // A new instance of the type at that index.
    virtual std::unique_ptr<CProcess> CreateProcess(long typeIndex) = 0;
};

class CEffectGroup : public CProcessGroup {
public:
    void SetManufacturer(const char* name, std::uint32_t code);
    // The name and its shorter forms, one a line; only the name is kept where forms aren't used.
    void SetProductName(const char* names, bool usesForms);
    void AddEffectType(std::unique_ptr<CEffectType> type);

    const char* GetManufacturerName() const { return m_ManufacturerName.GetText(); }
    std::uint32_t GetManufacturerCode() const { return m_ManufacturerCode; }
    const char* GetProductNames() const { return m_ProductNames.GetText(); }
    const std::vector<std::unique_ptr<CEffectType>>& GetEffectTypes() const { return m_Types; }

private:
    Lathe::Core::CCharString m_ManufacturerName;
    std::uint32_t m_ManufacturerCode = 0;
    Lathe::Core::CCharString m_ProductNames;
    std::vector<std::unique_ptr<CEffectType>> m_Types;
};

class CEffectGroupMIDI : public CEffectGroup {};
