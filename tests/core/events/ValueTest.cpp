// Proves that a value object keeps a copy, notifies once per real change and after the store, and
// what counts as a change for each type.
#include "core/events/Value.h"
#include "core/Tracked.h"
#include "core/events/ActionCommand.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>

using namespace Lathe::Core;

namespace {

template <class TSubject>
struct TCounted : TSubject {
    template <class T>
    explicit TCounted(T&& start) : TSubject(start) {
        this->GetValueChangedEvent().AddCommand(m_OnChanged);
    }
    int m_Changes = 0;
    CActionCommand m_OnChanged{[this] { ++m_Changes; }};
};

} // namespace

TEST(ValueTest, NumbersChangeByLessAndGreater) {
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
    TCounted<TValue<double, CEventProvider>> value(1.0);
    const struct {
        double m_Set, m_Stored;
        int m_Changes;
    } steps[] = {{1.0, 1.0, 0},           {2.0, 2.0, 1},          {NaN, 2.0, 1},
                 {0.0, 0.0, 2},           {-0.0, 0.0, 2},         {5e-324, 5e-324, 3},
                 {Infinity, Infinity, 4}, {Infinity, Infinity, 4}};
    for (const auto& [set, stored, changes] : steps) {
        value.SetValue(set);
        EXPECT_EQ(value.GetValue(), stored);
        EXPECT_EQ(value.m_Changes, changes) << set;
    }
}

TEST(ValueTest, SubscribersSeeTheNewValueAndMaySetAnother) {
    TValue<int, CEventProvider> value(1);
    std::string log;
    CActionCommand limit([&] { value.SetValue(value.GetValue() > 3 ? 3 : value.GetValue()); });
    CActionCommand after([&] { log += std::to_string(value.GetValue()); });
    value.GetValueChangedEvent().AddCommand(limit);
    value.GetValueChangedEvent().AddCommand(after);
    for (const int number : {2, 9, 3})
        value.SetValue(number);
    EXPECT_EQ(log, "233") << "the nested change is told within the outer one";
}

TEST(ValueTest, TextsChangeByTheirLetters) {
    TCounted<TValue<const char*, CEventProvider>> value("abc");
    const std::string same = "abc";
    value.SetValue(same.c_str());
    EXPECT_EQ(value.m_Changes, 0);
    value.SetValue(value.GetValue() + 1);
    EXPECT_STREQ(value.GetValue(), "bc");
    value.SetValue(nullptr);
    value.SetValue("");
    EXPECT_STREQ(value.GetValue(), "");
    EXPECT_EQ(value.m_Changes, 2);
}

TEST(ValueTest, ObjectsAreClonedAndAlwaysChange) {
    std::unique_ptr<CTracked> fromFactory;
    {
        CTracked source(1);
        TCounted<TValue<const CTracked&, CEventProvider>> value(source);
        TCounted<TValueFactory<const CTracked&, CEventProvider>> factory(source);
        source.m_Number = 2;
        EXPECT_EQ(value.GetValue().m_Number, 1);
        value.SetValue(source);
        value.SetValue(value.GetValue());
        EXPECT_EQ(value.GetValue().m_Number, 2);
        EXPECT_EQ(value.m_Changes, 2);
        factory.SetValue(source);
        EXPECT_EQ(factory.m_Changes, 1);
        fromFactory.reset(factory.GetValue());
        EXPECT_EQ(CTracked::s_Alive, 4);
    }
    EXPECT_EQ(fromFactory->m_Number, 2) << "the copy outlives its factory";
    EXPECT_EQ(CTracked::s_Alive, 1);
}
