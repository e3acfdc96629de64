// Proves that a counted item lives as long as its last reference, also when many threads hold it.
#include "core/ownership/RefCountItem.h"
#include "core/Tracked.h"

#include <gtest/gtest.h>

#include <latch>
#include <thread>
#include <utility>
#include <vector>

using namespace Lathe::Core;

namespace {

using Value = const CTracked&;
using Pointer = RefCountItemPtr<Value>;

template <class TItem>
Pointer Make(int number) {
    return Pointer(new TItem(OwnedPtr<CTracked>(new CTracked(number))));
}

template <class TItem>
class RefCountItemTest : public testing::Test {};
using ThreadSafe = MTRefCountItem<Value, OwnedPtr<CTracked>>;
using ItemTypes = testing::Types<RefCountItem<Value, OwnedPtr<CTracked>>, ThreadSafe>;
TYPED_TEST_SUITE(RefCountItemTest, ItemTypes);

} // namespace

TYPED_TEST(RefCountItemTest, LivesAsLongAsItsLastReference) {
    Pointer outer;
    {
        Pointer first = Make<TypeParam>(1);
        const Pointer second = first;
        first = Make<TypeParam>(2);
        EXPECT_EQ(second->GetValue().m_Number, 1);
        EXPECT_EQ(CTracked::s_Alive, 2);
        first = *&first;
        outer = std::move(first);
    }
    EXPECT_EQ(outer->GetValue().m_Number, 2);
    EXPECT_EQ(CTracked::s_Alive, 1);
    outer = Pointer();
    EXPECT_EQ(CTracked::s_Alive, 0);
}

// The thread sanitizer sees a count that is not atomic, and a destruction that is not ordered
// behind what the other threads did with the value.
TEST(RefCountItemThreadsTest, TheLastOfManyThreadsDestroysIt) {
    for (int round = 0; round < 100; ++round) {
        Pointer item = Make<ThreadSafe>(round);
        std::latch start(4);
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([held = item, &start, round]() mutable {
                start.arrive_and_wait();
                for (int k = 0; k < 50; ++k)
                    EXPECT_EQ(Pointer(held)->GetValue().m_Number, round);
                held = Pointer();
            });
        }
        item = Pointer();
        for (std::thread& thread : threads)
            thread.join();
        ASSERT_EQ(CTracked::s_Alive, 0);
    }
}
