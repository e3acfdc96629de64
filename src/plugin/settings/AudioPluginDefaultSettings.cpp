#include "plugin/settings/AudioPluginDefaultSettings.h"

#include "core/Differs.h"
#include "core/text/RelativePath.h"
#include "plugin/interfaces/AudioPluginDataPath.h"
#include "serialization/CollectionSerializers.h"
#include "serialization/StreamValue.h"
#include "serialization/XmlDataObject.h"

#include <cmath>

namespace Lathe::Audio::Plugin {

namespace {

using Core::CAutoLock;
using Serialization::IReadDataStream;
using Serialization::IWriteDataStream;
using Serialization::ReadValue;
using Serialization::WriteValue;

constexpr int Version = 3;
// Before it, files held a refresh rate that no longer counts.
constexpr int FirstVersionWithRefreshRate = 3;

// In hertz.
constexpr double DefaultRefreshRate = 50.0;

constexpr const char* SettingBaseName = "item";

bool IsRefreshRate(double rate) {
    return std::isfinite(rate) && rate > 0.0;
}

void CopyInfos(const DSP::IConstParamInfos& source, DSP::CParamInfos& destination) {
    destination.SetCount(source.GetCount());
    for (int i = 0; i < source.GetCount(); ++i)
        destination[i] = source.GetElement(i);
}

template <class TSettings>
bool WriteSettings(IWriteDataStream& output, const char* name, const TSettings& settings,
                   Core::ILock& settingsLock) {
    const CAutoLock lock(settingsLock);
    return output.WriteObject(name, Serialization::TVectorSerializer(settings, SettingBaseName));
}

template <class TSettings>
bool ReadSettings(const IReadDataStream& input, const char* name, TSettings& settings,
                  Core::ILock& settingsLock) {
    const CAutoLock lock(settingsLock);
    Serialization::TVectorDeSerializer reader(settings, SettingBaseName);
    return ReadObjectOrKeep(input, name, reader);
}

} // namespace

CAudioPluginDefaultSettings::CAudioPluginDefaultSettings(const IAudioPluginDataPath& paths,
                                                         const char* skinFolder)
    : m_SkinFile(paths.GetDefaultSkinFile()),
      m_Paths(&paths),
      m_SkinFolder(skinFolder),
      m_RefreshRate(DefaultRefreshRate),
      m_FactoryRefreshRate(DefaultRefreshRate) {}

void CAudioPluginDefaultSettings::Init(const DSP::IConstParamInfos& inputs,
                                       const DSP::IConstParamInfos& outputs) {
    CopyInfos(inputs, m_InputParamInfos);
    CopyInfos(outputs, m_OutputParamInfos);
    m_InputCCSettings.SetCount(inputs.GetCount());
    m_OutputCCSettings.SetCount(outputs.GetCount());
    ResetToFactory();
}

void CAudioPluginDefaultSettings::Load() {
    const char* path = m_Paths->GetPreferencesFile();
    if (!*path)
        return;
    Serialization::CXmlDataObject document("Root");
    ResetToFactory();
    if (document.Load(path))
        DeSerialize(document);
}

void CAudioPluginDefaultSettings::Save() {
    const char* path = m_Paths->GetPreferencesFile();
    if (!*path)
        return;
    Serialization::CXmlDataObject document("GlobalSettings");
    Serialize(document);
    document.Save(path);
}

void CAudioPluginDefaultSettings::SetSkinFile(const char* path) {
    const CAutoLock lock(m_SkinLock);
    m_SkinFile = path ? path : "";
}

void CAudioPluginDefaultSettings::SetInputCCSettings(const IConstMIDICCSettings& settings) {
    const CAutoLock lock(m_InputCCLock);
    CopyMIDICCSettings(settings, m_InputCCSettings);
    m_InputCCSettingsChanged.Notify();
}

void CAudioPluginDefaultSettings::SetOutputCCSettings(const IConstMIDICCSettings& settings) {
    const CAutoLock lock(m_OutputCCLock);
    CopyMIDICCSettings(settings, m_OutputCCSettings);
    m_OutputCCSettingsChanged.Notify();
}

void CAudioPluginDefaultSettings::SetRefreshRate(double rate) {
    if (!IsRefreshRate(rate))
        return;
    const double old = m_RefreshRate.exchange(rate, std::memory_order_relaxed);
    if (Core::Differs(old, rate))
        m_RefreshRateChanged.Notify();
}

char* CAudioPluginDefaultSettings::GetSkinFile() const {
    const CAutoLock lock(m_SkinLock);
    return Core::NewText(m_SkinFile);
}

void CAudioPluginDefaultSettings::GetInputCCSettings(IMIDICCSettings& settings) const {
    const CAutoLock lock(m_InputCCLock);
    CopyMIDICCSettings(m_InputCCSettings, settings);
}

void CAudioPluginDefaultSettings::GetOutputCCSettings(IMIDICCSettings& settings) const {
    const CAutoLock lock(m_OutputCCLock);
    CopyMIDICCSettings(m_OutputCCSettings, settings);
}

double CAudioPluginDefaultSettings::GetRefreshRate() const {
    return m_RefreshRate.load(std::memory_order_relaxed);
}

const char* CAudioPluginDefaultSettings::GetFactorySkinFile() const {
    return m_Paths->GetDefaultSkinFile();
}

void CAudioPluginDefaultSettings::GetFactoryInputCCSettings(IMIDICCSettings& settings) const {
    FillInputMIDICCSettings(m_InputParamInfos, settings);
}

void CAudioPluginDefaultSettings::GetFactoryOutputCCSettings(IMIDICCSettings& settings) const {
    FillOutputMIDICCSettings(m_OutputParamInfos, settings);
}

double CAudioPluginDefaultSettings::GetFactoryRefreshRate() const {
    return m_FactoryRefreshRate.load(std::memory_order_relaxed);
}

Core::IEventProvider& CAudioPluginDefaultSettings::GetInputCCSettingsChangedEvent() const {
    return m_InputCCSettingsChanged;
}

Core::IEventProvider& CAudioPluginDefaultSettings::GetOutputCCSettingsChangedEvent() const {
    return m_OutputCCSettingsChanged;
}

Core::IEventProvider& CAudioPluginDefaultSettings::GetRefreshRateChangedEvent() const {
    return m_RefreshRateChanged;
}

void CAudioPluginDefaultSettings::SetFactoryRefreshRate(double rate) {
    if (IsRefreshRate(rate))
        m_FactoryRefreshRate.store(rate, std::memory_order_relaxed);
}

bool CAudioPluginDefaultSettings::Serialize(IWriteDataStream& output) const {
    bool result = WriteValue(output, "version", Version);
    {
        const CAutoLock lock(m_SkinLock);
        const std::string relative = Core::MakeRelativePath(m_SkinFile, m_SkinFolder);
        result &= WriteValue(output, "skinFile", relative.c_str());
    }
    result &= WriteSettings(output, "inputCCSettings", m_InputCCSettings, m_InputCCLock);
    result &= WriteSettings(output, "outputCCSettings", m_OutputCCSettings, m_OutputCCLock);
    return WriteValue(output, "outputRefreshRate", GetRefreshRate()) && result;
}

bool CAudioPluginDefaultSettings::DeSerialize(const IReadDataStream& input) {
    int version = 0;
    bool result = ReadValueOrDefault(input, "version", version, 0);
    result &= ReadSkinFile(input);
    result &= ReadSettings(input, "inputCCSettings", m_InputCCSettings, m_InputCCLock);
    result &= ReadSettings(input, "outputCCSettings", m_OutputCCSettings, m_OutputCCLock);
    return ReadRefreshRate(input, version) && result;
}

void CAudioPluginDefaultSettings::ResetToFactory() {
    SetSkinFile(GetFactorySkinFile());
    {
        const CAutoLock lock(m_InputCCLock);
        GetFactoryInputCCSettings(m_InputCCSettings);
    }
    {
        const CAutoLock lock(m_OutputCCLock);
        GetFactoryOutputCCSettings(m_OutputCCSettings);
    }
    m_RefreshRate.store(GetFactoryRefreshRate(), std::memory_order_relaxed);
}

bool CAudioPluginDefaultSettings::ReadSkinFile(const IReadDataStream& input) {
    std::string path;
    if (!ReadValue(input, "skinFile", path))
        return input.IsIncremental();
    SetSkinFile(Core::MakeAbsolutePath(path, m_SkinFolder).c_str());
    return true;
}

bool CAudioPluginDefaultSettings::ReadRefreshRate(const IReadDataStream& input, int version) {
    const double factoryRate = GetFactoryRefreshRate();
    double rate = GetRefreshRate();
    const bool isOld = version < FirstVersionWithRefreshRate && !input.IsIncremental();
    bool result = true;
    if (isOld)
        rate = factoryRate;
    else
        result = ReadValueOrDefault(input, "outputRefreshRate", rate, factoryRate);
    const bool isRate = IsRefreshRate(rate);
    m_RefreshRate.store(isRate ? rate : factoryRate, std::memory_order_relaxed);
    return result && isRate;
}

} // namespace Lathe::Audio::Plugin
