// Notes the locks that the calling thread takes and might have to wait for, to prove that it takes
// no others than those it may. Whoever links test_support has its calls of the system's lock noted.
#pragma once

#include <array>

// While it lives; scopes don't nest. A lock that is only tried isn't noted.
class CLockScope {
public:
    CLockScope();
    ~CLockScope();
    CLockScope(const CLockScope&) = delete;
    CLockScope& operator=(const CLockScope&) = delete;

    // Of different locks.
    int GetCount() const { return m_Count; }
    bool Contains(const void* lock) const;
    // True if each lock that this scope noted is also in the other.
    bool IsWithin(const CLockScope& other) const;

    static void Note(const void* lock);

private:
    void Add(const void* lock);

    // Of a fixed size, since the audio thread notes too; what doesn't fit counts as a lock that no
    // other scope contains.
    std::array<const void*, 256> m_Locks{};
    int m_Count = 0;
};
