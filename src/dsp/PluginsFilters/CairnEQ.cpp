#include "dsp/PluginsFilters/CairnEQ.h"

#include "datamodel/objects/text/LogPositionMapper.h"
#include "datamodel/objects/text/ParamValueToText.h"
#include "dsp/FilterProductInfo.h"
#include "dsp/filters/ResponseCurves.h"

#include <cmath>

namespace PluginsFilters {

using namespace Lathe::Audio::DSP;
using Lathe::DataModel::Objects::CLogPositionMapper;
using Lathe::DataModel::Objects::CParamValueToText;
using Lathe::DataModel::Objects::EParamType;
using Lathe::Math::TFunction;
using Lathe::Math::FunctionsLibrary::TodB;

namespace {

// The user's parameters, in their order.
enum EParam : int { Gain, Frequency, Bandwidth, Low, Mid, High, ParamsCount };

constexpr double s_MinFrequency = 20.0;
constexpr double s_MaxFrequency = 22000.0;

struct SParamRow {
    const char* m_Name;
    const char* m_Unit;
    const char* m_Description;
    double m_Min;
    double m_Max;
    double m_Default;
    const char* m_Format;
    bool m_IsLogarithmic;
};

constexpr SParamRow s_Params[ParamsCount] = {
    {"Gain", "dB", "Pre-gain", -40.0, 40.0, 0.0, "%+.0f", false},
    {"Frequency", "Hz", "", s_MinFrequency, s_MaxFrequency, 650.0, "%.0f", true},
    {"Bandwidth", "Oct", "", static_cast<double>(0.01f), 5.0, 1.0, "%.2f", false},
    {"Low", "dB", "", -40.0, 40.0, 0.0, "%+.1f", false},
    {"Mid", "dB", "", -40.0, 40.0, 0.0, "%+.1f", false},
    {"High", "dB", "", -40.0, 40.0, 0.0, "%+.1f", false},
};

const CParamInfos& GetParamInfos() {
    static const CParamInfos params = [] {
        CParamInfos infos(ParamsCount);
        for (int i = 0; i < ParamsCount; ++i) {
            const SParamRow& row = s_Params[i];
            // The info takes both objects.
            infos[i] = CParamInfo(EParamType::Float, row.m_Min, row.m_Max, row.m_Default,
                                  row.m_Name, row.m_Unit, row.m_Description,
                                  new CParamValueToText(row.m_Format, false, "{value}"),
                                  row.m_IsLogarithmic ? new CLogPositionMapper(EParamType::Float,
                                                                               row.m_Min, row.m_Max)
                                                      : nullptr);
        }
        return infos;
    }();
    return params;
}

// The output curves, in their order.
enum ECurve : int {
    GainCurve,
    GaindBCurve,
    LowCurve,
    MidCurve,
    HighCurve,
    PhaseCurve,
    CurvesCount
};

struct SCurveRow {
    const char* m_Name;
    Filters::EResponse m_Response;
};

constexpr SCurveRow s_Curves[CurvesCount] = {
    {"Frequency Response (Gain)", Filters::EResponse::Gain},
    {"Frequency Response (Gain dB)", Filters::EResponse::GaindB},
    {"Low Frequency Response (Gain dB)", Filters::EResponse::GaindB},
    {"Mid Frequency Response (Gain dB)", Filters::EResponse::GaindB},
    {"High Frequency Response (Gain dB)", Filters::EResponse::GaindB},
    {"Frequency Response (Phase)", Filters::EResponse::Phase},
};

const CCurveInfos& GetCurveInfos() {
    static const CCurveInfos curves = [] {
        const CParamInfo frequency(
            EParamType::Float, s_MinFrequency, s_MaxFrequency, s_MinFrequency, "Frequency", "Hz",
            "", new CParamValueToText("%.0f", false, "{value}"),
            new CLogPositionMapper(EParamType::Float, s_MinFrequency, s_MaxFrequency));
        CCurveInfos infos(CurvesCount);
        for (int i = 0; i < CurvesCount; ++i)
            Filters::DescribeResponse(infos[i], s_Curves[i].m_Name, frequency,
                                      s_Curves[i].m_Response);
        return infos;
    }();
    return curves;
}

// The curves of a section, in their order.
enum ESectionCurve : int { SectionGain, SectionGaindB, SectionPhase };

// Translations of the user's parameters into those of a stage.

void TranslateGain(const IConstParamsValues& from, double, IParamsValues& to) {
    to.SetValue(0, from.GetValue(Gain));
}

void TranslatePeak(const IConstParamsValues& from, double, IParamsValues& to) {
    to.SetValue(0, from.GetValue(Frequency));
    to.SetValue(1, from.GetValue(Bandwidth));
    to.SetValue(2, from.GetValue(Mid));
}

void TranslateLowShelf(const IConstParamsValues& from, double, IParamsValues& to) {
    to.SetValue(0, from.GetValue(Frequency) * std::pow(2.0, -0.5 * from.GetValue(Bandwidth)));
    to.SetValue(1, from.GetValue(Low));
}

// Only this shelf can reach beyond the Nyquist frequency, and stays below it.
void TranslateHighShelf(const IConstParamsValues& from, double sampleRate, IParamsValues& to) {
    const double nyquist = 0.5 * sampleRate;
    const double frequency =
        from.GetValue(Frequency) * std::pow(2.0, 0.5 * from.GetValue(Bandwidth));
    to.SetValue(0, frequency > nyquist ? nyquist - 20.0 : frequency);
    to.SetValue(1, from.GetValue(High));
}

const CProcessInfo& GetMonoProcessInfo() {
    static const CProcessInfo info(1, 1);
    return info;
}

constexpr unsigned Uses(EParam param) {
    return 1u << param;
}

} // namespace

// A stage as the translation sees it.
struct CCairnEQ::SStage {
    int m_ParamsCount;
    void (*m_Translate)(const IConstParamsValues& from, double sampleRate, IParamsValues& to);
    // For each parameter of the stage the parameters of the user that it is made of.
    unsigned m_Sources[3];
    // The frequency is not linear in its sources: its rate is taken from its start and end.
    bool m_HasDerivedFrequency;

    void Fill(const IConstFilterProperties& from, double sampleRate, CFilterProperties& to) const {
        to.SetParamsCount(m_ParamsCount);
        m_Translate(from.GetParams(), sampleRate, to.GetParams());
        for (int i = 0; i < m_ParamsCount; ++i) {
            Core::IDirty& flag = to.GetDirty(Params).GetElement(i);
            IsAnySourceDirty(from.GetDirty(Params), m_Sources[i]) ? flag.SetDirty()
                                                                  : flag.ClearDirty();
        }
    }

    static const SStage GainStage;
    static const SStage PeakStage;
    static const SStage LowShelfStage;
    static const SStage HighShelfStage;

private:
    static bool IsAnySourceDirty(const IConstDirtyFlags& flags, unsigned sources) {
        for (int param = 0; param < ParamsCount; ++param) {
            if ((sources & (1u << param)) != 0 && flags.GetElement(param).IsDirty())
                return true;
        }
        return false;
    }
};

constexpr CCairnEQ::SStage CCairnEQ::SStage::GainStage = {1, TranslateGain, {Uses(Gain)}, false};
constexpr CCairnEQ::SStage CCairnEQ::SStage::PeakStage = {
    3, TranslatePeak, {Uses(Frequency), Uses(Bandwidth), Uses(Mid)}, false};
constexpr CCairnEQ::SStage CCairnEQ::SStage::LowShelfStage = {
    2, TranslateLowShelf, {Uses(Frequency) | Uses(Bandwidth), Uses(Low)}, true};
constexpr CCairnEQ::SStage CCairnEQ::SStage::HighShelfStage = {
    2, TranslateHighShelf, {Uses(Frequency) | Uses(Bandwidth), Uses(High)}, true};

CCairnEQ::CCairnEQ() : m_ProcessInfo(GetMonoProcessInfo()) {
    m_InputParamsInfo = GetParamInfos();
    m_OutputCurvesInfo = GetCurveInfos();
    WireOutputs();
}

CCairnEQ::CCairnEQ(const CCairnEQ& other)
    : CBaseCoreDSPFilter(other),
      m_ProcessInfo(other.m_ProcessInfo),
      m_Gain(other.m_Gain),
      m_LowShelf(other.m_LowShelf),
      m_Peak(other.m_Peak),
      m_HighShelf(other.m_HighShelf),
      m_StageVariations(other.m_StageVariations),
      m_OutputCurvesDirty(other.m_OutputCurvesDirty),
      m_ParamsChanged(other.m_ParamsChanged) {
    WireOutputs();
}

void CCairnEQ::WireOutputs() {
    m_GainResponse.SetCount(4);
    m_PhaseResponse.SetCount(4);
    WireResponses();
    m_GainResponsedB.SetCount(2);
    m_GainResponsedB.SetFunction(0, &m_GainResponse, false);
    m_GainResponsedB.SetFunction(1, &TFunction<&TodB>::GetInstance(), false);
    m_OutputCurves.SetPointer(GainCurve, &m_GainResponse);
    m_OutputCurves.SetPointer(GaindBCurve, &m_GainResponsedB);
    m_OutputCurves.SetPointer(LowCurve, &m_LowShelf.GetOutputCurves().GetValue(SectionGaindB));
    m_OutputCurves.SetPointer(MidCurve, &m_Peak.GetOutputCurves().GetValue(SectionGaindB));
    m_OutputCurves.SetPointer(HighCurve, &m_HighShelf.GetOutputCurves().GetValue(SectionGaindB));
    m_OutputCurves.SetPointer(PhaseCurve, &m_PhaseResponse);
}

void CCairnEQ::WireResponses() {
    m_GainResponse.SetFunction(0, &m_Gain.GetOutputCurves().GetValue(0), false);
    m_PhaseResponse.SetFunction(0, &m_Gain.GetOutputCurves().GetValue(1), false);
    const Filters::CBiquadFilter* const sections[] = {&m_LowShelf, &m_Peak, &m_HighShelf};
    for (int i = 0; i < 3; ++i) {
        const IConstCurves& curves = sections[i]->GetOutputCurves();
        m_GainResponse.SetFunction(i + 1, &curves.GetValue(SectionGain), false);
        m_PhaseResponse.SetFunction(i + 1, &curves.GetValue(SectionPhase), false);
    }
}

const IConstFilterProductInfo& CCairnEQ::GetProductInfo() const {
    static const CFilterProductInfo info("Marrow Sound", "Marrow's Cairn EQ", "3.0", "", "", 9, "");
    return info;
}

const IProcessInfo& CCairnEQ::GetProcessInfo() const {
    return m_ProcessInfo;
}

void CCairnEQ::Init(double sampleRate, const CFilterInitInfo& info) {
    m_SampleRate = sampleRate;
    m_Gain.Init(sampleRate, info);
    m_LowShelf.Init(sampleRate, info);
    m_Peak.Init(sampleRate, info);
    m_HighShelf.Init(sampleRate, info);
    m_StageVariations.Setup(*this, info.m_MaxVariationsOrder);
    CBaseCoreDSPFilter::Init(sampleRate, info);
}

bool CCairnEQ::UpdateOutputs() {
    m_Gain.UpdateOutputs();
    m_LowShelf.UpdateOutputs();
    m_Peak.UpdateOutputs();
    m_HighShelf.UpdateOutputs();
    WireResponses();

    const auto take = [](IDirtyFlags& flags, int curve) {
        Core::IDirty& flag = flags.GetElement(curve);
        const bool wasDirty = flag.IsDirty();
        flag.ClearDirty();
        return wasDirty;
    };
    bool gainChanged = take(m_Gain.GetOutputCurvesDirty(), 0);
    bool phaseChanged = false;
    const struct {
        IDirtyFlags& m_Flags;
        ECurve m_Curve;
    } sections[] = {{m_LowShelf.GetOutputCurvesDirty(), LowCurve},
                    {m_Peak.GetOutputCurvesDirty(), MidCurve},
                    {m_HighShelf.GetOutputCurvesDirty(), HighCurve}};
    for (const auto& section : sections) {
        if (take(section.m_Flags, SectionGaindB)) {
            m_OutputCurvesDirty[section.m_Curve].SetDirty();
            gainChanged = true;
        }
        phaseChanged = take(section.m_Flags, SectionPhase) || phaseChanged;
    }
    if (gainChanged) {
        m_OutputCurvesDirty[GainCurve].SetDirty();
        m_OutputCurvesDirty[GaindBCurve].SetDirty();
    }
    if (phaseChanged)
        m_OutputCurvesDirty[PhaseCurve].SetDirty();
    return gainChanged || phaseChanged;
}

void CCairnEQ::OnInputParamsChanged(const IConstParamsValues& values) {
    m_ParamsChanged = true;
    const auto apply = [&](const SStage& stage, auto& filter) {
        m_StageParams.SetCount(stage.m_ParamsCount);
        stage.m_Translate(values, m_SampleRate, m_StageParams);
        filter.OnInputParamsChanged(m_StageParams);
    };
    apply(SStage::GainStage, m_Gain);
    apply(SStage::PeakStage, m_Peak);
    apply(SStage::LowShelfStage, m_LowShelf);
    apply(SStage::HighShelfStage, m_HighShelf);
}

void CCairnEQ::OnSilence(int samples) {
    m_LowShelf.OnSilence(samples);
    m_Peak.OnSilence(samples);
    m_HighShelf.OnSilence(samples);
}

void CCairnEQ::OnReset() {
    m_Gain.Reset();
    m_LowShelf.Reset();
    m_Peak.Reset();
    m_HighShelf.Reset();
}

void CCairnEQ::OnResetOutputCurves() {
    if (!m_ParamsChanged)
        return;
    m_ParamsChanged = false;
    m_Gain.ResetOutputs();
    m_LowShelf.ResetOutputs();
    m_Peak.ResetOutputs();
    m_HighShelf.ResetOutputs();
}

void CCairnEQ::ProcessStreams(const IConstAudioStreams& inputs, IAudioStreams& outputs, int samples,
                              const IConstFilterPropertiesVariations* variations) {
    if (inputs.GetCount() < 1 || outputs.GetCount() < 1)
        return;
    NoteChanges(variations);
    CFilterProcessData data;
    data.m_pInputs = &inputs;
    data.m_pOutputs = &outputs;
    data.m_SamplesCount = samples;
    const auto run = [&](const SStage& stage, auto& filter) {
        data.m_pVariations = TranslateVariations(stage, variations, samples);
        filter.Process(data);
        data.m_pInputs = &outputs;
    };
    run(SStage::GainStage, m_Gain);
    run(SStage::PeakStage, m_Peak);
    run(SStage::LowShelfStage, m_LowShelf);
    run(SStage::HighShelfStage, m_HighShelf);
}

void CCairnEQ::StartCascade(Kernel::SCascadeChannel& channel,
                            const IConstFilterPropertiesVariations* variations, int samples) {
    m_SilentSamples = 0;
    NoteChanges(variations);
    const auto start = [&](const SStage& stage, auto& filter) {
        return filter.StartBlock(TranslateVariations(stage, variations, samples));
    };
    channel.m_Gain = &m_Gain;
    channel.m_GainOrders = start(SStage::GainStage, m_Gain);
    channel.m_Sections[0] = &m_Peak;
    channel.m_SectionOrders = start(SStage::PeakStage, m_Peak);
    channel.m_Sections[1] = &m_LowShelf;
    start(SStage::LowShelfStage, m_LowShelf);
    channel.m_Sections[2] = &m_HighShelf;
    start(SStage::HighShelfStage, m_HighShelf);
}

void CCairnEQ::EndCascade(const IConstFilterPropertiesVariations& variations) {
    const auto end = [&](const SStage& stage, auto& filter) {
        stage.Fill(variations.GetEnd(), m_SampleRate, m_StageVariations.GetEnd());
        filter.SetInputValues(m_StageVariations.GetEnd());
    };
    end(SStage::GainStage, m_Gain);
    end(SStage::PeakStage, m_Peak);
    end(SStage::LowShelfStage, m_LowShelf);
    end(SStage::HighShelfStage, m_HighShelf);
}

void CCairnEQ::NoteChanges(const IConstFilterPropertiesVariations* variations) {
    if (variations)
        m_ParamsChanged = m_ParamsChanged || IsAnyDirty(variations->GetStart(), Params) ||
                          IsAnyDirty(variations->GetEnd(), Params);
}

const IConstFilterPropertiesVariations*
CCairnEQ::TranslateVariations(const SStage& stage,
                              const IConstFilterPropertiesVariations* variations, int samples) {
    if (!variations)
        return nullptr;
    CFilterProperties& start = m_StageVariations.GetStart();
    CFilterProperties& end = m_StageVariations.GetEnd();
    stage.Fill(variations->GetStart(), m_SampleRate, start);
    stage.Fill(variations->GetEnd(), m_SampleRate, end);

    const IConstRates& sourceRates = variations->GetVariations(Params);
    CFilterPropertiesVariations::CRates& rates = m_StageVariations.GetRates(Params);
    const int orders = sourceRates.GetCount();
    rates.SetCount(orders);
    for (int order = 0; order < orders; ++order) {
        rates[order].SetCount(stage.m_ParamsCount);
        stage.m_Translate(sourceRates.GetElement(order), m_SampleRate, rates[order]);
        if (stage.m_HasDerivedFrequency && samples != 0) {
            const double travel = end.GetParams().GetValue(0) - start.GetParams().GetValue(0);
            rates[order].SetValue(0, order == 0 ? travel / samples : 0.0);
        }
    }
    return &m_StageVariations;
}

} // namespace PluginsFilters
