// Proves who hears of a MIDI message, and when: the message's own events, the editor's proxy, a
// learner; and that a controller tells of every setting.
#include "core/threads/TimerProvider.h"
#include "datamodel/Journal.h"
#include "plugin/midi/MIDICCMessageTimerProxy.h"
#include "plugin/midi/MIDIController.h"
#include "plugin/midi/MIDILearner.h"

#include <map>
#include <thread>

namespace Lathe::Audio::Plugin {

namespace {

using DataModel::CJournal;

// Ticks when it is told to.
struct CHandTimers : System::ITimerProvider {
    void AddTimer(int milliseconds, Core::ICommand* command) override {
        m_Timers[command] = milliseconds;
    }
    void RemoveTimer(Core::ICommand* command, bool) override { m_Timers.erase(command); }
    void Tick() {
        for (const auto& [command, milliseconds] : m_Timers)
            command->Execute();
    }
    std::map<Core::ICommand*, int> m_Timers;
};

void Send(CMIDICCMessage& message, int channel, int number, int value, bool force) {
    CMIDICCMessage sent;
    sent.Store(channel, number, value);
    message.Set(sent, force);
}

} // namespace

TEST(MIDICCMessage, TellsOfNewContentsAndOfEveryMessage) {
    CMIDICCMessage message;
    CJournal journal(message.GetContentsChangedEvent());
    journal.Listen(message.GetReceivedEvent(), 'r');
    Send(message, 2, 3, 4, false);
    Send(message, 2, 3, 4, false);
    Send(message, 2, 3, 4, true);
    EXPECT_EQ(journal.Take(), "crrcr");
    for (int i = 0; i < 2; ++i) {
        message.SetChannel(1);
        message.SetNumber(2);
        message.SetValue(3);
        EXPECT_EQ(journal.Take(), i == 0 ? "crcrcr" : "rrr");
    }
    EXPECT_EQ(message.GetChannel() * 100 + message.GetNumber() * 10 + message.GetValue(), 123);
}

TEST(MIDICCMessageTimerProxy, TellsOncePerTickWhateverTheAudioThreadSends) {
    CMIDICCMessage message;
    CHandTimers timers;
    {
        CConstMIDICCMessageTimerProxy proxy(message, timers);
        EXPECT_EQ(timers.m_Timers.begin()->second, 50);
        proxy.SetRefreshTime(20);
        EXPECT_TRUE(timers.m_Timers.size() == 1 && timers.m_Timers.begin()->second == 20);
        CJournal journal(proxy.GetContentsChangedEvent());
        journal.Listen(proxy.GetReceivedEvent(), 'r');
        std::thread audio([&] {
            for (int i = 0; i <= 2000; ++i)
                Send(message, 16, i / 128, i % 128, true);
        });
        for (int i = 0; i < 200; ++i)
            timers.Tick();
        audio.join();
        timers.Tick();
        EXPECT_EQ(proxy.GetNumber() * 128 + proxy.GetValue(), 2000);
        journal.Take();
        for (const char* events : {"cr", "r"}) {
            Send(message, 16, 0, 1, false);
            Send(message, 16, 0, 1, false);
            EXPECT_EQ(journal.Take(), "");
            timers.Tick();
            timers.Tick();
            EXPECT_EQ(journal.Take(), events);
        }
    }
    EXPECT_TRUE(timers.m_Timers.empty());
    Send(message, 1, 1, 1, true); // Nobody is left to hear it.
}

TEST(MIDILearner, FollowsEveryMessageWhileItIsEnabled) {
    CMIDICCMessage message;
    CMIDICCSetting setting;
    CJournal journal(setting.GetChangedEvent());
    {
        CMIDILearner learner(message, setting, false);
        CJournal enabled(learner.GetEnabledChangedEvent());
        Send(message, 2, 3, 0, true);
        learner.SetEnabled(false);
        EXPECT_EQ(journal.Take() + enabled.Take(), "");
        learner.SetEnabled(true);
        Send(message, 4, 5, 0, true);
        Send(message, 6, 7, 0, true);
        EXPECT_EQ(journal.Take() + enabled.Take(), "ccccc");
    }
    Send(message, 8, 9, 0, true);
    EXPECT_EQ(setting.GetChannel() * 10 + setting.GetNumber(), 67);
}

TEST(MIDIController, TellsOfEverySetting) {
    CMIDIController controller(3, 2);
    CJournal journal(controller.GetSettingsChangedEvent());
    IMIDIController& face = controller;
    for (IMIDICCSettings* settings : {&face.GetInputSettings(), &face.GetOutputSettings()}) {
        for (int i = 0; i < settings->GetCount(); ++i)
            settings->GetElement(i).SetNumber(9);
    }
    EXPECT_EQ(journal.Take(), "ccccc");
}

} // namespace Lathe::Audio::Plugin
