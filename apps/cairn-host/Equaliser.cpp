#include "cairn-host/Equaliser.h"

#include "datamodel/objects/CurveInfo.h"
#include "datamodel/objects/ParamInfo.h"
#include "dsp/PluginsFilters/DualCairnEQ.h"
#include "dsp/properties/FilterPropertiesVariations.h"
#include "math/Function.h"

#include <array>
#include <cmath>

namespace CairnHost {
namespace {

namespace DSP = Lathe::Audio::DSP;

constexpr int s_Channels = 2;
constexpr int s_MaxVariationsOrder = 1;
// A block without a sample above this is silent, and need not be filtered.
constexpr double s_Silence = 1e-10;

bool IsSilent(const float* samples, int count) {
    for (int i = 0; i < count; ++i) {
        // NaN is signal too.
        if (!(static_cast<double>(std::abs(samples[i])) <= s_Silence))
            return false;
    }
    return true;
}

std::string TextOrEmpty(const char* text) {
    return text ? text : "";
}

CParameterTable DescribeParameters(const DSP::IFilter& filter) {
    const DSP::IConstParamInfos& infos = filter.GetInputParamsInfo();
    std::vector<SParameter> parameters;
    for (int i = 0; i < infos.GetCount(); ++i) {
        const Lathe::DataModel::Objects::IConstParamInfo& info = infos.GetElement(i);
        parameters.push_back({TextOrEmpty(info.GetName()), TextOrEmpty(info.GetUnit()),
                              info.GetMin(), info.GetMax(), info.GetDefault(),
                              Lathe::DataModel::Objects::IsDiscrete(info.GetType()),
                              &info.GetValueToText()});
    }
    return CParameterTable(std::move(parameters));
}

} // namespace

struct CEqualiser::SState {
    PluginsFilters::CDualCairnEQ m_Filter;
    CParameterTable m_Parameters = DescribeParameters(m_Filter);
    DSP::CFilterPropertiesVariations m_Variations;
    std::array<DSP::CAudioStream, s_Channels> m_Inputs;
    std::array<DSP::CAudioStream, s_Channels> m_Outputs;
};

CEqualiser::CEqualiser() : m_State(std::make_unique<SState>()) {}
CEqualiser::~CEqualiser() = default;

const CParameterTable& CEqualiser::GetParameters() const {
    return m_State->m_Parameters;
}

void CEqualiser::Prepare(double sampleRate, int maxBlockSize,
                         const std::vector<SSetting>& settings) {
    SState& state = *m_State;
    DSP::CFilterInitInfo info;
    info.m_ResetToDefaults = true;
    info.m_MaxBlockSize = maxBlockSize;
    info.m_MaxVariationsOrder = s_MaxVariationsOrder;
    state.m_Filter.Init(sampleRate, info);

    state.m_Variations.Setup(state.m_Filter, s_MaxVariationsOrder);
    DSP::CFilterProperties& end = state.m_Variations.GetEnd();
    end.SetDefaults(state.m_Filter);
    for (const SSetting& setting : settings)
        end.GetParams().SetValue(setting.m_Parameter, setting.m_Value);
    state.m_Filter.SetInputValues(end);
    state.m_Variations.Commit();

    state.m_Filter.ResetOutputs();
    state.m_Filter.UpdateOutputs();
}

double CEqualiser::GetValue(int parameter) const {
    return std::as_const(m_State->m_Variations).GetEnd().GetParams().GetValue(parameter);
}

void CEqualiser::MoveTo(const SSetting& setting) {
    DSP::CFilterProperties& end = m_State->m_Variations.GetEnd();
    end.GetParams().SetValue(setting.m_Parameter, setting.m_Value);
    end.GetDirty(DSP::Params).GetElement(setting.m_Parameter).SetDirty();
}

void CEqualiser::Process(float* inputLeft, float* inputRight, float* outputLeft, float* outputRight,
                         int frames) {
    SState& state = *m_State;
    state.m_Inputs[0].Aim(inputLeft, frames);
    state.m_Inputs[1].Aim(inputRight, frames);
    state.m_Outputs[0].Aim(outputLeft, frames);
    state.m_Outputs[1].Aim(outputRight, frames);
    const DSP::CAudioStreams inputs(state.m_Inputs.data(), s_Channels, false);
    DSP::CAudioStreams outputs(state.m_Outputs.data(), s_Channels, false);

    DSP::CFilterProcessData data;
    data.m_pInputs = &inputs;
    data.m_pOutputs = &outputs;
    data.m_SamplesCount = frames;
    const bool moves = DSP::IsAnyDirty(state.m_Variations.GetEnd(), DSP::Params);
    if (moves) {
        state.m_Variations.ComputeRates(frames);
        data.m_pVariations = &state.m_Variations;
    }
    if (IsSilent(inputLeft, frames) && IsSilent(inputRight, frames))
        state.m_Filter.ProcessSilence(data);
    else
        state.m_Filter.Process(data);
    if (moves)
        state.m_Variations.Commit();
}

int CEqualiser::GetCurveCount() const {
    return m_State->m_Filter.GetOutputCurvesInfo().GetCount();
}

std::string CEqualiser::GetCurveName(int curve) const {
    return TextOrEmpty(m_State->m_Filter.GetOutputCurvesInfo().GetElement(curve).GetName());
}

double CEqualiser::EvaluateCurve(int curve, double frequency) const {
    return m_State->m_Filter.GetOutputCurves().GetValue(curve).Evaluate(frequency);
}

} // namespace CairnHost
