// An instance from its construction to its end: how values reach the filter and come back, what
// MIDI and the timers do, and what the editor and the model are told.
#include "core/threads/ManualTime.h"
#include "datamodel/Journal.h"
#include "plugin/TestHost.h"
#include "plugin/interfaces/AudioPluginModel.h"
#include "plugin/interfaces/PluginGUI.h"
#include "support/AllocationCounter.h"

#include <cmath>
#include <tuple>

namespace Lathe::Audio::Plugin {
namespace {

TEST(Instance, ABlockSeesWhatMovedSinceTheLast) {
    SRig rig;
    THostParams<DataModel::Objects::ICaptureParam, CUnlimitedParam> params(
        rig.m_Host->GetInputParamInfos());
    params[1].SetValue(1.0);
    rig.m_Host->ConnectHost(params, rig.m_Host.m_Outputs, nullptr, nullptr);
    rig.m_Host.Prepare();
    EXPECT_STREQ(rig.m_Host->GetInputParamInfos().GetElement(0).GetName(), "Bypass");
    using Numbers = std::vector<double>;
    // The levels that were set, the samples of the block, its way from start to end and its rate.
    const std::tuple<Numbers, int, Numbers> cases[] = {
        {Numbers{}, 64, Numbers{}}, // Preparation has given everything to the filter.
        {Numbers{1.5}, 4, Numbers{1.0, 1.5, 0.125}},
        {Numbers{0.5, 1.5}, 64, Numbers{}},
        {Numbers{0.5}, 0, Numbers{1.5, 0.5, 0.0}},
        {Numbers{NAN}, 64, Numbers{}}};
    for (const auto& [levels, samples, expected] : cases) {
        for (const double level : levels)
            params[1].SetValue(level);
        Numbers seen;
        if (const auto* variations = rig.m_Host->GetPropertiesVariations(samples))
            seen = {variations->GetStart().GetParams().GetValue(0),
                    variations->GetEnd().GetParams().GetValue(0),
                    variations->GetVariations(DSP::Params).GetElement(0).GetValue(0)};
        rig.m_Host->CommitVariations();
        EXPECT_EQ(seen, expected);
    }
}

TEST(Instance, InputsReachTheFilterAndComeBackAsOutputs) {
    for (const bool hasClock : {false, true}) {
        SRig rig({.m_HasClock = hasClock});
        rig.m_Host.Prepare();
        DataModel::CJournal journal(rig.Get().GetOutputStrings()->GetElement(0));
        rig.GetText().SetValue("text");
        SetObjects(rig.Get(), 3.0, 4.0, 5.0);
        rig.m_Host.SetParam(1, 0.25);
        // Outputs fall due every 960 samples.
        for (int block = 0; block < 32; ++block)
            rig.m_Host.Block();
        EXPECT_EQ(journal.Take(), "v");
        // The second number is computed.
        EXPECT_EQ(ShowOutputs(rig.Get()), "0.25 0.125 text 3 4 5");
        const std::pair<const char*, bool> texts[] = {
            {"text", false}, {nullptr, true}, {nullptr, false}, {"", true}};
        for (const auto& [text, isNew] : texts) {
            rig.GetText().SetValue(text);
            rig.m_Host.Block();
            EXPECT_EQ(rig.m_Host.m_HadVariations, isNew);
        }
        EXPECT_EQ(TakeText(rig.GetText().GetValue()), "");
    }
}

TEST(Instance, FadesToTheDrySignalInTenMillisecondsWithoutMoreRoom) {
    SRig rig;
    rig.m_Filter->SetLatency(100);
    rig.m_Host.Prepare(96000.0);
    DataModel::CJournal journal(rig.Get().GetOutputStrings()->GetElement(0));
    rig.m_Host.Prepare(44100.0, -1, false); // The host no longer tells a block size.
    EXPECT_EQ(rig.m_Filter->m_MaxBlockSize, 512);
    EXPECT_EQ(rig.Get().GetMaxBlockSize()->GetValue(), 0.0);
    EXPECT_EQ(journal.Take(), "v") << "the filter is given everything anew";
    rig.m_Host.SetParam(1, 2.0);
    rig.m_Host.Block(512);
    rig.m_Host.SetParam(0, 1.0);
    const CAllocationScope allocations;
    rig.m_Host.Block(512);
    EXPECT_EQ(allocations.GetCount(), 0);
    const auto& fade = rig.m_Host.m_OutputSamples[0];
    EXPECT_TRUE(fade[0] > 0.99f && fade[439] > 0.5f && !(fade[442] > 0.5f || fade[442] < 0.5f));
}

TEST(Instance, TellsCustomPropertiesHowAudioRuns) {
    SRig rig;
    auto& object = rig.Get().GetInputCustomProperties()->GetElement(0);
    rig.m_Host.Prepare(44100.0, 128);
    rig.m_Host.Prepare(44100.0, 128, false);
    for (const bool isFromState : {false, true}) {
        if (isFromState) {
            const std::string state = rig.m_Host.GetState();
            object.SetValue(DataModel::Objects::CEmptyDynamicPropertyValue());
            ASSERT_TRUE(rig.m_Host.SetState(state));
        }
        const std::unique_ptr<DataModel::Objects::IDynamicPropertyValue> value(object.GetValue());
        const auto& property = dynamic_cast<const CTestProperty&>(*value);
        EXPECT_EQ(property.m_RatesSet, 1) << "the same rate again is not told";
        EXPECT_EQ(property.m_RateAtRead, isFromState ? 44100.0 : 0.0) << "told before it reads";
        EXPECT_EQ(property.m_ProcessData, (SProcessData{128, 44100.0, 2, 2}));
    }
}

TEST(Instance, FollowsTheDefaultSettingsUntilItHasItsOwn) {
    const CTemporaryHome home;
    CTestSettings shared(nullptr);
    IAudioPluginDefaultSettings& settings = shared.GetDefaultSettings();
    CTestHost host(std::make_unique<CPluginTestFilter>(),
                   {.outputRefreshRate = 25.0, .guiFeatures = {}, .staticSettings = &shared});
    host.Connect();
    EXPECT_EQ(host->GetOutputSync().GetRefreshRate(), 25.0);
    settings.SetRefreshRate(10.0);
    EXPECT_EQ(host->GetOutputSync().GetRefreshRate(), 10.0);

    CInputMIDICCSettings defaults(2);
    for (const bool follows : {true, false}) {
        host->GetConnections().GetMIDIInputDefault()->SetValue(follows);
        host->GetConnections().GetMIDIOutputDefault()->SetValue(follows);
        defaults[1].SetNumber(follows ? 20 : 30);
        settings.SetInputCCSettings(defaults);
        settings.SetOutputCCSettings(defaults);
        EXPECT_EQ(host->GetMIDIController().GetInputSettings()[1].GetNumber(), 20);
        EXPECT_EQ(host->GetMIDIController().GetOutputSettings()[1].GetNumber(), 20);
    }
    host->Shutdown();
    settings.SetRefreshRate(40.0); // Nobody is left to hear it.
}

struct CWatched : CTestProperty, CTracked {
    CWatched* Clone() const override { return new CWatched(*this); }
};

TEST(Instance, FreesWhatNoBlockHoldsWithTheNextWriteOrTick) {
    CManualTimerProvider timers;
    SRig rig({}, {.guiFeatures = {}, .timerProvider = &timers});
    rig.m_Host.Prepare();
    auto& object = rig.Get().GetInputCustomProperties()->GetElement(0);
    // So many that the outputs are published, and the filter has let go of what was there before.
    const auto runBlocks = [&] {
        const CAllocationScope scope;
        for (int block = 0; block < 40; ++block)
            rig.m_Host.Block();
        EXPECT_EQ(scope.GetCount(), 0);
    };
    object.SetValue(CWatched());
    object.SetValue(CWatched());
    EXPECT_EQ(CWatched::s_Alive, 1) << "no block has seen the first";
    runBlocks();
    object.SetValue(CWatched());
    timers.Advance(100);
    EXPECT_EQ(CWatched::s_Alive, 2) << "the filter holds the second";
    runBlocks();
    EXPECT_EQ(CWatched::s_Alive, 2) << "a block frees nothing";
    timers.Advance(100);
    EXPECT_EQ(CWatched::s_Alive, 1);
    for (const char* text : {"one", "two"}) {
        rig.GetText().SetValue(text);
        runBlocks();
    }
    const CAllocationScope scope;
    rig.GetText().SetValue("two");
    EXPECT_GT(scope.GetCount(), 0) << "what was retired goes, though the text isn't new";
}

TEST(Instance, UpdatesOutputsWhileTheHostDoesNotProcess) {
    CManualTimerProvider timers;
    SRig rig({}, {.guiFeatures = {}, .timerProvider = &timers});
    CCountCommand updated;
    rig.m_Host.Connect(nullptr, &updated);
    const auto updatesWithin = [&](int milliseconds) {
        updated.m_Count = 0;
        timers.Advance(milliseconds);
        return updated.m_Count > 0;
    };
    EXPECT_FALSE(updatesWithin(3000)) << "not prepared yet";
    rig.m_Host.Prepare();
    rig.GetText().SetValue("idle");
    EXPECT_FALSE(updatesWithin(1500));
    EXPECT_TRUE(updatesWithin(200));
    EXPECT_EQ(ShowOutputs(rig.Get()), "1 0 idle 0 0 1");
    // A block is a sign of the host, after which the timer keeps away.
    for (int i = 0; i < 30; ++i) {
        rig.m_Host.Block();
        EXPECT_FALSE(updatesWithin(100));
    }
    // So it does while one is held up.
    rig.m_Host->GetPropertiesVariations(64);
    EXPECT_FALSE(updatesWithin(3000));
    rig.m_Host->EndBlock();
    EXPECT_TRUE(updatesWithin(2000));
    rig.m_Host->Shutdown();
    EXPECT_EQ(timers.GetCount(), 0);
}

// An editor or a model that writes down what it is told.
struct CNoted : IPluginGUI, IAudioPluginModel {
    CNoted(const char* name, std::string& journal) : m_Name(name), m_Journal(journal) {}
    ~CNoted() override { Note("dies"); }
    void Note(const char* what) { m_Journal += std::string(m_Name) + "-" + what + " "; }

    bool Serialize(Serialization::IWriteDataStream& output) const override {
        return Serialization::WriteValue(output, "number", m_Number);
    }
    bool DeSerialize(const Serialization::IReadDataStream& input) override {
        Note("reads");
        return Serialization::ReadValueOrDefault(input, "number", m_Number, 0);
    }
    void Connect(IPluginGUIConnections* to) override { Note(to ? "connect" : "disconnect"); }
    Core::IEventProvider& GetStateChangedEvent() const override { return m_Changed; }

    void Suspend() override { Note("suspend"); }
    void Resume() override { Note("resume"); }
    bool Open(void*) override { return false; }
    void Close() override {}
    void SetVisible(bool) override {}
    void SetBounds(int, int, int, int) override {}
    void Redraw() override {}
    void GetSize(int&, int&) const override {}
    const char* GetText() const override { return ""; }
    void* GetNativeWindow() const override { return nullptr; }
    Core::IEventProvider& GetSizeChangedEvent() const override { return m_Changed; }
    double GetTransparency() const override { return 1.0; }
    Core::IEventProvider& GetTransparencyChangedEvent() const override { return m_Changed; }

    void Enable(bool enabled) override { Note(enabled ? "on" : "off"); }
    bool IsEnabled() const override { return true; }
    const AppEngine::ISkinModel* GetModel() const override { return nullptr; }
    AppEngine::ISkinModel* GetModel() override { return nullptr; }
    const AppEngine::ISkinModel* GetSharedModel() const override { return nullptr; }
    AppEngine::ISkinModel* GetSharedModel() override { return nullptr; }
    const AppEngine::ISkinModel* GetGlobalModel() const override { return nullptr; }
    AppEngine::ISkinModel* GetGlobalModel() override { return nullptr; }
    Core::IEventProvider& GetValueChangedEvent() const override { return m_Changed; }

    const char* m_Name;
    std::string& m_Journal;
    mutable Core::CEventProvider m_Changed;
    int m_Number = 0;
};

TEST(Instance, LeadsEditorAndModelThroughItsLife) {
    std::string journal;
    auto* gui = new CNoted("gui", journal); // The instance's, as is the model.
    {
        const CTemporaryHome home;
        CTestHost host(std::make_unique<CPluginTestFilter>(STestFilterSetup{.m_HasState = true}),
                       {.gui = gui, .model = new CNoted("model", journal), .guiFeatures = {}});
        CCountCommand stateChanged;
        host.Connect(&stateChanged);
        DataModel::CJournal moved(host->GetStateChangedEvent());
        gui->m_Changed.Notify();
        host->GetConnections().GetInputStrings()->GetElement(0).SetValue("new");
        EXPECT_EQ(moved.Take(), "cc");
        EXPECT_EQ(stateChanged.m_Count, 1);

        gui->m_Number = 5;
        const std::string state = host.GetState();
        gui->m_Number = 6;
        ASSERT_TRUE(host.SetState(state));
        EXPECT_EQ(gui->m_Number, 5);
        // Nothing compares a curve, a surface or a property; then comes the filter's own state.
        EXPECT_EQ(stateChanged.m_Count, 5);
        host.Prepare(48000.0, 64, false); // The outputs show the text.
        host->Shutdown();
        journal += "down ";
        host->Shutdown();
        // Readers that are late see defaults, and the state can still be written.
        EXPECT_EQ(ShowOutputs(host->GetConnections()), "1 0 none 0 0 1");
        EXPECT_FALSE(host.GetState().empty());
    }
    EXPECT_EQ(journal, "model-connect gui-connect "
                       "gui-suspend model-off model-reads gui-reads model-on gui-resume "
                       "gui-disconnect model-disconnect down model-dies gui-dies ");
}

} // namespace
} // namespace Lathe::Audio::Plugin
