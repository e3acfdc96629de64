// Two instances of a mono filter side by side, seen as one stereo filter.
#pragma once

#include "core/containers/VectorMux.h"
#include "dsp/Filter.h"
#include "dsp/FilterInfos.h"
#include "dsp/OutputDataSync.h"
#include "dsp/ProcessInfo.h"
#include "dsp/adapters/SplitInfos.h"
#include "dsp/properties/FilterPropertiesAdapter.h"

#include <algorithm>
#include <vector>

namespace Lathe::Audio::DSP {

// Declares the outputs of both and forwards what does not depend on how the two are fed; a
// subclass says which inputs there are and which of them each instance gets.
template <class F>
class TStereoFromMonoFilter : public IFilter {
public:
    TStereoFromMonoFilter() : m_ProcessInfo(MakeProcessInfo(m_Left)) { Wire(); }
    TStereoFromMonoFilter(const TStereoFromMonoFilter& other)
        : m_Left(other.m_Left),
          m_Right(other.m_Right),
          m_ProcessInfo(other.m_ProcessInfo),
          m_SilenceVariations(other.m_SilenceVariations),
          m_ProcessVariations(other.m_ProcessVariations) {
        Wire();
    }
    TStereoFromMonoFilter& operator=(const TStereoFromMonoFilter&) = delete;

    const IConstFilterProductInfo& GetProductInfo() const override {
        return m_Left.GetProductInfo();
    }
    void Init(double sampleRate, const CFilterInitInfo& info) override {
        m_Left.Init(sampleRate, info);
        m_Right.Init(sampleRate, info);
        m_SilenceVariations.Reserve(info.m_MaxVariationsOrder);
        m_ProcessVariations.Reserve(info.m_MaxVariationsOrder);
    }
    void Uninit() override {
        m_Left.Uninit();
        m_Right.Uninit();
    }

    const IProcessInfo& GetProcessInfo() const LATHE_REALTIME override { return m_ProcessInfo; }
    const IIOConfiguration& GetCurrentIOConfiguration() const LATHE_REALTIME override {
        return m_ProcessInfo;
    }
    int GetTailLength() const LATHE_REALTIME override {
        const int left = m_Left.GetTailLength();
        const int right = m_Right.GetTailLength();
        return left == -1 || right == -1 ? -1 : std::max(left, right);
    }
    int GetLatency() const LATHE_REALTIME override {
        return std::max(m_Left.GetLatency(), m_Right.GetLatency());
    }
    void Reset() LATHE_REALTIME override {
        m_Left.Reset();
        m_Right.Reset();
    }

    Serialization::ISerializable* GetInternalDSPState() override { return nullptr; }
    IOutputDataSync* GetOutputDataSync() LATHE_REALTIME override {
        IOutputDataSync* left = m_Left.GetOutputDataSync();
        IOutputDataSync* right = m_Right.GetOutputDataSync();
        m_OutputDataSync.Attach(left, right);
        return left || right ? &m_OutputDataSync : nullptr;
    }
    void ResetOutputs() LATHE_REALTIME override {
        m_Left.ResetOutputs();
        m_Right.ResetOutputs();
    }
    bool UpdateOutputs() LATHE_REALTIME override {
        const bool leftChanged = m_Left.UpdateOutputs();
        const bool rightChanged = m_Right.UpdateOutputs();
        AimOutputs();
        return leftChanged || rightChanged;
    }

    const IConstParamInfos& GetOutputParamsInfo() const override { return m_OutputParamsInfo; }
    const IConstParamsValues& GetOutputParamsValues() const LATHE_REALTIME override {
        return m_OutputParams;
    }
    const IConstParamInfos& GetPrivateOutputParamsInfo() const override {
        return m_PrivateOutputParamsInfo;
    }
    const IConstParamsValues& GetPrivateOutputParamsValues() const LATHE_REALTIME override {
        return m_PrivateOutputParams;
    }
    const IConstStringInfos& GetOutputStringsInfo() const override { return m_OutputStringsInfo; }
    const IConstStrings& GetOutputStrings() const LATHE_REALTIME override {
        return m_OutputStrings;
    }
    IDirtyFlags& GetOutputStringsDirty() LATHE_REALTIME override { return m_OutputStringsDirty; }
    const IConstCurveInfos& GetOutputCurvesInfo() const override { return m_OutputCurvesInfo; }
    const IConstCurves& GetOutputCurves() const LATHE_REALTIME override { return m_OutputCurves; }
    IDirtyFlags& GetOutputCurvesDirty() LATHE_REALTIME override { return m_OutputCurvesDirty; }
    const IConstSurfaceInfos& GetOutputSurfacesInfo() const override {
        return m_OutputSurfacesInfo;
    }
    const IConstSurfaces& GetOutputSurfaces() const LATHE_REALTIME override {
        return m_OutputSurfaces;
    }
    IDirtyFlags& GetOutputSurfacesDirty() LATHE_REALTIME override { return m_OutputSurfacesDirty; }
    const IConstCustomPropertyInfos& GetOutputCustomPropertiesInfo() const override {
        return m_OutputCustomPropertiesInfo;
    }
    const IConstCustomProperties& GetOutputCustomProperties() const LATHE_REALTIME override {
        return m_OutputCustomProperties;
    }
    IDirtyFlags& GetOutputCustomPropertiesDirty() LATHE_REALTIME override {
        return m_OutputCustomPropertiesDirty;
    }
    const ILegacyPresets& GetLegacyPresets() const override { return m_Left.GetLegacyPresets(); }

protected:
    F m_Left;
    F m_Right;

private:
    TMonoToStereoInfo<CParamInfo, IConstParamInfo> m_OutputParamsInfo{m_Left.GetOutputParamsInfo()};
    TMonoToStereoInfo<CParamInfo, IConstParamInfo> m_PrivateOutputParamsInfo{
        m_Left.GetPrivateOutputParamsInfo()};
    TMonoToStereoInfo<CStringInfo, IConstStringInfo> m_OutputStringsInfo{
        m_Left.GetOutputStringsInfo()};
    TMonoToStereoInfo<CCurveInfo, IConstCurveInfo> m_OutputCurvesInfo{m_Left.GetOutputCurvesInfo()};
    TMonoToStereoInfo<CSurfaceInfo, IConstSurfaceInfo> m_OutputSurfacesInfo{
        m_Left.GetOutputSurfacesInfo()};
    TMonoToStereoInfo<CCustomPropertyInfo, IConstCustomPropertyInfo> m_OutputCustomPropertiesInfo{
        m_Left.GetOutputCustomPropertiesInfo()};

    CConstParamsValuesMux m_OutputParams;
    CConstParamsValuesMux m_PrivateOutputParams;
    CoreUtilities::TConstValueVectorMux<const char*> m_OutputStrings;
    CoreUtilities::TConstValueVectorMux<const Math::IFunction&> m_OutputCurves;
    CoreUtilities::TConstValueVectorMux<const Math::IBinaryFunction&> m_OutputSurfaces;
    CoreUtilities::TConstValueVectorMux<const DataModel::Objects::IDynamicPropertyValue&>
        m_OutputCustomProperties;
    CoreUtilities::TVectorMux<Core::IDirty> m_OutputStringsDirty;
    CoreUtilities::TVectorMux<Core::IDirty> m_OutputCurvesDirty;
    CoreUtilities::TVectorMux<Core::IDirty> m_OutputSurfacesDirty;
    CoreUtilities::TVectorMux<Core::IDirty> m_OutputCustomPropertiesDirty;

protected:
    CProcessInfo m_ProcessInfo;
    // Channels of both instances together.
    int m_Inputs = m_ProcessInfo.GetInputs().GetCount();
    int m_Outputs = m_ProcessInfo.GetOutputs().GetCount();
    COutputDataSyncMux m_OutputDataSync;
    CFilterPropertiesVariationsAdapter m_SilenceVariations;
    CFilterPropertiesVariationsAdapter m_ProcessVariations;

private:
    // Twice the mono filter's channels, all named as its first ones.
    static CProcessInfo MakeProcessInfo(const F& mono) {
        const IIOConfiguration& configuration = mono.GetProcessInfo();
        const int inputs = configuration.GetInputs().GetCount();
        const int outputs = configuration.GetOutputs().GetCount();
        const std::vector<CInputInfo> inputInfos(
            static_cast<std::size_t>(2 * inputs),
            inputs > 0 ? configuration.GetInputs().GetElement(0) : CInputInfo());
        const std::vector<COutputInfo> outputInfos(
            static_cast<std::size_t>(2 * outputs),
            outputs > 0 ? configuration.GetOutputs().GetElement(0) : COutputInfo());
        return CProcessInfo(2 * inputs, 2 * outputs, inputInfos.data(), outputInfos.data());
    }

    void Wire() {
        AimOutputs();
        m_OutputDataSync.Attach(m_Left.GetOutputDataSync(), m_Right.GetOutputDataSync());
    }

    void AimOutputs() LATHE_REALTIME {
        m_OutputParams.Attach(m_Left.GetOutputParamsValues(), m_Right.GetOutputParamsValues());
        m_PrivateOutputParams.Attach(m_Left.GetPrivateOutputParamsValues(),
                                     m_Right.GetPrivateOutputParamsValues());
        m_OutputStrings.Attach(m_Left.GetOutputStrings(), m_Right.GetOutputStrings());
        m_OutputCurves.Attach(m_Left.GetOutputCurves(), m_Right.GetOutputCurves());
        m_OutputSurfaces.Attach(m_Left.GetOutputSurfaces(), m_Right.GetOutputSurfaces());
        m_OutputCustomProperties.Attach(m_Left.GetOutputCustomProperties(),
                                        m_Right.GetOutputCustomProperties());
        m_OutputStringsDirty.Attach(m_Left.GetOutputStringsDirty(),
                                    m_Right.GetOutputStringsDirty());
        m_OutputCurvesDirty.Attach(m_Left.GetOutputCurvesDirty(), m_Right.GetOutputCurvesDirty());
        m_OutputSurfacesDirty.Attach(m_Left.GetOutputSurfacesDirty(),
                                     m_Right.GetOutputSurfacesDirty());
        m_OutputCustomPropertiesDirty.Attach(m_Left.GetOutputCustomPropertiesDirty(),
                                             m_Right.GetOutputCustomPropertiesDirty());
    }
};

} // namespace Lathe::Audio::DSP
