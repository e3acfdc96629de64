// What the tests of the settings share: parameters, paths in a temporary home, lists of settings.
#pragma once

#include "core/events/Command.h"
#include "core/events/EventProvider.h"
#include "dsp/FilterInfos.h"
#include "platform/TemporaryHome.h"
#include "plugin/midi/MIDICCSettings.h"
#include "plugin/settings/AudioPluginFilePathsBase.h"

namespace Lathe::Audio::Plugin::Tests {

inline constexpr const char* PreferencesFile = "settings/global.pref";

class CTestPaths : public CAudioPluginFilePathsBase {
public:
    explicit CTestPaths(const CTemporaryHome& home)
        : CAudioPluginFilePathsBase(home.In("install"), home.In("settings"), "") {}
};

// Parameter i reaches from -i to 10 i.
inline DSP::CParamInfos MakeInfos(int count) {
    DSP::CParamInfos infos(count);
    for (int i = 0; i < count; ++i) {
        infos[i].SetMin(-i);
        infos[i].SetMax(10.0 * i);
    }
    return infos;
}

class CEventCounter {
public:
    explicit CEventCounter(Core::IEventProvider& event) : m_Event(event) {
        m_Event.AddCommand(m_OnEvent);
    }
    ~CEventCounter() { m_Event.RemoveAllCommands(&m_OnEvent); }

    int m_Count = 0;

private:
    void OnEvent() { ++m_Count; }

    Core::IEventProvider& m_Event;
    Core::TCommand<CEventCounter> m_OnEvent{*this, &CEventCounter::OnEvent};
};

} // namespace Lathe::Audio::Plugin::Tests
