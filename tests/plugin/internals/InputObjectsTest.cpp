// Input objects: what a block sees of what is written, and who frees it.
#include "datamodel/Journal.h"
#include "plugin/TestHost.h"
#include "support/AllocationCounter.h"

#include <future>

namespace Lathe::Audio::Plugin {

// Counts the living.
struct CWatched : CTestProperty {
    CWatched() { ++s_Alive; }
    CWatched(const CWatched& other) : CTestProperty(other) { ++s_Alive; }
    ~CWatched() override { --s_Alive; }
    CWatched* Clone() const override { return new CWatched(*this); }
    static inline int s_Alive = 0;
};

class InputObjects : public testing::Test {
protected:
    InputObjects() { m_Variations.Setup(m_Filter, 1); }

    // One block, as the audio thread goes about it.
    bool RunBlock() {
        const bool moved = m_Inputs.Sync(m_Variations.GetEnd());
        m_Text = m_Variations.GetEnd().GetStrings().GetValue(0);
        EXPECT_EQ(m_Variations.GetEnd().GetDirty(DSP::Strings).GetElement(0).IsDirty(), moved);
        m_Variations.Commit();
        return moved;
    }
    void Watch() { m_Inputs.GetCustomProperties().GetElement(0).SetValue(CWatched()); }

    CPluginTestFilter m_Filter;
    CInputObjects m_Inputs{m_Filter};
    DataModel::TICaptureObjectFactory<const char*, DSP::IConstStringInfo>& m_Object =
        m_Inputs.GetStrings().GetElement(0);
    DSP::CFilterPropertiesVariations m_Variations;
    const char* m_Text = nullptr;
};

TEST_F(InputObjects, BringTheLastTextToTheNextBlock) {
    const std::pair<const char*, bool> cases[] = {
        {"none", false},  {"a", true}, {"a", false},    {"", true}, {nullptr, true},
        {nullptr, false}, {"", true},  {nullptr, true}, {"b", true}};
    DataModel::CJournal journal(m_Object);
    EXPECT_TRUE(RunBlock());
    for (const auto& [written, isNew] : cases) {
        m_Object.SetValue(written);
        EXPECT_EQ(journal.Take(), isNew ? "v" : "");
        EXPECT_EQ(RunBlock(), isNew);
        EXPECT_STREQ(m_Text, written ? written : "");
        EXPECT_EQ(TakeText(m_Object.GetValue()), m_Text);
    }
    m_Object.SetValue("first");
    m_Object.SetValue("last");
    EXPECT_TRUE(RunBlock());
    EXPECT_STREQ(m_Text, "last");
    EXPECT_FALSE(RunBlock());
}

TEST_F(InputObjects, FreeWhatNoBlockHoldsWithTheNextWriteOrPurge) {
    RunBlock();
    Watch();
    Watch();
    EXPECT_EQ(CWatched::s_Alive, 1) << "no block has seen the first";
    m_Inputs.Sync(m_Variations.GetEnd());
    m_Variations.Commit();
    Watch();
    m_Inputs.PurgeRetired();
    EXPECT_EQ(CWatched::s_Alive, 2) << "the filter's sets hold the second";
    m_Inputs.Sync(m_Variations.GetEnd());
    m_Variations.Commit();
    EXPECT_EQ(CWatched::s_Alive, 2) << "a block frees nothing";
    m_Inputs.PurgeRetired();
    EXPECT_EQ(CWatched::s_Alive, 1);

    for (const char* text : {"one", "two"}) {
        m_Object.SetValue(text);
        RunBlock();
    }
    const CAllocationScope scope;
    m_Object.SetValue("two");
    EXPECT_GT(scope.GetCount(), 0) << "what was retired goes, though the text isn't new";
}

TEST_F(InputObjects, TakeNoLockWhereThereAreNone) {
    const CPluginTestFilter filter({.m_Objects = 0});
    CInputObjects none(filter);
    const Core::CAutoLock lock(none.GetLock());
    EXPECT_FALSE(
        std::async(std::launch::async, [&] { return none.Sync(m_Variations.GetEnd()); }).get());
}

} // namespace Lathe::Audio::Plugin
