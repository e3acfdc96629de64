// Proves what snapshots of a filter's inputs hold and share, the rates at which inputs of every
// kind move across a block, and that views read the right slice and copy nothing.

#include "dsp/TestFilter.h"
#include "dsp/properties/FilterPropertiesAdapter.h"
#include "support/AllocationCounter.h"

namespace Lathe::Audio::DSP {

static bool IsDirty(const IConstFilterProperties& values, int kind, int index) {
    return values.GetDirty(kind).GetElement(index).IsDirty();
}

// Some read at once are those read one by one.
static void CheckReadParams(const IConstFilterProperties& properties, int first, int count) {
    double values[32] = {};
    const unsigned flags = properties.ReadParams(first, count, values);
    for (int i = 0; i < count; ++i) {
        EXPECT_EQ(values[i], properties.GetParams().GetValue(first + i));
        EXPECT_EQ((flags >> i & 1) != 0, IsDirty(properties, Params, first + i));
    }
    EXPECT_EQ(flags >> count, 0u);
}

TEST(FilterProperties, TakesDefaultsAndKeepsThemThroughSetup) {
    CFilterProperties values;
    // Larger, smaller and larger again: what comes back is new.
    values.SetDefaults(CTestFilter(2));
    values.Setup(CTestFilter());
    values.Setup(CTestFilter(2));
    for (int kind = 0; kind < InputKinds; ++kind) {
        const int kept = CTestFilter::s_InputsCounts[kind];
        ASSERT_EQ(values.GetDirty(kind).GetCount(), 2 * kept);
        for (int i = 0; i < 2 * kept; ++i) {
            EXPECT_EQ(IsDirty(values, kind, i), i < kept);
            EXPECT_TRUE(kind != Params || values.GetParams().GetValue(i) == (i < kept ? i : 0));
        }
    }
    CFilterProperties assigned;
    assigned.Assign(values);
    for (int kind = 0; kind < InputKinds; ++kind) {
        EXPECT_EQ(Read(assigned, kind, 0), Read(values, kind, 0)) << "shared";
        Write(assigned, kind, 0, 5);
        EXPECT_NE(Read(assigned, kind, 0), Read(values, kind, 0)) << "no longer shared";
    }
}

TEST(FilterPropertiesVariations, MoveWhatIsFlaggedAndNothingElse) {
    CFilterPropertiesVariations original;
    original.Setup(CTestFilter(), 1);
    original.ComputeRates(4); // Nothing moves, and the vectors of rates are hidden.
    CFilterPropertiesVariations variations(original);
    for (const int samples : {4, 1, 0}) {
        for (int moved = 0; moved < InputKinds; ++moved) {
            const int count = CTestFilter::s_InputsCounts[moved];
            for (int i = 0; i < count; ++i) {
                Write(variations.GetStart(), moved, i, 1);
                Write(variations.GetEnd(), moved, i, 3);
            }
            if (count > 1) // Differs but isn't flagged.
                variations.GetEnd().GetDirty(moved).GetElement(1).ClearDirty();
            // Holds what the start gives up, so that nothing is freed either.
            const CFilterProperties before(variations.GetStart());
            const CAllocationScope scope;
            variations.ComputeRates(samples);
            variations.Commit();
            EXPECT_EQ(scope.GetCount(), 0);
            for (int kind = 0; kind < InputKinds; ++kind)
                ASSERT_EQ(variations.GetVariations(kind).GetCount(), kind == moved ? 1 : 0);
            const IConstParamsValues& rate = variations.GetVariations(moved).GetElement(0);
            ASSERT_EQ(rate.GetCount(), count);
            for (int i = 0; i < count; ++i) {
                const double advance = i == 1 || samples == 0 ? 0.0 : 1.0 / samples;
                EXPECT_EQ(rate.GetValue(i), moved == Params ? 2.0 * advance : advance);
                EXPECT_EQ(Read(variations.GetStart(), moved, i),
                          i == 1 ? Read(before, moved, i) : Read(variations.GetEnd(), moved, i));
                EXPECT_FALSE(IsDirty(variations.GetEnd(), moved, i));
            }
        }
    }
}

TEST(FilterPropertiesAdapter, SeesAllThenEachChannelThenARange) {
    const CTestFilter one;
    CFilterPropertiesVariations source;
    source.Setup(CTestFilter(3), 1);
    for (int kind = 0; kind < InputKinds; ++kind) {
        for (int i = 0; i < source.GetEnd().GetDirty(kind).GetCount(); ++i) {
            Write(source.GetStart(), kind, i, i);
            Write(source.GetEnd(), kind, i, 3 * i);
            if (i % 2 == 0)
                source.GetEnd().GetDirty(kind).GetElement(i).ClearDirty();
        }
    }
    source.ComputeRates(10);
    CFilterPropertiesVariationsAdapter view;
    view.Reserve(1);
    const auto check = [&](int kind, int first, int count) {
        SCOPED_TRACE(testing::Message() << "kind " << kind << " from " << first);
        const IConstParamsValues& rates = view.GetVariations(kind).GetElement(0);
        ASSERT_EQ(view.GetEnd().GetDirty(kind).GetCount(), count);
        ASSERT_EQ(rates.GetCount(), count);
        for (int i = 0; i < count; ++i) {
            const int from = first + i;
            EXPECT_EQ(Read(view.GetStart(), kind, i), Read(source.GetStart(), kind, from));
            EXPECT_EQ(Read(view.GetEnd(), kind, i), Read(source.GetEnd(), kind, from));
            EXPECT_EQ(&view.GetEnd().GetDirty(kind).GetElement(i),
                      &source.GetEnd().GetDirty(kind).GetElement(from));
            EXPECT_EQ(rates.GetValue(i), source.GetVariations(kind).GetElement(0).GetValue(from));
        }
        if (kind == Params) {
            CheckReadParams(view.GetEnd(), 0, count);
            CheckReadParams(source.GetEnd(), first, count);
        }
    };
    for (int kind = 0; kind < InputKinds; ++kind) {
        const int count = CTestFilter::s_InputsCounts[kind];
        const CAllocationScope scope;
        view.Attach(source);
        view.SetChannel(one, 2);
        EXPECT_EQ(scope.GetCount(), 0);
        check(kind, 2 * count, count);
        view.SetRange(kind, 1, -1);
        check(kind, 1, 3 * count - 1);
        view.Attach(source);
        check(kind, 0, 3 * count);
    }
}

} // namespace Lathe::Audio::DSP
