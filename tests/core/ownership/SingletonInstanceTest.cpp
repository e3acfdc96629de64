// Proves that there is at most one instance, that it lives exactly as long as its holders, and
// that making and destroying it happens under the lock.
#include "core/ownership/SingletonInstance.h"

#include <gtest/gtest.h>

#include <mutex>
#include <thread>
#include <vector>

using namespace Lathe::Core;

namespace {

class CTestLock : public ILock {
public:
    void Lock() override { m_Mutex.lock(), s_Held = true; }
    void Unlock() override { s_Held = false, m_Mutex.unlock(); }
    bool TryLock() override { return m_Mutex.try_lock(); }

    static inline thread_local bool s_Held = false;

private:
    std::mutex m_Mutex;
};

// Plain counters: only the lock keeps the threads apart.
struct CInstance {
    CInstance() {
        EXPECT_TRUE(CTestLock::s_Held);
        if (s_Fail)
            throw 1;
        EXPECT_EQ(++s_Alive, 1);
    }
    ~CInstance() {
        EXPECT_TRUE(CTestLock::s_Held);
        EXPECT_EQ(--s_Alive, 0);
    }
    static inline int s_Alive = 0;
    static inline bool s_Fail = false;
};
using Holder = TSingletonInstance<CInstance, CTestLock>;

} // namespace

TEST(SingletonInstanceTest, LivesFromTheFirstHolderToTheLast) {
    for (int round = 0; round < 2; ++round) {
        CInstance::s_Fail = true;
        EXPECT_THROW(Holder(), int) << "a failed creation counts no holder";
        CInstance::s_Fail = false;
        Holder first;
        {
            const Holder second, copy(first);
            EXPECT_EQ(&second.Get(), &first.Get());
            first = copy;
        }
        EXPECT_EQ(CInstance::s_Alive, 1);
    }
    EXPECT_EQ(CInstance::s_Alive, 0);
}

TEST(SingletonInstanceTest, ManyThreadsShareOneInstance) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int round = 0; round < 500; ++round) {
                const Holder outer, inner(outer);
                EXPECT_EQ(&outer.Get(), &inner.Get());
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(CInstance::s_Alive, 0);
}
