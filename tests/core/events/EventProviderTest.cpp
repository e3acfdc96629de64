// Proves that a notification runs each subscribed command once, in the order of adding, whatever
// the commands do to the list meanwhile: remove and destroy themselves and each other, add,
// notify again. The same of events with an argument, whose list stays as it is meanwhile.
#include "core/events/EventProvider.h"
#include "core/Fixtures.h"
#include "core/events/ArgEventProvider.h"

#include <map>

using namespace Lathe::Core;

namespace {

// A provider of commands that are named by letters and tell m_OnRun when they run. An act adds one
// (+), removes its first entry (-), removes all of them and destroys it (/), or notifies (!).
struct CLetters {
    void Act(char act, char name) {
        ICommand*& command = m_Commands[name];
        if (act == '+' && !command) // Deleted by '/'.
            command = new CActionCommand([this, name] { m_OnRun(name); });
        if (act == '+')
            return m_Event.AddCommand(command);
        if (act == '!')
            return m_Event.Notify();
        if (act == '/')
            m_Event.RemoveAllCommands(command);
        m_Event.RemoveCommand(command, act == '/');
    }

    CEventProvider m_Event;
    std::map<char, ICommand*> m_Commands;
    std::function<void(char)> m_OnRun;
};

// The same list as a model: entries are never erased, only marked, so that an index stays good.
struct CModel {
    void Act(char act, char name) {
        if (act == '!')
            return Notify();
        if (act == '+')
            return m_Entries.push_back({name});
        std::size_t limit = act == '-' ? 1 : m_Entries.size();
        for (std::size_t i = 0; i < m_Entries.size() && limit > 0; ++i) {
            if (m_Entries[i].m_Name != name || !std::exchange(m_Entries[i].m_Alive, false))
                continue;
            --limit;
            for (std::size_t* next : m_Walks)
                *next = *next == i ? FindAlive(i) : *next;
        }
    }
    void Notify() {
        std::size_t next = FindAlive(0);
        m_Walks.push_back(&next);
        while (next < m_Entries.size()) {
            const std::size_t current = std::exchange(next, FindAlive(next + 1));
            if (std::exchange(m_Entries[current].m_Running, true))
                continue;
            m_OnRun(m_Entries[current].m_Name);
            m_Entries[current].m_Running = false;
        }
        m_Walks.pop_back();
    }
    // Past the end is for good: what is added once the last command runs waits for the next run.
    std::size_t FindAlive(std::size_t from) const {
        while (from < m_Entries.size() && !m_Entries[from].m_Alive)
            ++from;
        return from < m_Entries.size() ? from : ~std::size_t{0};
    }

    struct SEntry {
        char m_Name;
        bool m_Alive = true, m_Running = false;
    };
    std::vector<SEntry> m_Entries;
    std::vector<std::size_t*> m_Walks;
    std::function<void(char)> m_OnRun;
};

// What a command does when it runs is drawn in the order of the runs: two lists that behave alike
// draw alike, and give the same log.
template <class TList>
std::string Play(unsigned seed) {
    TList list;
    std::mt19937 random(seed);
    std::string log;
    int budget = 400; // Of acts, so that commands that add commands come to an end.
    list.m_OnRun = [&](char name) {
        log += name;
        const char act = "+++---/!!"[random() % 9];
        const char other = "abcdef"[random() % 6];
        if (budget-- > 0)
            list.Act(act, random() % 3 ? other : name);
    };
    for (int i = 0; i < 60; ++i)
        list.Act('+', "abcdef"[i % 6]), list.m_OnRun('a'), list.Act('!', '!');
    for (const char name : "abcdef")
        list.Act('/', name);
    return log;
}

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
template class Lathe::Core::TReturnCommand<CTarget, char>;
template class Lathe::Core::TArgReturnCommand<CTarget, int, int>;

TEST(EventProviderTest, RandomChangesMatchTheModel) {
    SCOPED_TRACE("seed " + std::to_string(GetSeed()));
    for (unsigned game = 0; game < 500; ++game) {
        const std::string log = Play<CLetters>(GetSeed() + game);
        ASSERT_EQ(log, Play<CModel>(GetSeed() + game)) << "game " << game;
        ASSERT_GT(log.size(), 120U) << "too few commands ran";
    }
}

TEST(EventProviderTest, CopiesAndSuspension) {
    CEventProvider event;
    int runs = 0;
    CActionCommand count([&] { ++runs; });
    event.AddCommand(count);
    CEventProvider(event).Notify(); // A copy starts without subscriptions.
    event.Suspend();
    event.Notify();
    event.Resume();
    EXPECT_EQ(runs, 0);
    event.Notify(); // Missed ones are not delivered.
    EXPECT_TRUE(runs == 1 && event.GetMissedNotifications() == 1);
}

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
