// Proves what values look like as text, what is read back from text, that a host's locale changes
// neither, and that no format, value or text runs into undefined behaviour.

#include "datamodel/EventCounter.h"
#include "datamodel/objects/text/EnumToText.h"
#include "datamodel/objects/text/ParamDataToText.h"
#include "datamodel/objects/text/ParamTextEnumValueBuilderString.h"
#include "datamodel/objects/text/TextParser.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>

namespace Lathe::DataModel::Objects {

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Untouched = -12345.5;

std::string Text(const IParamValueToText& conversion, double value) {
    const std::unique_ptr<char[]> text(conversion.ToText(value));
    return text.get();
}

// The clone of each conversion says the same as the original.
void CheckText(const IParamValueToText& conversion, double value, const std::string& expected) {
    const std::unique_ptr<IParamValueToText> clone(conversion.Clone());
    EXPECT_EQ(Text(conversion, value), expected) << value;
    EXPECT_EQ(Text(*clone, value), expected) << value << " by the clone";
}

// Untouched as expected value means that the text can't be read.
void CheckRead(const IParamValueToText& conversion, const char* text, double expected) {
    double value = Untouched;
    EXPECT_EQ(conversion.FromText(text, &value), expected != Untouched) << text;
    EXPECT_EQ(value, expected) << text;
}

TEST(ParamConstrain, RoundsAndSnapsWithoutClamping) {
    struct {
        double m_Value, m_Integer, m_Switch;
    } const cases[] = {
        // In the range from -1 to 3, whose centre is 1.
        {-0.5, -1.0, -1.0}, {0.5, 1.0, -1.0},   {-0.4, 0.0, -1.0},         {0.0, 0.0, -1.0},
        {1.0, 1.0, -1.0},   {1.001, 1.0, 3.0},  {2.5, 3.0, 3.0},           {-2.5, -3.0, -1.0},
        {100.4, 100, 3.0},  {-7.6, -8.0, -1.0}, {Infinity, Infinity, 3.0},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(ParamConstrain(row.m_Value, -1, 3, EParamType::Integer), row.m_Integer);
        EXPECT_EQ(ParamConstrain(row.m_Value, -1, 3, EParamType::Boolean), row.m_Switch);
        EXPECT_EQ(ParamConstrain(row.m_Value, -1, 3, EParamType::Reserved), row.m_Switch);
        EXPECT_EQ(ParamConstrain(row.m_Value, -1, 3, EParamType::Float), row.m_Value);
        EXPECT_EQ(ParamConstrain(row.m_Value, -1, 3, EParamType(17)), row.m_Value);
    }
    EXPECT_TRUE(std::isnan(ParamConstrain(NotANumber, -1, 3, EParamType::Integer)));
}

TEST(ParamType, IsFoundByItsKeyword) {
    EXPECT_EQ(GetParamType("boolean"), EParamType::Boolean);
    EXPECT_EQ(GetParamType("integer"), EParamType::Integer);
    EXPECT_EQ(GetParamType("enumeration"), EParamType::Integer);
    for (const char* word : {"Boolean", "float", "", static_cast<const char*>(nullptr)})
        EXPECT_EQ(GetParamType(word), EParamType::Float);
}

// What one text reads as, by type; Untouched where it can't be read.
struct SReadCase {
    const char* m_Text;
    double m_Float, m_Integer, m_Switch;
};

constexpr SReadCase ReadCases[] = {
    {"12.5 dB", 12.5, 12, 12},
    {"+6", 6, 6, 6},
    {" \t-3e2x", -300, -3, -3},
    {".5", 0.5, Untouched, Untouched},
    {"1,5", 1, 1, 1},
    {"0x10", 16, 0, 0},
    {"inf", Infinity, Untouched, Untouched},
    {"true", Untouched, Untouched, 1},
    {"yes", Untouched, Untouched, 1},
    {"false", Untouched, Untouched, 0},
    {"no", Untouched, Untouched, 0},
    {"True", Untouched, Untouched, Untouched},
    {"yes ", Untouched, Untouched, Untouched},
    {"", Untouched, Untouched, Untouched},
    {"- 1", Untouched, Untouched, Untouched},
    {"dB", Untouched, Untouched, Untouched},
    {nullptr, Untouched, Untouched, Untouched},
};

void CheckParse(const char* text, EParamType type, double expected) {
    double value = Untouched;
    EXPECT_EQ(ParseParamText(text, type, &value), expected != Untouched) << (text ? text : "null");
    EXPECT_EQ(value, expected) << (text ? text : "null");
}

TEST(TextParser, TakesTheLongestNumberOfTheType) {
    for (const SReadCase& row : ReadCases) {
        CheckParse(row.m_Text, EParamType::Float, row.m_Float);
        CheckParse(row.m_Text, EParamType(-1), row.m_Float);
        CheckParse(row.m_Text, EParamType::Integer, row.m_Integer);
        CheckParse(row.m_Text, EParamType::Boolean, row.m_Switch);
        CheckParse(row.m_Text, EParamType::Reserved, row.m_Switch);
    }
    double value = 0.0;
    EXPECT_TRUE(ParseParamText(std::string(5000, '9').c_str(), EParamType::Integer, &value));
    EXPECT_GT(value, 2e9);
}

TEST(ParamValueToText, ExpandsItsPattern) {
    struct {
        const char *m_Pattern, *m_Text;
    } const cases[] = {
        {"{value}", "1.0"},
        {"{{{value}}}", "{1.0}}"},
        {"{value} {nothing}", "1.0 {nothing}"},
        {"a}b", "a}b"},
        {"{value", "{value"},
        {"{value}{value", "1.0{value"},
        {"{a{value}", "{a{value}"},
        {"{{value}", "{value}"},
        {"{{{{", "{{"},
        {"{Value}{}", "{Value}{}"},
        {"{unit}{text_value}", "{unit}{text_value}"},
        {"%d {value}%n", "%d 1.0%n"},
        {"", ""},
        {nullptr, ""},
    };
    for (const auto& row : cases)
        CheckText(CParamValueToText("%.1f", false, row.m_Pattern), 1.0, row.m_Text);
}

struct SNumberCase {
    const char* m_Format;
    bool m_Prefix;
    int m_Digits;
    bool m_DropZeros, m_Space;
    double m_Value;
    std::string m_Text;
};

TEST(ParamValueToText, PrintsItsNumber) {
    const SNumberCase cases[] = {
        {"%+.1f", false, -1, false, false, 3.0, "+3.0"},
        {"%.1f", true, -1, false, false, 22000.0, "22.0k"},
        {"%.1f", true, -1, false, false, 0.0, "0.0"},
        {"%.1f", true, -1, false, false, -22000.0, "-22000.0"},
        {"%g", true, -1, false, false, 0.002, "0.002"},
        {"%.3f", true, -1, false, false, 0.001, "1.000m"},
        {"%g", true, -1, false, false, 2.5e-6, "0.0025m"},
        {"%g", true, -1, false, false, 2.5e-7, "0.25\xB5"},
        {"%.0f", true, -1, false, false, 1e-9, "1p"},
        {"%.0f", true, -1, false, false, 1e12, "1T"},
        {"%.0f", true, -1, false, false, 5e6, "5M"},
        {"%.0f", true, -1, false, false, 5e9, "5G"},
        {"%g", true, -1, false, false, 1e15, "1e+15"},
        {"%g", true, -1, false, false, 1e-12, "1e-12"},
        {"%g", true, -1, false, false, Infinity, "inf"},
        {"%.2f", false, -1, true, true, 10.5, "10.5 "},
        {"%.2f", false, -1, true, true, 100.0, "100 "},
        {"%.0f", false, -1, true, true, 100.0, "100 "},
        {"%.2f", true, -1, true, true, 1500.0, "1.5 k"},
        {"%.2f", false, -1, true, false, 0.0, "0"},
        {"%g", false, 3, false, false, 0.05, "0.05"},
        {"%g", false, 3, false, false, 0.012345, "0.012"},
        {"%g", false, 3, false, false, -123456.0, "-123000"},
        {"%g", false, 2, false, false, 0.0, "0"},
        {"%g", false, 0, false, false, 1.2345, "1.2345"},
        {"%.1f", true, 2, false, false, 22345.0, "22.0k"},
        {"%g", false, 3, false, false, 5e-324, "4.94066e-324"},
        {"%g", false, 3, false, false, -Infinity, "-inf"},
        {"%300.2f", false, -1, false, false, 1.0, std::string(296, ' ') + "1.00"},
        {"%.0f", false, -1, false, false, 1e300, PrintNumber("%.0f", 1e300)},
        {"", false, -1, true, false, 1.0, ""},
    };
    for (const SNumberCase& row : cases) {
        CParamValueToText conversion(row.m_Format, row.m_Prefix, "{value}");
        conversion.SetSignificantDigits(row.m_Digits);
        conversion.SetDropTrailingZeros(row.m_DropZeros);
        conversion.SetSpaceBeforePrefix(row.m_Space);
        CheckText(conversion, row.m_Value, row.m_Text);
    }
    EXPECT_EQ(PrintNumber("%.0f", 1e300).size(), 301u);
}

TEST(PrintNumber, TrustsNoFormat) {
    for (const char* format : {"%2147483647f", "%.1000f", "%s", "%n", "%d", "%*f", "%1.2.3f", "%Lf",
                               "%f%f", "%", "%5", "%1$f"})
        EXPECT_EQ(PrintNumber(format, 1.5), "1.50") << format;
    EXPECT_EQ(PrintNumber("a%%b%-+6.1fc", 1.5), "a%b+1.5  c");
    EXPECT_EQ(PrintNumber("none", 1.5), "none");
    EXPECT_EQ(PrintNumber("%999.999f", 1e308).size(), 309u + 1 + 999);
}

TEST(ParamValueToText, FiresOncePerRealChange) {
    CParamValueToText conversion("%.1f", false, "{value}");
    CEventCounter changed(conversion.GetChangedEvent());
    const auto check = [&](auto setter, auto present, auto other) {
        (conversion.*setter)(present);
        EXPECT_EQ(changed.Take(), 0);
        (conversion.*setter)(other);
        (conversion.*setter)(other);
        EXPECT_EQ(changed.Take(), 1);
    };
    check(&CParamValueToText::SetFormat, "%.1f", "%.2f");
    check(&CParamValueToText::SetPattern, "{value}", "{value}!");
    check(&CParamValueToText::SetMetricPrefix, false, true);
    check(&CParamValueToText::SetSignificantDigits, -1, 2);
    check(&CParamValueToText::SetDropTrailingZeros, false, true);
    check(&CParamValueToText::SetSpaceBeforePrefix, false, true);
    const std::unique_ptr<CParamValueToText> clone(conversion.Clone());
    clone->SetFormat("%g");
    EXPECT_EQ(changed.Take(), 0) << "a clone has listeners of its own";
}

TEST(ParamDataToText, NamesWhatTheDescriptionSays) {
    CParamDataToText conversion("%.1f", false,
                                "{name}|{value}|{unit}|{min}|{max}|{default}|{comment}|"
                                "{text_value}|{other}|{{unit}");
    CheckText(conversion, 2.0, "|2.0||0.0|0.0|0.0||2.00|{other}|{unit}");

    const CParamInfo info(EParamType::Integer, 1, 3, 2, "Mode", "st", "Left-Right or Mid-Side",
                          new CEnumToText("off;on;auto", 1));
    CEventCounter changed(conversion.GetChangedEvent());
    conversion.SetInfo(info);
    EXPECT_EQ(changed.Take(), 1);
    CheckText(conversion, 2.0, "Mode|2.0|st|1.0|3.0|2.0|Left-Right or Mid-Side|on|{other}|{unit}");
    CheckRead(conversion, "auto", 3.0);
    CheckRead(conversion, "2.7", 2.0);
    CheckRead(conversion, "nothing", Untouched);

    // The description's own conversion fails on a word, its type knows it.
    conversion.SetInfo(CParamInfo(EParamType::Boolean, 0, 1, 0, "", "", ""));
    CheckRead(conversion, "yes", 1.0);
    CheckRead(conversion, "0.25", 0.25);
}

TEST(EnumToText, NamesWholeNumbers) {
    const CEnumToText conversion("off;on", 1);
    struct {
        double m_Value;
        const char* m_Text;
    } const cases[] = {
        {2.0, "on"},
        {1.4, "off"},
        {1.5, "on"},
        {0.0, "Out Of Bounds"},
        {3.0, "Out Of Bounds"},
        {NotANumber, "Out Of Bounds"},
        {1e300, "Out Of Bounds"},
        {-Infinity, "Out Of Bounds"},
    };
    for (const auto& row : cases)
        CheckText(conversion, row.m_Value, row.m_Text);
    CheckRead(conversion, "on", 2.0);
    CheckRead(conversion, "7", 7.0);
    CheckRead(conversion, "On", Untouched);
    CheckRead(conversion, "", Untouched);
    CheckRead(conversion, nullptr, Untouched);
    CheckText(CEnumToText("a", std::numeric_limits<int>::min()), 1e300, "Out Of Bounds");
}

TEST(EnumToText, CountsEmptyNames) {
    struct {
        const char* m_Names;
        int m_Count;
    } const cases[] = {{"a;;b", 3}, {"a;", 2}, {";", 2}, {"a", 1}, {"", 0}, {nullptr, 0}};
    for (const auto& row : cases) {
        const CEnumToText conversion(row.m_Names, 0);
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(Text(conversion, i) != "Out Of Bounds", i < row.m_Count) << row.m_Names << i;
    }
    CheckRead(CEnumToText("x;y;x;", 0), "x", 0.0);
    CheckRead(CEnumToText("x;y;x;", 0), "", 3.0);
    CEnumToText replaced("a;b;c", 0);
    replaced.Set("d", 5);
    CheckText(replaced, 5, "d");
    CheckText(replaced, 6, "Out Of Bounds");
}

TEST(ParamTextEnumValueBuilderString, ReplacesTheNamesOfItsParameter) {
    CParamInfo info(EParamType::Integer, 2, 9, 2, nullptr, nullptr, nullptr);
    CParamTextEnumValueBuilderString builder(info);
    CEventCounter infoChanged(info.GetChangedEvent()), valueChanged(builder.GetValueChangedEvent());
    builder.SetValue("two;three");
    EXPECT_EQ(infoChanged.Take(), 1);
    EXPECT_EQ(valueChanged.Take(), 1);
    EXPECT_STREQ(builder.GetValue(), "two;three");
    EXPECT_EQ(Text(info.GetValueToText(), 3), "three");

    builder.SetValue("two;three");
    EXPECT_EQ(infoChanged.Take() + valueChanged.Take(), 0);

    info.SetMin(-1.0); // trunc(-1 + 0.5) is 0, which is the first value from now on.
    builder.SetValue("a;b");
    EXPECT_EQ(Text(info.GetValueToText(), 1), "b");
    info.SetValueToText(nullptr, true);
    EXPECT_EQ(Text(info.GetValueToText(), 1), "1") << "the builder's conversion is not deleted";
}

// A locale whose decimal point is a comma, taken from the machine or made for this test.
bool EnterCommaLocale() {
    const std::string folder = testing::TempDir() + "comma_locale";
    const std::string make = "mkdir -p " + folder + " && localedef -c -i de_DE -f UTF-8 " + folder +
                             "/de_DE.UTF-8 2>/dev/null >/dev/null";
    if (std::setlocale(LC_ALL, "de_DE.UTF-8"))
        return true;
    if (std::system(make.c_str()) != 0)
        return false;
    setenv("LOCPATH", folder.c_str(), 1);
    return std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
}

TEST(ParamText, IsTheSameInACommaLocale) {
    if (!EnterCommaLocale())
        GTEST_SKIP() << "this machine has no locale with a decimal comma";
    char point[8];
    std::snprintf(point, sizeof point, "%.1f", 0.5);
    EXPECT_STREQ(point, "0,5") << "the locale under test is in force";
    CheckText(CParamValueToText("%.2f", false, "{value} dB"), -1.5, "-1.50 dB");
    for (const SReadCase& row : ReadCases)
        CheckParse(row.m_Text, EParamType::Float, row.m_Float);
    EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "de_DE.UTF-8");
    std::setlocale(LC_ALL, "C");
}

} // namespace

} // namespace Lathe::DataModel::Objects
