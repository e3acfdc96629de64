#include "dsp/TestFilter.h"

#include <cstdlib>

namespace Lathe::Audio::DSP {

CTestFilter::CTestFilter(int channels) {
    m_Calls.reserve(1024);
    m_ProcessInfo.m_IOConfigurations.SetCount(1);
    CIOConfiguration& mono = m_ProcessInfo.m_IOConfigurations[0];
    mono.SetName("Mono");
    mono.m_Inputs.SetCount(1);
    mono.m_Outputs.SetCount(1);

    const auto fill = [&](int kind, auto& infos, auto set) {
        infos.SetCount(s_InputsCounts[kind] * channels);
        for (int i = 0; i < infos.GetCount(); ++i)
            set(infos[i], 100 * kind + i);
    };
    fill(Params, m_InputParamsInfo, [](CParamInfo& info, int number) { info.SetDefault(number); });
    fill(Strings, m_InputStringsInfo, [](CStringInfo& info, int number) {
        info.SetDefaultValue(std::to_string(number).c_str());
    });
    fill(Curves, m_InputCurvesInfo,
         [](CCurveInfo& info, int number) { info.GetYInfo().SetDefault(number); });
    fill(Surfaces, m_InputSurfacesInfo,
         [](CSurfaceInfo& info, int number) { info.GetYInfo().SetDefault(number); });
    fill(CustomProperties, m_InputCustomPropertiesInfo, [](CCustomPropertyInfo& info, int number) {
        info = CCustomPropertyInfo("", "", new CNumberProperty(number));
    });
}

std::string CTestFilter::TakeCalls() {
    std::string calls = m_Calls;
    m_Calls.clear();
    return calls;
}

void CTestFilter::OnInputParamsChanged(const IConstParamsValues& values) {
    Note("params", static_cast<int>(values.GetValue(0)));
}

void CTestFilter::ProcessStreams(const IConstAudioStreams& inputs, IAudioStreams& outputs,
                                 int samples, const IConstFilterPropertiesVariations*) {
    Note("streams", samples);
    m_InputsCount = inputs.GetCount();
    m_InputsSum = 0.0f;
    for (int c = 0; c < std::min(inputs.GetCount(), outputs.GetCount()); ++c) {
        const IAudioStream& input = inputs.GetElement(c);
        IAudioStream& output = outputs.GetElement(c);
        for (int i = 0; i < std::min(samples, input.GetSize()); ++i) {
            const float sample = input.GetData()[i * input.GetStride()];
            m_InputsSum += sample;
            output.GetData()[i * output.GetStride()] = sample + 1.0f;
        }
    }
}

void CTestFilter::Note(const char* call) {
    if (!m_Calls.empty())
        m_Calls += ' ';
    m_Calls += call;
}

void CTestFilter::Note(const char* call, int number) {
    Note(call);
    m_Calls += '(';
    m_Calls += std::to_string(number);
    m_Calls += ')';
}

double GetNumber(const IConstFilterProperties& values, int kind, int index) {
    switch (kind) {
    case Params:
        return values.GetParams().GetValue(index);
    case Strings:
        return std::atof(values.GetStrings().GetValue(index));
    case Curves:
        return values.GetCurves().GetValue(index).Evaluate(0.3);
    case Surfaces:
        return values.GetSurfaces().GetValue(index).Evaluate(0.3, 0.4);
    default:
        if (const auto* number =
                dynamic_cast<const CNumberProperty*>(&values.GetCustomProperties().GetValue(index)))
            return number->m_Number;
        return 0.0;
    }
}

void SetNumber(CFilterProperties& values, int kind, int index, int number) {
    switch (kind) {
    case Params:
        values.GetParams().SetValue(index, number);
        break;
    case Strings:
        values.GetStrings().SetValue(index, std::to_string(number).c_str());
        break;
    case Curves:
        values.GetCurves().SetValue(index, Math::CConstantFunction(number));
        break;
    case Surfaces:
        values.GetSurfaces().SetValue(index, Math::CConstantBinaryFunction(number));
        break;
    default:
        values.GetCustomProperties().SetValue(index, CNumberProperty(number));
        break;
    }
    values.GetDirty(kind).GetElement(index).SetDirty();
}

const void* GetAddress(const IConstFilterProperties& values, int kind, int index) {
    switch (kind) {
    case Params:
        return nullptr;
    case Strings:
        return values.GetStrings().GetValue(index);
    case Curves:
        return &values.GetCurves().GetValue(index);
    case Surfaces:
        return &values.GetSurfaces().GetValue(index);
    default:
        return &values.GetCustomProperties().GetValue(index);
    }
}

int GetCount(const IConstFilterProperties& values, int kind) {
    const Containers::IConstCount* const vectors[InputKinds] = {
        &values.GetParams(), &values.GetStrings(), &values.GetCurves(), &values.GetSurfaces(),
        &values.GetCustomProperties()};
    return vectors[kind]->GetCount();
}

} // namespace Lathe::Audio::DSP
