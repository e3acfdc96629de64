// The plug-in as it describes itself to the host: its names, its maker and its types.
#pragma once

#include "dsp/FilterProductInfo.h"
#include "dsp/ProcessInfo.h"
#include "platform/rtas/EffectGroup.h"

#include <cstdint>
#include <memory>
#include <string>

namespace LatheExt::RTASPlugin {

// The product's name, then its short name in at most 16, 12, 8 and 4 characters, one a line.
std::string MakeProductNames(const char* name, const char* shortName);

class CRTASProcessGroup : public CEffectGroupMIDI {
public:
    using CreateFunction = std::unique_ptr<CProcess> (*)();

    CRTASProcessGroup(std::uint32_t productId, CreateFunction createProcess,
                      const Lathe::Audio::DSP::CFilterProductInfo& productInfo,
                      const Lathe::Audio::DSP::CProcessInfo& processInfo);

    // Puts a mono type beside a main type of more channels.
    void SetMonoVariant(bool add) { m_AddMonoVariant = add; }
    // Once. One type for the filter's default configuration, or those of its alternatives if it
    // declares any. The identifiers count from 0, or are made of characters.
    void DefineTypes(bool plainIdentifiers);

    std::unique_ptr<CProcess> CreateProcess(long typeIndex) override;

private:
    std::uint32_t GetCategory() const;
    void AddType(long typeId, long inputStem, long outputStem);
    void DefineMainType();
    void DefineAlternatives(bool plainIdentifiers);

    CreateFunction m_CreateProcess;
    std::uint32_t m_ProductId;
    Lathe::Audio::DSP::CFilterProductInfo m_ProductInfo;
    Lathe::Audio::DSP::CProcessInfo m_ProcessInfo;
    bool m_AddMonoVariant = false;
};

} // namespace LatheExt::RTASPlugin
