// Two instances of a mono filter, each with input parameters of its own.
#pragma once

#include "dsp/adapters/StereoFromMonoFilter.h"
#include "dsp/kernel/Cascade.h"

namespace Lathe::Audio::DSP {

// The inputs of the left instance come first, those of the right one after them; custom properties
// are those of the left.
template <class F>
class TFullStereoFromMonoFilter : public TStereoFromMonoFilter<F> {
public:
    TFullStereoFromMonoFilter* Clone() const override {
        return new TFullStereoFromMonoFilter(*this);
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
        return this->m_Left.GetInputCustomPropertiesInfo();
    }

    void SetInputValues(const IConstFilterProperties& values) LATHE_REALTIME override {
        CFilterPropertiesAdapter channel;
        channel.Attach(values);
        channel.SetChannel(this->m_Left, 0);
        this->m_Left.SetInputValues(channel);
        channel.SetChannel(this->m_Left, 1);
        this->m_Right.SetInputValues(channel);
    }

    void Process(const CFilterProcessData& data) LATHE_REALTIME override {
        if (ProcessTogether(data, nullptr))
            return;
        RunChannels(data, this->m_ProcessVariations,
                    [](F& filter, const CFilterProcessData& channelData) {
                        filter.Process(channelData);
                        return true;
                    });
    }
    bool ProcessSilence(const CFilterProcessData& data) LATHE_REALTIME override {
        return RunChannels(data, this->m_SilenceVariations,
                           [](F& filter, const CFilterProcessData& channelData) {
                               return filter.ProcessSilence(channelData);
                           });
    }

    // As Process, within a matrix that may be null, with both channels in one cascade. False, and
    // nothing is done, where the filters or the streams don't allow that. The variations may be
    // those of an enclosing filter, of whose parameters this filter's begin with firstParam: views
    // of views would cost more than what is read through them.
    bool ProcessTogether(const CFilterProcessData& data, const CMidSideMatrix* matrix,
                         int firstParam = 0) LATHE_REALTIME {
        if constexpr (Kernel::CascadeFilter<F>) {
            if (!m_Cascade.Aim(data))
                return false;
            const int params = m_InputParamsInfo.GetCount() / Kernel::Channels;
            this->m_Left.StartCascade(m_Cascade.GetChannel(0), data.m_pVariations,
                                      data.m_SamplesCount, firstParam);
            this->m_Right.StartCascade(m_Cascade.GetChannel(1), data.m_pVariations,
                                       data.m_SamplesCount, firstParam + params, &this->m_Left);
            m_Cascade.Run(matrix);
            if (data.m_pVariations) {
                this->m_Left.EndCascade();
                this->m_Right.EndCascade(&this->m_Left);
            }
            return true;
        } else {
            return false;
        }
    }

private:
    // True when either channel's run was.
    template <class TRun>
    bool RunChannels(const CFilterProcessData& data, CFilterPropertiesVariationsAdapter& variations,
                     TRun run) LATHE_REALTIME {
        if (data.m_pVariations)
            variations.Attach(*data.m_pVariations);
        const bool left = RunChannel(data, variations, this->m_Left, 0, run);
        const bool right = RunChannel(data, variations, this->m_Right, 1, run);
        return left || right;
    }

    template <class TRun>
    bool RunChannel(const CFilterProcessData& data, CFilterPropertiesVariationsAdapter& variations,
                    F& filter, int channel, TRun run) LATHE_REALTIME {
        // Silence may come without inputs.
        const bool hasInput =
            this->m_Inputs > channel && data.m_pInputs && data.m_pInputs->GetCount() > channel;
        const bool hasOutput =
            this->m_Outputs > channel && data.m_pOutputs && data.m_pOutputs->GetCount() > channel;
        const CConstAudioStreamToStreams input(hasInput ? &data.m_pInputs->GetElement(channel)
                                                        : nullptr);
        CAudioStreamToStreams output(hasOutput ? &data.m_pOutputs->GetElement(channel) : nullptr,
                                     false);
        CFilterProcessData channelData = data;
        channelData.m_pInputs = &input;
        channelData.m_pOutputs = &output;
        if (data.m_pVariations) {
            variations.SetChannel(filter, channel);
            channelData.m_pVariations = &variations;
        }
        return run(filter, channelData);
    }

    TMonoToStereoInfo<CParamInfo, IConstParamInfo> m_InputParamsInfo{
        this->m_Left.GetInputParamsInfo()};
    TMonoToStereoInfo<CStringInfo, IConstStringInfo> m_InputStringsInfo{
        this->m_Left.GetInputStringsInfo()};
    TMonoToStereoInfo<CCurveInfo, IConstCurveInfo> m_InputCurvesInfo{
        this->m_Left.GetInputCurvesInfo()};
    TMonoToStereoInfo<CSurfaceInfo, IConstSurfaceInfo> m_InputSurfacesInfo{
        this->m_Left.GetInputSurfacesInfo()};
    // Aimed anew in each block. Held, since making one would cost a third of what a short block
    // without changes costs beyond its frames.
    Kernel::CCascade m_Cascade;
};

} // namespace Lathe::Audio::DSP
