#include "cairn-host/Equaliser.h"

#include "datamodel/objects/CurveInfo.h"
#include "datamodel/objects/ParamInfo.h"
#include "dsp/PluginsFilters/DualCairnEQ.h"
#include "dsp/properties/FilterProperties.h"
#include "math/Function.h"

#include <utility>

namespace CairnHost {
namespace {

namespace DSP = Lathe::Audio::DSP;

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
    DSP::CFilterProperties m_Properties;
};

CEqualiser::CEqualiser() : m_State(std::make_unique<SState>()) {}
CEqualiser::~CEqualiser() = default;

const CParameterTable& CEqualiser::GetParameters() const {
    return m_State->m_Parameters;
}

void CEqualiser::Prepare(double sampleRate, const std::vector<SSetting>& settings) {
    SState& state = *m_State;
    DSP::CFilterInitInfo info;
    info.m_ResetToDefaults = true;
    info.m_MaxBlockSize = 1;
    state.m_Filter.Init(sampleRate, info);

    state.m_Properties.SetDefaults(state.m_Filter);
    for (const SSetting& setting : settings)
        state.m_Properties.GetParams().SetValue(setting.m_Parameter, setting.m_Value);
    state.m_Filter.SetInputValues(state.m_Properties);

    state.m_Filter.ResetOutputs();
    state.m_Filter.UpdateOutputs();
}

double CEqualiser::GetValue(int parameter) const {
    return std::as_const(m_State->m_Properties).GetParams().GetValue(parameter);
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
