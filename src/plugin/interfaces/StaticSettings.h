// What there is once per process, whatever the number of instances.
#pragma once

#include "dsp/Filter.h"

namespace Lathe::Audio::Plugin {

class IAudioPluginDataPath;
class IAudioPluginDefaultSettings;

class IStaticSettings {
public:
    // Gives the settings their parameters and loads them; only the first call acts.
    virtual void Init(const DSP::IConstParamInfos& inputs,
                      const DSP::IConstParamInfos& outputs) = 0;
    virtual IAudioPluginDefaultSettings& GetDefaultSettings() = 0;
    virtual const IAudioPluginDataPath& GetDataPath() const = 0;
    virtual ~IStaticSettings() = default;
};

} // namespace Lathe::Audio::Plugin
