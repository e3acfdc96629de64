// Proves that a snapshot of a filter's inputs takes sizes, defaults and values of every kind, and
// that snapshots share what is larger than a number.

#include "dsp/properties/FilterProperties.h"

#include "dsp/TestFilter.h"
#include "dsp/properties/FilterPropertiesAdapter.h"
#include "support/AllocationCounter.h"

#include <gtest/gtest.h>

namespace Lathe::Audio::DSP {

namespace {

// Calls check(kind, index) for every input.
template <class TCheck>
void ForEachInput(const IConstFilterProperties& values, TCheck check) {
    for (int kind = 0; kind < InputKinds; ++kind) {
        ASSERT_EQ(GetCount(values, kind), values.GetDirty(kind).GetCount());
        for (int i = 0; i < GetCount(values, kind); ++i) {
            SCOPED_TRACE(testing::Message() << "input " << i << " of kind " << kind);
            check(kind, i);
        }
    }
}

bool IsDirty(const IConstFilterProperties& values, int kind, int index) {
    return values.GetDirty(kind).GetElement(index).IsDirty();
}

TEST(FilterProperties, DefaultsAreThoseOfTheDescriptionsWithEveryFlag) {
    CTestFilter filter;
    CFilterProperties values;
    values.SetDefaults(filter);
    for (int kind = 0; kind < InputKinds; ++kind)
        EXPECT_EQ(GetCount(values, kind), CTestFilter::s_InputsCounts[kind]);
    ForEachInput(values, [&](int kind, int i) {
        EXPECT_EQ(GetNumber(values, kind, i), 100 * kind + i);
        EXPECT_TRUE(IsDirty(values, kind, i));
    });
    filter.SetInputValues(values);
    EXPECT_EQ(filter.TakeCalls(), "params(0)");
}

TEST(FilterProperties, SetupBringsInPlainValuesAndKeepsTheRest) {
    const CTestFilter filter;
    const CTestFilter large(2);
    CFilterProperties values;
    values.Setup(filter);
    ForEachInput(values, [&](int kind, int i) {
        EXPECT_EQ(GetNumber(values, kind, i), 0.0);
        EXPECT_FALSE(IsDirty(values, kind, i));
    });
    // Larger, smaller and larger again: what comes back is new.
    values.SetDefaults(large);
    values.Setup(filter);
    values.Setup(large);
    ForEachInput(values, [&](int kind, int i) {
        const bool kept = i < CTestFilter::s_InputsCounts[kind];
        EXPECT_EQ(GetNumber(values, kind, i), kept ? 100 * kind + i : 0.0);
        EXPECT_EQ(IsDirty(values, kind, i), kept);
    });
    values.ClearDirty();
    for (int kind = 0; kind < InputKinds; ++kind)
        EXPECT_FALSE(IsAnyDirty(values, kind));
}

TEST(FilterProperties, ADefaultThatIsMissingIsNoValue) {
    class CFilter : public CTestFilter {
    public:
        CFilter() { m_InputCustomPropertiesInfo[0] = CCustomPropertyInfo(); }
    };
    CFilterProperties values;
    values.SetDefaults(CTestFilter());
    values.SetDefaults(CFilter());
    EXPECT_EQ(dynamic_cast<const CNumberProperty*>(&values.GetCustomProperties().GetValue(0)),
              nullptr);
    EXPECT_EQ(GetNumber(values, CustomProperties, 1), 401.0);
}

TEST(FilterProperties, AssignTakesValuesAndFlagsAndSharesThem) {
    const CTestFilter filter(2);
    CFilterProperties source;
    source.SetDefaults(filter);
    source.ClearDirty();
    for (int kind = 0; kind < InputKinds; ++kind)
        SetNumber(source, kind, 1, 77);
    CFilterProperties target;
    target.SetDefaults(CTestFilter());
    target.Assign(source);
    const auto check = [&] {
        ForEachInput(source, [&](int kind, int i) {
            EXPECT_EQ(GetNumber(target, kind, i), i == 1 ? 77 : 100 * kind + i);
            EXPECT_EQ(IsDirty(target, kind, i), i == 1);
            EXPECT_EQ(GetAddress(target, kind, i), GetAddress(source, kind, i));
        });
    };
    check();
    {
        const CAllocationScope scope;
        target.Assign(source);
        target.Assign(target);
        EXPECT_EQ(scope.GetCount(), 0) << "the sizes stand";
    }
    check();
    // A write to one leaves the other alone.
    for (int kind = 0; kind < InputKinds; ++kind) {
        SetNumber(target, kind, 1, 5);
        EXPECT_EQ(GetNumber(source, kind, 1), 77.0);
    }
}

TEST(FilterProperties, AssignFromAViewTakesItsRange) {
    CFilterProperties source;
    source.SetDefaults(CTestFilter(2));
    CFilterPropertiesAdapter view;
    view.Attach(source);
    view.SetChannel(CTestFilter(), 1);
    CFilterProperties target;
    target.Assign(view);
    ForEachInput(target, [&](int kind, int i) {
        EXPECT_EQ(GetNumber(target, kind, i), 100 * kind + CTestFilter::s_InputsCounts[kind] + i);
    });
}

TEST(FilterProperties, TheLastHolderFreesAValue) {
    int alive = 0;
    {
        CFilterProperties first;
        first.Setup(CTestFilter());
        first.GetCurves().SetValue(0, CCountedCurve(2.0, alive));
        EXPECT_EQ(alive, 1) << "a copy of what was given";
        const CFilterProperties second(first);
        EXPECT_EQ(alive, 1);
        first.GetCurves().SetValue(0, first.GetCurves().GetValue(0));
        EXPECT_EQ(alive, 2);
        EXPECT_EQ(GetNumber(first, Curves, 0), 2.0) << "its own value given back to it";
        first.Setup(CTestFilter(0));
        EXPECT_EQ(alive, 1);
        EXPECT_EQ(GetNumber(second, Curves, 0), 2.0);
    }
    EXPECT_EQ(alive, 0);
}

} // namespace

} // namespace Lathe::Audio::DSP
