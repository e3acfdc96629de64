// Proves that a pointee is destroyed exactly once, and only by an owner; and that counted items and
// singletons live exactly as long as somebody holds them, also when many threads do.
#include "core/ownership/Ownership.h"
#include "core/Disconnect.h"
#include "core/Fixtures.h"
#include "core/ownership/RefCountItem.h"
#include "core/ownership/SingletonInstance.h"

#include <latch>
#include <mutex>
#include <thread>

using namespace Lathe::Core;

// Nobody uses them yet; they compile.
template class Lathe::Core::TIConnect<int>;
template class Lathe::Core::TRefHolder<CTracked>;

namespace {

using Pointer = TOwnership<CTracked>;
using Cloning = TOwnershipWithClone<CTracked>;
using Shared = RefCountItemPtr<const CTracked&>;
using ThreadSafeItem = MTRefCountItem<const CTracked&, OwnedPtr<CTracked>>;

template <class TItem>
void CheckCounting() {
    const auto make = [](int n) { return Shared(new TItem(OwnedPtr<CTracked>(new CTracked(n)))); };
    Shared first = make(1), second = first;
    first = make(2);
    first = *&first;
    EXPECT_TRUE(second->GetValue().m_Number == 1 && CTracked::s_Alive == 2);
    second = std::move(first);
    first = Shared();
    EXPECT_TRUE(second->GetValue().m_Number == 2 && CTracked::s_Alive == 1);
}

struct CTestLock : ILock {
    void Lock() override { m_Mutex.lock(), s_Held = true; }
    void Unlock() override { s_Held = false, m_Mutex.unlock(); }
    bool TryLock() override { return m_Mutex.try_lock(); }

    std::mutex m_Mutex;
    static inline thread_local bool s_Held = false;
};

// Plain counters: only the lock keeps the threads apart.
struct CInstance {
    CInstance() { EXPECT_TRUE(CTestLock::s_Held && ++s_Alive == 1); }
    ~CInstance() { EXPECT_TRUE(CTestLock::s_Held && --s_Alive == 0); }
    static inline int s_Alive = 0;
};
struct CFailing {
    CFailing() { throw 1; }
};
using Holder = TSingletonInstance<CInstance, CTestLock>;

} // namespace

TEST(OwnershipTest, DestroysOnlyWhatItOwns) {
    CTracked kept(1);
    {
        Pointer pointer(new CTracked(2));
        pointer.Set(new CTracked(3));
        EXPECT_EQ(CTracked::s_Alive, 2) << "the replaced one is gone";
        pointer.Set(&kept, false);
        pointer = Pointer(&kept, false);
        pointer.Reset();
        EXPECT_TRUE(!pointer && pointer.IsOwned());
        pointer.Set(new CTracked(4));
        pointer.Set(pointer.Get(), true);
        Pointer detached(pointer.Detach()), unowned(detached.Get(), false);
        detached = std::move(unowned); // Owns what it owned before.
        pointer.Set(detached.Get(), false);
        pointer = std::move(detached);
        const Pointer last(std::move(pointer));
        EXPECT_TRUE(!pointer && !unowned && !detached && last.IsOwned());
        const Cloning shared(&kept, false), empty;
        Cloning copy(shared), assigned(new CTracked(5));
        assigned = copy;
        assigned = *&assigned;
        EXPECT_TRUE(assigned->m_Number == 1 && copy.IsOwned() && CTracked::s_Alive == 4);
        assigned = empty;
        EXPECT_FALSE(assigned || Cloning(empty));
    }
    EXPECT_EQ(CTracked::s_Alive, 1);
}

TEST(SharedTest, LivesFromTheFirstHolderToTheLast) {
    CheckCounting<RefCountItem<const CTracked&, OwnedPtr<CTracked>>>();
    CheckCounting<ThreadSafeItem>();
    EXPECT_EQ(CTracked::s_Alive, 0);
    for (int round = 0; round < 2; ++round) {
        using Failing = TSingletonInstance<CFailing, CTestLock>;
        EXPECT_THROW(Failing(), int) << "a failed creation counts no holder";
        EXPECT_FALSE(CTestLock::s_Held) << "and leaves the lock";
        Holder first;
        EXPECT_EQ(&Holder().Get(), &Holder(first).Get());
        EXPECT_EQ(CInstance::s_Alive, 1);
    }
    EXPECT_EQ(CInstance::s_Alive, 0);
}

// The thread sanitizer sees a count that is not atomic, and a destruction that is not ordered
// behind what the other threads did with the value: no lock is taken behind the latch.
TEST(SharedTest, TheLastOfManyThreadsDestroysIt) {
    for (int round = 0; round < 100; ++round) {
        Shared item(new ThreadSafeItem(OwnedPtr<CTracked>(new CTracked(round))));
        std::latch start(4);
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([held = item, &start, round]() mutable {
                for (int k = 0; k < 50; ++k)
                    const Holder outer, inner(outer);
                start.arrive_and_wait();
                for (int k = 0; k < 50; ++k)
                    EXPECT_EQ(Shared(held)->GetValue().m_Number, round);
                held = Shared();
            });
        }
        item = Shared();
        threads.clear();
        ASSERT_EQ(CTracked::s_Alive + CInstance::s_Alive, 0);
    }
}
