// Proves that collections and the views of vectors (ranges as a base type, two as one, arrays of
// pointers) show exactly the elements that a plain list shows, and write through to them.
#include "core/Tracked.h"
#include "core/containers/Collection.h"
#include "core/containers/ValueVector.h"
#include "core/containers/VectorAdapter.h"
#include "core/containers/VectorMux.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Lathe::CoreUtilities;
using Lathe::Containers::IConstValueVector;
using Lathe::Containers::IConstVector;

namespace {

struct CItem : CTracked {};
using Numbers = std::vector<int>;
using Items = TDynamicCollection<CItem, CItem>;
using View = TVectorAdapter<CTracked, CItem>;

Numbers Read(const IConstVector<CTracked>& vector) {
    Numbers numbers;
    for (int i = 0; i < vector.GetCount(); ++i)
        numbers.push_back(vector.GetElement(i).m_Number);
    return numbers;
}

Numbers Read(const IConstValueVector<const CTracked&>& vector) {
    Numbers numbers;
    for (int i = 0; i < vector.GetCount(); ++i)
        numbers.push_back(vector.GetValue(i).m_Number);
    return numbers;
}

struct SSource {
    SSource(int count, int first) : m_Items(count), m_Values(count) {
        for (int i = 0; i < count; ++i) {
            m_Items.GetElement(i).m_Number = first + i;
            m_Values.SetPointer(i, &m_Items[i]);
        }
    }
    Items m_Items;
    TPointersValueVector<CTracked> m_Values;
};

} // namespace

TEST(VectorViewsTest, AdaptersShowARange) {
    SSource source(4, 10);
    const struct {
        int m_First, m_Count;
        Numbers m_Expected;
    } cases[] = {{0, -1, {10, 11, 12, 13}}, {1, 2, {11, 12}}, {2, -1, {12, 13}}, {4, -1, {}}};
    for (const auto& [first, count, expected] : cases) {
        const TConstVectorAdapter<CTracked, CItem> constView(source.m_Items, first, count);
        const TConstValueVectorAdapter<const CTracked&> values(source.m_Values, first, count);
        EXPECT_EQ(Read(View(source.m_Items, first, count)), expected);
        EXPECT_EQ(Read(constView), expected);
        EXPECT_EQ(Read(values), expected);
    }
    EXPECT_EQ(Read(View()), Numbers());
}

TEST(VectorViewsTest, MuxesShowTheFirstThenTheSecond) {
    const struct {
        int m_First, m_Second;
        Numbers m_Expected;
    } cases[] = {{0, 0, {}}, {2, 0, {10, 11}}, {0, 2, {20, 21}}, {2, 3, {10, 11, 20, 21, 22}}};
    for (const auto& [firstCount, secondCount, expected] : cases) {
        SSource first(firstCount, 10), second(secondCount, 20);
        View firstView(first.m_Items), secondView(second.m_Items);
        TVectorMux<CTracked> mux(secondView, firstView);
        mux.Attach(firstView, secondView);
        EXPECT_EQ(Read(mux), expected);
        EXPECT_EQ(Read(TConstVectorMux<CTracked>(firstView, secondView)), expected);
        const TConstValueVectorMux<const CTracked&> values(first.m_Values, second.m_Values);
        EXPECT_EQ(Read(values), expected);
        for (int i = 0; i < mux.GetCount(); ++i)
            mux.GetElement(i).m_Number = i;
        for (int i = 0; i < secondCount; ++i)
            EXPECT_EQ(second.m_Items[i].m_Number, firstCount + i) << "not written through";
    }
}

TEST(VectorViewsTest, CollectionsKeepTheirItemsInCopiesAndWhenResized) {
    SSource source(3, 10);
    source.m_Items.SetCount(9);
    source.m_Items.SetCount(2, true);
    Items copy = source.m_Items;
    TCollection<CItem, CTracked, IConstVector<CTracked>> fixed(2);
    fixed[0].m_Number = 10;
    fixed[1].m_Number = 11;
    auto fixedCopy = fixed;
    source.m_Items[0].m_Number = fixed[0].m_Number = 99;
    EXPECT_EQ(Read(View(copy)), (Numbers{10, 11}));
    EXPECT_EQ(Read(fixedCopy), (Numbers{10, 11}));
    ValueVector<const char*, Lathe::Core::CCharString> texts(1);
    texts.GetStorage(0) = "first";
    texts.SetCount(100);
    EXPECT_STREQ(texts.GetValue(0), "first");
    EXPECT_STREQ(texts.GetValue(99), "");
}
