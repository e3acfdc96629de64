// Mutual exclusion by interface, and the scope guard through which scopes take it.
#pragma once

namespace Lathe::Core {

class ILock {
public:
    virtual void Lock() = 0;
    virtual void Unlock() = 0;
    // True when the lock was free, or already held by this thread, and is now held.
    virtual bool TryLock() = 0;
    virtual ~ILock() = default;
};

class CAutoLock {
public:
    explicit CAutoLock(ILock& lock) : m_Lock(lock) { m_Lock.Lock(); }
    ~CAutoLock() { m_Lock.Unlock(); }
    CAutoLock(const CAutoLock&) = delete;
    CAutoLock& operator=(const CAutoLock&) = delete;

private:
    ILock& m_Lock;
};

} // namespace Lathe::Core
