// An instance from its construction to its end: how values reach the filter and come back, what
// MIDI and the timers do, and what the editor and the model are told.
#include "plugin/PluginTestFilter.h"
#include "plugin/TestHost.h"

#include "core/threads/ManualTime.h"
#include "dsp/PluginsFilters/DualCairnEQ.h"
#include "math/Constant.h"
#include "plugin/interfaces/AudioPluginModel.h"
#include "plugin/interfaces/PluginGUI.h"
#include "support/AllocationCounter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Lathe::Audio::Plugin {
namespace {

// The test filter, reachable behind the instance that owns it.
struct SRig {
    explicit SRig(STestFilterSetup setup = {}, System::ITimerProvider* timers = nullptr,
                  IPluginGUI* gui = nullptr, IAudioPluginModel* model = nullptr)
        : m_Filter(new CPluginTestFilter(setup)),
          m_Host(std::unique_ptr<DSP::IFilter>(m_Filter), MakeConfig(timers, gui, model)) {}

    static CAudioPluginConfig MakeConfig(System::ITimerProvider* timers, IPluginGUI* gui,
                                         IAudioPluginModel* model) {
        CAudioPluginConfig config;
        config.timerProvider = timers;
        config.gui = gui;
        config.model = model;
        return config;
    }
    std::string GetOutputText() {
        return std::unique_ptr<char[]>(
                   m_Host->GetConnections().GetOutputStrings()->GetElement(0).GetValue())
            .get();
    }
    auto& GetInputText() { return m_Host->GetConnections().GetInputStrings()->GetElement(0); }

    CTemporaryHome m_Home;
    CPluginTestFilter* m_Filter;
    CTestHost m_Host;
};

TEST(Instance, RunsWithoutEditorAndModelAndShutsDownOnce) {
    SRig rig;
    const DSP::IConstParamInfos& infos = rig.m_Host->GetInputParamInfos();
    ASSERT_EQ(infos.GetCount(), 2);
    EXPECT_STREQ(infos.GetElement(0).GetName(), "Bypass");
    EXPECT_STREQ(infos.GetElement(1).GetName(), "Level");
    rig.m_Host.Connect();
    rig.m_Host.Prepare();
    rig.m_Host.Block();
    EXPECT_EQ(rig.m_Host.m_OutputSamples[0][63], 0.5f);
    rig.m_Host->Shutdown();
    rig.m_Host->Shutdown();
    EXPECT_EQ(rig.m_Host->GetFilter(), nullptr);
    // Readers that are late see defaults, and the state can still be written.
    EXPECT_EQ(rig.GetOutputText(), "none");
    EXPECT_FALSE(rig.m_Host.GetState().empty());
}

TEST(Instance, TheEqualiserHearsItsParameters) {
    const CTemporaryHome home;
    CTestHost host(std::make_unique<PluginsFilters::CDualCairnEQ>());
    host.Connect();
    host.Prepare();
    EXPECT_EQ(host->GetInputParamInfos().GetCount(),
              host->GetFilter()->GetInputParamsInfo().GetCount() + 1);
    host.SetParam(2, -6.0); // The pre-gain of the left channel.
    host.Block();
    EXPECT_TRUE(host.m_HadVariations);
    host.Block();
    EXPECT_FALSE(host.m_HadVariations);
    EXPECT_NEAR(host.m_OutputSamples[0][10], 0.5 * std::pow(10.0, -0.3), 1e-6);
    EXPECT_EQ(host.m_OutputSamples[1][10], 0.5f);
}

TEST(Instance, ABlockSeesWhatMovedSinceTheLast) {
    SRig rig;
    rig.m_Host.Connect();
    rig.m_Host.Prepare();
    // Preparation has given everything to the filter.
    EXPECT_EQ(rig.m_Host->GetPropertiesVariations(64), nullptr);

    rig.m_Host.SetParam(1, 1.5);
    const auto* variations = rig.m_Host->GetPropertiesVariations(4);
    ASSERT_NE(variations, nullptr);
    EXPECT_EQ(variations->GetStart().GetParams().GetValue(0), 1.0);
    EXPECT_EQ(variations->GetEnd().GetParams().GetValue(0), 1.5);
    EXPECT_EQ(variations->GetVariations(DSP::Params).GetElement(0).GetValue(0), 0.125);
    EXPECT_EQ(variations->GetVariations(DSP::Strings).GetCount(), 0);
    rig.m_Host->CommitVariations();

    // A move that is taken back before the block is none, and a block without samples has no rate.
    rig.m_Host.SetParam(1, 0.5);
    rig.m_Host.SetParam(1, 1.5);
    EXPECT_EQ(rig.m_Host->GetPropertiesVariations(64), nullptr);
    rig.m_Host.SetParam(1, 0.5);
    variations = rig.m_Host->GetPropertiesVariations(0);
    ASSERT_NE(variations, nullptr);
    EXPECT_EQ(variations->GetVariations(DSP::Params).GetElement(0).GetValue(0), 0.0);
    rig.m_Host->CommitVariations();

    rig.GetInputText().SetValue("first");
    rig.GetInputText().SetValue("last");
    variations = rig.m_Host->GetPropertiesVariations(4);
    ASSERT_NE(variations, nullptr);
    EXPECT_STREQ(variations->GetEnd().GetStrings().GetValue(0), "last");
    EXPECT_EQ(variations->GetVariations(DSP::Strings).GetElement(0).GetValue(0), 0.25);
    EXPECT_EQ(variations->GetVariations(DSP::Params).GetCount(), 0);
}

// A host's object may hold anything.
class CNaNParams : public THostParams<DataModel::Objects::ICaptureParam, IInputParams> {
public:
    using THostParams::THostParams;
    class CNaN : public DataModel::Objects::CMTCaptureParam {
    public:
        double GetValue() const override { return std::numeric_limits<double>::quiet_NaN(); }
    };
    DataModel::Objects::ICaptureParam& GetElement(int) override { return m_NaN; }

private:
    CNaN m_NaN;
};

TEST(Instance, NaNIsNoChangeOfAParameter) {
    SRig rig;
    CNaNParams params(rig.m_Host->GetInputParamInfos());
    rig.m_Host->ConnectHost(params, rig.m_Host.m_Outputs, nullptr, nullptr);
    rig.m_Host.Prepare(48000.0, 64, false);
    EXPECT_EQ(rig.m_Host->GetPropertiesVariations(64), nullptr);
    rig.m_Host->CommitVariations();
}

TEST(Instance, InputsReachTheFilterAndComeBackAsOutputs) {
    for (const bool hasClock : {false, true}) {
        STestFilterSetup setup;
        setup.m_HasClock = hasClock;
        SRig rig(setup);
        rig.m_Host.Connect();
        rig.m_Host.Prepare();
        const IPluginGUIConnections& connections = rig.m_Host->GetConnections();
        CCountCommand heard;
        connections.GetOutputStrings()->GetElement(0).GetValueChangedEvent().AddCommand(heard);

        rig.GetInputText().SetValue("text");
        connections.GetInputCurves()->GetElement(0).SetValue(Math::CConstantFunction(3.0));
        connections.GetInputSurfaces()->GetElement(0).SetValue(Math::CConstantBinaryFunction(4.0));
        connections.GetInputCustomProperties()->GetElement(0).SetValue(CTestProperty(5.0));
        rig.m_Host.SetParam(1, 0.25);
        // Outputs fall due every 960 samples.
        for (int block = 0; block < 16; ++block)
            rig.m_Host.Block();
        EXPECT_EQ(heard.m_Count, 1);
        EXPECT_EQ(rig.GetOutputText(), "text");
        using Math::IFunction, Math::IBinaryFunction, DataModel::Objects::IDynamicPropertyValue;
        const std::unique_ptr<IFunction> curve(
            connections.GetOutputCurves()->GetElement(0).GetValue());
        EXPECT_EQ(curve->Evaluate(0.0), 3.0);
        const std::unique_ptr<IBinaryFunction> surface(
            connections.GetOutputSurfaces()->GetElement(0).GetValue());
        EXPECT_EQ(surface->Evaluate(0.0, 0.0), 4.0);
        const std::unique_ptr<IDynamicPropertyValue> property(
            connections.GetOutputCustomProperties()->GetElement(0).GetValue());
        EXPECT_EQ(dynamic_cast<const CTestProperty&>(*property).m_Number, 5.0);
        EXPECT_EQ(connections.GetOutputParams()->GetElement(0).GetValue(), 0.25);
        connections.GetOutputStrings()->GetElement(0).GetValueChangedEvent().RemoveCommand(heard);
    }
}

TEST(Instance, KeepsItsRoomWhenTheHostNoLongerTellsABlockSize) {
    STestFilterSetup setup;
    SRig rig(setup);
    rig.m_Filter->SetLatency(32);
    rig.m_Host.Connect();
    rig.m_Host.Prepare(44100.0, 256);
    rig.m_Host.Prepare(96000.0, -1, false);
    EXPECT_EQ(rig.m_Filter->m_InitInfo.m_MaxBlockSize, 256);
    EXPECT_FALSE(rig.m_Filter->m_InitInfo.m_ResetToDefaults);
    EXPECT_EQ(rig.m_Host->GetConnections().GetMaxBlockSize()->GetValue(), 0.0);
    rig.m_Host.SetParam(0, 1.0); // Bypass takes the scratch buffers.
    rig.m_Host.SetParam(1, 0.5);
    const CAllocationScope allocations;
    rig.m_Host.Block(256);
    rig.m_Host.Block(256);
    EXPECT_EQ(allocations.GetCount(), 0);
}

TEST(Instance, TellsCustomPropertiesHowAudioRuns) {
    SRig rig;
    rig.m_Host.Connect();
    const auto getProperty = [&] {
        return std::unique_ptr<CTestProperty>(dynamic_cast<CTestProperty*>(
            rig.m_Host->GetConnections().GetInputCustomProperties()->GetElement(0).GetValue()));
    };
    rig.m_Host.Prepare(44100.0, 128);
    rig.m_Host.Prepare(44100.0, 128, false);
    const SProcessData expected{128, 44100.0, 2, 2};
    EXPECT_EQ(getProperty()->m_SampleRate, 44100.0);
    EXPECT_EQ(getProperty()->m_RatesSet, 1); // The same rate again is not told.
    EXPECT_EQ(getProperty()->m_ProcessData, expected);
    // One that a state brings is told too.
    const std::string state = rig.m_Host.GetState();
    rig.m_Host->GetConnections().GetInputCustomProperties()->GetElement(0).SetValue(
        DataModel::Objects::CEmptyDynamicPropertyValue());
    ASSERT_TRUE(rig.m_Host.SetState(state));
    EXPECT_EQ(getProperty()->m_SampleRate, 44100.0);
    EXPECT_EQ(getProperty()->m_ProcessData, expected);
}

TEST(Instance, BypassSwitchesAtOnceWithoutLatency) {
    SRig rig;
    rig.m_Host.Connect();
    rig.m_Host.Prepare();
    rig.m_Host.SetParam(1, 2.0);
    rig.m_Host.Block();
    rig.m_Host.Block();
    EXPECT_EQ(rig.m_Host.m_OutputSamples[0][0], 1.0f);
    rig.m_Host.SetParam(0, 1.0);
    rig.m_Host.Block();
    EXPECT_EQ(rig.m_Host.m_OutputSamples[0][0], 0.5f);
    rig.m_Host.SetParam(0, 0.0);
    rig.m_Host.Block();
    EXPECT_EQ(rig.m_Host.m_OutputSamples[0][0], 1.0f);
}

TEST(Instance, ControllersMoveParametersAndAreSent) {
    SRig rig;
    rig.m_Host.Connect();
    rig.m_Host.Prepare();
    CMIDIController& controller = rig.m_Host->GetMIDIController();
    EXPECT_TRUE(rig.m_Host.Control(16, 7, 127)); // Heard, though it moves nothing.
    EXPECT_EQ(controller.GetLastMessage().GetChannel(), 16);
    EXPECT_EQ(rig.m_Host.GetParam(1), 1.0);

    IMIDICCSetting& input = controller.GetInputSettings().GetElement(1);
    input.SetMIDIEnabled(true);
    input.SetNumber(7);
    rig.m_Host.Control(3, 7, 127);
    EXPECT_EQ(rig.m_Host.GetParam(1), 2.0);
    EXPECT_FALSE(rig.m_Host.m_Inputs.GetElement(1).IsCaptured());

    IMIDICCSetting& output = controller.GetOutputSettings().GetElement(0);
    output.SetMIDIEnabled(true);
    output.SetChannel(2);
    output.SetNumber(9);
    for (int block = 0; block < 40; ++block)
        rig.m_Host.Block();
    EXPECT_EQ(rig.m_Host.m_SentEvents, 1); // The value stays, so it is sent once.
    EXPECT_EQ(rig.m_Host.m_LastSent.GetChannel(), 1);
    EXPECT_EQ(rig.m_Host.m_LastSent.GetNumber(), 9);
    EXPECT_EQ(rig.m_Host.m_LastSent.GetValue(), 127);
    rig.m_Host.Prepare(48000.0, 512, false);
    rig.m_Host.Block();
    EXPECT_EQ(rig.m_Host.m_SentEvents, 2); // The receiver may have forgotten.
}

TEST(Instance, FollowsTheDefaultSettingsUntilItHasItsOwn) {
    const CTemporaryHome home;
    CTestSettings settings(nullptr);
    CAudioPluginConfig config;
    config.staticSettings = &settings;
    config.outputRefreshRate = 25.0;
    CTestHost host(std::make_unique<CPluginTestFilter>(), config);
    host.Connect();
    EXPECT_EQ(host->GetOutputSync().GetRefreshRate(), 25.0);
    settings.GetDefaultSettings().SetRefreshRate(10.0);
    EXPECT_EQ(host->GetOutputSync().GetRefreshRate(), 10.0);

    CInputMIDICCSettings defaults(2);
    defaults[1].SetNumber(20);
    settings.GetDefaultSettings().SetInputCCSettings(defaults);
    EXPECT_EQ(host->GetMIDIController().GetInputSettings()[1].GetNumber(), 20);
    host->GetConnections().GetMIDIInputDefault()->SetValue(false);
    defaults[1].SetNumber(30);
    settings.GetDefaultSettings().SetInputCCSettings(defaults);
    EXPECT_EQ(host->GetMIDIController().GetInputSettings()[1].GetNumber(), 20);
    host->Shutdown();
    settings.GetDefaultSettings().SetRefreshRate(40.0); // Nobody is left to hear it.
}

TEST(Instance, GivesMemoryBackWithoutFurtherWrites) {
    CManualTimerProvider timers;
    SRig rig({}, &timers);
    EXPECT_EQ(timers.GetCount(), 2);
    rig.m_Host.Connect();
    rig.m_Host.Prepare();
    rig.GetInputText().SetValue(std::string(100, 'x').c_str());
    rig.m_Host.Block();
    rig.GetInputText().SetValue("short");
    rig.m_Host.Block();
    // Outputs are published, so that neither filter nor block holds the long text.
    for (int block = 0; block < 32; ++block)
        rig.m_Host.Block();
    const CAllocationScope freed;
    timers.Advance(100);
    EXPECT_GT(freed.GetCount(), 0);

    STestFilterSetup numbersOnly;
    numbersOnly.m_Objects = 0;
    CManualTimerProvider otherTimers;
    const SRig other(numbersOnly, &otherTimers);
    EXPECT_EQ(otherTimers.GetCount(), 1);
}

TEST(Instance, UpdatesOutputsWhileTheHostDoesNotProcess) {
    CManualTimerProvider timers;
    SRig rig({}, &timers);
    CCountCommand updated;
    rig.m_Host.Connect(nullptr, &updated);
    timers.Advance(3000);
    EXPECT_EQ(updated.m_Count, 0); // Not prepared yet.
    rig.m_Host.Prepare();
    rig.GetInputText().SetValue("idle");
    timers.Advance(1500);
    EXPECT_EQ(updated.m_Count, 0);
    timers.Advance(200);
    EXPECT_GT(updated.m_Count, 0);
    EXPECT_EQ(rig.GetOutputText(), "idle");

    // A block is a sign of the host, after which the timer keeps away.
    rig.m_Host.Block();
    updated.m_Count = 0;
    for (int i = 0; i < 30; ++i) {
        rig.m_Host.Block();
        timers.Advance(100);
    }
    EXPECT_EQ(updated.m_Count, 0);
    timers.Advance(2000);
    EXPECT_GT(updated.m_Count, 0);
    rig.m_Host->Shutdown();
    EXPECT_EQ(timers.GetCount(), 0);
}

// Both write down what they are told.
class CNotedGUI : public IPluginGUI {
public:
    explicit CNotedGUI(std::string& journal) : m_Journal(journal) {}
    ~CNotedGUI() override { m_Journal += "gui-dies "; }
    bool Serialize(Serialization::IWriteDataStream& output) const override {
        return Serialization::WriteValue(output, "number", m_Number);
    }
    bool DeSerialize(const Serialization::IReadDataStream& input) override {
        m_Journal += "gui-reads ";
        return Serialization::ReadValueOrDefault(input, "number", m_Number, 0);
    }
    void Connect(IPluginGUIConnections* connections) override {
        m_Journal += connections ? "gui-connect " : "gui-disconnect ";
    }
    bool Open(void*) override { return false; }
    void Close() override {}
    void SetVisible(bool) override {}
    void SetBounds(int, int, int, int) override {}
    void Redraw() override {}
    void GetSize(int&, int&) const override {}
    const char* GetText() const override { return ""; }
    void* GetNativeWindow() const override { return nullptr; }
    Core::IEventProvider& GetSizeChangedEvent() const override { return m_StateChanged; }
    Core::IEventProvider& GetStateChangedEvent() const override { return m_StateChanged; }
    double GetTransparency() const override { return 1.0; }
    Core::IEventProvider& GetTransparencyChangedEvent() const override { return m_StateChanged; }
    void Suspend() override { m_Journal += "gui-suspend "; }
    void Resume() override { m_Journal += "gui-resume "; }

    mutable Core::CEventProvider m_StateChanged;
    int m_Number = 0;

private:
    std::string& m_Journal;
};

class CNotedModel : public IAudioPluginModel {
public:
    explicit CNotedModel(std::string& journal) : m_Journal(journal) {}
    bool Serialize(Serialization::IWriteDataStream&) const override { return true; }
    bool DeSerialize(const Serialization::IReadDataStream&) override {
        m_Journal += "model-reads ";
        return true;
    }
    void Enable(bool enabled) override { m_Journal += enabled ? "model-on " : "model-off "; }
    bool IsEnabled() const override { return true; }
    void Connect(IPluginGUIConnections* connections) override {
        m_Journal += connections ? "model-connect " : "model-disconnect ";
    }
    const AppEngine::ISkinModel* GetModel() const override { return nullptr; }
    AppEngine::ISkinModel* GetModel() override { return nullptr; }
    const AppEngine::ISkinModel* GetSharedModel() const override { return nullptr; }
    AppEngine::ISkinModel* GetSharedModel() override { return nullptr; }
    const AppEngine::ISkinModel* GetGlobalModel() const override { return nullptr; }
    AppEngine::ISkinModel* GetGlobalModel() override { return nullptr; }
    Core::IEventProvider& GetStateChangedEvent() const override { return m_Changed; }
    Core::IEventProvider& GetValueChangedEvent() const override { return m_Changed; }

private:
    std::string& m_Journal;
    mutable Core::CEventProvider m_Changed;
};

TEST(Instance, LeadsEditorAndModelThroughItsLife) {
    std::string journal;
    {
        auto* gui = new CNotedGUI(journal); // The instance's, as is the model.
        STestFilterSetup setup;
        setup.m_HasState = true;
        SRig rig(setup, nullptr, gui, new CNotedModel(journal));
        CCountCommand moved;
        CCountCommand stateChanged;
        rig.m_Host->GetStateChangedEvent().AddCommand(moved);
        rig.m_Host.Connect(&stateChanged);
        gui->m_StateChanged.Notify();
        EXPECT_EQ(moved.m_Count, 1);
        EXPECT_EQ(stateChanged.m_Count, 0);
        rig.GetInputText().SetValue("new");
        EXPECT_EQ(moved.m_Count, 2);
        EXPECT_EQ(stateChanged.m_Count, 1);

        gui->m_Number = 5;
        const std::string state = rig.m_Host.GetState();
        gui->m_Number = 6;
        ASSERT_TRUE(rig.m_Host.SetState(state));
        EXPECT_EQ(gui->m_Number, 5);
        // Nothing compares a curve, a surface or a property; then comes the filter's own state.
        EXPECT_EQ(stateChanged.m_Count, 5);
        ASSERT_TRUE(rig.m_Host.SetState("<Preset/>"));
        EXPECT_EQ(gui->m_Number, 0);
        rig.m_Host->GetStateChangedEvent().RemoveCommand(moved);
    }
    EXPECT_EQ(journal, "model-connect gui-connect "
                       "gui-suspend model-off model-reads gui-reads model-on gui-resume "
                       "gui-suspend model-off model-reads gui-reads model-on gui-resume "
                       "gui-disconnect model-disconnect gui-dies ");
}

} // namespace
} // namespace Lathe::Audio::Plugin
