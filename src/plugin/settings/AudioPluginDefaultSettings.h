// The settings of all instances of the process, as the preferences file keeps them.
#pragma once

#include "core/threads/CriticalSection.h"
#include "core/threads/MTEventProvider.h"
#include "dsp/FilterInfos.h"
#include "plugin/interfaces/AudioPluginDefaultSettings.h"
#include "plugin/midi/MIDICCSettings.h"
#include "serialization/Serializable.h"

#include <atomic>
#include <string>

namespace Lathe::Audio::Plugin {

class IAudioPluginDataPath;

// A rate that is no finite number above zero is never taken, whether set or read. Handlers of a
// list's event run under the lock of that list, and so neither touch the other one nor save.
class CAudioPluginDefaultSettings : public Serialization::ISerializable,
                                    public IAudioPluginDefaultSettings {
public:
    // The paths stay the caller's. The skin is stored relative to the skin folder if it is in it.
    CAudioPluginDefaultSettings(const IAudioPluginDataPath& paths, const char* skinFolder);

    // Copies the descriptions and gives the lists one setting for each, with factory values. Before
    // any other thread knows this object.
    void Init(const DSP::IConstParamInfos& inputs, const DSP::IConstParamInfos& outputs);

    void Load() override;
    // Writes nothing where there is no preferences file; failures aren't told.
    void Save() override;
    void SetSkinFile(const char* path) override;
    void SetInputCCSettings(const IConstMIDICCSettings& settings) override;
    void SetOutputCCSettings(const IConstMIDICCSettings& settings) override;
    void SetRefreshRate(double rate) override;
    char* GetSkinFile() const override;
    void GetInputCCSettings(IMIDICCSettings& settings) const override;
    void GetOutputCCSettings(IMIDICCSettings& settings) const override;
    double GetRefreshRate() const override;
    const char* GetFactorySkinFile() const override;
    void GetFactoryInputCCSettings(IMIDICCSettings& settings) const override;
    void GetFactoryOutputCCSettings(IMIDICCSettings& settings) const override;
    double GetFactoryRefreshRate() const override;
    Core::IEventProvider& GetInputCCSettingsChangedEvent() const override;
    Core::IEventProvider& GetOutputCCSettingsChangedEvent() const override;
    Core::IEventProvider& GetRefreshRateChangedEvent() const override;
    void SetFactoryRefreshRate(double rate) override;

    bool Serialize(Serialization::IWriteDataStream& output) const override;
    // Raises nothing. What can't be read stays, but for the refresh rate, which then is the factory
    // one. The lists keep their sizes.
    bool DeSerialize(const Serialization::IReadDataStream& input) override;

private:
    void ResetToFactory();
    bool ReadSkinFile(const Serialization::IReadDataStream& input);
    bool ReadRefreshRate(const Serialization::IReadDataStream& input, int version);

    CInputMIDICCSettings m_InputCCSettings;
    CMIDICCSettings m_OutputCCSettings;
    std::string m_SkinFile;
    const IAudioPluginDataPath* m_Paths;
    std::string m_SkinFolder;
    std::atomic<double> m_RefreshRate;
    std::atomic<double> m_FactoryRefreshRate;
    DSP::CParamInfos m_InputParamInfos;
    DSP::CParamInfos m_OutputParamInfos;

    // Each is held for a whole copy of what it is named for.
    mutable System::CCriticalSection m_InputCCLock;
    mutable System::CCriticalSection m_OutputCCLock;
    mutable System::CCriticalSection m_SkinLock;

    mutable System::CMTEventProvider m_InputCCSettingsChanged;
    mutable System::CMTEventProvider m_OutputCCSettingsChanged;
    mutable System::CMTEventProvider m_RefreshRateChanged;
};

} // namespace Lathe::Audio::Plugin
