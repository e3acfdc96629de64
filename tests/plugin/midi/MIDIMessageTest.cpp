// Proves who hears of a MIDI message, and when: the message's own events, the editor's proxy, a
// learner; and that a controller tells of every setting.
#include "core/threads/TimerProvider.h"
#include "datamodel/Journal.h"
#include "plugin/midi/MIDICCMessageTimerProxy.h"
#include "plugin/midi/MIDIController.h"
#include "plugin/midi/MIDILearner.h"

#include <map>
#include <memory>
#include <string>
#include <thread>

namespace Lathe::Audio::Plugin {

namespace {

using DataModel::CJournal;

// Ticks when it is told to.
struct CHandTimers : System::ITimerProvider {
    void AddTimer(int milliseconds, Core::ICommand* command) override {
        m_Timers[command] = milliseconds;
        ++m_Added;
    }
    void RemoveTimer(Core::ICommand* command, bool) override { m_Timers.erase(command); }
    void Tick() {
        for (const auto& [command, milliseconds] : m_Timers)
            command->Execute();
    }

    std::map<Core::ICommand*, int> m_Timers;
    int m_Added = 0;
};

void Send(CMIDICCMessage& message, int channel, int number, int value, bool force = false) {
    CMIDICCMessage sent;
    sent.Store(channel, number, value);
    message.Set(sent, force);
}

} // namespace

TEST(MIDICCMessage, TellsOfNewContentsAndOfEveryMessage) {
    CMIDICCMessage message;
    CJournal journal(message.GetContentsChangedEvent());
    journal.Listen(message.GetReceivedEvent(), 'r');
    Send(message, 2, 3, 4);
    Send(message, 2, 3, 4);
    EXPECT_EQ(journal.Take(), "crr");
    Send(message, 2, 3, 4, true);
    Send(message, 2, 3, 5);
    EXPECT_EQ(journal.Take(), "crcr");
    message.SetChannel(2);
    message.SetNumber(3);
    message.SetValue(5);
    EXPECT_EQ(journal.Take(), "rrr");
    message.SetChannel(1);
    message.SetNumber(2);
    message.SetValue(3);
    EXPECT_EQ(journal.Take(), "crcrcr");
    EXPECT_EQ(message.GetChannel() * 100 + message.GetNumber() * 10 + message.GetValue(), 123);
    message.Store(7, 8, 9);
    EXPECT_EQ(journal.Take(), "");
}

TEST(MIDICCMessageTimerProxy, TellsOncePerTick) {
    CMIDICCMessage message;
    CHandTimers timers;
    {
        CConstMIDICCMessageTimerProxy proxy(message, timers);
        CJournal journal(proxy.GetContentsChangedEvent());
        journal.Listen(proxy.GetReceivedEvent(), 'r');
        timers.Tick();
        for (int i = 0; i < 3; ++i)
            Send(message, 16, 20, 30 + i);
        EXPECT_EQ(journal.Take(), "");
        timers.Tick();
        timers.Tick();
        EXPECT_EQ(journal.Take(), "cr");
        EXPECT_EQ(proxy.GetChannel() + proxy.GetNumber() + proxy.GetValue(), 16 + 20 + 32);
        Send(message, 16, 20, 32);
        timers.Tick();
        EXPECT_EQ(journal.Take(), "r");

        EXPECT_EQ(timers.m_Timers.begin()->second, 50);
        proxy.SetRefreshTime(50);
        EXPECT_EQ(timers.m_Added, 1);
        proxy.SetRefreshTime(20);
        EXPECT_EQ(proxy.GetRefreshTime(), 20);
        EXPECT_EQ(timers.m_Timers.size(), 1U);
        EXPECT_EQ(timers.m_Timers.begin()->second, 20);
    }
    EXPECT_TRUE(timers.m_Timers.empty());
    Send(message, 1, 1, 1); // Nobody is left to hear it.
}

TEST(MIDICCMessageTimerProxy, LosesNoLastMessageOfAnotherThread) {
    CMIDICCMessage message;
    CHandTimers timers;
    CConstMIDICCMessageTimerProxy proxy(message, timers);
    int seen = -1;
    CActionCommand command([&] { seen = proxy.GetNumber() * 128 + proxy.GetValue(); });
    proxy.GetContentsChangedEvent().AddCommand(command);
    std::thread audio([&] {
        for (int i = 0; i <= 2000; ++i)
            Send(message, 1, i / 128, i % 128, true);
    });
    for (int i = 0; i < 200; ++i)
        timers.Tick();
    audio.join();
    timers.Tick();
    EXPECT_EQ(seen, 2000);
    proxy.GetContentsChangedEvent().RemoveCommand(command);
}

TEST(MIDILearner, FollowsEveryMessageWhileItIsEnabled) {
    CMIDICCMessage message;
    CMIDICCSetting setting;
    std::string seen;
    CActionCommand command([&] {
        seen += std::to_string(setting.GetChannel()) + '/' + std::to_string(setting.GetNumber());
        seen += ' ';
    });
    setting.GetChangedEvent().AddCommand(command);
    auto learner = std::make_unique<CMIDILearner>(message, setting, false);
    auto journal = std::make_unique<CJournal>(learner->GetEnabledChangedEvent());
    Send(message, 2, 3, 0);
    learner->SetEnabled(false);
    EXPECT_EQ(seen + journal->Take(), "");
    learner->SetEnabled(true);
    EXPECT_EQ(journal->Take(), "c");
    EXPECT_TRUE(learner->GetEnabled());
    Send(message, 4, 5, 0);
    Send(message, 6, 7, 0);
    journal.reset();
    learner.reset();
    Send(message, 8, 9, 0);
    EXPECT_EQ(seen, "0/5 4/5 4/7 6/7 "); // The number goes first.
    setting.GetChangedEvent().RemoveCommand(command);
}

TEST(MIDIController, TellsOfEverySetting) {
    CMIDIController controller(3, 2);
    CJournal journal(controller.GetSettingsChangedEvent());
    IMIDIController& face = controller;
    ASSERT_TRUE(face.GetInputSettings().GetCount() == 3 &&
                face.GetOutputSettings().GetCount() == 2);
    for (int i = 0; i < 3; ++i)
        face.GetInputSettings().GetElement(i).SetNumber(9);
    for (int i = 0; i < 2; ++i)
        face.GetOutputSettings().GetElement(i).SetNumber(9);
    EXPECT_EQ(journal.Take(), "ccccc");
    EXPECT_TRUE(controller.GetInputSettings()[2].IsAutomationEnabled());
    EXPECT_FALSE(controller.GetOutputSettings()[1].IsAutomationEnabled());
    Send(controller.GetLastMessage(), 1, 2, 3, true);
    EXPECT_EQ(face.GetLastMessage().GetValue(), 3);
    EXPECT_EQ(journal.Take(), "");
}

} // namespace Lathe::Audio::Plugin
