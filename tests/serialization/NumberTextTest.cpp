// Numbers come back from their text unchanged, under any locale, and texts that are no numbers
// leave what a stream leaves.
#include "core/text/NumberText.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <locale>
#include <random>

namespace Lathe::Core::Tests {

namespace {

// The process under the habits of a language with decimal commas and grouped thousands, in C++
// and, where the machine has such a locale, in C.
class CCommaLocale {
public:
    CCommaLocale() : m_Old(std::locale::global(std::locale(std::locale(), new CComma))) {
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8"})
            if (std::setlocale(LC_NUMERIC, name))
                break;
    }
    ~CCommaLocale() {
        std::locale::global(m_Old);
        std::setlocale(LC_NUMERIC, "C");
    }

private:
    class CComma : public std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
        std::string do_truename() const override { return "wahr"; }
    };

    std::locale m_Old;
};

template <class T, class TBits>
void CheckRandomRoundTrips(std::uint64_t seed) {
    std::mt19937_64 random(seed);
    for (int i = 0; i < 5000; ++i) {
        const T value = std::bit_cast<T>(static_cast<TBits>(random()));
        if (!std::isfinite(value))
            continue;
        T read = 0;
        EXPECT_TRUE(TextToNumber(NumberToText(value).c_str(), read));
        EXPECT_EQ(std::bit_cast<TBits>(read), std::bit_cast<TBits>(value)) << value;
    }
}

} // namespace

TEST(NumberText, EveryFiniteValueComesBack) {
    const char* given = std::getenv("CAIRN_TEST_SEED");
    const std::uint64_t seed = given ? std::strtoull(given, nullptr, 10) : std::random_device{}();
    SCOPED_TRACE("CAIRN_TEST_SEED=" + std::to_string(seed));
    const CCommaLocale comma;
    CheckRandomRoundTrips<double, std::uint64_t>(seed);
    CheckRandomRoundTrips<float, std::uint32_t>(seed);
    for (const double value : {0.0, -0.0, 0.1, 1.0 / 3, DBL_MAX, -DBL_MAX, DBL_MIN, 4.9e-324}) {
        double read = 7;
        EXPECT_TRUE(TextToNumber(NumberToText(value).c_str(), read));
        EXPECT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(value));
    }
    for (const int value : {0, -1, 1234567, INT_MAX, INT_MIN}) {
        int read = 7;
        EXPECT_TRUE(TextToNumber(NumberToText(value).c_str(), read));
        EXPECT_EQ(read, value);
    }
}

TEST(NumberText, HasOneFormUnderAnyLocale) {
    const CCommaLocale comma;
    EXPECT_EQ(NumberToText(1234567), "1234567");
    EXPECT_EQ(NumberToText(true), "1");
    EXPECT_EQ(NumberToText(2.5), "2.5");
    EXPECT_EQ(NumberToText(0.1), "0.10000000000000000555");
    EXPECT_EQ(NumberToText(0.1f), "0.10000000149");
    EXPECT_EQ(NumberToText(1e30), "1.0000000000000000199e+30");
}

TEST(NumberText, LeavesWhatAStreamLeaves) {
    const struct {
        const char* m_Text;
        bool m_Parsed;
        double m_Double;
        int m_Int;
        bool m_Bool;
    } cases[] = {
        // The values start as 7, 7 and true.
        {"", false, 7, 7, true},      {"  ", false, 7, 7, true},   {nullptr, false, 7, 7, true},
        {"abc", false, 0, 0, false},  {"inf", false, 0, 0, false}, {"-nan", false, 0, 0, false},
        {" 1tail", true, 1, 1, true}, {"0", true, 0, 0, false},    {"\n 1,5", true, 1, 1, true}};
    for (const auto& [text, parsed, asDouble, asInt, asBool] : cases) {
        SCOPED_TRACE(text ? text : "(null)");
        double doubleValue = 7;
        int intValue = 7;
        bool boolValue = true;
        EXPECT_EQ(TextToNumber(text, doubleValue), parsed);
        EXPECT_EQ(TextToNumber(text, intValue), parsed);
        EXPECT_EQ(TextToNumber(text, boolValue), parsed);
        EXPECT_EQ(doubleValue, asDouble);
        EXPECT_EQ(intValue, asInt);
        EXPECT_EQ(boolValue, asBool);
    }
    double doubleValue = 0;
    float floatValue = 0;
    int intValue = 0;
    bool boolValue = false;
    EXPECT_FALSE(TextToNumber("-1e999", doubleValue));
    EXPECT_EQ(doubleValue, -DBL_MAX);
    EXPECT_FALSE(TextToNumber("1e39", floatValue));
    EXPECT_EQ(floatValue, FLT_MAX);
    EXPECT_FALSE(TextToNumber("-99999999999", intValue));
    EXPECT_EQ(intValue, INT_MIN);
    EXPECT_FALSE(TextToNumber("2", boolValue));
    EXPECT_TRUE(boolValue);
}

} // namespace Lathe::Core::Tests
