// The settings that all instances of the process share.
#pragma once

#include "plugin/interfaces/MIDICCSetting.h"

namespace Lathe::Core {
class IEventProvider;
}

namespace Lathe::Audio::Plugin {

// Any thread may call. Events run on the thread of the setter; those of the lists under the list's
// lock.
class IAudioPluginDefaultSettings {
public:
    // Factory values where the file is missing or broken.
    virtual void Load() = 0;
    virtual void Save() = 0;
    // An absolute path; raises nothing.
    virtual void SetSkinFile(const char* path) = 0;
    // Copies as many settings as both lists have.
    virtual void SetInputCCSettings(const IConstMIDICCSettings& settings) = 0;
    virtual void SetOutputCCSettings(const IConstMIDICCSettings& settings) = 0;
    // In hertz, of the outputs.
    virtual void SetRefreshRate(double rate) = 0;
    // A new array, which the caller deletes[].
    virtual char* GetSkinFile() const = 0;
    // These and the factory ones fill as many settings as both lists have.
    virtual void GetInputCCSettings(IMIDICCSettings& settings) const = 0;
    virtual void GetOutputCCSettings(IMIDICCSettings& settings) const = 0;
    virtual double GetRefreshRate() const = 0;
    virtual const char* GetFactorySkinFile() const = 0;
    virtual void GetFactoryInputCCSettings(IMIDICCSettings& settings) const = 0;
    virtual void GetFactoryOutputCCSettings(IMIDICCSettings& settings) const = 0;
    virtual double GetFactoryRefreshRate() const = 0;
    virtual Core::IEventProvider& GetInputCCSettingsChangedEvent() const = 0;
    virtual Core::IEventProvider& GetOutputCCSettingsChangedEvent() const = 0;
    virtual Core::IEventProvider& GetRefreshRateChangedEvent() const = 0;
    virtual ~IAudioPluginDefaultSettings() = default;
    // In hertz; before Load.
    virtual void SetFactoryRefreshRate(double rate) = 0;
};

} // namespace Lathe::Audio::Plugin
