// Proves how the adapters make one filter of two: whose inputs go where, what they declare, and how
// they join tails, latencies, clocks and results. The mono filter under them is a probe.

#include "dsp/BaseCoreDSPFilter.h"
#include "dsp/FilterProductInfo.h"
#include "dsp/FilterTestSupport.h"
#include "dsp/OutputDataSync.h"
#include "dsp/adapters/FullStereoFromMonoFilter.h"
#include "dsp/adapters/MSLRFromStereoFilter.h"

#include <optional>

namespace Lathe::Audio::DSP {

namespace {

using namespace Testing;

// Adds its level to its input, shows it as an output, and keeps its rate of change.
class CProbe : public CBaseCoreDSPFilter {
public:
    CProbe() : m_ProcessInfo(1, 1) {
        m_ProcessInfo.m_Inputs[0].SetName("In");
        m_ProcessInfo.m_Outputs[0].SetName("Out");
        m_InputParamsInfo.SetCount(2);
        m_InputParamsInfo[0].SetName("Level");
        m_InputParamsInfo[1].SetName("Other (L)(R)");
        m_OutputParamsInfo.SetCount(1);
        m_OutputParamsInfo[0].SetName("Meter");
    }
    CProbe* Clone() const override { return new CProbe(*this); }
    const IConstFilterProductInfo& GetProductInfo() const override {
        static const CFilterProductInfo info("", "Probe", "", "", "", 0, "");
        return info;
    }
    const IProcessInfo& GetProcessInfo() const override { return m_ProcessInfo; }
    IOutputDataSync* GetOutputDataSync() override { return m_Clock ? &*m_Clock : nullptr; }
    const IConstParamsValues& GetOutputParamsValues() const override { return m_Meter; }
    bool UpdateOutputs() override {
        m_Meter.SetValue(0, m_Level);
        return m_Updates;
    }

    void SetTail(int tail) { m_TailLength = tail; }
    void SetLatency(int latency) { m_Latency = latency; }

    std::optional<COutputDataSync> m_Clock;
    bool m_Updates = false;
    double m_Level = 0.0;
    double m_Rate = 0.0;
    int m_Resets = 0;

protected:
    void OnInputParamsChanged(const IConstParamsValues& values) override {
        ASSERT_EQ(values.GetCount(), 2);
        m_Level = values.GetValue(0);
    }
    void OnReset() override { ++m_Resets; }
    void ProcessStreams(const IConstAudioStreams& inputs, IAudioStreams& outputs, int samples,
                        const IConstFilterPropertiesVariations* variations) override {
        if (variations) {
            SetInputValues(variations->GetEnd());
            const IConstRates& rates = variations->GetVariations(Params);
            m_Rate = rates.GetCount() > 0 ? rates.GetElement(0).GetValue(0) : 0.0;
        }
        const IAudioStream& input = inputs.GetElement(0);
        IAudioStream& output = outputs.GetElement(0);
        for (int i = 0; i < samples; ++i)
            output.GetData()[i * output.GetStride()] =
                input.GetData()[i * input.GetStride()] + static_cast<float>(m_Level);
    }

private:
    CProcessInfo m_ProcessInfo;
    CParamsValues m_Meter{1};
};

class CStereoProbe : public TFullStereoFromMonoFilter<CProbe> {
public:
    using TFullStereoFromMonoFilter::m_Left;
    using TFullStereoFromMonoFilter::m_Right;
};

template <class TInfos>
std::vector<std::string> GetNames(const TInfos& infos) {
    std::vector<std::string> names;
    for (int i = 0; i < infos.GetCount(); ++i)
        names.emplace_back(infos.GetElement(i).GetName());
    return names;
}
using CNames = std::vector<std::string>;

TEST(SplitInfos, DoubleAPartOfTheList) {
    CParamInfos mono(4);
    for (int i = 0; i < 4; ++i)
        mono[i].SetName(std::string(1, static_cast<char>('a' + i)).c_str());
    const struct {
        int m_First, m_Last;
        CNames m_Names;
    } cases[] = {
        {0, -1, {"a (L)", "b (L)", "c (L)", "d (L)", "a (R)", "b (R)", "c (R)", "d (R)"}},
        {1, 2, {"a", "b (L)", "c (L)", "b (R)", "c (R)", "d"}},
        {3, 3, {"a", "b", "c", "d (L)", "d (R)"}},
    };
    using CSplit = TMonoToStereoInfo<CParamInfo, IConstParamInfo>;
    for (const auto& test : cases)
        EXPECT_EQ(GetNames(CSplit(mono, test.m_First, test.m_Last)), test.m_Names);
    EXPECT_EQ(CSplit(CParamInfos(0)).GetCount(), 0);
}

TEST(StereoAdapters, NameWhatTheyDeclare) {
    const CStereoProbe stereo;
    EXPECT_EQ(GetNames(stereo.GetInputParamsInfo()),
              (CNames{"Level (L)", "Other (L)(R) (L)", "Level (R)", "Other (L)(R) (R)"}));
    EXPECT_EQ(GetNames(stereo.GetOutputParamsInfo()), (CNames{"Meter (L)", "Meter (R)"}));
    EXPECT_EQ(GetNames(stereo.GetProcessInfo().GetInputs()), (CNames{"In", "In"}));
    EXPECT_EQ(GetNames(stereo.GetCurrentIOConfiguration().GetOutputs()), (CNames{"Out", "Out"}));
    EXPECT_STREQ(stereo.GetProcessInfo().GetName(), "Main");
    EXPECT_STREQ(stereo.GetProductInfo().GetName(), "Probe");

    const CNames labelled = {"Level M", "Other M(R) (L)", "Level S", "Other M(R) (R)"};
    for (bool last : {false, true}) {
        const TMSLRFromStereoFilter<CStereoProbe> filter("M", "S", last);
        CNames expected = labelled;
        expected.insert(last ? expected.end() : expected.begin(), "Stereo Mode");
        EXPECT_EQ(GetNames(filter.GetInputParamsInfo()), expected);
        EXPECT_EQ(GetNames(filter.GetOutputParamsInfo()), (CNames{"Meter M", "Meter S"}));
        EXPECT_STREQ(filter.GetProductInfo().GetName(), "Probe");
    }
}

TEST(StereoAdapters, GiveEachChannelItsInputsAndStreams) {
    CStereoProbe stereo;
    CRig rig(stereo);
    rig.Set(CValues{1.0, 0.0, 2.0, 0.0});
    EXPECT_EQ(rig.Run({{10.0f}, {20.0f}}), (CSignals{{11.0f}, {22.0f}}));
    rig.Move(2, 6.0);
    EXPECT_EQ(rig.Run({{10.0f, 0.0f}, {20.0f, 0.0f}}), (CSignals{{11.0f, 1.0f}, {26.0f, 6.0f}}));
    EXPECT_EQ(stereo.m_Left.m_Rate, 0.0);
    EXPECT_EQ(stereo.m_Right.m_Rate, 2.0);
    stereo.UpdateOutputs();
    EXPECT_EQ(stereo.GetOutputParamsValues().GetValue(0), 1.0);
    EXPECT_EQ(stereo.GetOutputParamsValues().GetValue(1), 6.0);
    const int resets = stereo.m_Right.m_Resets;
    stereo.Reset();
    EXPECT_EQ(stereo.m_Left.m_Resets, resets + 1);
    EXPECT_EQ(stereo.m_Right.m_Resets, resets + 1);
}

TEST(StereoAdapters, PutTheModeFirstOrLast) {
    for (bool last : {false, true}) {
        TMSLRFromStereoFilter<CStereoProbe> filter("1", "2", last);
        CRig rig(filter);
        // Channel 2 is the side: what is added to it parts left from right.
        rig.Set(CValues{1.0, 0.0, 3.0, 0.0}, last ? 0 : 1);
        EXPECT_EQ(rig.Run({{8.0f}, {4.0f}}), (CSignals{{9.0f}, {7.0f}}));
        rig.Set(last ? 4 : 0, 1.0);
        EXPECT_EQ(rig.Run({{8.0f}, {4.0f}}), (CSignals{{6.0f}, {8.0f}}));
    }
}

TEST(StereoAdapters, JoinTailsLatenciesClocksAndResults) {
    const struct {
        int m_Left, m_Right, m_Tail, m_Latency;
    } cases[] = {{0, 0, 0, 0}, {3, 8, 8, 8}, {9, 2, 9, 9}, {-1, 5, -1, 5}, {5, -1, -1, 5}};
    for (const auto& test : cases) {
        CStereoProbe stereo;
        stereo.m_Left.SetTail(test.m_Left);
        stereo.m_Right.SetTail(test.m_Right);
        stereo.m_Left.SetLatency(test.m_Left);
        stereo.m_Right.SetLatency(test.m_Right);
        EXPECT_EQ(stereo.GetTailLength(), test.m_Tail);
        EXPECT_EQ(stereo.GetLatency(), test.m_Latency);
    }
    for (int mask = 0; mask < 4; ++mask) {
        CStereoProbe stereo;
        CRig rig(stereo);
        stereo.m_Left.SetTail(mask & 1 ? 100 : 0);
        stereo.m_Right.SetTail(mask & 2 ? 100 : 0);
        rig.Set(CValues{4.0, 0.0, 5.0, 0.0});
        CBuffers outputs(2, 10, 9.0f);
        EXPECT_EQ(rig.ProcessSilence(outputs, 10), mask != 0) << "true when either has signal";
        EXPECT_EQ(outputs.Read()[0], CSignal(10, mask & 1 ? 4.0f : 0.0f));
        EXPECT_EQ(outputs.Read()[1], CSignal(10, mask & 2 ? 5.0f : 0.0f));

        stereo.m_Left.m_Updates = mask & 1;
        stereo.m_Right.m_Updates = mask & 2;
        EXPECT_EQ(stereo.UpdateOutputs(), mask != 0);

        if (mask & 1)
            stereo.m_Left.m_Clock.emplace(10.0);
        if (mask & 2)
            stereo.m_Right.m_Clock.emplace(25.0);
        const IOutputDataSync* clock = stereo.GetOutputDataSync();
        ASSERT_EQ(clock != nullptr, mask != 0);
        if (clock) {
            EXPECT_EQ(clock->GetRefreshRate(), mask & 2 ? 25.0 : 10.0);
        }
    }
}

TEST(StereoAdapters, StandMissingChannels) {
    CStereoProbe stereo;
    CRig rig(stereo);
    // Silence needs no inputs, whether they are null or empty.
    const CAudioStreams none(nullptr, 2, false);
    CBuffers outputs(2, 4, 9.0f);
    CFilterProcessData data;
    data.m_pInputs = &none;
    data.m_pOutputs = &outputs;
    data.m_SamplesCount = 4;
    EXPECT_FALSE(stereo.ProcessSilence(data));
    EXPECT_EQ(outputs.Read(), CSignals(2, CSignal(4, 0.0f)));
}

} // namespace

} // namespace Lathe::Audio::DSP
