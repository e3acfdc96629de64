// Proves that views read the right slice of every kind of input, and that they copy nothing.

#include "dsp/properties/FilterPropertiesAdapter.h"

#include "dsp/TestFilter.h"
#include "support/AllocationCounter.h"

#include <gtest/gtest.h>

namespace Lathe::Audio::DSP {

namespace {

constexpr int s_Channels = 3;

class FilterPropertiesAdapter : public testing::Test {
protected:
    // Values 100 * kind + index at the start, 1000 more at the end, every second one flagged.
    FilterPropertiesAdapter() {
        m_Source.Setup(m_Whole, 1);
        m_Source.GetStart().SetDefaults(m_Whole);
        for (int kind = 0; kind < InputKinds; ++kind) {
            for (int i = 0; i < GetCount(m_Source.GetEnd(), kind); ++i) {
                SetNumber(m_Source.GetEnd(), kind, i, 1000 + 100 * kind + i);
                if (i % 2 == 0)
                    m_Source.GetEnd().GetDirty(kind).GetElement(i).ClearDirty();
            }
        }
        m_Source.ComputeRates(10);
    }

    // Reads the source's inputs from first on.
    static void CheckView(const IConstFilterProperties& view, const IConstFilterProperties& source,
                          int kind, int first, int count) {
        SCOPED_TRACE(testing::Message() << "kind " << kind << " from " << first);
        ASSERT_EQ(GetCount(view, kind), count);
        ASSERT_EQ(view.GetDirty(kind).GetCount(), count);
        for (int i = 0; i < count; ++i) {
            EXPECT_EQ(GetNumber(view, kind, i), GetNumber(source, kind, first + i));
            EXPECT_EQ(&view.GetDirty(kind).GetElement(i),
                      &source.GetDirty(kind).GetElement(first + i));
            EXPECT_EQ(GetAddress(view, kind, i), GetAddress(source, kind, first + i));
        }
    }

    void CheckView(const IConstFilterPropertiesVariations& view, int kind, int first,
                   int count) const {
        CheckView(view.GetStart(), m_Source.GetStart(), kind, first, count);
        CheckView(view.GetEnd(), m_Source.GetEnd(), kind, first, count);
        const IConstRates& source = m_Source.GetVariations(kind);
        const IConstRates& rates = view.GetVariations(kind);
        ASSERT_EQ(rates.GetCount(), source.GetCount());
        for (int order = 0; order < rates.GetCount(); ++order) {
            ASSERT_EQ(rates.GetElement(order).GetCount(), count);
            for (int i = 0; i < count; ++i)
                EXPECT_EQ(rates.GetElement(order).GetValue(i),
                          source.GetElement(order).GetValue(first + i));
        }
    }

    const CTestFilter m_Channel;
    const CTestFilter m_Whole{s_Channels};
    CFilterPropertiesVariations m_Source;
};

TEST_F(FilterPropertiesAdapter, SeesAllThenEachChannelThenARange) {
    CFilterPropertiesVariationsAdapter view;
    view.Reserve(1);
    CFilterPropertiesAdapter end;
    for (int round = 0; round < 2; ++round) {
        view.Attach(m_Source);
        end.Attach(m_Source.GetEnd());
        for (int kind = 0; kind < InputKinds; ++kind) {
            const int count = CTestFilter::s_InputsCounts[kind];
            view.Attach(m_Source);
            CheckView(view, kind, 0, s_Channels * count);
            for (int channel = 0; channel < s_Channels; ++channel) {
                view.SetChannel(m_Channel, channel);
                CheckView(view, kind, channel * count, count);
                end.SetChannel(m_Channel, channel);
                CheckView(end, m_Source.GetEnd(), kind, channel * count, count);
            }
            // To the end, and of this kind alone.
            view.Attach(m_Source);
            view.SetRange(kind, 1, -1);
            CheckView(view, kind, 1, s_Channels * count - 1);
            const int other = (kind + 1) % InputKinds;
            CheckView(view, other, 0, s_Channels * CTestFilter::s_InputsCounts[other]);
        }
        // The second round has fewer vectors of rates.
        m_Source.GetEnd().ClearDirty();
        SetNumber(m_Source.GetEnd(), Curves, 2, 9);
        m_Source.ComputeRates(10);
    }
}

TEST_F(FilterPropertiesAdapter, AChannelOfSixParametersBeginsAtItsSixth) {
    class CSixParams : public CTestFilter {
    public:
        explicit CSixParams(int params) { m_InputParamsInfo.SetCount(params); }
    };
    CFilterProperties source;
    source.Setup(CSixParams(13));
    for (int i = 0; i < 13; ++i)
        SetNumber(source, Params, i, i);
    CFilterPropertiesAdapter view;
    view.Attach(source);
    view.SetChannel(CSixParams(6), 1);
    EXPECT_EQ(view.GetParams().GetCount(), 6);
    EXPECT_EQ(view.GetParams().GetValue(0), 6.0);
    view.SetRange(Params, 1, -1);
    EXPECT_EQ(view.GetParams().GetCount(), 12);
    EXPECT_EQ(view.GetParams().GetValue(11), 12.0);
    EXPECT_EQ(view.GetDirty(Params).GetCount(), 12);
}

TEST_F(FilterPropertiesAdapter, AttachAndSetChannelAllocateNothing) {
    for (const int orders : {0, 1, 2}) {
        CFilterPropertiesVariationsAdapter view;
        view.Reserve(orders);
        CFilterPropertiesVariationsAdapter copy(view);
        const CAllocationScope scope;
        for (CFilterPropertiesVariationsAdapter* adapter : {&view, &copy}) {
            adapter->Attach(m_Source);
            for (int channel = 0; channel < s_Channels; ++channel)
                adapter->SetChannel(m_Channel, channel);
        }
        EXPECT_EQ(scope.GetCount(), 0) << orders;
    }
}

} // namespace

} // namespace Lathe::Audio::DSP
