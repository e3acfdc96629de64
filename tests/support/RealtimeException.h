// A scope in which a test lets the filter do what the audio thread must not, such as making room
// for a block larger than it was told of.
#pragma once

#if defined(__has_feature)
#if __has_feature(realtime_sanitizer)
#include <sanitizer/rtsan_interface.h>
#define CAIRN_HAS_REALTIME_SANITIZER
#endif
#endif

class CRealtimeException {
public:
#if defined(CAIRN_HAS_REALTIME_SANITIZER)
    CRealtimeException() {
        __rtsan_disable();
    }
    ~CRealtimeException() {
        __rtsan_enable();
    }
#else
    CRealtimeException() {}
    ~CRealtimeException() {}
#endif
    CRealtimeException(const CRealtimeException&) = delete;
    CRealtimeException& operator=(const CRealtimeException&) = delete;
};
