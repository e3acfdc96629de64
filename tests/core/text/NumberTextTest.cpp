// Numbers come back from their text unchanged, under any locale, and texts that are no numbers
// leave what a stream leaves.
#include "core/text/NumberText.h"
#include "core/Fixtures.h"

#include <bit>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <locale>

using namespace Lathe::Core;

namespace {

// The process under the habits of a language with decimal commas and grouped thousands.
class NumberTextTest : public testing::Test {
protected:
    struct CComma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    ~NumberTextTest() override { std::locale::global(m_Old); }
    std::locale m_Old = std::locale::global(std::locale(std::locale(), new CComma));
};

template <class T, class TBits>
void CheckComesBack(TBits bits) {
    const T value = std::bit_cast<T>(bits);
    T read = 7;
    if (!std::isfinite(value))
        return;
    EXPECT_TRUE(TextToNumber(NumberToText(value).c_str(), read));
    EXPECT_EQ(std::bit_cast<TBits>(read), bits) << value;
}

} // namespace

TEST_F(NumberTextTest, EveryFiniteValueComesBack) {
    SCOPED_TRACE("seed " + std::to_string(GetSeed()));
    std::mt19937_64 random(GetSeed());
    for (int i = 0; i < 5000; ++i) {
        const std::uint64_t bits = random();
        CheckComesBack<double>(bits);
        CheckComesBack<double>(bits & 0x800FFFFFFFFFFFFF); // Zeros and denormals.
        CheckComesBack<float>(static_cast<std::uint32_t>(bits));
        CheckComesBack<float>(static_cast<std::uint32_t>(bits & 0x807FFFFF));
    }
}

TEST_F(NumberTextTest, HasOneFormUnderAnyLocale) {
    EXPECT_EQ(NumberToText(1234567), "1234567");
    EXPECT_EQ(NumberToText(2.5), "2.5");
    EXPECT_EQ(NumberToText(0.1f), "0.10000000149");
    EXPECT_EQ(NumberToText(1e30), "1.0000000000000000199e+30");
}

TEST_F(NumberTextTest, LeavesWhatAStreamLeaves) {
    const struct {
        const char* m_Text;
        bool m_Parsed; // As a float, and what 7, 7 and true become.
        float m_Float;
        int m_Int;
        bool m_Bool;
    } cases[] = {{nullptr, false, 7, 7, true},      {" ", false, 7, 7, true},
                 {"inf", false, 0, 0, false},       {"-nan", false, 0, 0, false},
                 {"0", true, 0, 0, false},          {" 1tail", true, 1, 1, true},
                 {"\n1,5", true, 1, 1, true},       {"1.5", true, 1.5f, 1, true},
                 {"1e39", false, FLT_MAX, 1, true}, {"-99999999999", true, -1e11f, INT_MIN, true}};
    for (const auto& [text, parsed, asFloat, asInt, asBool] : cases) {
        SCOPED_TRACE(text ? text : "(null)");
        float single = 7;
        int number = 7;
        bool flag = true;
        EXPECT_EQ(TextToNumber(text, single), parsed);
        TextToNumber(text, number);
        TextToNumber(text, flag);
        EXPECT_TRUE(single == asFloat && number == asInt && flag == asBool)
            << single << ' ' << number << ' ' << flag;
    }
}
