// Proves that an event with an argument reaches its commands in order, once each, and is not
// handed to a command that is running; and that stored arguments reach theirs.
#include "core/events/ArgEventProvider.h"

#include <gtest/gtest.h>

#include <string>

using namespace Lathe::Core;

namespace {

struct CListener {
    void On(int number) {
        m_Log += m_Name + std::to_string(number);
        if (number > 0)
            m_Event.Notify(number - 1);
    }

    TArgEventProvider<int>& m_Event;
    std::string& m_Log;
    std::string m_Name;
};

} // namespace

TEST(ArgEventProviderTest, OrderNestingRemovalAndCopies) {
    TArgEventProvider<int> event;
    std::string log;
    CListener a{event, log, "a"}, b{event, log, "b"};
    TArgCommand<CListener, int> onA(a, &CListener::On);
    TIArgCommand<int>* onB = new TArgCommand<CListener, int>(b, &CListener::On);
    TIArgCommand<int>* first = &onA;
    const auto notify = [&log](TArgEventProvider<int>& provider, int number) {
        log.clear();
        provider.Notify(number);
        return log;
    };
    event.AddCommand(onA);
    event.AddCommand(onB);
    EXPECT_EQ(notify(event, 1), "a1b0b1a0") << "a running command is skipped in the nested run";
    event.AddCommand(first);
    EXPECT_EQ(notify(event, 0), "a0b0a0");
    TArgEventProvider<int> copy(event);
    EXPECT_EQ(notify(copy, 0), "") << "a copy starts without subscriptions";
    event.RemoveCommand(first, false);
    EXPECT_EQ(notify(event, 0), "b0a0") << "only the first entry goes";
    event.RemoveAllCommands(&onA);
    event.RemoveCommand(onB, true);
    EXPECT_EQ(onB, nullptr);
    event.RemoveCommand(onB, true);
    EXPECT_EQ(notify(event, 0), "");
    TArgCommandWrapper<int>(onA, 0).Execute();
    EXPECT_EQ(log, "a0");
}
