// Output objects: what readers see of a filter's outputs, and that neither side waits for the
// other.
#include "datamodel/Journal.h"
#include "plugin/TestHost.h"

#include <future>

namespace Lathe::Audio::Plugin {

class OutputObjects : public testing::Test {
protected:
    // As the numbers of the level and of a property, and as a text.
    void Give(int number) {
        m_Given.SetDefaults(*m_Filter);
        m_Given.GetParams().SetValue(0, number);
        m_Given.GetStrings().SetValue(0, std::to_string(number).c_str());
        m_Given.GetCustomProperties().SetValue(0, CTestProperty(number));
        m_Filter->SetInputValues(m_Given);
    }
    void Check(double param, const std::string& text, double number) const {
        EXPECT_EQ(m_Outputs.GetParams().GetElement(0).GetValue(), param);
        EXPECT_EQ(TakeText(m_Outputs.GetStrings().GetElement(0).GetValue()), text);
        const std::unique_ptr<DataModel::Objects::IDynamicPropertyValue> property(
            m_Outputs.GetCustomProperties().GetElement(0).GetValue());
        EXPECT_EQ(dynamic_cast<const CTestProperty&>(*property).m_Number, number);
    }
    // On another thread.
    auto Publish(bool force) {
        return std::async(std::launch::async,
                          [=, this] { return m_Outputs.Publish(*m_Filter, nullptr, force); });
    }

    DSP::CFilterProperties m_Given;
    std::unique_ptr<CPluginTestFilter> m_Filter = std::make_unique<CPluginTestFilter>();
    COutputObjects m_Outputs{*m_Filter};
};

TEST_F(OutputObjects, ShowWhatTheFilterHasUntilItDies) {
    DataModel::CJournal journal(m_Outputs.GetStrings().GetElement(0));
    journal.Listen(m_Outputs.GetParams().GetElement(0).GetValueChangedEvent(), 'p');
    journal.Listen(m_Outputs.GetCurves().GetElement(0).GetValueChangedEvent(), 'c');
    journal.Listen(m_Outputs.GetCustomProperties().GetElement(0).GetValueChangedEvent(), 'u');
    CActionCommand handler(
        [&] { EXPECT_TRUE(Publish(false).get()) << "events run without the lock"; });
    m_Outputs.GetSurfaces().GetElement(0).GetValueChangedEvent().AddCommand(handler);
    Check(1.0, "none", 1.0);
    Give(2);
    EXPECT_TRUE(m_Outputs.Publish(*m_Filter, nullptr, true));
    Check(2.0, "2", 2.0);
    EXPECT_EQ(journal.Take(), "pvcu");
    EXPECT_TRUE(m_Outputs.Publish(*m_Filter, nullptr, false));
    EXPECT_EQ(journal.Take(), "");
    m_Outputs.GetSurfaces().GetElement(0).GetValueChangedEvent().RemoveCommand(handler);
    m_Outputs.Detach();
    m_Filter.reset();
    Check(2.0, "none", 1.0);
}

TEST_F(OutputObjects, ComeBackForALockThatAReaderHolds) {
    m_Outputs.GetLock().Lock();
    Give(2);
    EXPECT_FALSE(Publish(false).get());
    Check(2.0, "none", 1.0);
    auto forced = Publish(true);
    Check(2.0, "none", 1.0);
    m_Outputs.GetLock().Unlock();
    EXPECT_TRUE(forced.get());
    Check(2.0, "2", 2.0);
}

} // namespace Lathe::Audio::Plugin
