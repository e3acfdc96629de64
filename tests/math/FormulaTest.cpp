// Proves what formulas mean, which texts are none, that a name which nobody knows can be set again
// and again, and that no depth or length of a text harms. What a formula gives is held against the
// same expression in C++; the address sanitizer watches the hooks.
#include "math/FormulaBuilders.h"

#include "SkinEngine/Formula/FormulaTree.h"
#include "math/FunctionChild.h"
#include "math/ParametrizedFunction.h"
#include "math/PlainFunction.h"
#include "serialization/MemDataObject.h"
#include "serialization/TypedObject.h"
#include "support/CommaLocale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace Lathe::Math {

namespace {

using std::abs, std::cos, std::cosh, std::exp, std::log, std::max, std::min;
using std::pow, std::sin, std::sinh, std::sqrt, std::tan, std::tanh;

double Evaluate(const IConstant& function, double, double) {
    return function.Evaluate();
}
double Evaluate(const IFunction& function, double x, double) {
    return function.Evaluate(x);
}
double Evaluate(const IBinaryFunction& function, double x, double y) {
    return function.Evaluate(x, y);
}

// What the text gives as each kind, with the variables x and y.
struct SFormula {
    explicit SFormula(const char* text)
        : m_Constant(BuildConstant(text)),
          m_Function(BuildFunction(text, "x")),
          m_BinaryFunction(BuildBinaryFunction(text, "x", "y")),
          m_LiveConstant(BuildParametrizedConstant(text)),
          m_LiveFunction(BuildParametrizedFunction(text, "x")),
          m_LiveBinaryFunction(BuildParametrizedBinaryFunction(text, "x", "y")) {}

    // A letter for each kind in the order above that the text is a formula of.
    std::string GetKinds() const {
        return std::string(m_Constant ? "c" : "") + (m_Function ? "f" : "") +
               (m_BinaryFunction ? "b" : "") + (m_LiveConstant ? "C" : "") +
               (m_LiveFunction ? "F" : "") + (m_LiveBinaryFunction ? "B" : "");
    }

    template <class TCheck>
    void ForEachLive(const TCheck& check) const {
        check(*m_LiveConstant);
        check(*m_LiveFunction);
        check(*m_LiveBinaryFunction);
    }

    std::unique_ptr<IConstant> m_Constant;
    std::unique_ptr<IFunction> m_Function;
    std::unique_ptr<IBinaryFunction> m_BinaryFunction;
    std::unique_ptr<TIParametrizedFunction<IConstant>> m_LiveConstant;
    std::unique_ptr<TIParametrizedFunction<IFunction>> m_LiveFunction;
    std::unique_ptr<TIParametrizedFunction<IBinaryFunction>> m_LiveBinaryFunction;
};

template <class I>
void CheckComesBack(const I& function) {
    Serialization::CMemDataObject stored;
    ASSERT_TRUE(stored.WriteObject("function", Serialization::CTypeSerializer(&function)));
    Core::TOwnershipWithClone<const I> read;
    TFunctionReader<I> reader(read);
    ASSERT_TRUE(stored.ReadObject("function", reader) && read);
    for (const double x : {-1.5, 0.25}) {
        const double value = Evaluate(function, x, 2.0);
        EXPECT_TRUE(std::isnan(value) || Evaluate(*read, x, 2.0) == value);
    }
}

void CheckAllComeBack(const SFormula& formula) {
    formula.ForEachLive([](auto& live) { CheckComesBack(*live.GetFunction()); });
}

struct SValue {
    const char* m_Text;
    double m_Value;
};

void CheckValues(const std::vector<SValue>& rows) {
    for (const SValue& row : rows) {
        SCOPED_TRACE(row.m_Text);
        const SFormula formula(row.m_Text);
        ASSERT_EQ(formula.GetKinds(), "cfbCFB");
        EXPECT_EQ(formula.m_Constant->Evaluate(), row.m_Value);
        EXPECT_EQ(formula.m_Function->Evaluate(7.0), row.m_Value);
        EXPECT_EQ(formula.m_BinaryFunction->Evaluate(7.0, 8.0), row.m_Value);
        formula.ForEachLive(
            [&row](auto& live) { EXPECT_EQ(Evaluate(*live.GetFunction(), 7, 8), row.m_Value); });
        CheckAllComeBack(formula);
    }
}

void CheckInvalid(const std::vector<std::string>& texts) {
    for (const std::string& text : texts)
        EXPECT_EQ(SFormula(text.c_str()).GetKinds(), "") << text.substr(0, 100);
}

std::string Repeat(const std::string& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

TEST(Formula, OperatorsBindByTheirPlace) {
    CheckValues({{"1 or 0 and 0", 1},
                 {"0 and 1 = 0", 0},
                 {"2 = 2 < 3", 0},
                 {"1 < 0 + 2", 1},
                 {"2 + 3 * 4", 14},
                 {"2 * 3 ^ 2", 18},
                 {"-2 ^ 2", 4},
                 {"2 ^ -3", 0.125},
                 {"2 * -3", -6},
                 {"1 - -1", 2},
                 {"not 1 + 1", 1},
                 {"-(-3)", 3},
                 {"(2 + 3) * 4", 20}});
    // Equal ones from the left.
    CheckValues({{"10 - 4 - 3", 3},
                 {"48 / 4 / 2", 6},
                 {"17 % 10 % 4", 3},
                 {"2 ^ 3 ^ 2", 64},
                 {"1 < 2 < 3", 1},
                 {"2 <> 2 <> 0", 0}});
}

TEST(Formula, EachOperatorHasItsSigns) {
    CheckValues({
        {"0||2", 1},    {"0 or 0", 0}, {"2&&3", 1},         {"2 and 0", 0}, {"3=3", 1},
        {"3 == 4", 0},  {"3!=4", 1},   {"3 <> 3", 0},       {"2 < 2", 0},   {"2 <= 2", 1},
        {"2 > 1", 1},   {"2 >= 3", 0}, {"7 + 2", 9},        {"7 - 2", 5},   {"7 * 2", 14},
        {"7 / 2", 3.5}, {"7 % 4", 3},  {"-7 % 2", -1},      {"7 ^ 2", 49},  {"!0", 1},
        {"not 3", 0},   {"-4", -4},    {"1 / 0", INFINITY},
    });
}

TEST(Formula, ReadsNumbersNamesAndBlanks) {
    const std::string huge = "1" + Repeat("0", 400);
    CheckValues({{"007", 7},
                 {".5", 0.5},
                 {"12.25", 12.25},
                 {huge.c_str(), INFINITY},
                 {"false + true + true", 2},
                 {"pi", 3.141592653589793},
                 {"\t1\n+\f2\r", 3},
                 {"1or 0", 1}});
    // What begins no token, or breaks off, is left out.
    CheckValues(
        {{"1 + @2", 3}, {"1 &+ 2", 3}, {"1 \xE9", 1}, {"\"1\"", 1}, {"1 #2", 1}, {"1 'a", 1}});
}

TEST(Formula, KnowsItsFunctions) {
    CheckValues({
        {"exp(0.5)", exp(0.5)},    {"log(0.5)", log(0.5)},   {"cosh(0.5)", cosh(0.5)},
        {"sinh(0.5)", sinh(0.5)},  {"tanh(0.5)", tanh(0.5)}, {"cos(0.5)", cos(0.5)},
        {"sin(0.5)", sin(0.5)},    {"tan(0.5)", tan(0.5)},   {"sqrt(0.5)", sqrt(0.5)},
        {"sqrt(-4)", 0},           {"floor(-0.5)", -1},      {"ceil(1.5)", 2},
        {"round(2.5)", 3},         {"round(-2.5)", -3},      {"abs(-1.5)", 1.5},
        {"min(1, 2)", 1},          {"max(1, 2)", 2},         {"max(min(3, 4), -5)", 3},
        {"min(1 or 0, 2 < 1)", 0},
    });
}

TEST(Formula, OtherTextsAreNone) {
    CheckInvalid({"", "  ", "()", "1 +", "* 2", "1 2", "5x", "1e3", "2.", "1 + 2.", "a b", "a .b",
                  "1, 2", "(1", "1)", ")1(", "f(x", "f(x,)", "f(,)", "2 !", "+ 1", "1 + + 2",
                  "x y(1)", "x = = 1",
                  // A sign takes no other sign.
                  "--x", "!!x", "-!x", "x ^ --x", "not not 1",
                  // No function has so many arguments, or so few.
                  "f()", "if(x, 1, 2)", "max(1, 2, 3)", "f(1, 2, 3, 4)", "pi(1) + f()",
                  // Literals of which no number can be made.
                  "'text'", "'\\n\\u00e9\\''", "#2010-01-01#", "1 + 'a'", "f('a')", "g(1, #x#)",
                  "'a\xFF'", "#\xFF#"});
    EXPECT_EQ(SFormula(nullptr).GetKinds(), "");
}

TEST(Formula, NodesHaveTheirTexts) {
    const AppEngine::CFormulaTree tree("-a.b", 0);
    const AppEngine::CFormulaNode param = tree.GetRoot()->GetChild(0);
    EXPECT_EQ(tree.GetRoot()->GetText(), "NEGATE");
    EXPECT_EQ(param.GetText(), "PARAM");
    EXPECT_EQ(param.GetChild(0).GetText(), "a.b");
}

// A name is the same number as variable and as parameter.
TEST(Formula, VariablesAndParametersGiveTheSame) {
    const struct {
        const char* m_Text;
        double (*m_Expected)(double x, double y);
    } rows[] = {
        {"x - y", [](double x, double y) { return x - y; }},
        {"x * x + y", [](double x, double y) { return x * x + y; }},
        {"-x ^ 2 / y", [](double x, double y) { return pow(-x, 2) / y; }},
        {"min(max(y * x + 0.5, 0), 1)",
         [](double x, double y) { return min(max(y * x + 0.5, 0.0), 1.0); }},
        {"x < y and not (y = 4)",
         [](double x, double y) { return x < y && !(y == 4) ? 1.0 : 0.0; }},
        {"abs(sin(x)) * cos(pi * y)",
         [](double x, double y) { return abs(sin(x)) * cos(M_PI * y); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.m_Text);
        const SFormula formula(row.m_Text);
        ASSERT_EQ(formula.GetKinds(), "bCFB");
        CheckAllComeBack(formula);
        for (const double x : {-2.0, 0.0, 3.5}) {
            for (const double y : {4.0, 0.5}) {
                const double expected = row.m_Expected(x, y);
                EXPECT_EQ(formula.m_BinaryFunction->Evaluate(x, y), expected);
                formula.ForEachLive([&](auto& live) {
                    live.SetParam("x", x);
                    live.SetParam("y", y);
                    EXPECT_EQ(Evaluate(*live.GetFunction(), x, y), expected);
                });
            }
        }
    }
}

TEST(Formula, KnowsItsVariables) {
    const std::unique_ptr<IFunction> pi(BuildFunction("pi", "pi"));
    EXPECT_EQ(pi->Evaluate(5), M_PI) << "goes before a variable";
    const std::unique_ptr<IBinaryFunction> same(BuildBinaryFunction("v", "v", "v"));
    EXPECT_EQ(same->Evaluate(5, 6), 5) << "x goes before y";
    const std::unique_ptr<IFunction> dotted(BuildFunction("dsp.input0 + 1", "dsp.input0"));
    EXPECT_EQ(dotted->Evaluate(5), 6);
    EXPECT_EQ(SFormula("x").GetKinds(), "fbCFB");
    EXPECT_EQ(SFormula("x(1)").GetKinds(), "CFB") << "a variable is no function";
    EXPECT_EQ(BuildFunction("x", nullptr), nullptr);
}

std::string Join(Containers::IConstValueIterator<const char*>* names) {
    const std::unique_ptr<Containers::IConstValueIterator<const char*>> owner(names);
    std::multiset<std::string> sorted;
    for (; !names->IsDone(); names->Next())
        sorted.insert(names->GetValue());
    std::string joined;
    for (const std::string& name : sorted)
        joined += (joined.empty() ? "" : " ") + name;
    return joined;
}

// The names of values, of curves and of surfaces.
template <class I>
std::string GetNames(const TIParametrizedFunction<I>& formula) {
    return Join(formula.GetParamNames()) + "|" + Join(formula.GetCurveParamNames()) + "|" +
           Join(formula.GetSurfaceParamNames());
}

TEST(Formula, TellsItsParameters) {
    const struct {
        const char* m_Text;
        const char* m_Names;
    } rows[] = {
        {"1 + pi", "||"},
        {"b + a * b", "a b||"},
        {"$a + a.b.c + _1 + a..", "$a _1 a.. a.b.c||"},
        {"android + and.x + nothing + truex + or1", "and.x android nothing or1 truex||"},
        {"AND + True", "AND True||"},
        {"f(a) + f(f(2))", "a|f|"},
        {"g(a, b) + g(1, h(2))", "a b|h|g"},
        {"max(a) + cos(a, b) + f + f(1) + f(1, 2)", "a b f|f max|cos f"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.m_Text);
        const SFormula formula(row.m_Text);
        ASSERT_TRUE(formula.GetKinds().ends_with("CFB"));
        formula.ForEachLive([&row](auto& live) { EXPECT_EQ(GetNames(live), row.m_Names); });
        CheckAllComeBack(formula);
    }
}

// The formula is "a + a + f(3) + f(4) * 10 + g(5, 7) * 100 + g(1, 1) * 0".
template <class I>
void CheckHooks(TIParametrizedFunction<I>& formula) {
    const auto expect = [&](double a, double f3, double f4, double g57) {
        EXPECT_EQ(Evaluate(*formula.GetFunction(), 0, 0), a + a + f3 + f4 * 10 + g57 * 100);
    };
    const auto& negate = TFunction<FunctionsLibrary::Negate>::GetInstance();
    const auto& larger = TBinaryFunction<FunctionsLibrary::Max>::GetInstance();
    expect(0, 3, 4, 6);
    EXPECT_TRUE(formula.SetParam("a", 2));
    {
        const std::unique_ptr<IFunction> square(BuildFunction("x * x", "x"));
        EXPECT_TRUE(formula.SetCurveParam("f", *square));
        const std::unique_ptr<IBinaryFunction> product(BuildBinaryFunction("x * y", "x", "y"));
        EXPECT_TRUE(formula.SetSurfaceParam("g", *product));
    }
    expect(2, 9, 16, 35);
    const std::unique_ptr<I> clone(formula.GetFunction()->Clone());
    for (const char* name : {"b", "", "A", static_cast<const char*>(nullptr)}) {
        EXPECT_FALSE(formula.SetParam(name, 50));
        EXPECT_FALSE(formula.SetCurveParam(name, negate));
        EXPECT_FALSE(formula.SetSurfaceParam(name, larger));
    }
    EXPECT_FALSE(formula.SetParam("f", 1)) << "f is no value";
    expect(2, 9, 16, 35);
    EXPECT_TRUE(formula.SetCurveParam("f", negate));
    EXPECT_TRUE(formula.SetSurfaceParam("g", larger));
    expect(2, -3, -4, 7);

    formula.SetFunction(clone->Clone());
    EXPECT_FALSE(formula.SetParam("a", 3)) << "the hooks went with their tree";
    EXPECT_EQ(GetNames(formula), "||");
    expect(2, 9, 16, 35); // A clone is on its own.
}

TEST(Formula, ParametersStayLive) {
    const SFormula formula("a + a + f(3) + f(4) * 10 + g(5, 7) * 100 + g(1, 1) * 0");
    ASSERT_EQ(formula.GetKinds(), "CFB");
    formula.ForEachLive([](auto& live) { CheckHooks(live); });
}

TEST(Formula, DepthIsBounded) {
    const struct {
        const char* m_Open;
        const char* m_Close;
        int m_Inner; // Levels besides those that are repeated.
    } shapes[] = {{"x+", "", 1}, {"(", ")", 0}, {"-(", ")", 1}, {"f(", ")", 1}, {"g(1,", ")", 1}};
    for (const auto& shape : shapes) {
        SCOPED_TRACE(shape.m_Open);
        const auto nest = [&shape](int depth) {
            const int count = depth - shape.m_Inner;
            return Repeat(shape.m_Open, count) + "x" + Repeat(shape.m_Close, count);
        };
        const SFormula deepest(nest(MaxFormulaNesting).c_str());
        ASSERT_TRUE(deepest.GetKinds().ends_with("CFB"));
        CheckAllComeBack(deepest);
        CheckInvalid({nest(MaxFormulaNesting + 1), nest(3000)});
    }
    CheckInvalid({Repeat("(", 10000), Repeat(")", 10000), Repeat("()", 1000),
                  Repeat("(1)(", 1000) + Repeat(")", 1000), Repeat("(+)", 1000),
                  Repeat("f(", 10000)});
    // Tried twice at each level, these would never end.
    for (const char* call : {"cos(", "f(", "min(1,", "g(1,"})
        CheckInvalid({Repeat(call, 200) + "'x'" + Repeat(")", 200)});
}

TEST(Formula, LengthIsBounded) {
    constexpr int length = AppEngine::MaxFormulaLength;
    EXPECT_EQ(SFormula(Repeat("1", length).c_str()).GetKinds(), "cfbCFB");
    EXPECT_EQ(SFormula(("a" + Repeat(" ", length - 1)).c_str()).GetKinds(), "CFB");
    CheckInvalid({Repeat("1", length + 1), Repeat("1 ", length / 2), Repeat("or ", 1000),
                  "'" + Repeat("\\'", length / 2 - 1), "#" + Repeat("1", length - 1)});
}

TEST(Formula, ReadsTheSameInACommaLocale) {
    const CCommaLocale locale;
    if (!locale.IsSet())
        GTEST_SKIP() << "this machine has no locale with a decimal comma";
    CheckValues({{"0.5", 0.5}, {"max(1.5,2.5)", 2.5}});
}

TEST(Formula, ThreadsBuildAtTheSameTime) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread] {
            for (int i = 0; i < 50; ++i) {
                const std::string text = std::to_string(i) + " * x + " + std::to_string(thread);
                const std::unique_ptr<IFunction> formula(BuildFunction(text.c_str(), "x"));
                ASSERT_TRUE(formula);
                EXPECT_EQ(formula->Evaluate(2), i * 2 + thread);
                EXPECT_EQ(BuildFunction((text + " )").c_str(), "x"), nullptr);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace

} // namespace Lathe::Math
