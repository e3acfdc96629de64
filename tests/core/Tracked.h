// An object that counts the living and the clones, so that a test sees leaks and double deletion.
#pragma once

struct CTracked {
    explicit CTracked(int number = 0) : m_Number(number) { ++s_Alive; }
    CTracked(const CTracked& other) : m_Number(other.m_Number) { ++s_Alive; }
    CTracked& operator=(const CTracked&) = default;
    virtual ~CTracked() { --s_Alive; }
    CTracked* Clone() const { return new CTracked(*this); }

    int m_Number;
    static inline int s_Alive = 0;
};
