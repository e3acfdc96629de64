#include "dsp/PluginsFilters/CairnEQ.h"

#include "core/SameBits.h"
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

const CProcessInfo& GetMonoProcessInfo() {
    static const CProcessInfo info(1, 1);
    return info;
}

} // namespace

CCairnEQ::SUserValues::SUserValues(const IConstParamsValues& values, const SUserValues& known)
    : m_LowRatio(known.m_LowRatio), m_HighRatio(known.m_HighRatio) {
    for (int param = 0; param < ParamsCount; ++param)
        m_Values[param] = values.GetValue(param);
    if (Lathe::Core::SameBits(m_Values[Bandwidth], known.m_Values[Bandwidth]))
        return;
    m_LowRatio = std::pow(2.0, -0.5 * m_Values[Bandwidth]);
    m_HighRatio = std::pow(2.0, 0.5 * m_Values[Bandwidth]);
}

CCairnEQ::SUserValues::SUserValues(const IConstFilterProperties& properties,
                                   const SUserValues& known)
    : SUserValues(properties.GetParams(), known) {
    const IConstDirtyFlags& flags = properties.GetDirty(Params);
    for (int param = 0; param < ParamsCount; ++param)
        m_Dirty |= flags.GetElement(param).IsDirty() ? 1u << param : 0u;
}

// A stage as the translation sees it.
struct CCairnEQ::SStage {
    int m_ParamsCount;
    // For each parameter of the stage the user's that it is.
    EParam m_Sources[3];
    // Instead of that for the first one, where it isn't linear in its sources, frequency and
    // bandwidth: its rate is taken from its start and end.
    double (*m_GetFrequency)(const SUserValues& from, double sampleRate);

    void Translate(const SUserValues& from, double sampleRate, IParamsValues& to) const {
        for (int i = 0; i < m_ParamsCount; ++i)
            to.SetValue(i, i == 0 && m_GetFrequency ? m_GetFrequency(from, sampleRate)
                                                    : from.m_Values[m_Sources[i]]);
    }

    void Fill(const SUserValues& from, double sampleRate, CFilterProperties& to) const {
        to.SetParamsCount(m_ParamsCount);
        Translate(from, sampleRate, to.GetParams());
        for (int i = 0; i < m_ParamsCount; ++i) {
            unsigned sources = 1u << m_Sources[i];
            if (i == 0 && m_GetFrequency)
                sources = 1u << Frequency | 1u << Bandwidth;
            Core::IDirty& flag = to.GetDirty(Params).GetElement(i);
            (from.m_Dirty & sources) != 0 ? flag.SetDirty() : flag.ClearDirty();
        }
    }

    void FillRates(const SChanges& changes, int order, double sampleRate, int samples,
                   const CFilterPropertiesVariations& ends, CDynamicParamsValues& to) const;

    static double GetLowFrequency(const SUserValues& from, double) {
        return from.m_Values[Frequency] * from.m_LowRatio;
    }
    // Only this one can reach beyond the Nyquist frequency, and stays below it.
    static double GetHighFrequency(const SUserValues& from, double sampleRate) {
        const double nyquist = 0.5 * sampleRate;
        const double frequency = from.m_Values[Frequency] * from.m_HighRatio;
        return frequency > nyquist ? nyquist - 20.0 : frequency;
    }

    static const SStage GainStage;
    static const SStage PeakStage;
    static const SStage LowShelfStage;
    static const SStage HighShelfStage;
};

constexpr CCairnEQ::SStage CCairnEQ::SStage::GainStage = {1, {Gain}, nullptr};
constexpr CCairnEQ::SStage CCairnEQ::SStage::PeakStage = {3, {Frequency, Bandwidth, Mid}, nullptr};
constexpr CCairnEQ::SStage CCairnEQ::SStage::LowShelfStage = {
    2, {Frequency, Low}, SStage::GetLowFrequency};
constexpr CCairnEQ::SStage CCairnEQ::SStage::HighShelfStage = {
    2, {Frequency, High}, SStage::GetHighFrequency};

// A block's changes, read once for all stages from whatever views they come through.
struct CCairnEQ::SChanges {
    SChanges(const IConstFilterPropertiesVariations& variations, const SUserValues& known)
        : m_Start(variations.GetStart(), known),
          m_End(variations.GetEnd(), m_Start),
          m_Rates(variations.GetVariations(Params)) {}

    SUserValues m_Start;
    SUserValues m_End;
    const IConstRates& m_Rates;
};

void CCairnEQ::SStage::FillRates(const SChanges& changes, int order, double sampleRate, int samples,
                                 const CFilterPropertiesVariations& ends,
                                 CDynamicParamsValues& to) const {
    to.SetCount(m_ParamsCount);
    const IConstParamsValues& from = changes.m_Rates.GetElement(order);
    if (m_GetFrequency && samples == 0) {
        Translate(SUserValues(from, {}), sampleRate, to);
        return;
    }
    for (int i = 0; i < m_ParamsCount; ++i)
        to.SetValue(i, from.GetValue(m_Sources[i]));
    if (m_GetFrequency) {
        const double travel =
            ends.GetEnd().GetParams().GetValue(0) - ends.GetStart().GetParams().GetValue(0);
        to.SetValue(0, order == 0 ? travel / samples : 0.0);
    }
}

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
    const SUserValues users(values, {});
    const auto apply = [&](const SStage& stage, auto& filter) {
        m_StageParams.SetCount(stage.m_ParamsCount);
        stage.Translate(users, m_SampleRate, m_StageParams);
        filter.OnInputParamsChanged(m_StageParams);
    };
    apply(SStage::GainStage, m_Gain);
    apply(SStage::PeakStage, m_Peak);
    apply(SStage::LowShelfStage, m_LowShelf);
    apply(SStage::HighShelfStage, m_HighShelf);
}

void CCairnEQ::OnSilence(int samples) {
    // The silence before has cleared the sections, and nothing has run since.
    if (m_SilentSamples > 0)
        return;
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
    CFilterProcessData data;
    data.m_pInputs = &inputs;
    data.m_pOutputs = &outputs;
    data.m_SamplesCount = samples;
    const auto run = [&](const SChanges* changes) {
        const auto runStage = [&](const SStage& stage, auto& filter) {
            data.m_pVariations = changes ? &Translate(*changes, stage, samples) : nullptr;
            filter.Process(data);
            data.m_pInputs = &outputs;
        };
        runStage(SStage::GainStage, m_Gain);
        runStage(SStage::PeakStage, m_Peak);
        runStage(SStage::LowShelfStage, m_LowShelf);
        runStage(SStage::HighShelfStage, m_HighShelf);
    };
    if (!variations) {
        run(nullptr);
        return;
    }
    const SChanges changes(*variations, m_LastEnd);
    NoteChanges(changes);
    run(&changes);
}

void CCairnEQ::StartCascade(Kernel::SCascadeChannel& channel,
                            const IConstFilterPropertiesVariations* variations, int samples) {
    m_SilentSamples = 0;
    channel.m_Gain = &m_Gain;
    channel.m_Sections[0] = &m_Peak;
    channel.m_Sections[1] = &m_LowShelf;
    channel.m_Sections[2] = &m_HighShelf;
    if (!variations)
        return;
    const SChanges changes(*variations, m_LastEnd);
    NoteChanges(changes);
    const auto start = [&](const SStage& stage, auto& filter) {
        return filter.StartBlock(Translate(changes, stage, samples));
    };
    channel.m_GainOrders = start(SStage::GainStage, m_Gain);
    channel.m_SectionOrders = start(SStage::PeakStage, m_Peak);
    start(SStage::LowShelfStage, m_LowShelf);
    start(SStage::HighShelfStage, m_HighShelf);
}

void CCairnEQ::EndCascade() {
    const auto end = [&](const SStage& stage, auto& filter) {
        stage.Fill(m_LastEnd, m_SampleRate, m_StageVariations.GetEnd());
        filter.SetInputValues(m_StageVariations.GetEnd());
    };
    end(SStage::GainStage, m_Gain);
    end(SStage::PeakStage, m_Peak);
    end(SStage::LowShelfStage, m_LowShelf);
    end(SStage::HighShelfStage, m_HighShelf);
}

void CCairnEQ::NoteChanges(const SChanges& changes) {
    m_LastEnd = changes.m_End;
    m_ParamsChanged = m_ParamsChanged || (changes.m_Start.m_Dirty | changes.m_End.m_Dirty) != 0;
}

const IConstFilterPropertiesVariations& CCairnEQ::Translate(const SChanges& changes,
                                                            const SStage& stage, int samples) {
    CFilterProperties& start = m_StageVariations.GetStart();
    CFilterProperties& end = m_StageVariations.GetEnd();
    stage.Fill(changes.m_Start, m_SampleRate, start);
    stage.Fill(changes.m_End, m_SampleRate, end);

    CFilterPropertiesVariations::CRates& rates = m_StageVariations.GetRates(Params);
    const int orders = changes.m_Rates.GetCount();
    rates.SetCount(orders);
    for (int order = 0; order < orders; ++order)
        stage.FillRates(changes, order, m_SampleRate, samples, m_StageVariations, rates[order]);
    return m_StageVariations;
}

} // namespace PluginsFilters
