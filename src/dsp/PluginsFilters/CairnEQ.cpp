#include "dsp/PluginsFilters/CairnEQ.h"

#include "datamodel/objects/text/LogPositionMapper.h"
#include "datamodel/objects/text/ParamValueToText.h"
#include "dsp/FilterProductInfo.h"
#include "dsp/filters/ResponseCurves.h"

#include <algorithm>
#include <cmath>
#include <iterator>

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

// The stages as the translation sees them: for each parameter those of the user's that it is made
// of, as bits, and how.
struct CCairnEQ::SGainStage {
    static constexpr unsigned Sources[] = {1u << Gain};
    static constexpr bool IsShelf = false;
    static Filters::CGain::CParams Translate(const SUserValues& from, double) {
        return {from.m_Values[Gain]};
    }
};
struct CCairnEQ::SPeakStage {
    static constexpr unsigned Sources[] = {1u << Frequency, 1u << Bandwidth, 1u << Mid};
    static constexpr bool IsShelf = false;
    static Filters::CPeakFilter::CParams Translate(const SUserValues& from, double) {
        return {from.m_Values[Frequency], from.m_Values[Bandwidth], from.m_Values[Mid]};
    }
};
struct CCairnEQ::SLowShelfStage {
    static constexpr unsigned Sources[] = {1u << Frequency | 1u << Bandwidth, 1u << Low};
    static constexpr bool IsShelf = true;
    static Filters::CShelfFilter::CParams Translate(const SUserValues& from, double) {
        return {from.m_Values[Frequency] * from.m_Ratios.m_Low, from.m_Values[Low]};
    }
};
struct CCairnEQ::SHighShelfStage {
    static constexpr unsigned Sources[] = {1u << Frequency | 1u << Bandwidth, 1u << High};
    static constexpr bool IsShelf = true;
    // Only this frequency can reach beyond the Nyquist frequency, and stays below it.
    static Filters::CShelfFilter::CParams Translate(const SUserValues& from, double sampleRate) {
        const double nyquist = 0.5 * sampleRate;
        const double frequency = from.m_Values[Frequency] * from.m_Ratios.m_High;
        return {frequency > nyquist ? nyquist - 20.0 : frequency, from.m_Values[High]};
    }
};

CCairnEQ::SShelfRatios CCairnEQ::GetShelfRatios(double bandwidth) {
    return {std::pow(2.0, -0.5 * bandwidth), std::pow(2.0, 0.5 * bandwidth)};
}

template <class TStage>
bool CCairnEQ::SUserValues::IsDirty() const {
    unsigned sources = 0;
    for (const unsigned source : TStage::Sources)
        sources |= source;
    return (m_Dirty & sources) != 0;
}

// In the order of the signal.
template <class TVisit>
void CCairnEQ::ForStages(TVisit visit) {
    visit(SGainStage(), &CCairnEQ::m_Gain);
    visit(SPeakStage(), &CCairnEQ::m_Peak);
    visit(SLowShelfStage(), &CCairnEQ::m_LowShelf);
    visit(SHighShelfStage(), &CCairnEQ::m_HighShelf);
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
    SUserValues users;
    for (int param = 0; param < ParamsCount; ++param)
        users.m_Values[param] = values.GetValue(param);
    users.m_Ratios = m_KeptRatios.Get(users.m_Values[Bandwidth]);
    ForStages([&](auto stage, auto filter) {
        (this->*filter).SetParams(stage.Translate(users, m_SampleRate), this->*filter);
    });
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
    if (variations)
        ReadBlock(*variations, 0, samples, *this);
    ForStages([&](auto stage, auto filter) {
        data.m_pVariations = variations ? &Translate(stage) : nullptr;
        (this->*filter).Process(data);
        data.m_pInputs = &outputs;
    });
}

void CCairnEQ::StartCascade(Kernel::SCascadeChannel& channel,
                            const IConstFilterPropertiesVariations* variations, int samples,
                            int firstParam, const CCairnEQ* twin) {
    m_SilentSamples = 0;
    channel.m_Gain = &m_Gain;
    channel.m_Sections[0] = &m_Peak;
    channel.m_Sections[1] = &m_LowShelf;
    channel.m_Sections[2] = &m_HighShelf;
    channel.m_GainOrders = 0;
    channel.m_SectionOrders = 0;
    if (!variations)
        return;
    const CCairnEQ& known = twin ? *twin : *this;
    ReadBlock(*variations, firstParam, samples, known);
    ForStages([&](auto stage, auto filter) { StartStage(stage, this->*filter, known.*filter); });
    channel.m_GainOrders = m_Block.m_Orders;
    // Without a sample rate the sections ignore what moves.
    channel.m_SectionOrders = m_SampleRate != 0.0 ? m_Block.m_Orders : 0;
}

void CCairnEQ::EndCascade(const CCairnEQ* twin) {
    const CCairnEQ& known = twin ? *twin : *this;
    ForStages([&](auto stage, auto filter) {
        if (m_Block.m_End.IsDirty<decltype(stage)>())
            (this->*filter).SetParams(stage.Translate(m_Block.m_End, m_SampleRate), known.*filter);
    });
}

void CCairnEQ::ReadBlock(const IConstFilterPropertiesVariations& variations, int firstParam,
                         int samples, const CCairnEQ& known) {
    const auto read = [&](const IConstFilterProperties& from, SUserValues& to) {
        to.m_Dirty = from.ReadParams(firstParam, ParamsCount, to.m_Values);
        to.m_Ratios = m_KeptRatios.Get(to.m_Values[Bandwidth], known.m_KeptRatios);
    };
    read(variations.GetStart(), m_Block.m_Start);
    read(variations.GetEnd(), m_Block.m_End);
    m_ParamsChanged = m_ParamsChanged || (m_Block.m_Start.m_Dirty | m_Block.m_End.m_Dirty) != 0;

    const IConstRates& rates = variations.GetVariations(Params);
    m_Block.m_Samples = samples;
    m_Block.m_Orders = std::min(rates.GetCount(), MaxRampOrders);
    for (int order = 0; order < m_Block.m_Orders; ++order) {
        const IConstParamsValues& from = rates.GetElement(order);
        SUserValues& to = m_Block.m_Rates[order];
        for (int param = 0; param < ParamsCount; ++param)
            to.m_Values[param] = from.GetValue(firstParam + param);
        // Else the rates of the shelves' frequencies are taken from start and end.
        if (samples == 0)
            to.m_Ratios = GetShelfRatios(to.m_Values[Bandwidth]);
    }
}

// A shelf's frequency isn't linear in its sources, and is made to move linearly.
template <class TStage>
auto CCairnEQ::TranslateRates(TStage stage, int order) const {
    auto rates = stage.Translate(m_Block.m_Rates[order], m_SampleRate);
    if (stage.IsShelf && m_Block.m_Samples != 0) {
        const double travel = stage.Translate(m_Block.m_End, m_SampleRate)[0] -
                              stage.Translate(m_Block.m_Start, m_SampleRate)[0];
        rates[0] = order == 0 ? travel / m_Block.m_Samples : 0.0;
    }
    return rates;
}

template <class TStage, class TFilter>
void CCairnEQ::StartStage(TStage stage, TFilter& filter, const TFilter& known) {
    if (m_Block.m_Start.IsDirty<TStage>())
        filter.SetParams(stage.Translate(m_Block.m_Start, m_SampleRate), known);
    for (int order = 0; order < m_Block.m_Orders; ++order)
        filter.SetRamp(order + 1, TranslateRates(stage, order), known);
}

template <class TStage>
const IConstFilterPropertiesVariations& CCairnEQ::Translate(TStage stage) {
    constexpr int count = std::size(TStage::Sources);
    const auto store = [](const auto& from, CDynamicParamsValues& to) {
        for (int i = 0; i < count; ++i)
            to.SetValue(i, from[static_cast<std::size_t>(i)]);
    };
    const auto fill = [&](const SUserValues& from, CFilterProperties& to) {
        to.SetParamsCount(count);
        store(stage.Translate(from, m_SampleRate), to.GetParams());
        for (int i = 0; i < count; ++i) {
            Core::IDirty& flag = to.GetDirty(Params).GetElement(i);
            (from.m_Dirty & stage.Sources[i]) != 0 ? flag.SetDirty() : flag.ClearDirty();
        }
    };
    fill(m_Block.m_Start, m_StageVariations.GetStart());
    fill(m_Block.m_End, m_StageVariations.GetEnd());

    CFilterPropertiesVariations::CRates& rates = m_StageVariations.GetRates(Params);
    rates.SetCount(m_Block.m_Orders);
    for (int order = 0; order < m_Block.m_Orders; ++order) {
        rates[order].SetCount(count);
        store(TranslateRates(stage, order), rates[order]);
    }
    return m_StageVariations;
}

} // namespace PluginsFilters
