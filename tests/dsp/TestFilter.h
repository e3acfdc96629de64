// A filter with inputs of all kinds that writes down which of its operations run, in order, and
// adds its first parameter to its input.
#pragma once

#include "datamodel/objects/DynamicPropertyValue.h"
#include "dsp/BaseCoreDSPFilter.h"
#include "dsp/FilterProductInfo.h"
#include "dsp/OutputDataSync.h"
#include "dsp/properties/FilterPropertiesVariations.h"
#include "math/Constant.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace Lathe::Audio::DSP {

class CTestFilter : public CBaseCoreDSPFilter {
public:
    // Inputs of one channel, by kind. The parameters count up in their defaults.
    static constexpr int s_InputsCounts[InputKinds] = {3, 2, 2, 1, 2};

    // Channels repeat the inputs, as if so many filters stood side by side.
    explicit CTestFilter(int channels = 1) {
        m_InputParamsInfo.SetCount(s_InputsCounts[Params] * channels);
        m_InputStringsInfo.SetCount(s_InputsCounts[Strings] * channels);
        m_InputCurvesInfo.SetCount(s_InputsCounts[Curves] * channels);
        m_InputSurfacesInfo.SetCount(s_InputsCounts[Surfaces] * channels);
        m_InputCustomPropertiesInfo.SetCount(s_InputsCounts[CustomProperties] * channels);
        for (int i = 0; i < m_InputParamsInfo.GetCount(); ++i) {
            m_InputParamsInfo[i].SetDefault(i);
            m_InputParamsInfo[i].SetName(i == 0 ? "A (L)(R)" : "B");
        }
    }

    CTestFilter* Clone() const override { return new CTestFilter(*this); }
    const IConstFilterProductInfo& GetProductInfo() const override {
        static const CFilterProductInfo info("", "Test", "", "", "", 0, "");
        return info;
    }
    const IProcessInfo& GetProcessInfo() const override { return m_ProcessInfo; }
    IOutputDataSync* GetOutputDataSync() override { return m_Clock ? &*m_Clock : nullptr; }

    // The calls since the last question, such as "streams(4) block(4) ".
    std::string TakeCalls() {
        const std::string calls = m_Calls;
        m_Calls.clear();
        return calls;
    }
    void SetTail(int samples) { m_TailLength = m_Latency = samples; }

    bool m_KeepsRunning = false;
    std::optional<COutputDataSync> m_Clock;
    double m_Level = 1.0;
    // Of the last block.
    double m_Rate = 0.0;

protected:
    void OnInputParamsChanged(const IConstParamsValues& values) override {
        m_Level = values.GetCount() == 3 ? values.GetValue(0) : -1.0;
        Note("params", static_cast<int>(m_Level));
    }
    void OnSilence(int samples) override { Note("silence", samples); }
    void OnResetOutputValues() override { Note("values", 0); }
    void OnResetOutputCurves() override { Note("curves", 0); }
    void OnInit(const CFilterInitInfo&) override { Note("init", static_cast<int>(m_SampleRate)); }
    void OnReset() override { Note("reset", 0); }
    void ProcessBlock(const CFilterProcessData& data) override {
        Note("block", data.m_SamplesCount);
    }
    bool KeepsRunningOnSilence() const override { return m_KeepsRunning; }
    void ProcessStreams(const IConstAudioStreams& inputs, IAudioStreams& outputs, int samples,
                        const IConstFilterPropertiesVariations* variations) override {
        Note("streams", samples);
        if (variations) {
            m_Level = variations->GetEnd().GetParams().GetValue(0);
            m_Rate = variations->GetVariations(Params).GetElement(0).GetValue(0);
        }
        const IAudioStream& input = inputs.GetElement(0);
        for (int i = 0; i < samples; ++i)
            outputs.GetElement(0).GetData()[i] =
                input.GetData()[i * input.GetStride()] + static_cast<float>(m_Level);
    }

private:
    void Note(const char* call, int number) {
        m_Calls.append(call).append("(").append(std::to_string(number)).append(") ");
    }

    // With room enough: calls are noted on the audio path, where nothing allocates.
    std::string m_Calls = [] {
        std::string calls;
        calls.reserve(1000);
        return calls;
    }();
    CProcessInfo m_ProcessInfo{1, 1};
};

// What input i of a kind holds: the number of a parameter, of the other kinds where the value lies,
// which tells sharing from copying.
inline std::pair<double, const void*> Read(const IConstFilterProperties& values, int kind, int i) {
    if (kind == Params)
        return {values.GetParams().GetValue(i), nullptr};
    if (kind == Strings)
        return {0.0, values.GetStrings().GetValue(i)};
    if (kind == Curves)
        return {0.0, &values.GetCurves().GetValue(i)};
    if (kind == Surfaces)
        return {0.0, &values.GetSurfaces().GetValue(i)};
    return {0.0, &values.GetCustomProperties().GetValue(i)};
}
// Stores a new value and sets its flag.
inline void Write(CFilterProperties& values, int kind, int i, int number) {
    values.GetDirty(kind).GetElement(i).SetDirty();
    if (kind == Params)
        values.GetParams().SetValue(i, number);
    else if (kind == Strings)
        values.GetStrings().SetValue(i, std::to_string(number).c_str());
    else if (kind == Curves)
        values.GetCurves().SetValue(i, Math::CConstantFunction(number));
    else if (kind == Surfaces)
        values.GetSurfaces().SetValue(i, Math::CConstantBinaryFunction(number));
    else
        values.GetCustomProperties().SetValue(i, DataModel::Objects::CEmptyDynamicPropertyValue());
}

} // namespace Lathe::Audio::DSP
