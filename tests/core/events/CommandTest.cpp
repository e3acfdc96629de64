// Proves that an event with an argument reaches its commands in order, once each, but not one that
// is running, and that commands of every kind compile.
#include "core/events/Command.h"
#include "core/Fixtures.h"
#include "core/events/ArgEventProvider.h"

using namespace Lathe::Core;

namespace {

struct CTarget {
    void Take(int number) {
        m_Log += {m_Name, static_cast<char>('0' + number)};
        if (number > 0)
            m_Event.Notify(number - 1);
    }

    TArgEventProvider<int>& m_Event;
    std::string& m_Log;
    char m_Name;
};
using Take = TArgCommand<CTarget, int>;

} // namespace

// Nobody uses them yet; they compile.
template class Lathe::Core::TConstCommand<CTarget>;
template class Lathe::Core::TConstArgCommand<CTarget, int>;
template class Lathe::Core::TArgCommandWrapper<int>;
template class Lathe::Core::TReturnCommand<CTarget, char>;
template class Lathe::Core::TArgReturnCommand<CTarget, int, int>;

TEST(ArgEventProviderTest, ReachesEachCommandOnceInOrder) {
    TArgEventProvider<int> event;
    std::string log;
    CTarget a{event, log, 'a'}, b{event, log, 'b'};
    TIArgCommand<int>*first = new Take(a, &CTarget::Take), *second = new Take(b, &CTarget::Take);

    event.AddCommand(*first);
    event.AddCommand(second);
    event.Notify(1); // A running command is skipped in the nested run.
    EXPECT_EQ(std::exchange(log, ""), "a1b0b1a0");
    event.AddCommand(first);
    TArgEventProvider<int>(event).Notify(0); // A copy starts without subscriptions.
    event.RemoveCommand(first, false);       // Only the first entry goes.
    event.Notify(0);
    EXPECT_EQ(std::exchange(log, ""), "b0a0");
    event.RemoveAllCommands(first);
    for (TIArgCommand<int>** command : {&first, &second, &second})
        event.RemoveCommand(*command, true);
    event.Notify(0);
    EXPECT_TRUE(log.empty() && !first && !second);
}
