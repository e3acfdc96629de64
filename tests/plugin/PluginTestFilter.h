// A filter for tests of what runs around filters: its outputs repeat its inputs, it delays by a
// latency that can be set, and it notes calls that overlap though they must not. Nothing allocates
// on its audio path.
#pragma once

#include "core/runtime/ObjectsFactory.h"
#include "dsp/BaseCoreDSPFilter.h"
#include "dsp/FilterProductInfo.h"
#include "dsp/OutputDataSync.h"
#include "dsp/properties/FilterPropertiesVariations.h"
#include "plugin/internals/ProcessAwareProperty.h"
#include "serialization/StreamValue.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

namespace Lathe::Audio::Plugin {

// A number that wants to know the sample rate and how audio is processed.
class CTestProperty : public DataModel::Objects::CEmptyDynamicPropertyValue,
                      public ISampleRateProperty,
                      public IProcessDataProperty {
public:
    static const char* ClassId() { return "{3F1C0A52-77B1-4C2E-9A55-0D3B6E8F1C27}"; }

    explicit CTestProperty(double number = 0.0) : m_Number(number) {}

    using CEmptyDynamicPropertyValue::QueryInterface;
    const void* QueryInterface(const char* id) const override {
        if (std::strcmp(id, ISampleRateProperty::InterfaceId()) == 0)
            return static_cast<const ISampleRateProperty*>(this);
        if (std::strcmp(id, IProcessDataProperty::InterfaceId()) == 0)
            return static_cast<const IProcessDataProperty*>(this);
        return std::strcmp(id, ClassId()) == 0 ? this : nullptr;
    }
    const char* GetClassId() const override { return ClassId(); }
    bool Serialize(Serialization::IWriteDataStream& output) const override {
        return Serialization::WriteValue(output, "number", m_Number);
    }
    bool DeSerialize(const Serialization::IReadDataStream& input) override {
        m_RateAtRead = m_SampleRate;
        return Serialization::ReadValueOrDefault(input, "number", m_Number, 0.0);
    }
    CTestProperty* Clone() const override { return new CTestProperty(*this); }
    double GetSampleRate() const override { return m_SampleRate; }
    void SetSampleRate(double rate) override {
        m_SampleRate = rate;
        ++m_RatesSet;
    }
    SProcessData GetProcessData() const override { return m_ProcessData; }
    void SetProcessData(const SProcessData& data) override { m_ProcessData = data; }

    double m_Number, m_SampleRate = 0.0, m_RateAtRead = 0.0;
    int m_RatesSet = 0;
    SProcessData m_ProcessData;
};
inline const Runtime::CFactoryRegistration<CTestProperty, DataModel::Objects::IDynamicPropertyValue>
    TestPropertyRegistration;

} // namespace Lathe::Audio::Plugin

namespace Lathe::Audio::DSP {

struct STestFilterSetup {
    bool m_HasState = false, m_HasClock = false;
    int m_Inputs = 2, m_Outputs = 2;
};

// The parameter is the level of what comes out, and the first output parameter repeats it; the
// second is the highest sample since the outputs were last reset.
class CPluginTestFilter : public CBaseCoreDSPFilter, public Serialization::ISerializable {
public:
    explicit CPluginTestFilter(STestFilterSetup setup = {})
        : m_Setup(setup), m_ProcessInfo(setup.m_Inputs, setup.m_Outputs) {
        m_InputParamsInfo.SetCount(1);
        m_OutputParamsInfo.SetCount(2);
        m_InputParamsInfo[0] = m_OutputParamsInfo[0] =
            CParamInfo(DataModel::Objects::EParamType::Float, 0.0, 2.0, 1.0, "Level", "", "");
        m_OutputParamsInfo[1] = m_OutputParamsInfo[0];
        m_OutputParamsInfo[1].SetMax(9.0);
        Declare(m_InputStringsInfo, m_OutputStringsInfo, CStringInfo("Text", "", "none"));
        Declare(m_InputCurvesInfo, m_OutputCurvesInfo, CCurveInfo("Curve", ""));
        Declare(m_InputSurfacesInfo, m_OutputSurfacesInfo, CSurfaceInfo("Surface", ""));
        Declare(m_InputCustomPropertiesInfo, m_OutputCustomPropertiesInfo,
                CCustomPropertyInfo("Property", "", new Plugin::CTestProperty(1.0)));
        m_NewOutputs.SetDefaults(*this);
        m_Outputs = m_Defaults = m_NewOutputs;
        CPluginTestFilter::SetInputValues(m_Defaults);
        m_Outputs.ClearDirty();
    }

    // With the same setup only.
    CPluginTestFilter* Clone() const override { return new CPluginTestFilter(m_Setup); }
    const IConstFilterProductInfo& GetProductInfo() const override {
        static const CFilterProductInfo info("", "Test", "1.0", "", "", 9, "");
        return info;
    }
    const IProcessInfo& GetProcessInfo() const override { return m_ProcessInfo; }
    // Between two blocks; up to 4096.
    void SetLatency(int samples) { m_TailLength = m_Latency = samples; }

    void Init(double sampleRate, const CFilterInitInfo& info) override {
        const CUse use(*this);
        m_Rates.push_back(sampleRate);
        m_MaxBlockSize = info.m_MaxBlockSize;
        m_Clock.SetSampleRate(sampleRate);
        CBaseCoreDSPFilter::Init(sampleRate, {}); // Nobody resets a filter that has moved.
    }
    void Process(const CFilterProcessData& data) override {
        const CUse use(*this);
        Note(data, m_Blocks);
        CBaseCoreDSPFilter::Process(data);
    }
    bool ProcessSilence(const CFilterProcessData& data) override {
        const CUse use(*this);
        Note(data, m_SilentBlocks);
        return CBaseCoreDSPFilter::ProcessSilence(data);
    }
    void SetInputValues(const IConstFilterProperties& values) override {
        Move(dynamic_cast<const CFilterProperties&>(values), m_NewOutputs);
        m_OutputParams.SetValue(0, m_NewOutputs.GetParams().GetValue(0));
    }

    ISerializable* GetInternalDSPState() override { return m_Setup.m_HasState ? this : nullptr; }
    IOutputDataSync* GetOutputDataSync() override {
        return m_Setup.m_HasClock ? &m_Clock : nullptr;
    }
    void ResetOutputs() override {
        const CUse use(*this);
        m_OutputParams.SetValue(1, std::exchange(m_Peak, 0.0));
    }
    bool UpdateOutputs() override {
        const CUse use(*this);
        Move(m_NewOutputs, m_Outputs);
        m_NewOutputs.ClearDirty();
        return true;
    }
    const IConstParamsValues& GetOutputParamsValues() const override { return m_OutputParams; }
    const IConstStrings& GetOutputStrings() const override { return m_Outputs.GetStrings(); }
    const IConstCurves& GetOutputCurves() const override { return m_Outputs.GetCurves(); }
    const IConstSurfaces& GetOutputSurfaces() const override { return m_Outputs.GetSurfaces(); }
    const IConstCustomProperties& GetOutputCustomProperties() const override {
        return m_Outputs.GetCustomProperties();
    }
    IDirtyFlags& GetOutputStringsDirty() override { return m_Outputs.GetDirty(Strings); }
    IDirtyFlags& GetOutputCurvesDirty() override { return m_Outputs.GetDirty(Curves); }
    IDirtyFlags& GetOutputSurfacesDirty() override { return m_Outputs.GetDirty(Surfaces); }
    IDirtyFlags& GetOutputCustomPropertiesDirty() override {
        return m_Outputs.GetDirty(CustomProperties);
    }

    bool Serialize(Serialization::IWriteDataStream& output) const override {
        const CUse use(*this);
        return Serialization::WriteValue(output, "state", m_State);
    }
    bool DeSerialize(const Serialization::IReadDataStream& input) override {
        const CUse use(*this);
        return Serialization::ReadValueOrDefault(input, "state", m_State, 0);
    }

    // Calls that overlapped with a block, an Init, a change of outputs or an access to the state.
    int GetOverlaps() const { return m_Overlaps; }

    // Of all calls of Init, and of the last.
    std::vector<double> m_Rates;
    int m_MaxBlockSize = 0;
    int m_Blocks = 0, m_SilentBlocks = 0;
    // Of the last block; -1 for none.
    int m_Events = -1;
    bool m_HasTransport = false;
    int m_State = 0; // The internal one.

protected:
    void OnReset() override {
        m_Delays = {};
        m_Peak = 0.0;
    }
    void ProcessStreams(const IConstAudioStreams& inputs, IAudioStreams& outputs, int samples,
                        const IConstFilterPropertiesVariations* variations) override {
        if (variations)
            SetInputValues(variations->GetEnd());
        m_Clock.AddSamples(samples);
        for (int c = 0; c < std::min({inputs.GetCount(), outputs.GetCount(), 2}); ++c) {
            const IAudioStream& input = inputs.GetElement(c);
            IAudioStream& output = outputs.GetElement(c);
            if (!input.GetData() || !output.GetData())
                continue;
            auto& delay = m_Delays[static_cast<std::size_t>(c)];
            for (int i = 0; i < samples; ++i) {
                const auto now = m_Position + static_cast<unsigned>(i);
                delay[now % delay.size()] = input.GetData()[i * input.GetStride()];
                const float sample = static_cast<float>(m_OutputParams.GetValue(0)) *
                                     delay[(now - static_cast<unsigned>(m_Latency)) % delay.size()];
                output.GetData()[i * output.GetStride()] = sample;
                m_Peak = std::max(m_Peak, static_cast<double>(std::abs(sample)));
            }
        }
        m_Position += static_cast<unsigned>(samples);
    }

private:
    // Counts itself when there is another one.
    struct CUse {
        explicit CUse(const CPluginTestFilter& filter) : m_Filter(filter) {
            m_Filter.m_Overlaps += m_Filter.m_Uses++ > 0;
        }
        ~CUse() { --m_Filter.m_Uses; }
        const CPluginTestFilter& m_Filter;
    };

    void Note(const CFilterProcessData& data, int& blocks) {
        ++blocks;
        m_Events = data.m_pMIDIEvents ? data.m_pMIDIEvents->GetCount() : -1;
        m_HasTransport = data.m_pTransportInfo != nullptr;
    }
    // What is dirty, with its flags.
    static void Move(const CFilterProperties& from, CFilterProperties& to) {
        for (int kind = 0; kind < InputKinds; ++kind) {
            to.AssignDirty(from, kind);
            for (int i = 0; i < from.GetDirty(kind).GetCount(); ++i)
                if (from.GetDirty(kind).GetElement(i).IsDirty())
                    to.GetDirty(kind).GetElement(i).SetDirty();
        }
    }
    template <class TInfos, class TInfo>
    void Declare(TInfos& inputs, TInfos& outputs, const TInfo& info) {
        inputs.SetCount(1);
        outputs.SetCount(1);
        inputs[0] = outputs[0] = info;
    }

    STestFilterSetup m_Setup;
    CProcessInfo m_ProcessInfo;
    COutputDataSync m_Clock{50.0};
    std::array<std::array<float, 8192>, 2> m_Delays{};
    unsigned m_Position = 0;
    double m_Peak = 0.0;
    // What came in, with the flags of what waits for UpdateOutputs, and what is out.
    CFilterProperties m_NewOutputs, m_Outputs;
    // Held to the end, so that no block frees one.
    CFilterProperties m_Defaults;
    CParamsValues m_OutputParams{2};
    mutable std::atomic<int> m_Uses{0}, m_Overlaps{0};
};

} // namespace Lathe::Audio::DSP

namespace Lathe::Audio::Plugin {

using DSP::CPluginTestFilter, DSP::STestFilterSetup;

} // namespace Lathe::Audio::Plugin
