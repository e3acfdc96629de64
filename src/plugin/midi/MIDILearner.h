// MIDI learn: a setting takes the controller of every message that comes in.
#pragma once

#include "core/Enable.h"
#include "core/events/Command.h"
#include "core/threads/MTEventProvider.h"

#include <atomic>

namespace Lathe::Audio::Plugin {

class IConstMIDICCMessage;
class IMIDICCSetting;

// Goes on until it is disabled or destroyed, and writes on the thread of the message's event.
class CMIDILearner : public Core::IEnable {
public:
    // Both outlive the learner.
    CMIDILearner(const IConstMIDICCMessage& message, IMIDICCSetting& setting, bool enabled);
    ~CMIDILearner() override;
    CMIDILearner(const CMIDILearner&) = delete;
    CMIDILearner& operator=(const CMIDILearner&) = delete;

    bool GetEnabled() const override { return m_Enabled.load(std::memory_order_relaxed); }
    Core::IEventProvider& GetEnabledChangedEvent() const override { return m_EnabledChanged; }
    void SetEnabled(bool enabled) override;

private:
    void OnMessage();

    const IConstMIDICCMessage& m_Message;
    IMIDICCSetting& m_Setting;
    std::atomic<bool> m_Enabled;
    mutable System::CMTEventProvider m_EnabledChanged;
    Core::TCommand<CMIDILearner> m_MessageCommand;
};

} // namespace Lathe::Audio::Plugin
