// Output objects: what readers see of a filter's outputs, and that neither side harms the other.
#include "plugin/internals/OutputObjects.h"

#include "datamodel/Journal.h"
#include "plugin/PluginTestFilter.h"
#include "support/AllocationCounter.h"

#include <future>
#include <limits>
#include <thread>

namespace Lathe::Audio::Plugin {

// Counts how often it is taken.
struct CCountingLock : System::CCriticalSection {
    void Lock() override {
        CCriticalSection::Lock();
        ++m_Count;
    }

    int m_Count = 0;
};

class OutputObjects : public testing::Test {
protected:
    // Values of all kinds that repeat a number, given to the filter.
    void Give(int number) {
        const double value = number;
        // Kept until the filter has let go of the ones before, as input objects keep them.
        DSP::CFilterProperties& values = m_Given[static_cast<std::size_t>(number) % m_Given.size()];
        values.SetDefaults(*m_Filter);
        values.GetParams().SetValue(0, value);
        values.GetStrings().SetValue(0, std::to_string(number).c_str());
        values.GetCurves().SetValue(0, Math::CConstantFunction(value));
        values.GetSurfaces().SetValue(0, Math::CConstantBinaryFunction(value));
        values.GetCustomProperties().SetValue(0, CTestProperty(value));
        m_Filter->SetInputValues(values);
    }
    void Check(double param, const char* text, double number) const {
        EXPECT_EQ(m_Outputs.GetParams().GetElement(0).GetValue(), param);
        const std::unique_ptr<char[]> shown(m_Outputs.GetStrings().GetElement(0).GetValue());
        EXPECT_STREQ(shown.get(), text);
        const std::unique_ptr<DataModel::Objects::IDynamicPropertyValue> property(
            m_Outputs.GetCustomProperties().GetElement(0).GetValue());
        EXPECT_EQ(dynamic_cast<const CTestProperty&>(*property).m_Number, number);
    }

    std::array<DSP::CFilterProperties, 3> m_Given;
    std::unique_ptr<CPluginTestFilter> m_Filter = std::make_unique<CPluginTestFilter>();
    COutputObjects m_Outputs{*m_Filter};
};

TEST_F(OutputObjects, ShowWhatTheFilterHasUntilItDies) {
    DataModel::CJournal journal(m_Outputs.GetStrings().GetElement(0));
    journal.Listen(m_Outputs.GetParams().GetElement(0).GetValueChangedEvent(), 'p');
    journal.Listen(m_Outputs.GetCurves().GetElement(0).GetValueChangedEvent(), 'c');
    journal.Listen(m_Outputs.GetCustomProperties().GetElement(0).GetValueChangedEvent(), 'u');
    CActionCommand handler([&] {
        EXPECT_TRUE(std::async(std::launch::async,
                               [&] {
                                   const bool isFree = m_Outputs.GetLock().TryLock();
                                   if (isFree)
                                       m_Outputs.GetLock().Unlock();
                                   return isFree;
                               })
                        .get())
            << "events run without the lock";
    });
    m_Outputs.GetSurfaces().GetElement(0).GetValueChangedEvent().AddCommand(handler);
    Check(1.0, "none", 1.0);
    CCountingLock processLock;
    Give(2);
    EXPECT_TRUE(m_Outputs.Publish(*m_Filter, &processLock, true));
    Check(2.0, "2", 2.0);
    EXPECT_EQ(journal.Take(), "pvcu");
    EXPECT_TRUE(m_Outputs.Publish(*m_Filter, nullptr, false));
    EXPECT_EQ(journal.Take(), "");
    EXPECT_EQ(processLock.m_Count, 1);
    m_Outputs.GetSurfaces().GetElement(0).GetValueChangedEvent().RemoveCommand(handler);
    m_Outputs.Detach();
    m_Filter.reset();
    Check(2.0, "none", 1.0);
}

TEST_F(OutputObjects, ComeBackForALockThatAReaderHolds) {
    m_Outputs.GetLock().Lock();
    Give(2);
    EXPECT_FALSE(std::async(std::launch::async, [&] {
                     return m_Outputs.Publish(*m_Filter, nullptr, false);
                 }).get());
    Check(2.0, "none", 1.0);
    auto forced =
        std::async(std::launch::async, [&] { return m_Outputs.Publish(*m_Filter, nullptr, true); });
    Check(2.0, "none", 1.0);
    m_Outputs.GetLock().Unlock();
    EXPECT_TRUE(forced.get());
    Check(2.0, "2", 2.0);

    CPluginTestFilter plain({.m_Objects = 0});
    COutputObjects none(plain);
    const Core::CAutoLock lock(none.GetLock());
    EXPECT_TRUE(
        std::async(std::launch::async, [&] { return none.Publish(plain, nullptr, false); }).get());
}

TEST_F(OutputObjects, AllocateNothingWhileOthersRead) {
    std::atomic<bool> done = false;
    std::thread reader([&] {
        while (!done) {
            const std::unique_ptr<char[]> text(m_Outputs.GetStrings().GetElement(0).GetValue());
            EXPECT_GT(std::strlen(text.get()), 0U);
        }
    });
    for (int i = 0; i < 3000; ++i) {
        Give(i);
        const CAllocationScope scope;
        while (!m_Outputs.Publish(*m_Filter, nullptr, false))
            std::this_thread::yield();
        EXPECT_EQ(scope.GetCount(), 0);
    }
    done = true;
    reader.join();
}

TEST(MTCaptureParam, StaysInItsRange) {
    using DataModel::Objects::CMTCaptureParam;
    CMTCaptureParam param(
        DSP::CParamInfo(DataModel::Objects::EParamType::Float, 0.0, 1.0, 0.5, "", "", ""));
    DataModel::CJournal journal(param);
    struct {
        double m_Written, m_Expected;
        const char* m_Events;
    } const cases[] = {{0.5, 0.5, ""},
                       {2.0, 1.0, "v"},
                       {3.0, 1.0, ""},
                       {-1.0, 0.0, "v"},
                       {std::numeric_limits<double>::quiet_NaN(), 0.0, ""}};
    for (const auto& [written, expected, events] : cases) {
        param.SetValue(written);
        EXPECT_EQ(param.GetValue(), expected);
        EXPECT_EQ(journal.Take(), events);
    }
}

} // namespace Lathe::Audio::Plugin
