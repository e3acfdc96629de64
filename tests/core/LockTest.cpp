// Proves that the scope guard pairs each Lock with one Unlock, also when the scope is left early.
#include "core/Lock.h"

#include <gtest/gtest.h>

#include <string>

TEST(LockTest, GuardUnlocksWhenItsScopeIsLeft) {
    struct CLoggingLock : Lathe::Core::ILock {
        void Lock() override { m_Log += 'L'; }
        void Unlock() override { m_Log += 'U'; }
        bool TryLock() override { return true; }
        std::string m_Log;
    } lock;
    try {
        const Lathe::Core::CAutoLock outer(lock), inner(lock);
        lock.m_Log += '-';
        throw 1;
    } catch (int) {
        EXPECT_EQ(lock.m_Log, "LL-UU");
    }
}
