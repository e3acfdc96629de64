// An instance that lives as long as anybody holds it.
#pragma once

#include "core/Lock.h"

namespace Lathe::Core {

// How the first holder makes the instance; specialised next to a class that needs more.
template <class T>
struct TSingletonCreator {
    // The caller owns it.
    static T* Create() { return new T; }
};

// Each holder counts up, and the first makes the instance; the last one's destruction deletes it.
// Holders may live on any thread.
template <class T, class TLock>
class TSingletonInstance {
public:
    TSingletonInstance() {
        CAutoLock lock(GetLock());
        if (s_Holders == 0)
            s_Instance = TSingletonCreator<T>::Create(); // Deleted by the last holder's destructor.
        ++s_Holders; // Behind the creation: a holder that failed is not counted.
    }
    TSingletonInstance(const TSingletonInstance&) : TSingletonInstance() {}
    TSingletonInstance& operator=(const TSingletonInstance&) { return *this; }
    ~TSingletonInstance() {
        CAutoLock lock(GetLock());
        if (--s_Holders == 0) {
            delete s_Instance;
            s_Instance = nullptr;
        }
    }

    T& Get() const { return *s_Instance; }

private:
    // One lock for all holders: a lock in each holder would exclude nobody.
    static TLock& GetLock() {
        static TLock lock;
        return lock;
    }

    static inline T* s_Instance = nullptr;
    static inline int s_Holders = 0;
};

} // namespace Lathe::Core
