// Counts what the calling thread takes from the heap and gives back to it, to prove that a call
// does neither. Whoever links test_support and uses a scope gets counting operators new and delete.
#pragma once

class CAllocationScope {
public:
    CAllocationScope() : m_Before(GetTotal()) {}

    // Since the scope began, on the thread that asks, which is the one that made the scope.
    int GetCount() const { return GetTotal() - m_Before; }

private:
    static int GetTotal();

    int m_Before;
};
