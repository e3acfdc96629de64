// A command that runs what the test gives it.
#pragma once

#include "core/events/Command.h"

#include <functional>
#include <utility>

class CActionCommand : public Lathe::Core::ICommand {
public:
    explicit CActionCommand(std::function<void()> action) : m_Action(std::move(action)) {}
    void Execute() override {
        const std::function<void()> action = m_Action; // It may destroy this command.
        action();
    }

private:
    std::function<void()> m_Action;
};
