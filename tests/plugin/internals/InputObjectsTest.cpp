// Input objects: what the audio thread sees of what is written, and who frees it.
#include "plugin/internals/InputObjects.h"

#include "datamodel/Journal.h"
#include "plugin/PluginTestFilter.h"
#include "support/AllocationCounter.h"

#include <future>
#include <thread>

namespace Lathe::Audio::Plugin {

static thread_local bool t_IsAudio = false;

// Counts the living, and those that die where they must not.
struct CWatched : CTestProperty {
    CWatched() { ++s_Alive; }
    CWatched(const CWatched& other) : CTestProperty(other) { ++s_Alive; }
    ~CWatched() override {
        --s_Alive;
        s_FreedByAudio += t_IsAudio;
    }
    CWatched* Clone() const override { return new CWatched(*this); }

    static inline std::atomic<int> s_Alive = 0;
    static inline std::atomic<int> s_FreedByAudio = 0;
};

class InputObjects : public testing::Test {
protected:
    InputObjects() { m_Variations.Setup(m_Filter, 1); }

    // One block, as the audio thread goes about it.
    bool RunBlock() {
        const bool moved = m_Inputs.Sync(m_Variations.GetEnd());
        m_Text = m_Variations.GetEnd().GetStrings().GetValue(0);
        m_Variations.Commit();
        return moved;
    }
    void Watch() { m_Inputs.GetCustomProperties().GetElement(0).SetValue(CWatched()); }
    void SetText(const char* text) { m_Inputs.GetStrings().GetElement(0).SetValue(text); }
    std::string ReadText() {
        return std::unique_ptr<char[]>(m_Inputs.GetStrings().GetElement(0).GetValue()).get();
    }

    CPluginTestFilter m_Filter;
    CInputObjects m_Inputs{m_Filter};
    DSP::CFilterPropertiesVariations m_Variations;
    const char* m_Text = nullptr;
};

TEST_F(InputObjects, BringTheLastTextToTheNextBlock) {
    struct {
        const char* m_Written;
        bool m_IsNew;
    } const cases[] = {{"none", false},  {"a", true}, {"a", false},    {"", true}, {nullptr, true},
                       {nullptr, false}, {"", true},  {nullptr, true}, {"b", true}};
    auto& object = m_Inputs.GetStrings().GetElement(0);
    DataModel::CJournal journal(object);
    EXPECT_TRUE(RunBlock());
    for (const auto& [written, isNew] : cases) {
        SetText(written);
        EXPECT_EQ(journal.Take(), isNew ? "v" : "");
        EXPECT_EQ(RunBlock(), isNew);
        EXPECT_STREQ(m_Text, written ? written : "");
        EXPECT_EQ(ReadText(), m_Text);
    }
    SetText("first");
    SetText("last");
    EXPECT_TRUE(RunBlock());
    EXPECT_STREQ(m_Text, "last");
    EXPECT_FALSE(RunBlock());
    object.Capture();
    object.Capture();
    object.Release();
    object.Release();
    EXPECT_EQ(journal.Take(), "vvbe");
}

TEST_F(InputObjects, FreeWhatNoBlockHoldsWithTheNextWriteOrPurge) {
    Watch();
    Watch();
    EXPECT_EQ(CWatched::s_Alive, 1) << "no block has seen the first";
    RunBlock();
    Watch();
    m_Inputs.PurgeRetired();
    EXPECT_EQ(CWatched::s_Alive, 2) << "the filter's sets hold the second";
    RunBlock();
    EXPECT_EQ(CWatched::s_Alive, 2) << "a block frees nothing";
    m_Inputs.PurgeRetired();
    EXPECT_EQ(CWatched::s_Alive, 1);

    SetText("one");
    RunBlock();
    SetText("two");
    RunBlock();
    const CAllocationScope scope;
    SetText("two");
    EXPECT_GT(scope.GetCount(), 0) << "what was retired goes, though the text isn't new";
}

TEST_F(InputObjects, LetNoBlockAllocateOrFreeWhateverOtherThreadsDo) {
    SetText("x");
    std::atomic<bool> done = false;
    std::thread audio([&] {
        t_IsAudio = true;
        const CAllocationScope scope;
        while (!done) {
            RunBlock();
            EXPECT_EQ(std::strspn(m_Text, m_Text[0] == 'a' ? "a" : "xb"), std::strlen(m_Text));
        }
        EXPECT_EQ(scope.GetCount(), 0);
    });
    std::thread timer([&] {
        while (!done) {
            m_Inputs.PurgeRetired();
            ReadText();
        }
    });
    const auto write = [&](char letter) {
        for (std::size_t i = 0; i < 3000; ++i) {
            Watch();
            SetText(std::string(i % 40 + 1, letter).c_str());
        }
    };
    std::thread other(write, 'b');
    write('a');
    for (std::thread* thread : {&other, &audio, &timer}) {
        thread->join();
        done = true;
    }
    RunBlock();
    EXPECT_EQ(m_Text, ReadText());
    EXPECT_EQ(CWatched::s_FreedByAudio, 0);
    m_Inputs.PurgeRetired();
    EXPECT_EQ(CWatched::s_Alive, 1);
}

TEST_F(InputObjects, GoBackToTheirDefaults) {
    int changes = 0;
    CActionCommand command([&] { ++changes; });
    m_Inputs.AddValueChangedCommand(command);
    SetText("text");
    m_Inputs.SetToDefaults();
    EXPECT_EQ(changes, 5) << "one of each kind";
    EXPECT_EQ(ReadText(), "none");
    m_Inputs.RemoveValueChangedCommand(command);
    m_Inputs.SetToDefaults();
    EXPECT_EQ(changes, 5);
}

TEST_F(InputObjects, TakeNoLockWhereThereAreNone) {
    const CPluginTestFilter filter({.m_Objects = 0});
    CInputObjects none(filter);
    const Core::CAutoLock lock(none.GetLock());
    EXPECT_FALSE(
        std::async(std::launch::async, [&] { return none.Sync(m_Variations.GetEnd()); }).get());
}

TEST(ProcessAwareProperty, IsToldOnlyWhatIsNew) {
    const SProcessData data{512, 48000.0, 1, 2};
    CTestProperty property;
    EXPECT_TRUE(WriteProcessData(property, data));
    EXPECT_TRUE(WriteProcessData(property, data));
    EXPECT_EQ(property.m_SampleRate, 48000.0);
    EXPECT_EQ(property.m_RatesSet, 1);
    EXPECT_EQ(property.m_ProcessData, data);
    DataModel::Objects::CEmptyDynamicPropertyValue unaware;
    EXPECT_FALSE(WriteProcessData(unaware, data));
}

} // namespace Lathe::Audio::Plugin
