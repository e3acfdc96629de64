// Proves the rates at which inputs of every kind move across a block, what a block leaves behind,
// and that a block allocates nothing.

#include "dsp/properties/FilterPropertiesVariations.h"

#include "dsp/TestFilter.h"
#include "support/AllocationCounter.h"

#include <gtest/gtest.h>

namespace Lathe::Audio::DSP {

namespace {

class FilterPropertiesVariations : public testing::Test {
protected:
    FilterPropertiesVariations() { m_Variations.Setup(m_Filter, 1); }

    const CTestFilter m_Filter;
    CFilterPropertiesVariations m_Variations;
};

TEST_F(FilterPropertiesVariations, ParametersMoveAtTheirSlope) {
    const struct {
        double m_Start;
        double m_End;
        bool m_Dirty;
        int m_Samples;
        double m_Rate;
    } cases[] = {
        {1.0, 3.0, true, 4, 0.5},        {3.0, 1.0, true, 4, -0.5}, {1.0, 3.0, true, 0, 0.0},
        {1.0, 3.0, false, 4, 0.0},       {2.0, 2.0, true, 4, 0.0},  {-1.0, 1.0, true, 1, 2.0},
        {0.0, -60.0, true, 64, -0.9375},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(testing::Message() << row.m_Start << " to " << row.m_End);
        m_Variations.GetEnd().ClearDirty();
        // A neighbour moves in every case, so that there are rates.
        SetNumber(m_Variations.GetEnd(), Params, 2, 8);
        m_Variations.GetStart().GetParams().SetValue(1, row.m_Start);
        m_Variations.GetEnd().GetParams().SetValue(1, row.m_End);
        if (row.m_Dirty)
            m_Variations.GetEnd().GetDirty(Params).GetElement(1).SetDirty();
        m_Variations.ComputeRates(row.m_Samples);
        const IConstRates& rates = m_Variations.GetVariations(Params);
        ASSERT_EQ(rates.GetCount(), 1);
        ASSERT_EQ(rates.GetElement(0).GetCount(), 3);
        EXPECT_EQ(rates.GetElement(0).GetValue(0), 0.0);
        EXPECT_EQ(rates.GetElement(0).GetValue(1), row.m_Rate);
    }
}

TEST_F(FilterPropertiesVariations, OtherKindsAdvanceACrossfadeWhereTheyChanged) {
    for (int moved = Strings; moved < InputKinds; ++moved) {
        for (const int samples : {8, 0}) {
            m_Variations.GetEnd().ClearDirty();
            SetNumber(m_Variations.GetEnd(), moved, 0, 5);
            m_Variations.ComputeRates(samples);
            for (int kind = 0; kind < InputKinds; ++kind) {
                const IConstRates& rates = m_Variations.GetVariations(kind);
                ASSERT_EQ(rates.GetCount(), kind == moved ? 1 : 0) << "only what moves has rates";
                if (kind != moved)
                    continue;
                const IConstParamsValues& rate = rates.GetElement(0);
                ASSERT_EQ(rate.GetCount(), CTestFilter::s_InputsCounts[kind]);
                EXPECT_EQ(rate.GetValue(0), samples == 0 ? 0.0 : 0.125);
                for (int i = 1; i < rate.GetCount(); ++i)
                    EXPECT_EQ(rate.GetValue(i), 0.0);
            }
        }
    }
}

TEST_F(FilterPropertiesVariations, CommitMovesWhatIsFlaggedAndNothingElse) {
    for (int kind = 0; kind < InputKinds; ++kind) {
        const int last = CTestFilter::s_InputsCounts[kind] - 1;
        SetNumber(m_Variations.GetEnd(), kind, 0, 10);
        SetNumber(m_Variations.GetEnd(), kind, last, 11);
        m_Variations.GetEnd().GetDirty(kind).GetElement(0).ClearDirty();
        m_Variations.GetEnd().GetDirty(kind).GetElement(last).SetDirty();
    }
    m_Variations.Commit();
    for (int kind = 0; kind < InputKinds; ++kind) {
        const int last = CTestFilter::s_InputsCounts[kind] - 1;
        SCOPED_TRACE(kind);
        EXPECT_EQ(GetNumber(m_Variations.GetStart(), kind, last), 11.0);
        EXPECT_EQ(GetNumber(m_Variations.GetStart(), kind, 0), last > 0 ? 0.0 : 11.0);
        EXPECT_EQ(GetAddress(m_Variations.GetStart(), kind, last),
                  GetAddress(m_Variations.GetEnd(), kind, last));
        EXPECT_FALSE(IsAnyDirty(m_Variations.GetEnd(), kind));
    }
    m_Variations.ComputeRates(4);
    for (int kind = 0; kind < InputKinds; ++kind)
        EXPECT_EQ(m_Variations.GetVariations(kind).GetCount(), 0);
}

TEST_F(FilterPropertiesVariations, SetupMakesTheOrdersAndKeepsValues) {
    SetNumber(m_Variations.GetEnd(), Strings, 1, 6);
    for (const int orders : {0, 1, 3, -1}) {
        m_Variations.Setup(m_Filter, orders);
        for (int kind = 0; kind < InputKinds; ++kind) {
            const IConstRates& rates = m_Variations.GetVariations(kind);
            ASSERT_EQ(rates.GetCount(), std::max(orders, 0));
            for (int order = 0; order < orders; ++order)
                EXPECT_EQ(rates.GetElement(order).GetCount(), CTestFilter::s_InputsCounts[kind]);
        }
    }
    EXPECT_EQ(GetNumber(m_Variations.GetEnd(), Strings, 1), 6.0);
}

TEST_F(FilterPropertiesVariations, ACopyIsItsOwnMaster) {
    SetNumber(m_Variations.GetEnd(), Params, 0, 4);
    CFilterPropertiesVariations copy(m_Variations);
    CFilterPropertiesVariations assigned;
    assigned = m_Variations;
    m_Variations.Commit();
    for (CFilterPropertiesVariations* other : {&copy, &assigned}) {
        EXPECT_EQ(GetNumber(other->GetStart(), Params, 0), 0.0);
        EXPECT_TRUE(IsAnyDirty(other->GetEnd(), Params));
        other->Commit();
        EXPECT_EQ(GetNumber(other->GetStart(), Params, 0), 4.0);
    }
}

TEST_F(FilterPropertiesVariations, BlocksAllocateNothing) {
    const auto run = [](CFilterPropertiesVariations& variations) {
        for (int kind = 0; kind < InputKinds; ++kind)
            SetNumber(variations.GetEnd(), kind, 0, 3);
        // Holds what the start gives up, so that nothing is freed either.
        const CFilterProperties holder(variations.GetStart());
        const CAllocationScope scope;
        for (const int samples : {64, 0, 32}) {
            variations.ComputeRates(samples);
            variations.Commit();
        }
        // A composite uses the room for fewer inputs, and for all of them again.
        variations.GetStart().SetParamsCount(1);
        variations.GetStart().SetParamsCount(3);
        EXPECT_EQ(scope.GetCount(), 0);
        EXPECT_EQ(scope.GetFreedCount(), 0);
    };
    for (const int orders : {0, 1, 2}) {
        SCOPED_TRACE(orders);
        m_Variations.Setup(m_Filter, orders);
        run(m_Variations);
        // Nothing moves now, so that the vectors of rates are hidden; copies have their room.
        m_Variations.GetStart().SetParamsCount(1);
        CFilterPropertiesVariations copy(m_Variations);
        CFilterPropertiesVariations assigned;
        assigned = m_Variations;
        run(copy);
        run(assigned);
        m_Variations.GetStart().SetParamsCount(3);
    }
}

} // namespace

} // namespace Lathe::Audio::DSP
