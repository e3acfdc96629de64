// Proves what values look like as text and what is read back from text, that a host's locale
// changes neither, that no format, value or text runs into undefined behaviour, and that positions
// and values are inverse to each other.

#include "datamodel/Journal.h"
#include "datamodel/objects/text/EnumToText.h"
#include "datamodel/objects/text/LogPositionMapper.h"
#include "datamodel/objects/text/NumberPrinter.h"
#include "datamodel/objects/text/ParamDataToText.h"
#include "datamodel/objects/text/ParamTextEnumValueBuilderString.h"
#include "datamodel/objects/text/TextParser.h"
#include "support/CommaLocale.h"

#include <cmath>
#include <sstream>

namespace Lathe::DataModel::Objects {

namespace {

using enum EParamType;
using Numbers = std::initializer_list<double>;
using Words = std::initializer_list<const char*>;

// The texts of the values, each with a bar behind it; a clone says the same.
std::string ToText(const IParamValueToText& conversion, Numbers values) {
    const std::unique_ptr<IParamValueToText> clone(conversion.Clone());
    std::string all, again;
    for (const double value : values) {
        const std::unique_ptr<char[]> text(conversion.ToText(value)), copy(clone->ToText(value));
        all.append(text.get()) += '|';
        again.append(copy.get()) += '|';
    }
    EXPECT_EQ(all, again);
    return all;
}

using Pairs = std::initializer_list<std::pair<double, double>>;

// Values and the positions that they have; then positions and the values that they give.
void CheckMapper(const IParamPositionMapper& mapper, Pairs positions, Pairs values) {
    for (const auto& [value, position] : positions)
        EXPECT_DOUBLE_EQ(mapper.ValueToPosition(value), position) << value;
    for (const auto& [position, value] : values)
        EXPECT_DOUBLE_EQ(mapper.PositionToValue(position), value) << position;
}

// What is read, with bars; "nan" where nothing is.
std::string Read(const std::function<bool(const char*, double*)>& read, Words texts) {
    std::ostringstream all;
    for (const char* text : texts) {
        double value = NAN;
        const bool done = read(text, &value);
        EXPECT_NE(done, std::isnan(value)) << all.str();
        all << value << '|';
    }
    return all.str();
}
std::string Read(const IParamValueToText& conversion, Words texts) {
    return Read([&](auto text, auto value) { return conversion.FromText(text, value); }, texts);
}
std::string Read(EParamType type, Words texts) {
    return Read([&](auto text, auto value) { return ParseParamText(text, type, value); }, texts);
}

TEST(ParamType, RoundsAndSnapsWithoutClamping) {
    // In the range from -1 to 3, whose centre is 1.
    const auto constrain = [](EParamType type, Numbers values) {
        std::ostringstream all;
        for (const double value : values)
            all << ParamConstrain(value, -1, 3, type) << '|';
        return all.str();
    };
    EXPECT_EQ(constrain(Integer, {-0.5, 0.5, 0, 1.4, -2.5, 100.4, HUGE_VAL, NAN}),
              "-1|1|0|1|-3|100|inf|nan|");
    for (const EParamType type : {Boolean, Reserved})
        EXPECT_EQ(constrain(type, {-9, 1, 1.001, 9, NAN}), "-1|-1|3|3|-1|");
    EXPECT_EQ(constrain(Float, {-9, 0.3, 9}), "-9|0.3|9|");
    EXPECT_TRUE(GetParamType("boolean") == Boolean && GetParamType("enumeration") == Integer);
}

TEST(TextParser, TakesTheLongestNumberOfTheType) {
    const Words texts = {"12.5 dB", " \t-3e2x", ".5", "1,5", "0x10", "- 1", "", nullptr};
    const Words words = {"true", "yes", "false", "no", "Yes", "no "};
    for (const EParamType type : {Float, EParamType(-1), EParamType(4)})
        EXPECT_EQ(Read(type, texts), "12.5|-300|0.5|1|16|nan|nan|nan|");
    for (const EParamType type : {Integer, Boolean, Reserved})
        EXPECT_EQ(Read(type, texts), "12|-3|nan|1|0|nan|nan|nan|");
    EXPECT_EQ(Read(Integer, words), "nan|nan|nan|nan|nan|nan|");
    EXPECT_EQ(Read(Boolean, words), "1|1|0|0|nan|nan|");
    EXPECT_EQ(Read(Integer, {std::string(5000, '9').c_str()}), "9.22337e+18|");
}

TEST(ParamValueToText, ExpandsItsPattern) {
    struct {
        const char *m_Pattern, *m_Text;
    } const cases[] = {
        {"{{{value}}}", "{1.0}}|"},
        {"a}b{value}{value", "a}b1.0{value|"},
        {"{a{{b{{", "{a{b{|"},
        {"{unit}%n", "{unit}%n|"},
        {nullptr, "|"},
    };
    for (const auto& row : cases)
        EXPECT_EQ(ToText(CParamValueToText("%.1f", false, row.m_Pattern), {1.0}), row.m_Text);
}

TEST(ParamValueToText, ScalesRoundsAndCutsItsNumber) {
    CParamValueToText prefix("%g", true, "{value}");
    EXPECT_EQ(ToText(prefix, {22000, 5e6, 5e9, 1e12, 1e15, 0, -22000, HUGE_VAL}),
              "22k|5M|5G|1T|1e+15|0|-22000|inf|");
    EXPECT_EQ(ToText(prefix, {0.002, 0.001, 2.5e-6, 2.5e-7, 1e-9, 1e-12}),
              "0.002|1m|0.0025m|0.25\xB5|1p|1e-12|");
    CParamValueToText digits("%g", false, "{value}");
    digits.SetSignificantDigits(3);
    EXPECT_EQ(ToText(digits, {0.05, 0.012345, -123456, 0, 5e-324, -HUGE_VAL}),
              "0.05|0.012|-123000|0|4.94066e-324|-inf|");
    CParamValueToText zeros("%.2f", true, "{value}");
    zeros.SetDropTrailingZeros(true);
    zeros.SetSpaceBeforePrefix(true);
    EXPECT_EQ(ToText(zeros, {10.5, 100, 1500, 0}), "10.5 |100 |1.5 k|0 |");
}

TEST(NumberPrinter, TrustsNoFormat) {
    for (const char* format : {"%2147483647f", "%.1000f", "%s", "%n", "%d", "%*f", "%1.2.3f", "%Lf",
                               "%f%f", "%", "%5", "%1$f"})
        EXPECT_EQ(PrintNumber(format, 1.5), "1.50") << format;
    EXPECT_EQ(PrintNumber("a%%b%-+6.1fc", 1.5), "a%b+1.5  c");
    EXPECT_EQ(PrintNumber("%999.999f", 1e308).size(), 309u + 1 + 999);
}

TEST(ParamDataToText, NamesWhatTheDescriptionSays) {
    CParamDataToText conversion(
        "%.1f", false, "{name},{value},{unit},{min},{max},{default},{comment},{text_value},{x}");
    EXPECT_EQ(ToText(conversion, {2}), ",2.0,,0.0,0.0,0.0,,2.00,{x}|");
    CJournal journal(conversion.GetChangedEvent());
    conversion.SetInfo(CParamInfo(Integer, 1, 3, 2, "n", "u", "c", new CEnumToText("off;on", 1)));
    EXPECT_EQ(journal.Take(), "c");
    EXPECT_EQ(ToText(conversion, {2}), "n,2.0,u,1.0,3.0,2.0,c,on,{x}|");
    EXPECT_EQ(Read(conversion, {"on", "nothing"}), "2|nan|");
    conversion.SetInfo(CParamInfo(Boolean, 0, 1, 0, "", "", ""));
    EXPECT_EQ(Read(conversion, {"0.25", "yes"}), "0.25|1|") << "by its own conversion or its type";
}

TEST(EnumToText, NamesWholeNumbers) {
    EXPECT_EQ(ToText(CEnumToText("off;on", 1), {2, 1.4, 1.5}), "on|off|on|");
    EXPECT_EQ(ToText(CEnumToText("a;;b", 0), {0, 1, 2}), "a||b|");
    for (const double value : Numbers{-2, 2, 1e300, -HUGE_VAL, NAN})
        EXPECT_EQ(ToText(CEnumToText("a;", 0), {value}), "Out Of Bounds|") << value;
    EXPECT_EQ(ToText(CEnumToText(nullptr, 0), {0}), "Out Of Bounds|");
    EXPECT_EQ(Read(CEnumToText("off;on;off;", 1), {"off", "on", "", "7", "On", nullptr}),
              "1|2|4|7|nan|nan|");
}

TEST(ParamTextEnumValueBuilderString, ReplacesTheNamesOfItsParameter) {
    CParamInfo info(Integer, 2, 9, 2, nullptr, nullptr, nullptr);
    CParamTextEnumValueBuilderString builder(info);
    CJournal journal(builder);
    journal.Listen(info.GetChangedEvent(), 'c');
    builder.SetValue("two;three");
    EXPECT_EQ(journal.Take(), "cv");
    EXPECT_EQ(ToText(info.GetValueToText(), {3}), "three|");
    info.SetMin(-1.0); // -1 + 0.5 truncates to 0.
    builder.SetValue("a;b");
    EXPECT_EQ(ToText(info.GetValueToText(), {1}), "b|");
    info.SetValueToText(nullptr, true);
    EXPECT_EQ(ToText(info.GetValueToText(), {1}), "1|") << "the builder's one is not deleted";
}

TEST(PositionMappers, BringValuesOntoTheirTypeWithoutClamping) {
    CheckMapper(CLinearPositionMapper(Float, -40, 40), {{60, 1.25}}, {{0, -40}, {1, 40}});
    CheckMapper(CLinearPositionMapper(Float, 5, -3), {{3, 0.25}}, {{0.25, 3}, {-0.5, 9}});
    CheckMapper(CLinearPositionMapper(Integer, 0, 4), {{2.4, 0.5}}, {{0.4, 2}, {2, 8}});
    CheckMapper(CLinearPositionMapper(Boolean, 0, 1), {{0.6, 1}}, {{0.5, 0}, {0.51, 1}});
    CheckMapper(CLinearPositionMapper(Float, 3.3, 3.3), {{-1, 0}, {7, 0}}, {{0, 3.3}, {0.3, 3.3}});
    CheckMapper(CLogPositionMapper(Float, 20, 22000), {{20, 0}, {20 * std::sqrt(1100), 0.5}},
                {{0, 20}, {0.5, std::sqrt(20.0 * 22000.0)}, {1, 22000}});
    CheckMapper(CLogPositionMapper(Integer, 1, 16), {{2.3, 0.25}}, {{0.3, 2}});
    CheckMapper(CLogPositionMapper(Float, 3.3, 3.3), {{-1, 0}, {7, 0}}, {{0, 3.3}, {0.3, 3.3}});
    CheckMapper(CLogPositionMapper(Float, 0, 100), {{100, 1}, {99.9, 0}, {0, 0}},
                {{0.5, 0}, {1, 100}});
}

TEST(ParamText, IsTheSameInACommaLocale) {
    const CCommaLocale locale;
    if (!locale.IsSet())
        GTEST_SKIP() << "this machine has no locale with a decimal comma";
    const CParamValueToText conversion("%.2f", false, "{value} dB");
    EXPECT_EQ(ToText(conversion, {-1.5}), "-1.50 dB|");
    EXPECT_EQ(Read(conversion, {"12.5 dB", "1,5"}), "12.5|1|");
}

} // namespace

} // namespace Lathe::DataModel::Objects
