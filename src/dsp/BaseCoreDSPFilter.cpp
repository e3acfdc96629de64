#include "dsp/BaseCoreDSPFilter.h"

#include "core/containers/VectorAdapter.h"
#include "dsp/properties/FilterPropertiesVariations.h"
#include "dsp/streams/EmptyStream.h"
#include "dsp/streams/StreamFunctions.h"

#include <limits>

namespace Lathe::Audio::DSP {

namespace {

// What a filter without outputs of a kind answers.
const CParamsValues s_NoParams(0);
const CFilterProperties::CStrings s_NoStrings;
const CFilterProperties::CCurves s_NoCurves;
const CFilterProperties::CSurfaces s_NoSurfaces;
const CFilterProperties::CCustomProperties s_NoCustomProperties;
CoreUtilities::TDynamicCollection<Core::CDirty, Core::IDirty> s_NoDirtyFlags;
const CoreUtilities::TConstVectorAdapter<ILegacyPreset> s_NoLegacyPresets;

} // namespace

void CBaseCoreDSPFilter::Init(double sampleRate, const CFilterInitInfo& info) {
    m_CurrentIOConfiguration = info.m_IOConfigurationIndex;
    m_SampleRate = sampleRate;
    OnInit(info);
    if (info.m_ResetToDefaults) {
        CFilterProperties defaults;
        defaults.SetDefaults(*this);
        SetInputValues(defaults);
    }
    m_SilentSamples = 0;
    OnReset();
}

void CBaseCoreDSPFilter::SetInputValues(const IConstFilterProperties& values) {
    if (IsAnyDirty(values, Params))
        OnInputParamsChanged(values.GetParams());
}

const IIOConfiguration& CBaseCoreDSPFilter::GetCurrentIOConfiguration() const {
    const IProcessInfo& info = GetProcessInfo();
    const auto& alternatives = info.GetIOConfigurations();
    if (m_CurrentIOConfiguration >= 0 && m_CurrentIOConfiguration < alternatives.GetCount())
        return alternatives.GetElement(m_CurrentIOConfiguration);
    return info;
}

void CBaseCoreDSPFilter::Process(const CFilterProcessData& data) {
    m_SilentSamples = 0;
    if (data.m_pInputs && data.m_pOutputs)
        ProcessStreams(*data.m_pInputs, *data.m_pOutputs, data.m_SamplesCount, data.m_pVariations);
    ProcessBlock(data);
}

bool CBaseCoreDSPFilter::ProcessSilence(const CFilterProcessData& data) {
    if (!data.m_pOutputs)
        return false;
    if (IsTailOver() && !KeepsRunningOnSilence()) {
        if (data.m_pVariations)
            SetInputValues(data.m_pVariations->GetStart());
        OnSilence(data.m_SamplesCount);
        ClearStreams(*data.m_pOutputs);
        CountSilence(data.m_SamplesCount);
        if (data.m_pVariations)
            SetInputValues(data.m_pVariations->GetEnd());
        return false;
    }
    CountSilence(data.m_SamplesCount);
    const CEmptyStreams silence(data.m_SamplesCount,
                                GetCurrentIOConfiguration().GetInputs().GetCount());
    CFilterProcessData block = data;
    block.m_pInputs = &silence;
    ProcessStreams(silence, *data.m_pOutputs, data.m_SamplesCount, data.m_pVariations);
    ProcessBlock(block);
    return true;
}

void CBaseCoreDSPFilter::CountSilence(int samples) {
    if (m_SilentSamples <= std::numeric_limits<std::int64_t>::max() - samples)
        m_SilentSamples += samples;
}

void CBaseCoreDSPFilter::ResetOutputs() {
    OnResetOutputValues();
    OnResetOutputCurves();
}

const IConstParamsValues& CBaseCoreDSPFilter::GetOutputParamsValues() const {
    return s_NoParams;
}
const IConstParamsValues& CBaseCoreDSPFilter::GetPrivateOutputParamsValues() const {
    return s_NoParams;
}
const IConstStrings& CBaseCoreDSPFilter::GetOutputStrings() const {
    return s_NoStrings;
}
IDirtyFlags& CBaseCoreDSPFilter::GetOutputStringsDirty() {
    return s_NoDirtyFlags;
}
const IConstCurves& CBaseCoreDSPFilter::GetOutputCurves() const {
    return s_NoCurves;
}
IDirtyFlags& CBaseCoreDSPFilter::GetOutputCurvesDirty() {
    return s_NoDirtyFlags;
}
const IConstSurfaces& CBaseCoreDSPFilter::GetOutputSurfaces() const {
    return s_NoSurfaces;
}
IDirtyFlags& CBaseCoreDSPFilter::GetOutputSurfacesDirty() {
    return s_NoDirtyFlags;
}
const IConstCustomProperties& CBaseCoreDSPFilter::GetOutputCustomProperties() const {
    return s_NoCustomProperties;
}
IDirtyFlags& CBaseCoreDSPFilter::GetOutputCustomPropertiesDirty() {
    return s_NoDirtyFlags;
}
const ILegacyPresets& CBaseCoreDSPFilter::GetLegacyPresets() const {
    return s_NoLegacyPresets;
}

void CBaseCoreDSPFilter::OnInputParamsChanged(const IConstParamsValues&) {}
void CBaseCoreDSPFilter::OnSilence(int) {}
void CBaseCoreDSPFilter::OnInit(const CFilterInitInfo&) {}
void CBaseCoreDSPFilter::ProcessBlock(const CFilterProcessData&) {}
void CBaseCoreDSPFilter::ProcessStreams(const IConstAudioStreams&, IAudioStreams&, int,
                                        const IConstFilterPropertiesVariations*) {}

} // namespace Lathe::Audio::DSP
