// What the instances of one process share: the paths and the settings.
#pragma once

#include "core/threads/CriticalSection.h"
#include "plugin/interfaces/StaticSettings.h"
#include "plugin/settings/AudioPluginDefaultSettings.h"

namespace Lathe::Audio::Plugin {

class IConstPackageInfo;

// TPaths is built from the package information, and knows the install folder besides what
// IAudioPluginDataPath does.
template <class TPaths>
class TAudioPluginConfig : public IStaticSettings {
public:
    // The package may be null; it is not kept.
    explicit TAudioPluginConfig(const IConstPackageInfo* package)
        : m_Paths(package), m_DefaultSettings(m_Paths, m_Paths.GetInstallFolder()) {}

    // Any thread; returns when the settings are ready, whoever called first.
    void Init(const DSP::IConstParamInfos& inputs, const DSP::IConstParamInfos& outputs) override {
        const Core::CAutoLock lock(m_InitLock);
        if (m_Loaded)
            return;
        m_DefaultSettings.Init(inputs, outputs);
        m_DefaultSettings.Load();
        m_Loaded = true;
    }
    IAudioPluginDefaultSettings& GetDefaultSettings() override { return m_DefaultSettings; }
    const IAudioPluginDataPath& GetDataPath() const override { return m_Paths; }

private:
    bool m_Loaded = false;
    TPaths m_Paths;
    CAudioPluginDefaultSettings m_DefaultSettings;
    // Held for the whole of Init.
    System::CCriticalSection m_InitLock;
};

// Built at the first request, from that request's package, which may be null; destroyed when the
// process ends or the module is unloaded. Any thread.
IStaticSettings& GetStaticSettings(const IConstPackageInfo* package);

} // namespace Lathe::Audio::Plugin
