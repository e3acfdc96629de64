// Counts what the calling thread takes from the heap and gives back to it, to prove that a call
// does neither, or how much it keeps. Whoever links test_support and uses a scope gets counting
// operators new and delete.
#pragma once

class CAllocationScope {
public:
    CAllocationScope() : m_Before(GetTotal()), m_HeldBefore(GetTotalHeld()) {}

    // Since the scope began, on the thread that asks, which is the one that made the scope.
    int GetCount() const { return GetTotal() - m_Before; }
    // The bytes of what was taken and not given back.
    long long GetHeldBytes() const { return GetTotalHeld() - m_HeldBefore; }

private:
    static int GetTotal();
    static long long GetTotalHeld();

    int m_Before;
    long long m_HeldBefore;
};
