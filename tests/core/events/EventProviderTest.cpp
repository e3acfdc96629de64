// Proves that a notification runs each subscribed command once, in the order of adding, whatever
// the commands do to the list meanwhile: remove and destroy themselves and each other, add,
// notify again.
#include "core/events/EventProvider.h"
#include "core/Seed.h"
#include "core/events/ActionCommand.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

using namespace Lathe::Core;

namespace {

// A provider of commands that are named by letters and tell m_OnRun when they run.
struct CLetters {
    ~CLetters() {
        for (auto& [name, command] : m_Commands)
            delete command;
    }
    void Add(char name) {
        ICommand*& command = m_Commands[name];
        if (!command) // Deleted by Destroy or the destructor.
            command = new CActionCommand([this, name] { m_OnRun(name); });
        m_Event.AddCommand(command);
    }
    void Remove(char name) { m_Event.RemoveCommand(m_Commands[name], false); }
    void RemoveAll(char name) { m_Event.RemoveAllCommands(m_Commands[name]); }
    void Destroy(char name) {
        RemoveAll(name);
        m_Event.RemoveCommand(m_Commands[name], true);
    }
    void Notify() { m_Event.Notify(); }

    CEventProvider m_Event;
    std::map<char, ICommand*> m_Commands;
    std::function<void(char)> m_OnRun;
};

// a, b and c are subscribed and log their letters; the action of a command runs once.
struct CLoggingLetters : CLetters {
    CLoggingLetters() {
        m_OnRun = [this](char name) {
            m_Log += name;
            if (const auto action = std::exchange(m_Actions[name], nullptr))
                action(*this);
        };
        for (const char name : {'a', 'b', 'c'})
            Add(name);
    }
    std::string Run() {
        m_Log.clear();
        Notify();
        return m_Log;
    }

    std::map<char, std::function<void(CLoggingLetters&)>> m_Actions;
    std::string m_Log;
};

// The same list as a model: entries are never erased, only marked, so that an index stays good.
struct CModel {
    void Add(char name) { m_Entries.push_back({name, true, false}); }
    void Remove(char name) { Kill(name, 1); }
    void RemoveAll(char name) { Kill(name, m_Entries.size()); }
    void Destroy(char name) { RemoveAll(name); }
    void Notify() {
        std::size_t next = FindAlive(0);
        m_Walks.push_back(&next);
        while (next < m_Entries.size()) {
            const std::size_t current = next;
            next = FindAlive(current + 1);
            if (std::exchange(m_Entries[current].m_Running, true))
                continue;
            m_OnRun(m_Entries[current].m_Name);
            m_Entries[current].m_Running = false;
        }
        m_Walks.pop_back();
    }

    std::function<void(char)> m_OnRun;

private:
    struct SEntry {
        char m_Name;
        bool m_Alive, m_Running;
    };

    // Past the end is for good: what is added once the last command runs waits for the next run.
    std::size_t FindAlive(std::size_t from) const {
        for (; from < m_Entries.size(); ++from) {
            if (m_Entries[from].m_Alive)
                return from;
        }
        return ~std::size_t{0};
    }
    void Kill(char name, std::size_t limit) {
        for (std::size_t i = 0; i < m_Entries.size() && limit > 0; ++i) {
            if (m_Entries[i].m_Name != name || !std::exchange(m_Entries[i].m_Alive, false))
                continue;
            --limit;
            for (std::size_t* next : m_Walks)
                *next = *next == i ? FindAlive(i) : *next;
        }
    }

    std::vector<SEntry> m_Entries;
    std::vector<std::size_t*> m_Walks;
};

// What a command does when it runs is drawn in the order of the runs: two lists that behave alike
// draw alike, and give the same log.
template <class TList>
std::string Play(unsigned seed) {
    TList list;
    std::mt19937 random(seed);
    std::string log;
    int depth = 0;
    int budget = 400; // Of actions, so that commands that add commands come to an end.
    const auto act = [&](char self) {
        const auto other = static_cast<char>('a' + random() % 6);
        const char target = random() % 3 ? other : self;
        const auto action = random() % 10;
        if (budget-- <= 0)
            return;
        if (action < 3)
            list.Add(target);
        else if (action < 5)
            list.Remove(target);
        else if (action == 5)
            list.RemoveAll(target);
        else if (action == 6)
            list.Destroy(target);
        else if (action < 9 && depth < 3)
            ++depth, list.Notify(), --depth;
    };
    list.m_OnRun = [&](char name) { log += name, act(name); };
    for (int i = 0; i < 60; ++i) {
        list.Add(static_cast<char>('a' + i % 6));
        act('a');
        list.Notify();
        log += '|';
    }
    return log;
}

} // namespace

TEST(EventProviderTest, CommandsThatChangeTheListInARun) {
    using L = CLoggingLetters;
    const struct {
        const char* m_Name;
        char m_Actor;
        std::function<void(L&)> m_Action;
        std::string m_Logs; // Of this run and the next one.
    } cases[] = {
        {"removes itself", 'b', [](L& l) { l.Remove('b'); }, "abc ac"},
        {"destroys itself", 'b', [](L& l) { l.Destroy('b'); }, "abc ac"},
        {"the last removes itself", 'c', [](L& l) { l.Remove('c'); }, "abc ab"},
        {"destroys the next", 'a', [](L& l) { l.Destroy('b'); }, "ac ac"},
        {"removes itself and the next", 'a', [](L& l) { l.Remove('a'), l.Remove('b'); }, "ac c"},
        {"removes all others", 'a', [](L& l) { l.Remove('c'), l.Remove('b'); }, "a a"},
        {"destroys the one before", 'b', [](L& l) { l.Destroy('a'); }, "abc bc"},
        {"moves itself to the end", 'a', [](L& l) { l.Remove('a'), l.Add('a'); }, "abca bca"},
        {"adds", 'a', [](L& l) { l.Add('d'); }, "abcd abcd"},
        {"the last adds", 'c', [](L& l) { l.Add('d'); }, "abc abcd"},
        {"notifies", 'a', [](L& l) { l.Notify(); }, "abcbc abc"},
        {"destroys itself, notifies", 'a', [](L& l) { l.Destroy('a'), l.Notify(); }, "abcbc bc"},
    };
    for (const auto& c : cases) {
        L letters;
        letters.m_Actions[c.m_Actor] = c.m_Action;
        const std::string first = letters.Run();
        EXPECT_EQ(first + ' ' + letters.Run(), c.m_Logs) << c.m_Name;
    }
}

TEST(EventProviderTest, NestedRunsThatRemoveWhatTheOuterOneStandsOn) {
    const char* const cases[][3] = {// The one destroyed by b in the run that a starts; the logs.
                                    {"a", "abcbc", "bc"},
                                    {"b", "abcc", "ac"},
                                    {"c", "abb", "ab"}};
    for (const auto& [victim, first, second] : cases) {
        CLoggingLetters letters;
        letters.m_Actions['a'] = [](CLoggingLetters& l) { l.Notify(); };
        letters.m_Actions['b'] = [victim = victim](CLoggingLetters& l) { l.Destroy(*victim); };
        EXPECT_EQ(letters.Run(), first) << victim;
        EXPECT_EQ(letters.Run(), second) << victim;
    }
}

TEST(EventProviderTest, RandomChangesMatchTheModel) {
    SCOPED_TRACE("seed " + std::to_string(GetSeed()));
    for (unsigned game = 0; game < 500; ++game) {
        const std::string log = Play<CLetters>(GetSeed() + game);
        ASSERT_EQ(log, Play<CModel>(GetSeed() + game)) << "game " << game;
        ASSERT_GT(log.size(), 120U) << "too few commands ran";
    }
}

TEST(EventProviderTest, RemovalBetweenRuns) {
    CLoggingLetters letters;
    letters.Add('a');
    EXPECT_EQ(letters.Run(), "abca") << "twice added runs twice";
    letters.Remove('a');
    EXPECT_EQ(letters.Run(), "bca") << "the first entry goes";
    ICommand* null = nullptr;
    letters.m_Event.RemoveCommand(null, true);
    letters.RemoveAll('b');
    EXPECT_NE(letters.m_Commands['b'], nullptr) << "not destroyed";
    letters.Destroy('c');
    EXPECT_EQ(letters.m_Commands['c'], nullptr);
    EXPECT_EQ(letters.Run(), "a");
    letters.m_Log.clear();
    CEventProvider(letters.m_Event).Notify();
    EXPECT_EQ(letters.m_Log, "") << "a copy starts without subscriptions";
}

TEST(EventProviderTest, WhileSuspendedItOnlyCounts) {
    CLoggingLetters letters;
    letters.m_Event.Suspend();
    EXPECT_EQ(letters.Run() + letters.Run(), "");
    letters.m_Event.Resume();
    EXPECT_EQ(letters.Run(), "abc") << "missed ones are not delivered";
    EXPECT_EQ(letters.m_Event.GetMissedNotifications(), 2);
}
