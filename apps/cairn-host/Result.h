// Outcomes as values: either what was asked for, or one line that tells the user what to mend.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace CairnHost {

// Names the file, line or option at fault and what was expected, without a full stop.
struct SFault {
    std::string m_Text;
};

template <class T>
class [[nodiscard]] TResult {
public:
    TResult(T value) : m_Value(std::move(value)) {}
    TResult(SFault fault) : m_Fault(std::move(fault)) {}

    bool IsOk() const { return m_Value.has_value(); }
    explicit operator bool() const { return IsOk(); }
    // Only of a result that is ok.
    T& operator*() { return *m_Value; }
    const T& operator*() const { return *m_Value; }
    T* operator->() { return &*m_Value; }
    const T* operator->() const { return &*m_Value; }
    // Empty when the result is ok.
    const SFault& GetFault() const { return m_Fault; }

private:
    std::optional<T> m_Value;
    SFault m_Fault;
};

class [[nodiscard]] CStatus {
public:
    CStatus() = default;
    CStatus(SFault fault) : m_Fault(std::move(fault)) {}

    bool IsOk() const { return !m_Fault; }
    explicit operator bool() const { return IsOk(); }
    // Only of a status that isn't ok.
    const SFault& GetFault() const { return *m_Fault; }

private:
    std::optional<SFault> m_Fault;
};

} // namespace CairnHost
