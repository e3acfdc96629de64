// The base of all filters: it answers most of the contract from fields that a filter fills.
//
// A filter implements one of two processing styles: ProcessBlock (a section) or ProcessStreams (a
// composite of sections), and fills its declarations in its constructor from shared static tables.
#pragma once

#include "dsp/Filter.h"
#include "dsp/FilterInfos.h"
#include "dsp/ProcessInfo.h"

#include <cstdint>

namespace Lathe::Audio::DSP {

class CBaseCoreDSPFilter : public IFilter {
public:
    void Init(double sampleRate, const CFilterInitInfo& info) override;
    void Uninit() override {}

    const IConstParamInfos& GetInputParamsInfo() const LATHE_REALTIME override {
        return m_InputParamsInfo;
    }
    const IConstStringInfos& GetInputStringsInfo() const LATHE_REALTIME override {
        return m_InputStringsInfo;
    }
    const IConstCurveInfos& GetInputCurvesInfo() const LATHE_REALTIME override {
        return m_InputCurvesInfo;
    }
    const IConstSurfaceInfos& GetInputSurfacesInfo() const LATHE_REALTIME override {
        return m_InputSurfacesInfo;
    }
    const IConstCustomPropertyInfos& GetInputCustomPropertiesInfo() const LATHE_REALTIME override {
        return m_InputCustomPropertiesInfo;
    }
    void SetInputValues(const IConstFilterProperties& values) LATHE_REALTIME override;

    const IIOConfiguration& GetCurrentIOConfiguration() const LATHE_REALTIME override;
    int GetTailLength() const LATHE_REALTIME override { return m_TailLength; }
    int GetLatency() const LATHE_REALTIME override { return m_Latency; }
    void Process(const CFilterProcessData& data) LATHE_REALTIME override;
    bool ProcessSilence(const CFilterProcessData& data) LATHE_REALTIME override;
    void Reset() LATHE_REALTIME override { OnReset(); }

    Serialization::ISerializable* GetInternalDSPState() LATHE_REALTIME override { return nullptr; }
    IOutputDataSync* GetOutputDataSync() LATHE_REALTIME override { return nullptr; }
    void ResetOutputs() LATHE_REALTIME override;
    bool UpdateOutputs() LATHE_REALTIME override { return false; }

    const IConstParamInfos& GetOutputParamsInfo() const override { return m_OutputParamsInfo; }
    const IConstParamsValues& GetOutputParamsValues() const LATHE_REALTIME override;
    const IConstParamInfos& GetPrivateOutputParamsInfo() const override {
        return m_PrivateOutputParamsInfo;
    }
    const IConstParamsValues& GetPrivateOutputParamsValues() const LATHE_REALTIME override;
    const IConstStringInfos& GetOutputStringsInfo() const override { return m_OutputStringsInfo; }
    const IConstStrings& GetOutputStrings() const LATHE_REALTIME override;
    IDirtyFlags& GetOutputStringsDirty() LATHE_REALTIME override;
    const IConstCurveInfos& GetOutputCurvesInfo() const override { return m_OutputCurvesInfo; }
    const IConstCurves& GetOutputCurves() const LATHE_REALTIME override;
    IDirtyFlags& GetOutputCurvesDirty() LATHE_REALTIME override;
    const IConstSurfaceInfos& GetOutputSurfacesInfo() const override {
        return m_OutputSurfacesInfo;
    }
    const IConstSurfaces& GetOutputSurfaces() const LATHE_REALTIME override;
    IDirtyFlags& GetOutputSurfacesDirty() LATHE_REALTIME override;
    const IConstCustomPropertyInfos& GetOutputCustomPropertiesInfo() const override {
        return m_OutputCustomPropertiesInfo;
    }
    const IConstCustomProperties& GetOutputCustomProperties() const LATHE_REALTIME override;
    IDirtyFlags& GetOutputCustomPropertiesDirty() LATHE_REALTIME override;

    const ILegacyPresets& GetLegacyPresets() const override;

protected:
    // Recompute from new parameter values.
    virtual void OnInputParamsChanged(const IConstParamsValues& values) LATHE_REALTIME;
    // The filter has been skipped for this many samples of silence: clear what depends on past
    // input.
    virtual void OnSilence(int samples) LATHE_REALTIME;
    virtual void OnResetOutputValues() LATHE_REALTIME {}
    virtual void OnResetOutputCurves() LATHE_REALTIME {}
    // Derive values that depend on the sample rate.
    virtual void OnInit(const CFilterInitInfo& info);
    // Clear the signal state.
    virtual void OnReset() LATHE_REALTIME {}
    virtual void ProcessBlock(const CFilterProcessData& data) LATHE_REALTIME;
    // True keeps processing silence when the tail is over.
    virtual bool KeepsRunningOnSilence() const LATHE_REALTIME { return false; }
    virtual void ProcessStreams(const IConstAudioStreams& inputs, IAudioStreams& outputs,
                                int samples, const IConstFilterPropertiesVariations* variations)
        LATHE_REALTIME;

    // In hertz; 0.0 before Init.
    double m_SampleRate = 0.0;
    // Samples of output after silent input; -1 means endless.
    int m_TailLength = 0;
    int m_Latency = 0;
    CParamInfos m_InputParamsInfo;
    CStringInfos m_InputStringsInfo;
    CCurveInfos m_InputCurvesInfo;
    CSurfaceInfos m_InputSurfacesInfo;
    CCustomPropertyInfos m_InputCustomPropertiesInfo;
    CParamInfos m_OutputParamsInfo;
    CParamInfos m_PrivateOutputParamsInfo;
    CStringInfos m_OutputStringsInfo;
    CCurveInfos m_OutputCurvesInfo;
    CSurfaceInfos m_OutputSurfacesInfo;
    CCustomPropertyInfos m_OutputCustomPropertiesInfo;
    // Samples of silence run through since the last real block.
    std::int64_t m_SilentSamples = 0;
    // Index into the declared alternatives; -1 for the default.
    int m_CurrentIOConfiguration = -1;

private:
    bool IsTailOver() const LATHE_REALTIME {
        return m_TailLength != -1 && m_SilentSamples >= m_TailLength;
    }
    void CountSilence(int samples) LATHE_REALTIME;
};

} // namespace Lathe::Audio::DSP
