// Proves that views of vectors (ranges as a base type, two as one, arrays of pointers) show exactly
// the objects of their sources, that collections keep their items and copy them, and that a
// circular buffer wraps.
#include "core/Fixtures.h"
#include "core/containers/CircularBuffer.h"
#include "core/containers/Collection.h"
#include "core/containers/Iterator.h"
#include "core/containers/ValueVector.h"
#include "core/containers/VectorAdapter.h"
#include "core/containers/VectorMux.h"

using namespace Lathe::CoreUtilities;

// Nobody implements it yet; it and its bases compile.
template class Lathe::Containers::I2WaysIterator<int>;

namespace {

struct CItem : CTracked {};
using Items = TDynamicCollection<CItem, CItem>;

template <class TVector>
const CTracked& Get(TVector& vector, int index) {
    if constexpr (requires { vector.GetValue(index); })
        return vector.GetValue(index);
    else
        return vector.GetElement(index);
}

// A mux of the ranges [3, 3 + first) and [0, second): what lies beyond a range is another object.
template <class TView, class TMux, class TSource>
void CheckViews(TSource& source, const Items& items) {
    for (const auto& [first, second] : {std::pair{-1, 2}, {0, 2}, {1, 1}, {2, 0}, {0, 0}}) {
        TView firstView(source, 3, first), secondView(source, 0, second);
        TMux mux(secondView, firstView);
        mux.Attach(firstView, secondView);
        const int firstCount = first < 0 ? items.GetCount() - 3 : first;
        EXPECT_EQ(mux.GetCount(), firstCount + second);
        for (int i = 0; i < mux.GetCount(); ++i) {
            EXPECT_EQ(&Get(mux, i), &items[i < firstCount ? 3 + i : i - firstCount]);
            EXPECT_EQ(&Get(std::as_const(mux), i), &Get(mux, i));
        }
    }
}

} // namespace

TEST(VectorViewsTest, RangesAndMuxesShowTheObjectsOfTheirSources) {
    Items items(6);
    TPointersValueVector<CTracked> values(6);
    for (int i = 0; i < 6; ++i)
        values.SetPointer(i, &items[i]);
    CheckViews<TVectorAdapter<CTracked, CItem>, TVectorMux<CTracked>>(items, items);
    CheckViews<TConstVectorAdapter<CTracked, CItem>, TConstVectorMux<CTracked>>(items, items);
    CheckViews<TConstValueVectorAdapter<const CTracked&>, TConstValueVectorMux<const CTracked&>>(
        values, items);
}

TEST(VectorViewsTest, CollectionsKeepTheirItemsInCopiesAndWhenResized) {
    Items items(2);
    TCollection<CItem, CTracked, Lathe::Containers::IConstVector<CTracked>> fixed(1), assigned(1);
    ValueVector<const char*, Lathe::Core::CCharString> texts(1);
    items[1].m_Number = fixed[0].m_Number = 11;
    texts.GetStorage(0) = "11";
    for (const int count : {99, 2}) {
        items.SetCount(count, true);
        texts.SetCount(count);
    }
    const auto copy = items;
    const auto fixedCopy = assigned = fixed;
    items[1].m_Number = fixed[0].m_Number = assigned[0].m_Number = 99;
    EXPECT_EQ(copy.GetElement(1).m_Number, 11);
    EXPECT_EQ(fixedCopy.GetElement(0).m_Number, 11);
    EXPECT_EQ(texts.GetValue(0) + std::string(texts.GetValue(1)), "11");
}

TEST(CircularBufferTest, SizeIsAPowerOfTwoAndIndicesWrap) {
    const int cases[][2] = {{0, 1}, {1, 2}, {2, 2}, {3, 4}, {4, 4}, {100, 128}, {129, 256}};
    Lathe::Containers::TCircularBuffer<int> buffer;
    for (const auto& [asked, size] : cases) {
        buffer.SetSize(asked);
        ASSERT_EQ(buffer.GetMask(), size - 1) << asked;
        for (int i = 0; i < buffer.GetSize(); ++i)
            buffer[i - size] = i;
        buffer.SetSize(asked); // Rounds to the present size: the contents stay.
        EXPECT_TRUE(buffer[size] == 0 && buffer[-1] == size - 1) << asked;
    }
}
