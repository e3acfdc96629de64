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
using Addresses = std::vector<const CTracked*>;

template <class TVector>
Addresses Read(TVector& vector) {
    Addresses addresses;
    for (int i = 0; i < vector.GetCount(); ++i) {
        if constexpr (requires { vector.GetValue(i); })
            addresses.push_back(&vector.GetValue(i));
        else
            addresses.push_back(&vector.GetElement(i));
    }
    return addresses;
}

// A mux of the ranges [3, 3 + first) and [0, second): what lies beyond a range is another object.
template <class TView, class TMux, class TSource>
void CheckViews(TSource& source, const Addresses& all) {
    for (const int first : {-1, 0, 1, 2}) {
        for (const int second : {0, 1, 2}) {
            TView firstView(source, 3, first), secondView(source, 0, second);
            TMux mux(secondView, firstView);
            mux.Attach(firstView, secondView);
            Addresses expected(all.begin() + 3, first < 0 ? all.end() : all.begin() + 3 + first);
            expected.insert(expected.end(), all.begin(), all.begin() + second);
            EXPECT_EQ(Read(mux), expected);
            EXPECT_EQ(Read(std::as_const(mux)), expected);
        }
    }
}

} // namespace

TEST(VectorViewsTest, RangesAndMuxesShowTheObjectsOfTheirSources) {
    Items items(6);
    TPointersValueVector<CTracked> values(items.GetCount());
    for (int i = 0; i < items.GetCount(); ++i)
        values.SetPointer(i, &items[i]);
    const Addresses all = Read(items);
    CheckViews<TVectorAdapter<CTracked, CItem>, TVectorMux<CTracked>>(items, all);
    CheckViews<TConstVectorAdapter<CTracked, CItem>, TConstVectorMux<CTracked>>(items, all);
    CheckViews<TConstValueVectorAdapter<const CTracked&>, TConstValueVectorMux<const CTracked&>>(
        values, all);
}

TEST(VectorViewsTest, CollectionsKeepTheirItemsInCopiesAndWhenResized) {
    Items items(2);
    TCollection<CItem, CTracked, Lathe::Containers::IConstVector<CTracked>> fixed(1), assigned(1);
    items[1].m_Number = fixed[0].m_Number = 11;
    items.SetCount(9);
    items.SetCount(2, true);
    const auto copy = items;
    const auto fixedCopy = assigned = fixed;
    items[1].m_Number = fixed[0].m_Number = assigned[0].m_Number = 99;
    EXPECT_EQ(copy.GetElement(1).m_Number, 11);
    EXPECT_EQ(fixedCopy.GetElement(0).m_Number, 11);
    ValueVector<const char*, Lathe::Core::CCharString> texts(1);
    texts.GetStorage(0) = "first";
    texts.SetCount(100);
    EXPECT_EQ(texts.GetValue(0) + std::string(texts.GetValue(99)), "first");
}

TEST(CircularBufferTest, SizeIsAPowerOfTwoAndIndicesWrap) {
    const int cases[][2] = {{0, 1}, {1, 2}, {2, 2}, {3, 4}, {4, 4}, {100, 128}, {129, 256}};
    Lathe::Containers::TCircularBuffer<int> buffer;
    for (const auto& [asked, size] : cases) {
        buffer.SetSize(asked);
        ASSERT_EQ(buffer.GetSize(), size) << asked;
        for (int i = 0; i < size; ++i)
            buffer[i] = i;
        buffer.SetSize(asked); // Rounds to the present size: the contents stay.
        for (int i = -2 * size; i < 2 * size; ++i)
            ASSERT_EQ(buffer[i], (i + 2 * size) % size);
    }
}
