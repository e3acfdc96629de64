// A switchable left/right to mid/side matrix around a stereo filter.
#pragma once

#include "core/RealtimePermission.h"
#include "core/containers/VectorMux.h"
#include "dsp/Filter.h"
#include "dsp/FilterInfos.h"
#include "dsp/ProcessInfo.h"
#include "dsp/adapters/MidSideMatrix.h"
#include "dsp/adapters/SplitInfos.h"
#include "dsp/properties/FilterPropertiesAdapter.h"
#include "dsp/streams/DynamicAudioStream.h"

#include <algorithm>

namespace Lathe::Audio::DSP {

// Adds one parameter, the mode, before or behind those of the stereo filter, and relabels what the
// stereo filter declares. A subclass describes the mode in m_ModeInfo.
//
// A block: encode the inputs into the scratch streams, run the stereo filter from there to the
// outputs, decode in place. Both passes of the matrix run the same ramp.
template <class S>
class TMidSideFromStereoFilterBase : public IFilter {
public:
    TMidSideFromStereoFilterBase(const char* leftLabel, const char* rightLabel, bool modeLast)
        : m_InputStringsInfo(m_Stereo.GetInputStringsInfo(), leftLabel, rightLabel),
          m_InputCurvesInfo(m_Stereo.GetInputCurvesInfo(), leftLabel, rightLabel),
          m_InputSurfacesInfo(m_Stereo.GetInputSurfacesInfo(), leftLabel, rightLabel),
          m_InputCustomPropertiesInfo(m_Stereo.GetInputCustomPropertiesInfo(), leftLabel,
                                      rightLabel),
          m_StereoParamsInfo(m_Stereo.GetInputParamsInfo(), leftLabel, rightLabel),
          m_OutputParamsInfo(m_Stereo.GetOutputParamsInfo(), leftLabel, rightLabel),
          m_PrivateOutputParamsInfo(m_Stereo.GetPrivateOutputParamsInfo(), leftLabel, rightLabel),
          m_OutputStringsInfo(m_Stereo.GetOutputStringsInfo(), leftLabel, rightLabel),
          m_OutputCurvesInfo(m_Stereo.GetOutputCurvesInfo(), leftLabel, rightLabel),
          m_OutputSurfacesInfo(m_Stereo.GetOutputSurfacesInfo(), leftLabel, rightLabel),
          m_OutputCustomPropertiesInfo(m_Stereo.GetOutputCustomPropertiesInfo(), leftLabel,
                                       rightLabel),
          m_ModeLast(modeLast) {
        Wire();
    }
    TMidSideFromStereoFilterBase(const TMidSideFromStereoFilterBase& other)
        : m_Stereo(other.m_Stereo),
          m_InputStringsInfo(other.m_InputStringsInfo),
          m_InputCurvesInfo(other.m_InputCurvesInfo),
          m_InputSurfacesInfo(other.m_InputSurfacesInfo),
          m_InputCustomPropertiesInfo(other.m_InputCustomPropertiesInfo),
          m_StereoParamsInfo(other.m_StereoParamsInfo),
          m_OutputParamsInfo(other.m_OutputParamsInfo),
          m_PrivateOutputParamsInfo(other.m_PrivateOutputParamsInfo),
          m_OutputStringsInfo(other.m_OutputStringsInfo),
          m_OutputCurvesInfo(other.m_OutputCurvesInfo),
          m_OutputSurfacesInfo(other.m_OutputSurfacesInfo),
          m_OutputCustomPropertiesInfo(other.m_OutputCustomPropertiesInfo),
          m_ModeInfo(other.m_ModeInfo),
          m_Variations(other.m_Variations),
          m_ModeRamp(other.m_ModeRamp),
          m_Scratch(other.m_Scratch),
          m_ModeLast(other.m_ModeLast) {
        Wire();
    }
    TMidSideFromStereoFilterBase& operator=(const TMidSideFromStereoFilterBase&) = delete;

    const IConstFilterProductInfo& GetProductInfo() const override {
        return m_Stereo.GetProductInfo();
    }
    void Init(double sampleRate, const CFilterInitInfo& info) override {
        m_Stereo.Init(sampleRate, info);
        CountChannels();
        m_Variations.Reserve(info.m_MaxVariationsOrder);
        if (info.m_ResetToDefaults) {
            CFilterProperties defaults;
            defaults.SetDefaults(*this);
            SetInputValues(defaults);
        }
        if (info.m_MaxBlockSize > 0)
            SizeScratch(info.m_MaxBlockSize);
    }
    void Uninit() override {
        m_Stereo.Uninit();
        for (int i = 0; i < 2; ++i)
            m_Scratch[i].SetSize(0, true);
    }

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
    void SetInputValues(const IConstFilterProperties& values) LATHE_REALTIME override {
        CFilterPropertiesAdapter stereo;
        stereo.Attach(values);
        LimitToStereo(stereo);
        m_Stereo.SetInputValues(stereo);
        SetModeValue(values.GetParams(), 0);
    }

    const IProcessInfo& GetProcessInfo() const LATHE_REALTIME override {
        return m_Stereo.GetProcessInfo();
    }
    const IIOConfiguration& GetCurrentIOConfiguration() const LATHE_REALTIME override {
        return m_Stereo.GetCurrentIOConfiguration();
    }
    int GetTailLength() const LATHE_REALTIME override { return m_Stereo.GetTailLength(); }
    int GetLatency() const LATHE_REALTIME override { return m_Stereo.GetLatency(); }

    void Process(const CFilterProcessData& data) LATHE_REALTIME override {
        if (!HasChannels(data, m_Inputs, m_Outputs) || ProcessTogether(data))
            return;
        SizeScratch(data.m_SamplesCount);
        if (m_Inputs > 0) {
            const int orders = StartModeRamp(data.m_pVariations);
            EncodeMidSide(data.m_pInputs->GetElement(0), data.m_pInputs->GetElement(1),
                          m_Scratch[0].GetData(), m_Scratch[1].GetData(), data.m_SamplesCount,
                          m_ModeRamp, orders);
        }
        CFilterProcessData stereoData = WithStereoVariations(data);
        stereoData.m_pInputs = &m_Scratch;
        m_Stereo.Process(stereoData);
        Decode(data);
    }
    bool ProcessSilence(const CFilterProcessData& data) LATHE_REALTIME override {
        if (!HasChannels(data, 0, m_Outputs))
            return false;
        if (!data.m_pVariations) {
            const bool hasSignal = m_Stereo.ProcessSilence(data);
            if (hasSignal || !CMidSideMatrix(m_ModeRamp[0]).KeepsZeros())
                Decode(data);
            return hasSignal;
        }
        const bool hasSignal = m_Stereo.ProcessSilence(WithStereoVariations(data));
        Decode(data);
        return hasSignal;
    }
    void Reset() LATHE_REALTIME override { m_Stereo.Reset(); }

    Serialization::ISerializable* GetInternalDSPState() override {
        return m_Stereo.GetInternalDSPState();
    }
    IOutputDataSync* GetOutputDataSync() LATHE_REALTIME override {
        return m_Stereo.GetOutputDataSync();
    }
    void ResetOutputs() LATHE_REALTIME override { m_Stereo.ResetOutputs(); }
    bool UpdateOutputs() LATHE_REALTIME override { return m_Stereo.UpdateOutputs(); }

    const IConstParamInfos& GetOutputParamsInfo() const override { return m_OutputParamsInfo; }
    const IConstParamsValues& GetOutputParamsValues() const LATHE_REALTIME override {
        return m_Stereo.GetOutputParamsValues();
    }
    const IConstParamInfos& GetPrivateOutputParamsInfo() const override {
        return m_PrivateOutputParamsInfo;
    }
    const IConstParamsValues& GetPrivateOutputParamsValues() const LATHE_REALTIME override {
        return m_Stereo.GetPrivateOutputParamsValues();
    }
    const IConstStringInfos& GetOutputStringsInfo() const override { return m_OutputStringsInfo; }
    const IConstStrings& GetOutputStrings() const LATHE_REALTIME override {
        return m_Stereo.GetOutputStrings();
    }
    IDirtyFlags& GetOutputStringsDirty() LATHE_REALTIME override {
        return m_Stereo.GetOutputStringsDirty();
    }
    const IConstCurveInfos& GetOutputCurvesInfo() const override { return m_OutputCurvesInfo; }
    const IConstCurves& GetOutputCurves() const LATHE_REALTIME override {
        return m_Stereo.GetOutputCurves();
    }
    IDirtyFlags& GetOutputCurvesDirty() LATHE_REALTIME override {
        return m_Stereo.GetOutputCurvesDirty();
    }
    const IConstSurfaceInfos& GetOutputSurfacesInfo() const override {
        return m_OutputSurfacesInfo;
    }
    const IConstSurfaces& GetOutputSurfaces() const LATHE_REALTIME override {
        return m_Stereo.GetOutputSurfaces();
    }
    IDirtyFlags& GetOutputSurfacesDirty() LATHE_REALTIME override {
        return m_Stereo.GetOutputSurfacesDirty();
    }
    const IConstCustomPropertyInfos& GetOutputCustomPropertiesInfo() const override {
        return m_OutputCustomPropertiesInfo;
    }
    const IConstCustomProperties& GetOutputCustomProperties() const LATHE_REALTIME override {
        return m_Stereo.GetOutputCustomProperties();
    }
    IDirtyFlags& GetOutputCustomPropertiesDirty() LATHE_REALTIME override {
        return m_Stereo.GetOutputCustomPropertiesDirty();
    }
    const ILegacyPresets& GetLegacyPresets() const override { return m_Stereo.GetLegacyPresets(); }

protected:
    // Order 0: the mode itself, which gives the matrix parameter. Order k: its rate of change.
    virtual void SetModeValue(const IConstParamsValues& values, int order) LATHE_REALTIME {
        if (m_ModeParamIndex >= values.GetCount() || order > MaxRampOrders)
            return;
        const double value = values.GetValue(m_ModeParamIndex);
        m_ModeRamp[static_cast<std::size_t>(order)] = order == 0 ? value - 1.0 : value;
    }

private:
    static constexpr int MaxRampOrders = static_cast<int>(CMatrixRamp().size()) - 1;

    void Wire() {
        if (m_ModeLast)
            m_InputParamsInfo.Attach(m_StereoParamsInfo, m_ModeInfo);
        else
            m_InputParamsInfo.Attach(m_ModeInfo, m_StereoParamsInfo);
        m_ModeParamIndex = m_ModeLast ? m_InputParamsInfo.GetCount() - 1 : 0;
        CountChannels();
    }

    void CountChannels() {
        const IIOConfiguration& configuration = m_Stereo.GetCurrentIOConfiguration();
        m_Inputs = configuration.GetInputs().GetCount();
        m_Outputs = configuration.GetOutputs().GetCount();
    }

    int GetFirstStereoParam() const LATHE_REALTIME { return m_ModeLast ? 0 : 1; }

    // The inputs of the stereo filter within those of this one.
    template <class TAdapter>
    void LimitToStereo(TAdapter& adapter) const LATHE_REALTIME {
        adapter.SetRange(Params, GetFirstStereoParam(), m_StereoParamsInfo.GetCount());
        adapter.SetRange(Strings, 0, m_InputStringsInfo.GetCount());
        adapter.SetRange(Curves, 0, m_InputCurvesInfo.GetCount());
        adapter.SetRange(Surfaces, 0, m_InputSurfacesInfo.GetCount());
        adapter.SetRange(CustomProperties, 0, m_InputCustomPropertiesInfo.GetCount());
    }

    CFilterProcessData WithStereoVariations(const CFilterProcessData& data) LATHE_REALTIME {
        CFilterProcessData stereoData = data;
        if (data.m_pVariations) {
            m_Variations.Attach(*data.m_pVariations);
            LimitToStereo(m_Variations);
            stereoData.m_pVariations = &m_Variations;
        }
        return stereoData;
    }

    // A block whose mode rests, where the stereo filter takes the matrix into its own loop: without
    // a pass of the scratch streams.
    bool ProcessTogether(const CFilterProcessData& data) LATHE_REALTIME {
        if constexpr (requires { m_Stereo.ProcessTogether(data, nullptr); }) {
            if (StartModeRamp(data.m_pVariations) > 0)
                return false;
            const CMidSideMatrix matrix(m_ModeRamp[0]);
            if (!m_Stereo.ProcessTogether(data, matrix.IsIdentity() ? nullptr : &matrix,
                                          GetFirstStereoParam()))
                return false;
            if (data.m_pVariations)
                SetModeValue(data.m_pVariations->GetEnd().GetParams(), 0);
            return true;
        } else {
            return false;
        }
    }

    // Sets the ramp to the start of the block. Returns the orders that move the mode: none in a
    // block in which only other parameters change.
    int StartModeRamp(const IConstFilterPropertiesVariations* variations) LATHE_REALTIME {
        if (!variations)
            return 0;
        SetModeValue(variations->GetStart().GetParams(), 0);
        const IConstRates& rates = variations->GetVariations(Params);
        const int orders = std::min(rates.GetCount(), MaxRampOrders);
        for (int order = 1; order <= orders; ++order)
            SetModeValue(rates.GetElement(order - 1), order);
        int moving = orders;
        while (moving > 0 && m_ModeRamp[static_cast<std::size_t>(moving)] == 0.0)
            --moving;
        return moving;
    }

    // The second pass of the matrix, after which the mode has its end value, silence or not.
    void Decode(const CFilterProcessData& data) LATHE_REALTIME {
        if (m_Outputs > 0) {
            const int orders = StartModeRamp(data.m_pVariations);
            DecodeMidSide(data.m_pOutputs->GetElement(0), data.m_pOutputs->GetElement(1),
                          data.m_SamplesCount, m_ModeRamp, orders);
        }
        if (data.m_pVariations)
            SetModeValue(data.m_pVariations->GetEnd().GetParams(), 0);
    }

    // Allocates beyond the largest size so far, and so in a block larger than Init was told of,
    // which may then be late, but is whole.
    void SizeScratch(int samples) {
        const Core::CRealtimePermission permission;
        for (int i = 0; i < 2; ++i)
            m_Scratch[i].SetSize(samples);
    }

    S m_Stereo;
    TStereoToMidSideInfo<CStringInfo, IConstStringInfo> m_InputStringsInfo;
    TStereoToMidSideInfo<CCurveInfo, IConstCurveInfo> m_InputCurvesInfo;
    TStereoToMidSideInfo<CSurfaceInfo, IConstSurfaceInfo> m_InputSurfacesInfo;
    TStereoToMidSideInfo<CCustomPropertyInfo, IConstCustomPropertyInfo> m_InputCustomPropertiesInfo;
    TStereoToMidSideInfo<CParamInfo, IConstParamInfo> m_StereoParamsInfo;
    TStereoToMidSideInfo<CParamInfo, IConstParamInfo> m_OutputParamsInfo;
    TStereoToMidSideInfo<CParamInfo, IConstParamInfo> m_PrivateOutputParamsInfo;
    TStereoToMidSideInfo<CStringInfo, IConstStringInfo> m_OutputStringsInfo;
    TStereoToMidSideInfo<CCurveInfo, IConstCurveInfo> m_OutputCurvesInfo;
    TStereoToMidSideInfo<CSurfaceInfo, IConstSurfaceInfo> m_OutputSurfacesInfo;
    TStereoToMidSideInfo<CCustomPropertyInfo, IConstCustomPropertyInfo>
        m_OutputCustomPropertiesInfo;

protected:
    CParamInfos m_ModeInfo{1};

private:
    CoreUtilities::TVectorMux<IConstParamInfo> m_InputParamsInfo;
    CFilterPropertiesVariationsAdapter m_Variations;
    // Left/right until a value is set.
    CMatrixRamp m_ModeRamp{-1.0, 0.0, 0.0};
    int m_ModeParamIndex = 0;
    // Channels of the current configuration, which nothing but Init changes.
    int m_Inputs = 0;
    int m_Outputs = 0;
    CoreUtilities::TCollection<CDynamicAudioStream, IAudioStream> m_Scratch{2};
    bool m_ModeLast;
};

} // namespace Lathe::Audio::DSP
