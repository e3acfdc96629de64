// Proves that each command calls the member that it is bound to, and that an event with an argument
// reaches its commands in order, once each, but not one that is running.
#include "core/events/Command.h"
#include "core/Fixtures.h"
#include "core/events/ArgEventProvider.h"

using namespace Lathe::Core;

namespace {

struct CTarget {
    void Run() { m_Log += 'r'; }
    void RunConst() const { m_Log += 'c'; }
    void TakeConst(int number) const { m_Log += static_cast<char>('0' + number); }
    char Give() { return m_Name; }
    int Double(int number) { return 2 * number; }
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

TEST(CommandTest, CommandsCallTheirMembersAndEventsTheirCommands) {
    TArgEventProvider<int> event;
    std::string log;
    CTarget a{event, log, 'a'}, b{event, log, 'b'};
    TIArgCommand<int>*first = new Take(a, &CTarget::Take), *second = new Take(b, &CTarget::Take);
    TConstArgCommand<CTarget, int> takeConst(a, &CTarget::TakeConst);
    TArgCommandWrapper<int> take5(*first, 5), take6(takeConst, 6);
    TCommand<CTarget> run(a, &CTarget::Run);
    TConstCommand<CTarget> runConst(a, &CTarget::RunConst);
    for (ICommand* command : std::vector<ICommand*>{&run, &runConst, &take5, &take6})
        command->Execute();
    EXPECT_EQ(std::exchange(log, ""), "rca56");
    EXPECT_EQ((TReturnCommand<CTarget, char>(a, &CTarget::Give).Execute()), 'a');
    EXPECT_EQ((TArgReturnCommand<CTarget, int, int>(a, &CTarget::Double).Execute(3)), 6);

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
