// The record of pointers that an instance hands to its editor and its model.
#pragma once

#include "plugin/interfaces/PluginGUIConnections.h"

namespace Lathe::Audio::Plugin {

// Whoever makes one fills the fields; copying copies the pointers.
class CGUIConnections : public IPluginGUIConnections {
public:
    const DSP::IConstFilterProductInfo* GetProductInfo() const override { return m_ProductInfo; }
    const IConstPackageInfo* GetPackageInfo() const override { return m_PackageInfo; }
    const DSP::IFilter* GetFilter() const override { return m_Filter; }
    CMTInt* GetInputChannels() const override { return m_InputChannels; }
    CMTInt* GetOutputChannels() const override { return m_OutputChannels; }
    IInputParams* GetInputParams() const override { return m_InputParams; }
    IInputStrings* GetInputStrings() const override { return m_InputStrings; }
    IInputCurves* GetInputCurves() const override { return m_InputCurves; }
    IInputSurfaces* GetInputSurfaces() const override { return m_InputSurfaces; }
    IInputCustomProperties* GetInputCustomProperties() const override {
        return m_InputCustomProperties;
    }
    IOutputParams* GetOutputParamsAdapter() const override { return m_OutputParamsAdapter; }
    const IConstParams* GetOutputParams() const override { return m_OutputParams; }
    const IOutputCurves* GetOutputCurves() const override { return m_OutputCurves; }
    const IOutputSurfaces* GetOutputSurfaces() const override { return m_OutputSurfaces; }
    const IOutputStrings* GetOutputStrings() const override { return m_OutputStrings; }
    const IOutputCustomProperties* GetOutputCustomProperties() const override {
        return m_OutputCustomProperties;
    }
    IAudioPluginModel* GetModel() const override { return m_Model; }
    const Serialization::ISerialize* GetStateWriter() const override { return m_StateWriter; }
    Serialization::IHistoryManager* GetHistory() const override { return m_History; }
    IMIDIController* GetMIDIController() const override { return m_MIDIController; }
    IAudioPluginDefaultSettings* GetDefaultSettings() const override { return m_DefaultSettings; }
    CMTBool* GetMIDIInputDefault() const override { return m_MIDIInputDefault; }
    CMTBool* GetMIDIOutputDefault() const override { return m_MIDIOutputDefault; }
    IPresetsManager* GetPresetsManager() const override { return m_PresetsManager; }
    const IAudioPluginDataPath* GetDataPath() const override { return m_DataPath; }
    CMTDouble* GetSampleRate() const override { return m_SampleRate; }
    CMTDouble* GetMaxBlockSize() const override { return m_MaxBlockSize; }
    const SGUIFeatures& GetFeatures() const override { return m_Features; }

    const DSP::IConstFilterProductInfo* m_ProductInfo = nullptr;
    const IConstPackageInfo* m_PackageInfo = nullptr;
    const DSP::IFilter* m_Filter = nullptr;
    CMTInt* m_InputChannels = nullptr;
    CMTInt* m_OutputChannels = nullptr;
    IInputParams* m_InputParams = nullptr;
    IInputStrings* m_InputStrings = nullptr;
    IInputCurves* m_InputCurves = nullptr;
    IInputSurfaces* m_InputSurfaces = nullptr;
    IInputCustomProperties* m_InputCustomProperties = nullptr;
    IOutputParams* m_OutputParamsAdapter = nullptr;
    const IConstParams* m_OutputParams = nullptr;
    const IOutputCurves* m_OutputCurves = nullptr;
    const IOutputSurfaces* m_OutputSurfaces = nullptr;
    const IOutputStrings* m_OutputStrings = nullptr;
    const IOutputCustomProperties* m_OutputCustomProperties = nullptr;
    IAudioPluginModel* m_Model = nullptr;
    const Serialization::ISerialize* m_StateWriter = nullptr;
    Serialization::IHistoryManager* m_History = nullptr;
    IMIDIController* m_MIDIController = nullptr;
    IAudioPluginDefaultSettings* m_DefaultSettings = nullptr;
    CMTBool* m_MIDIInputDefault = nullptr;
    CMTBool* m_MIDIOutputDefault = nullptr;
    IPresetsManager* m_PresetsManager = nullptr;
    const IAudioPluginDataPath* m_DataPath = nullptr;
    CMTDouble* m_SampleRate = nullptr;
    CMTDouble* m_MaxBlockSize = nullptr;
    SGUIFeatures m_Features;
};

} // namespace Lathe::Audio::Plugin
