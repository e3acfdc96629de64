// Actions: named commands that can be switched off.
#pragma once

#include "core/Disconnect.h"
#include "core/Enable.h"
#include "core/events/Command.h"
#include "core/ownership/Ownership.h"
#include "datamodel/objects/ActionInfo.h"

namespace Lathe::DataModel::Objects {

class IConstAction : public virtual Core::ICommand, public virtual Core::IConstEnable {
public:
    virtual const IConstActionInfo& GetInfo() const = 0;
};

class IAction : public virtual IConstAction, public virtual Core::IEnable {};

// An action that can be cut from its command.
class IConstActionWrapper : public virtual IConstAction, public virtual Core::IDisconnect {};

// Starts enabled.
class CAction : public IConstActionWrapper {
public:
    // The command can be null.
    explicit CAction(Core::ICommand* command = nullptr, bool owned = true)
        : m_Command(command, owned) {}

    // Runs the command, if there is one and the action is enabled.
    void Execute() override;
    // Setting the present state does nothing.
    void SetEnable(bool enabled);
    bool GetEnabled() const override { return m_Enabled; }
    Core::IEventProvider& GetEnabledChangedEvent() const override { return m_EnabledChanged; }
    const CActionInfo& GetInfo() const override { return m_Info; }
    CActionInfo& GetInfo() { return m_Info; }
    // Deletes an owned command and leaves the action without any. Not from within Execute.
    void Disconnect() override { m_Command.Reset(); }

private:
    CActionInfo m_Info;
    Core::TOwnership<Core::ICommand> m_Command;
    mutable Core::CEventProvider m_EnabledChanged;
    bool m_Enabled = true;
};

} // namespace Lathe::DataModel::Objects
