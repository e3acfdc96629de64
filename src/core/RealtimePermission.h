// A scope in which the audio thread may do what it otherwise must not: take a lock that is never
// held for long. The real-time sanitizer stays silent within it; other builds have nothing here.
#pragma once

#if defined(__has_feature)
#if __has_feature(realtime_sanitizer)
#include <sanitizer/rtsan_interface.h>
#define LATHE_HAS_REALTIME_SANITIZER
#endif
#endif

namespace Lathe::Core {

class CRealtimePermission {
public:
#if defined(LATHE_HAS_REALTIME_SANITIZER)
    CRealtimePermission() {
        __rtsan_disable();
    }
    ~CRealtimePermission() {
        __rtsan_enable();
    }
#else
    CRealtimePermission() {}
    ~CRealtimePermission() {}
#endif
    CRealtimePermission(const CRealtimePermission&) = delete;
    CRealtimePermission& operator=(const CRealtimePermission&) = delete;
};

} // namespace Lathe::Core
