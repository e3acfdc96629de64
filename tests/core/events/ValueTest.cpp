// Proves that a value object keeps a copy, notifies once per real change and after the store, and
// what counts as a change for each type.
#include "core/events/Value.h"
#include "core/Fixtures.h"

#include <limits>

using namespace Lathe::Core;

namespace {

// What subscribers of a value with this start see while these are set.
template <class TSeen, class T>
std::vector<TSeen> Watch(T start, const std::vector<T>& sets) {
    TValue<T, CEventProvider> value(start);
    std::vector<TSeen> seen;
    CActionCommand watch([&] { seen.push_back(value.GetValue()); });
    value.GetValueChangedEvent().AddCommand(watch);
    for (const T set : sets)
        value.SetValue(set);
    return seen;
}

} // namespace

TEST(ValueTest, NumbersChangeByLessAndGreaterAndTextsByTheirLetters) {
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(
        (Watch<double, double>(1, {1, 2, NaN, 2, 0, -0.0, 5e-324, -1, Infinity, Infinity, NaN})),
        (std::vector<double>{2, 0, 5e-324, -1, Infinity}));
    const std::string same = "abc";
    EXPECT_EQ((Watch<std::string, const char*>("abc", {same.c_str(), "bc", nullptr, "", "b"})),
              (std::vector<std::string>{"bc", "", "b"}));
}

TEST(ValueTest, ObjectsAreClonedAndAlwaysChange) {
    int changes = 0;
    CActionCommand count([&] { ++changes; });
    CTracked source(1);
    {
        TValue<const CTracked&, CEventProvider> value(source);
        TValueFactory<const CTracked&, CEventProvider> factory(source);
        value.GetValueChangedEvent().AddCommand(count);
        factory.GetValueChangedEvent().AddCommand(count);
        source.m_Number = 2;
        EXPECT_EQ(value.GetValue().m_Number, 1);
        value.SetValue(source);
        value.SetValue(value.GetValue());
        factory.SetValue(source);
        EXPECT_EQ(value.GetValue().m_Number, 2);
        EXPECT_EQ(std::unique_ptr<CTracked>(factory.GetValue())->m_Number, 2);
        EXPECT_EQ(changes, 3);
    }
    EXPECT_EQ(CTracked::s_Alive, 1);
}
