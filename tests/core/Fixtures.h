// What the tests of the vocabulary share: a seed, an object that counts, a command that runs what
// it is given.
#pragma once

#include "core/RealtimePermission.h"
#include "core/events/Command.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

// Of a random test: --gtest_random_seed, or else a fixed one. A test shows it on failure.
inline unsigned GetSeed() {
    const int given = GTEST_FLAG_GET(random_seed);
    return given > 0 ? static_cast<unsigned>(given) : 4711U;
}

// Counts the living, so that a test sees leaks and double deletion.
struct CTracked {
    explicit CTracked(int number = 0) : m_Number(number) { ++s_Alive; }
    CTracked(const CTracked& other) : CTracked(other.m_Number) {}
    CTracked& operator=(const CTracked&) = default;
    virtual ~CTracked() { --s_Alive; }
    CTracked* Clone() const { return new CTracked(*this); }

    int m_Number;
    static inline int s_Alive = 0;
};

struct CActionCommand : Lathe::Core::ICommand {
    explicit CActionCommand(std::function<void()> action) : m_Action(std::move(action)) {}
    // The action may destroy this command, and do what the audio thread must not.
    void Execute() override {
        const Lathe::Core::CRealtimePermission permission;
        std::function<void()>{m_Action}();
    }

    std::function<void()> m_Action;
};
