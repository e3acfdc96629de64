#include "support/AllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {

thread_local int t_Allocated = 0;
thread_local int t_Freed = 0;

void* Allocate(std::size_t size) noexcept {
    ++t_Allocated;
    return std::malloc(size > 0 ? size : 1);
}

void* AllocateOrThrow(std::size_t size) {
    if (void* memory = Allocate(size))
        return memory;
    throw std::bad_alloc();
}

void Free(void* memory) noexcept {
    t_Freed += memory ? 1 : 0;
    std::free(memory);
}

} // namespace

CAllocationScope::CAllocationScope() : m_AllocatedBefore(t_Allocated), m_FreedBefore(t_Freed) {}

int CAllocationScope::GetCount() const {
    return t_Allocated - m_AllocatedBefore;
}

int CAllocationScope::GetFreedCount() const {
    return t_Freed - m_FreedBefore;
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
