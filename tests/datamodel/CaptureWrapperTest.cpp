// Proves that wrappers convert between members of an object and capture values, that they report
// each change once whether the object or they themselves have the event, and that a wrapper that
// was cut off is harmless.

#include "datamodel/EventCounter.h"
#include "datamodel/objects/capture/CaptureSubStructWrapper.h"
#include "datamodel/objects/capture/CaptureValueWrapper.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>

namespace Lathe::DataModel::Objects {

namespace {

enum class EColour : int { Red = 0, Green = 1, Blue = 2 };

struct SSize {
    int m_Width;
    int m_Height;

    int GetWidth() const { return m_Width; }
    void SetWidth(int width) { m_Width = width; }
};

// An object with a field of each type, and with events of its own.
class CSource {
public:
    template <class T>
    T Get() const {
        return static_cast<T>(m_Value);
    }
    template <class T>
    void Set(T value) {
        m_Value = static_cast<double>(value);
        m_Changed.Notify();
    }
    const char* GetText() const { return m_Text.GetText(); }
    void SetText(const char* text) { m_Text = text; }
    SSize GetSize() const { return m_Size; }
    void SetSize(const SSize& size) { m_Size = size; }
    void Begin() { m_Begin.Notify(); }
    void End() { m_End.Notify(); }

    double m_Value = 0.0;
    Core::CCharString m_Text = "text";
    SSize m_Size{3, 4};
    mutable Core::CEventProvider m_Changed;
    mutable Core::CEventProvider m_Begin;
    mutable Core::CEventProvider m_End;
};

template <class TGet, class TSet>
using TWrapper = TCaptureValueWrapper<CSource, IConstParamInfo, CParamInfo, TGet, TSet>;

class CWrapperJournal {
public:
    explicit CWrapperJournal(ICaptureParam& object)
        : m_Value(object.GetValueChangedEvent(), &m_Text, "v"),
          m_Begin(object.GetBeginCaptureEvent(), &m_Text, "b"),
          m_End(object.GetEndCaptureEvent(), &m_Text, "e") {}

    std::string Take() { return std::exchange(m_Text, {}); }

private:
    std::string m_Text;
    CEventCounter m_Value;
    CEventCounter m_Begin;
    CEventCounter m_End;
};

// Sets through the wrapper and looks at what reaches the object, and what comes back.
template <class TGet, class TSet>
void CheckConversion(double set, double stored, double read) {
    CSource source;
    TWrapper<TGet, TSet> wrapper(&source, &CSource::Get<TGet>, &CSource::Set<TSet>);
    wrapper.SetValue(set);
    EXPECT_EQ(source.m_Value, stored) << set;
    EXPECT_EQ(wrapper.GetValue(), read) << set;
}

TEST(CaptureValueWrapper, ConvertsByType) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    CheckConversion<double, double>(0.1, 0.1, 0.1);
    CheckConversion<float, float>(0.1, static_cast<double>(0.1f), static_cast<double>(0.1f));
    CheckConversion<bool, bool>(0.25, 1.0, 1.0);
    CheckConversion<bool, bool>(-0.25, 1.0, 1.0);
    CheckConversion<bool, bool>(0.0, 0.0, 0.0);
    CheckConversion<bool, bool>(nan, 0.0, 0.0);
    CheckConversion<int, int>(-2.9, -2.0, -2.0);
    CheckConversion<int, int>(1e300, 2147483647.0, 2147483647.0);
    CheckConversion<int, int>(-1e300, -2147483648.0, -2147483648.0);
    CheckConversion<int, int>(nan, 0.0, 0.0);
    CheckConversion<EColour, int>(1.9, 1.0, 1.0);
    CheckConversion<EColour, EColour>(2.9, 2.0, 2.0);
}

TEST(CaptureValueWrapper, FiresByItselfOnlyWithoutASource) {
    CSource source;
    TWrapper<double, double> own(&source, &CSource::Get<double>, &CSource::Set<double>);
    TWrapper<double, double> forwarding(&source, &CSource::Get<double>, &CSource::Set<double>,
                                        nullptr, nullptr, &source.m_Changed);
    CWrapperJournal ownJournal(own), forwardingJournal(forwarding);
    forwarding.SetValue(1.0);
    EXPECT_EQ(forwardingJournal.Take(), "v");
    EXPECT_EQ(ownJournal.Take(), "");
    own.SetValue(1.0);
    EXPECT_EQ(ownJournal.Take(), "v");
    EXPECT_EQ(forwardingJournal.Take(), "v") << "the source reported it";
}

TEST(CaptureValueWrapper, LeavesTheBracketToASourceThatReportsIt) {
    struct {
        bool m_Members, m_Providers;
    } const cases[] = {{false, false}, {true, false}, {false, true}, {true, true}};
    for (const auto& row : cases) {
        CSource source;
        CEventCounter begun(source.m_Begin), ended(source.m_End);
        TWrapper<double, double> wrapper(&source, &CSource::Get<double>, &CSource::Set<double>,
                                         row.m_Members ? &CSource::Begin : nullptr,
                                         row.m_Members ? &CSource::End : nullptr, nullptr,
                                         row.m_Providers ? &source.m_Begin : nullptr,
                                         row.m_Providers ? &source.m_End : nullptr);
        CWrapperJournal journal(wrapper);
        wrapper.Capture();
        EXPECT_TRUE(wrapper.IsCaptured());
        wrapper.Release();
        EXPECT_FALSE(wrapper.IsCaptured());
        EXPECT_EQ(journal.Take(), "be");
        EXPECT_EQ(begun.Take() + ended.Take(), row.m_Members ? 2 : 0);
    }
    CSource source;
    TWrapper<double, double> wrapper(&source, &CSource::Get<double>, &CSource::Set<double>, nullptr,
                                     nullptr, nullptr, &source.m_Begin, &source.m_End);
    CWrapperJournal journal(wrapper);
    source.Begin();
    source.Begin();
    source.End();
    source.End();
    EXPECT_EQ(journal.Take(), "bbee") << "a source is reported as it is";
    wrapper.Release();
    EXPECT_EQ(journal.Take(), "");
}

TEST(CaptureValueWrapper, IsHarmlessOnceDisconnected) {
    CSource source;
    source.m_Value = 5.0;
    TWrapper<double, double> wrapper(&source, &CSource::Get<double>, &CSource::Set<double>,
                                     &CSource::Begin, &CSource::End, &source.m_Changed,
                                     &source.m_Begin, &source.m_End);
    wrapper.GetInfo().SetDefault(0.5);
    EXPECT_EQ(wrapper.GetValue(), 5.0);
    wrapper.Capture();
    CWrapperJournal journal(wrapper);
    wrapper.Disconnect();
    EXPECT_FALSE(wrapper.IsCaptured());
    EXPECT_EQ(journal.Take(), "");
    source.Set(7.0);
    source.Begin();
    EXPECT_EQ(journal.Take(), "") << "the source is not heard any more";
    wrapper.SetValue(9.0);
    EXPECT_EQ(source.m_Value, 7.0);
    EXPECT_EQ(wrapper.GetValue(), 0.5);
    wrapper.Capture();
    wrapper.Release();
    wrapper.Disconnect();
    EXPECT_EQ(journal.Take(), "vbe") << "what has no source fires by itself";
}

TEST(CaptureValueWrapper, LeavesItsSourceWhenItDies) {
    CSource source;
    {
        const TConstCaptureValueWrapper<CSource, IConstParamInfo, CParamInfo, int> wrapper(
            &source, &CSource::Get<int>, &source.m_Changed, &source.m_Begin, &source.m_End);
        source.Set(3.0);
        EXPECT_EQ(wrapper.GetValue(), 3.0);
    }
    source.Set(1.0);
    source.Begin();
    source.End();
}

TEST(CaptureValueWrapper, WrapsStrings) {
    CSource source;
    TCaptureValueWrapper<CSource, IConstStringInfo, CStringInfo, const char*, const char*> wrapper(
        &source, &CSource::GetText, &CSource::SetText);
    wrapper.GetInfo().SetDefaultValue("default");
    CEventCounter changed(wrapper.GetValueChangedEvent());
    wrapper.SetValue("new");
    EXPECT_EQ(changed.Take(), 1);
    EXPECT_STREQ(source.GetText(), "new");
    EXPECT_STREQ(wrapper.GetValue(), "new");
    wrapper.Disconnect();
    EXPECT_STREQ(wrapper.GetValue(), "default");
}

TEST(CaptureValueSubStructWrapper, WritesOneFieldAndKeepsTheOthers) {
    CSource source;
    TCaptureValueSubStructWrapper<CSource, IConstParamInfo, CParamInfo, SSize, int, int> wrapper(
        &source, &CSource::GetSize, &CSource::SetSize, &SSize::GetWidth, &SSize::SetWidth);
    const TConstCaptureValueSubStructWrapper<CSource, IConstParamInfo, CParamInfo, SSize, int>
        reader(&source, &CSource::GetSize, &SSize::GetWidth);
    CEventCounter changed(wrapper.GetValueChangedEvent());
    EXPECT_EQ(wrapper.GetValue(), 3.0);
    wrapper.SetValue(10.9);
    EXPECT_EQ(changed.Take(), 1);
    EXPECT_EQ(source.m_Size.m_Width, 10);
    EXPECT_EQ(source.m_Size.m_Height, 4);
    EXPECT_EQ(reader.GetValue(), 10.0);
    wrapper.Disconnect();
    wrapper.SetValue(1.0);
    EXPECT_EQ(reader.GetValue(), 10.0);
}

} // namespace

} // namespace Lathe::DataModel::Objects
