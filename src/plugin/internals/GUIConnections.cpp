#include "plugin/internals/GUIConnections.h"

namespace Lathe::Audio::Plugin {

CGUIConnections::CGUIConnections(const IPluginGUIConnections& other)
    : m_ProductInfo(other.GetProductInfo()),
      m_PackageInfo(other.GetPackageInfo()),
      m_Filter(other.GetFilter()),
      m_InputChannels(other.GetInputChannels()),
      m_OutputChannels(other.GetOutputChannels()),
      m_InputParams(other.GetInputParams()),
      m_InputStrings(other.GetInputStrings()),
      m_InputCurves(other.GetInputCurves()),
      m_InputSurfaces(other.GetInputSurfaces()),
      m_InputCustomProperties(other.GetInputCustomProperties()),
      m_OutputParamsAdapter(other.GetOutputParamsAdapter()),
      m_OutputParams(other.GetOutputParams()),
      m_OutputCurves(other.GetOutputCurves()),
      m_OutputSurfaces(other.GetOutputSurfaces()),
      m_OutputStrings(other.GetOutputStrings()),
      m_OutputCustomProperties(other.GetOutputCustomProperties()),
      m_Model(other.GetModel()),
      m_StateWriter(other.GetStateWriter()),
      m_History(other.GetHistory()),
      m_MIDIController(other.GetMIDIController()),
      m_DefaultSettings(other.GetDefaultSettings()),
      m_MIDIInputDefault(other.GetMIDIInputDefault()),
      m_MIDIOutputDefault(other.GetMIDIOutputDefault()),
      m_PresetsManager(other.GetPresetsManager()),
      m_DataPath(other.GetDataPath()),
      m_SampleRate(other.GetSampleRate()),
      m_MaxBlockSize(other.GetMaxBlockSize()),
      m_Features(other.GetFeatures()) {}

} // namespace Lathe::Audio::Plugin
