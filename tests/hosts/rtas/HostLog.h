// What a host hears of an instance, as text.
#pragma once

#include "platform/rtas/Process.h"

#include <string>
#include <utility>

namespace LatheExt::RTASPlugin {

class CHostLog {
public:
    // Notes every call: "2=100 " for a value, "touch2 " and "release2 ".
    SProcessSetup MakeSetup() {
        SProcessSetup setup;
        setup.m_MaxBlockSize = 512;
        setup.m_Calls = {
            this,
            [](void* log, int32_t control, int32_t value) {
                Note(log, std::to_string(control) + "=" + std::to_string(value));
            },
            [](void* log, int32_t control) { Note(log, "touch" + std::to_string(control)); },
            [](void* log, int32_t control) { Note(log, "release" + std::to_string(control)); }};
        return setup;
    }
    // All since the last time.
    std::string Take() { return std::exchange(m_Text, ""); }

private:
    static void Note(void* log, const std::string& call) {
        static_cast<CHostLog*>(log)->m_Text += call + " ";
    }

    std::string m_Text;
};

} // namespace LatheExt::RTASPlugin
