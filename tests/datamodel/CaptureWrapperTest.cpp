// Proves that wrappers convert between members of an object and capture values, that they report
// each change once whether the object or they themselves have the event, and that a wrapper that
// was cut off is harmless.

#include "datamodel/Journal.h"
#include "datamodel/objects/capture/CaptureSubStructWrapper.h"
#include "datamodel/objects/capture/CaptureValueWrapper.h"

#include <cmath>

namespace Lathe::DataModel::Objects {

namespace {

enum class EColour : int { Red, Green, Blue };

struct SSize {
    int m_Width, m_Height;

    int GetWidth() const { return m_Width; }
    void SetWidth(int width) { m_Width = width; }
};

// An object with a member of each type, and with events of its own.
struct SSource {
    template <class T>
    T Get() const {
        return static_cast<T>(m_Value);
    }
    template <class T>
    void Set(T value) {
        m_Value = static_cast<double>(value);
        m_Changed.Notify();
    }
    SSize GetSize() const { return m_Size; }
    void SetSize(const SSize& size) { m_Size = size; }
    void Begin() { m_Begin.Notify(); }
    void End() { m_End.Notify(); }

    double m_Value = 0.0;
    SSize m_Size{3, 4};
    Core::CEventProvider m_Changed, m_Begin, m_End;
};

// With the source's members for the bracket, and with its events, or without.
template <class TGet, class TSet>
struct TWrapper : TCaptureValueWrapper<SSource, IConstParamInfo, CParamInfo, TGet, TSet> {
    explicit TWrapper(SSource& s, bool members = false, bool events = false)
        : TWrapper::TCaptureValueWrapper(
              &s, &SSource::Get<TGet>, &SSource::Set<TSet>, members ? &SSource::Begin : nullptr,
              members ? &SSource::End : nullptr, events ? &s.m_Changed : nullptr,
              events ? &s.m_Begin : nullptr, events ? &s.m_End : nullptr) {}
};
using CNumberWrapper = TWrapper<double, double>;

// Sets through the wrapper and looks at what reaches the object, and what comes back.
template <class TGet, class TSet>
void CheckConversion(double set, double stored) {
    SSource source;
    TWrapper<TGet, TSet> wrapper(source);
    wrapper.SetValue(set);
    EXPECT_EQ(source.m_Value, stored) << set;
    EXPECT_EQ(wrapper.GetValue(), stored) << set;
}

TEST(CaptureValueWrapper, ConvertsByType) {
    CheckConversion<float, float>(0.1, static_cast<double>(0.1f));
    CheckConversion<bool, bool>(0.25, 1.0);
    CheckConversion<bool, bool>(NAN, 0.0);
    CheckConversion<int, int>(-2.9, -2.0);
    CheckConversion<int, int>(1e300, 2147483647.0);
    CheckConversion<EColour, int>(1.9, 1.0);
    CheckConversion<EColour, EColour>(2.9, 2.0);
}

TEST(CaptureValueWrapper, ReportsEachChangeOnce) {
    for (int row = 0; row < 4; ++row) {
        const bool members = row & 1, events = row & 2;
        SSource source;
        CJournal begun(source.m_Begin), ended(source.m_End);
        CNumberWrapper wrapper(source, members, events);
        CJournal journal(wrapper);
        wrapper.Capture();
        EXPECT_TRUE(wrapper.IsCaptured());
        wrapper.SetValue(1.0);
        wrapper.Release();
        wrapper.Release();
        EXPECT_FALSE(wrapper.IsCaptured());
        EXPECT_EQ(journal.Take(), members && events ? "bvee" : "bve") << row;
        EXPECT_EQ(begun.Take() + ended.Take(), members ? "ccc" : "") << row;
        source.Set(2.0);
        source.Begin();
        source.Begin();
        source.End();
        EXPECT_EQ(journal.Take(), events ? "vbbe" : "") << row;
    }
}

TEST(CaptureValueWrapper, IsHarmlessOnceDisconnected) {
    SSource source;
    {
        CNumberWrapper wrapper(source, true, true);
        const CNumberWrapper connected(source, true, true);
        wrapper.GetInfo().SetDefault(0.5);
        wrapper.Capture();
        CJournal journal(wrapper);
        wrapper.Disconnect();
        EXPECT_FALSE(wrapper.IsCaptured());
        source.Set(7.0);
        wrapper.SetValue(9.0);
        EXPECT_EQ(source.m_Value, 7.0);
        EXPECT_EQ(wrapper.GetValue(), 0.5);
        wrapper.Capture();
        wrapper.Release();
        EXPECT_EQ(journal.Take(), "vbe") << "its own only";
    }
    source.Set(1.0); // Runs nothing of the dead.
}

TEST(CaptureValueSubStructWrapper, WritesOneFieldAndKeepsTheOthers) {
    SSource source;
    TCaptureValueSubStructWrapper<SSource, IConstParamInfo, CParamInfo, SSize, int, int> wrapper(
        &source, &SSource::GetSize, &SSource::SetSize, &SSize::GetWidth, &SSize::SetWidth);
    const TConstCaptureValueSubStructWrapper<SSource, IConstParamInfo, CParamInfo, SSize, int>
        reader(&source, &SSource::GetSize, &SSize::GetWidth);
    wrapper.SetValue(10.9);
    EXPECT_EQ(reader.GetValue(), 10.0);
    EXPECT_EQ(source.m_Size.m_Height, 4);
}

} // namespace

} // namespace Lathe::DataModel::Objects
