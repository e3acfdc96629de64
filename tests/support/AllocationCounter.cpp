#include "support/AllocationCounter.h"

#include <malloc.h>

#include <cstdlib>
#include <new>

static thread_local int t_Total = 0;
static thread_local long long t_Held = 0;

static void* Allocate(std::size_t size) noexcept {
    ++t_Total;
    void* memory = std::malloc(size > 0 ? size : 1);
    t_Held += static_cast<long long>(malloc_usable_size(memory));
    return memory;
}

static void* AllocateOrThrow(std::size_t size) {
    if (void* memory = Allocate(size))
        return memory;
    throw std::bad_alloc();
}

static void Free(void* memory) noexcept {
    t_Total += memory ? 1 : 0;
    t_Held -= static_cast<long long>(malloc_usable_size(memory));
    std::free(memory);
}

int CAllocationScope::GetTotal() {
    return t_Total;
}

long long CAllocationScope::GetTotalHeld() {
    return t_Held;
}

// All forms for plain alignment: a sanitizer's own form of one would not match these. The forms for
// larger alignment stay as they are, uncounted.
// clang-format off
void* operator new(std::size_t size) { return AllocateOrThrow(size); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* memory) noexcept { Free(memory); }
void operator delete[](void* memory) noexcept { Free(memory); }
void operator delete(void* memory, std::size_t) noexcept { Free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { Free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { Free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { Free(memory); }
// clang-format on
