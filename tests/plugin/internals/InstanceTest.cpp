// An instance from its construction to its end: how values reach the filter and come back, what
// MIDI and the timers do, and what the editor and the model are told.
#include "core/threads/ManualTime.h"
#include "datamodel/Journal.h"
#include "plugin/TestHost.h"
#include "plugin/interfaces/AudioPluginModel.h"
#include "plugin/interfaces/PluginGUI.h"
#include "support/AllocationCounter.h"

#include <cmath>
#include <future>

namespace Lathe::Audio::Plugin {
namespace {

TEST(Instance, ABlockSeesWhatMovedSinceTheLast) {
    SRig rig;
    rig.m_Host.Prepare();
    EXPECT_STREQ(rig.m_Host->GetInputParamInfos().GetElement(0).GetName(), "Bypass");
    // Moves the level, and gives the way from start to end and the rate of a block.
    const auto move = [&](std::initializer_list<double> levels, int samples) {
        for (const double level : levels)
            rig.m_Host.SetParam(1, level);
        const auto* variations = rig.m_Host->GetPropertiesVariations(samples);
        std::vector<double> seen;
        if (variations)
            seen = {variations->GetStart().GetParams().GetValue(0),
                    variations->GetEnd().GetParams().GetValue(0),
                    variations->GetVariations(DSP::Params).GetElement(0).GetValue(0)};
        rig.m_Host->CommitVariations();
        return seen;
    };
    using Seen = std::vector<double>;
    EXPECT_EQ(move({}, 64), Seen()) << "preparation has given everything to the filter";
    EXPECT_EQ(move({1.5}, 4), (Seen{1.0, 1.5, 0.125}));
    EXPECT_EQ(move({0.5, 1.5}, 64), Seen()) << "taken back before the block";
    EXPECT_EQ(move({0.5}, 0), (Seen{1.5, 0.5, 0.0})) << "a block without samples has no rate";
}

TEST(Instance, ABlockSeesTheTextThatIsNew) {
    SRig rig;
    rig.m_Host.Prepare();
    const std::pair<const char*, bool> cases[] = {
        {"none", false},  {"a", true}, {"a", false},    {"", true}, {nullptr, true},
        {nullptr, false}, {"", true},  {nullptr, true}, {"b", true}};
    DataModel::CJournal journal(rig.GetText());
    for (const auto& [written, isNew] : cases) {
        rig.GetText().SetValue(written);
        EXPECT_EQ(journal.Take(), isNew ? "v" : "");
        EXPECT_EQ(TakeText(rig.GetText().GetValue()), written ? written : "");
        const auto* variations = rig.m_Host->GetPropertiesVariations(4);
        ASSERT_EQ(variations != nullptr, isNew);
        if (!isNew)
            continue;
        EXPECT_STREQ(variations->GetEnd().GetStrings().GetValue(0), written ? written : "");
        EXPECT_EQ(variations->GetVariations(DSP::Strings).GetElement(0).GetValue(0), 0.25);
        EXPECT_EQ(variations->GetVariations(DSP::Params).GetCount(), 0);
        rig.m_Host->CommitVariations();
    }
}

TEST(Instance, NaNIsNoChangeOfAParameter) {
    SRig rig;
    THostParams<DataModel::Objects::ICaptureParam, CUnlimitedParam> params(
        rig.m_Host->GetInputParamInfos());
    params[1].SetValue(NAN);
    rig.m_Host->ConnectHost(params, rig.m_Host.m_Outputs, nullptr, nullptr);
    rig.m_Host.Prepare(48000.0, 64, false);
    EXPECT_EQ(rig.m_Host->GetPropertiesVariations(64), nullptr);
}

TEST(Instance, InputsReachTheFilterAndComeBackAsOutputs) {
    for (const bool hasClock : {false, true}) {
        SRig rig({.m_HasClock = hasClock});
        rig.m_Host.Prepare();
        const IPluginGUIConnections& connections = rig.Get();
        DataModel::CJournal journal(connections.GetOutputStrings()->GetElement(0));
        rig.GetText().SetValue("text");
        SetObjects(connections, 3.0, 4.0, 5.0);
        rig.m_Host.SetParam(1, 0.25);
        // Outputs fall due every 960 samples.
        for (int block = 0; block < 32; ++block)
            rig.m_Host.Block();
        EXPECT_EQ(journal.Take(), "v");
        EXPECT_EQ(rig.GetOutputText(), "text");
        EXPECT_EQ(ShowObjects(*connections.GetOutputCurves(), *connections.GetOutputSurfaces(),
                              *connections.GetOutputCustomProperties()),
                  "3 4 5");
        EXPECT_EQ(connections.GetOutputParams()->GetElement(0).GetValue(), 0.25);
        EXPECT_EQ(connections.GetOutputParams()->GetElement(1).GetValue(), 0.125) << "computed";
    }
}

TEST(Instance, KeepsItsRoomWhenTheHostNoLongerTellsABlockSize) {
    SRig rig;
    rig.m_Filter->SetLatency(32);
    rig.m_Host.Prepare(44100.0, 256);
    DataModel::CJournal journal(rig.Get().GetOutputStrings()->GetElement(0));
    rig.m_Host.Prepare(96000.0, -1, false);
    EXPECT_EQ(rig.m_Filter->m_InitInfo.m_MaxBlockSize, 256);
    EXPECT_EQ(rig.Get().GetMaxBlockSize()->GetValue(), 0.0);
    EXPECT_EQ(journal.Take(), "v") << "the filter is given everything anew";
    rig.m_Host.SetParam(0, 1.0); // Bypass takes the scratch buffers.
    const CAllocationScope allocations;
    rig.m_Host.Block(256);
    EXPECT_EQ(allocations.GetCount(), 0);
}

TEST(Instance, FadesToTheDrySignalInTenMilliseconds) {
    SRig rig;
    rig.m_Filter->SetLatency(100);
    rig.m_Host.Prepare(44100.0);
    rig.m_Host.SetParam(1, 2.0);
    rig.m_Host.Block(512);
    rig.m_Host.SetParam(0, 1.0);
    rig.m_Host.Block(512);
    const auto& fade = rig.m_Host.m_OutputSamples[0];
    for (std::size_t i = 1; i < fade.size(); ++i)
        EXPECT_TRUE(fade[i] <= fade[i - 1] && fade[i] > fade[i - 1] - 0.002f) << i;
    EXPECT_GT(fade[439], 0.5f);
    EXPECT_EQ(fade[442], 0.5f);
}

TEST(Instance, TellsCustomPropertiesHowAudioRuns) {
    SRig rig;
    auto& object = rig.Get().GetInputCustomProperties()->GetElement(0);
    const auto check = [&](bool wasRead) {
        const std::unique_ptr<DataModel::Objects::IDynamicPropertyValue> value(object.GetValue());
        const auto& property = dynamic_cast<const CTestProperty&>(*value);
        EXPECT_EQ(property.m_SampleRate, 44100.0);
        EXPECT_EQ(property.m_RatesSet, 1) << "the same rate again is not told";
        EXPECT_EQ(property.m_RateAtRead, wasRead ? 44100.0 : 0.0) << "told before it reads";
        EXPECT_EQ(property.m_ProcessData, (SProcessData{128, 44100.0, 2, 2}));
    };
    rig.m_Host.Prepare(44100.0, 128);
    rig.m_Host.Prepare(44100.0, 128, false);
    check(false);
    // One that a state brings is told too.
    const std::string state = rig.m_Host.GetState();
    object.SetValue(DataModel::Objects::CEmptyDynamicPropertyValue());
    ASSERT_TRUE(rig.m_Host.SetState(state));
    check(true);
}

TEST(Instance, ControllersMoveParametersAndAreSent) {
    SRig rig;
    rig.m_Host.Prepare();
    CMIDIController& controller = rig.m_Host->GetMIDIController();
    controller.GetInputSettings()[1].SetMIDIEnabled(true);
    controller.GetInputSettings()[1].SetNumber(7);
    rig.m_Host.Control(3, 7, 127);
    EXPECT_EQ(rig.m_Host.GetParam(1), 2.0);

    controller.GetOutputSettings()[0].SetMIDIEnabled(true);
    for (int block = 0; block < 40; ++block)
        rig.m_Host.Block();
    EXPECT_EQ(rig.m_Host.m_SentEvents, 1); // The value stays, so it is sent once.
    EXPECT_EQ(rig.m_Host.m_LastSent.GetValue(), 127);
    rig.m_Host.Prepare(48000.0, 512, false);
    rig.m_Host.Block();
    EXPECT_EQ(rig.m_Host.m_SentEvents, 2); // The receiver may have forgotten.
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

// Counts the living.
struct CWatched : CTestProperty {
    CWatched() { ++s_Alive; }
    CWatched(const CWatched& other) : CTestProperty(other) { ++s_Alive; }
    ~CWatched() override { --s_Alive; }
    CWatched* Clone() const override { return new CWatched(*this); }
    static inline int s_Alive = 0;
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

TEST(OutputObjects, ComeBackForALockThatAReaderHolds) {
    CPluginTestFilter filter;
    COutputObjects outputs(filter);
    const auto& text = outputs.GetStrings().GetElement(0);
    auto& lock = const_cast<Core::ILock&>(dynamic_cast<const Core::ILock&>(text));
    const auto publish = [&](bool force) {
        return std::async(std::launch::async,
                          [&, force] { return outputs.Publish(filter, nullptr, force); });
    };
    CActionCommand handler([&] { EXPECT_TRUE(publish(false).get()) << "no lock in events"; });
    text.GetValueChangedEvent().AddCommand(handler);
    DSP::CFilterProperties given;
    given.SetDefaults(filter);
    given.GetStrings().SetValue(0, "new");
    filter.SetInputValues(given);
    lock.Lock();
    EXPECT_FALSE(publish(false).get());
    auto forced = publish(true);
    EXPECT_EQ(TakeText(text.GetValue()), "none");
    lock.Unlock();
    EXPECT_TRUE(forced.get());
    EXPECT_EQ(TakeText(text.GetValue()), "new");
    text.GetValueChangedEvent().RemoveCommand(handler);
}

TEST(Instance, UpdatesOutputsWhileTheHostDoesNotProcess) {
    CManualTimerProvider timers;
    SRig rig({}, {.guiFeatures = {}, .timerProvider = &timers});
    CCountCommand updated;
    rig.m_Host.Connect(nullptr, &updated);
    timers.Advance(3000);
    EXPECT_EQ(updated.m_Count, 0) << "not prepared yet";
    rig.m_Host.Prepare();
    rig.GetText().SetValue("idle");
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
    // So it does while one is held up.
    rig.m_Host->GetPropertiesVariations(64);
    timers.Advance(3000);
    EXPECT_EQ(updated.m_Count, 0);
    rig.m_Host->EndBlock();
    timers.Advance(2000);
    EXPECT_GT(updated.m_Count, 0);
    rig.m_Host->Shutdown();
    EXPECT_EQ(timers.GetCount(), 0);
}

// Both write down what they are told.
template <class I>
struct TNoted : I {
    TNoted(const char* name, std::string& journal) : m_Name(name), m_Journal(journal) {}
    ~TNoted() override { Note("dies"); }
    bool Serialize(Serialization::IWriteDataStream& output) const override {
        return Serialization::WriteValue(output, "number", m_Number);
    }
    bool DeSerialize(const Serialization::IReadDataStream& input) override {
        Note("reads");
        return Serialization::ReadValueOrDefault(input, "number", m_Number, 0);
    }
    void Connect(IPluginGUIConnections* connections) override {
        Note(connections ? "connect" : "disconnect");
    }
    Core::IEventProvider& GetStateChangedEvent() const override { return m_StateChanged; }
    void Note(const char* what) { m_Journal += std::string(m_Name) + "-" + what + " "; }

    const char* m_Name;
    std::string& m_Journal;
    mutable Core::CEventProvider m_StateChanged;
    int m_Number = 0;
};

struct CNotedGUI : TNoted<IPluginGUI> {
    using TNoted::TNoted;
    bool Open(void*) override { return false; }
    void Close() override {}
    void SetVisible(bool) override {}
    void SetBounds(int, int, int, int) override {}
    void Redraw() override {}
    void GetSize(int&, int&) const override {}
    const char* GetText() const override { return ""; }
    void* GetNativeWindow() const override { return nullptr; }
    Core::IEventProvider& GetSizeChangedEvent() const override { return m_StateChanged; }
    double GetTransparency() const override { return 1.0; }
    Core::IEventProvider& GetTransparencyChangedEvent() const override { return m_StateChanged; }
    void Suspend() override { Note("suspend"); }
    void Resume() override { Note("resume"); }
};

struct CNotedModel : TNoted<IAudioPluginModel> {
    using TNoted::TNoted;
    void Enable(bool enabled) override { Note(enabled ? "on" : "off"); }
    bool IsEnabled() const override { return true; }
    const AppEngine::ISkinModel* GetModel() const override { return nullptr; }
    AppEngine::ISkinModel* GetModel() override { return nullptr; }
    const AppEngine::ISkinModel* GetSharedModel() const override { return nullptr; }
    AppEngine::ISkinModel* GetSharedModel() override { return nullptr; }
    const AppEngine::ISkinModel* GetGlobalModel() const override { return nullptr; }
    AppEngine::ISkinModel* GetGlobalModel() override { return nullptr; }
    Core::IEventProvider& GetValueChangedEvent() const override { return m_StateChanged; }
};

TEST(Instance, LeadsEditorAndModelThroughItsLife) {
    std::string journal;
    auto* gui = new CNotedGUI("gui", journal); // The instance's, as is the model.
    {
        const CTemporaryHome home;
        CTestHost host(std::make_unique<CPluginTestFilter>(STestFilterSetup{.m_HasState = true}),
                       {.gui = gui, .model = new CNotedModel("model", journal), .guiFeatures = {}});
        DataModel::CJournal moved(host->GetStateChangedEvent());
        CCountCommand stateChanged;
        host.Connect(&stateChanged);
        gui->m_StateChanged.Notify();
        EXPECT_EQ(stateChanged.m_Count, 0);
        host->GetConnections().GetInputStrings()->GetElement(0).SetValue("new");
        EXPECT_EQ(stateChanged.m_Count, 1);
        EXPECT_EQ(moved.Take(), "cc");

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
        const auto& text = host->GetConnections().GetOutputStrings()->GetElement(0);
        EXPECT_EQ(TakeText(text.GetValue()), "none");
        EXPECT_FALSE(host.GetState().empty());
    }
    EXPECT_EQ(journal, "model-connect gui-connect "
                       "gui-suspend model-off model-reads gui-reads model-on gui-resume "
                       "gui-disconnect model-disconnect down model-dies gui-dies ");
}

} // namespace
} // namespace Lathe::Audio::Plugin
