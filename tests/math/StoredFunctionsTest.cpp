// Proves that every class id makes the function that it stands for, that trees survive a write and
// a read, and that incomplete or damaged streams leave valid functions behind. Plain functions are
// reached only by their ids, so that a lost registration shows.

#include "core/runtime/ObjectsFactory.h"
#include "math/Constant.h"
#include "math/FunctionComposition.h"
#include "math/FunctionProxy.h"
#include "math/FunctionsCombination.h"
#include "math/FunctionsComposition.h"
#include "math/FunctionsOperation.h"
#include "serialization/MemDataObject.h"
#include "serialization/TypedObject.h"
#include "serialization/XmlDataObject.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

namespace Lathe::Math {

namespace {

using namespace Serialization;
using Runtime::CreateObject;

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

struct SCase {
    const char* m_ClassId;
    std::vector<double> m_Expected;
};

// No two plain functions agree at both of these.
constexpr double Points[] = {-2.5, 0.5};

const SCase FunctionCases[] = {
    {"{83A9F6B1-2360-44f2-9EA2-C0A75A47A554}", {-2.5, 0.5}},
    {"{69196412-EAD8-45aa-B0F6-BD128B2E5E8E}", {2.5, -0.5}},
    {"{F31A0DDB-1670-420a-AA0B-4AED41271DBC}", {6.25, 0.25}},
    {"{9BA5267D-D300-4315-8C25-BDF46423F139}", {0.0, std::sqrt(0.5)}},
    {"{40211AEA-B310-4254-BE94-B7E5B99CE707}", {1 / std::exp(2.5), std::sqrt(std::exp(1))}},
    {"{7367BBAB-A156-48b9-A512-4F1912C56839}", {NaN, -std::log(2)}},
    {"{FB1F81BF-F8E7-40ba-8EBE-403988A2E994}", {std::pow(2, -2.5) - 1, std::sqrt(2) - 1}},
    {"{94E073D9-BACD-49be-B08C-A70980F5E84E}", {NaN, std::log2(1.5)}},
    {"{8D0E0F88-5C79-4f48-AD24-1C6BE1A8904B}",
     {(std::pow(11, -2.5) - 1) / 10, (std::sqrt(11) - 1) / 10}},
    {"{10DF14BD-357A-4458-905B-369AD2FD8B21}", {NaN, std::log2(6) / std::log2(11)}},
    {"{47C095AC-4502-4b60-97D3-B3D3F3A7A87A}",
     {(std::pow(101, -2.5) - 1) / 100, (std::sqrt(101) - 1) / 100}},
    {"{716AB1B3-FEA8-4dec-B3EA-99B1CCDF852D}", {NaN, std::log2(51) / std::log2(101)}},
    {"{F9CA1474-22AE-400b-AFC8-D9A077738A81}",
     {(std::pow(1001, -2.5) - 1) / 1000, (std::sqrt(1001) - 1) / 1000}},
    {"{7F4CF089-3DF2-40e4-83F3-736603B40160}", {NaN, std::log2(501) / std::log2(1001)}},
    {"{9C5BC273-DBD2-4900-B2C7-BAA8A4284487}", {NaN, -20 / std::log2(10)}},
    {"{18C4A2D7-BD79-486a-B12E-B21F32FBBF0F}", {std::pow(10, -0.125), std::pow(10, 0.025)}},
    {"{F6D3F1CB-9FC7-414e-A0EF-A5D60928AC52}", {0.0, 0.0}},
    {"{8D84EA0E-1D78-4169-96A2-A6C37A8ACD46}", {-0.80114361554693371, 0.87758256189037272}},
    {"{50F1B4E0-13CD-42b1-AD49-4D63F0CF2432}", {-0.59847214410395649, 0.47942553860420300}},
    {"{4E0F4888-B561-4e5a-9563-315B667D1E18}", {0.74702229723866028, 0.54630248984379051}},
    {"{83C7C189-D7BB-4b92-899F-892D82545E44}", {6.1322894796636858, 1.1276259652063808}},
    {"{07429AE8-D018-4df8-B2F3-C9534773818F}", {-6.0502044810397880, 0.52109530549374736}},
    {"{37350F24-0D6A-43ac-BAF2-EC78838DA237}", {-0.98661429815143029, 0.46211715726000976}},
    {"{D40F8690-718C-4618-8C0F-0557C0DE4093}", {-3.0, 0.0}},
    {"{BC7532AE-67AC-4498-9173-B49FBADBBCD8}", {-2.0, 1.0}},
    {"{D5FB4F0A-614D-422e-877F-87FB9894ADCB}", {-3.0, 1.0}},
    {"{7D162F87-5903-4052-9DE6-1A40211A5812}", {2.5, 0.5}},
    // Fresh composites, with their default children.
    {"{72E2E475-5248-41cb-BBE2-9E1F1E4BAF30}", {0.0, 0.0}},
    {"{709DCE8B-8C2B-44c4-AF00-EF02D7F53121}", {-2.5, 0.5}},
    {"{FA439331-DF20-4e00-8922-1FEEE83F9B39}", {-2.5, 0.5}},
    {"{C6B18AB7-10C4-46c3-975E-91255060ECA9}", {-2.5, 0.5}},
    {"{B8280134-87FF-44ae-809E-1B645160B214}", {0.0, 0.0}},
    {"{F95377FF-6828-4a2d-8CB9-2A63C47EA65D}", {0.0, 0.0}},
    {"{3D5E106B-C306-476c-8817-24E755168A5C}", {0.0, 0.0}},
    {"{41B8F3B2-540C-4c85-B874-FFA435C71129}", {0.0, 0.0}},
};

constexpr double BinaryPoints[][2] = {{8.9, 3.9}, {2.0, 2.0}, {-3.0, 0.0}};

const SCase BinaryFunctionCases[] = {
    {"{9038848C-7E52-4f6e-AE4A-ED90434DA85A}", {6.4, 2.0, -1.5}},
    {"{B48E24EF-CB0D-4bc6-B55E-370474A89CE7}", {8.9, 2.0, 0.0}},
    {"{95C6E20A-3D3C-4087-AE9E-33900A0BE55C}", {3.9, 2.0, -3.0}},
    {"{A5E6BA89-DBC5-4659-BCAB-6CAD11C0FDB3}", {12.8, 4.0, -3.0}},
    {"{B32E9916-D75D-4a9f-B240-C07B49A87E16}", {5.0, 0.0, -3.0}},
    {"{6CD1764A-CCA1-4872-B522-E5D286388A08}", {34.71, 4.0, 0.0}},
    {"{F9BD87B6-6B43-4678-BF35-84EB34DC47C2}", {std::exp2(3.9 * std::log2(8.9)), 4.0, 1.0}},
    {"{B5669294-5F80-4c67-B405-5D4B61363532}", {89.0 / 39.0, 1.0, -Infinity}},
    {"{5300A115-1DD0-4694-B21A-6D6E1232AF8A}", {std::sqrt(94.42), std::sqrt(8), 3.0}},
    {"{9704DD1D-629D-45ea-AB62-D54657D47EC9}", {5.0, 0.0, 3.0}},
    {"{63B8D979-D152-438a-87B6-B48231AA2B6E}", {0.0, 1.0, 0.0}},
    {"{BA4B3571-18B4-41af-90BE-C43889CFB186}", {1.0, 0.0, 1.0}},
    {"{A8DC6D2E-36B4-4c13-859A-A79594E40ABA}", {0.0, 0.0, 1.0}},
    {"{AEE0F237-8EEC-43fc-B440-EFA3DC05AA2E}", {0.0, 1.0, 1.0}},
    {"{7C4EE5B2-03D0-4d5c-A040-35E565535C0A}", {1.0, 0.0, 0.0}},
    {"{1840E00F-B2A7-46e7-B48B-79ECC2E61AEA}", {1.0, 1.0, 0.0}},
    {"{CB069C1A-0CF5-46e2-B43F-E0DDDCDC739F}", {1.0, 1.0, 0.0}},
    {"{31547569-62DE-4f2d-817B-E272ACD7E188}", {1.0, 1.0, 1.0}},
    {"{531FD5C1-F795-41af-8E20-BB3B4C1DAEA4}", {2.0, 0.0, 0.0}},
    {"{665E9CCB-3130-40d1-A010-CF45501EF826}", {8.9, 2.0, -3.0}},
    {"{5B8476AC-CC3B-4cd5-9F3B-3AB71CE7E2D0}", {3.9, 2.0, 0.0}},
    {"{D21815E0-885C-4996-B493-90E08E953055}", {0.0, 0.0, 0.0}},
    {"{3F409A8F-20F5-4531-80DA-99441215C125}", {6.4, 2.0, -1.5}},
    {"{A8FBFEF4-0FFE-41a6-83AC-D8B94B84AABF}", {6.4, 2.0, -1.5}},
    {"{D9BEEC6F-C530-46c7-A19C-FF009E5E2C26}", {6.4, 2.0, -1.5}},
};

const SCase ConstantCases[] = {
    {"{8794ACBA-1CC8-4ab8-902F-3A2C352E66CE}", {0.0}},
    {"{83F37E7C-0ABF-4083-9F35-DD6310CC0951}", {0.0}},
    {"{5145420A-1DCF-449e-8AC4-0006CF96D0F2}", {0.0}},
};

std::vector<double> Sample(const IFunction& function) {
    std::vector<double> values;
    for (const double x : Points)
        values.push_back(function.Evaluate(x));
    return values;
}
std::vector<double> Sample(const IBinaryFunction& function) {
    std::vector<double> values;
    for (const auto& [x, y] : BinaryPoints)
        values.push_back(function.Evaluate(x, y));
    return values;
}
std::vector<double> Sample(const IConstant& constant) {
    return {constant.Evaluate()};
}

// Equal within the tolerance relative to the greater of 1 and the value, or both NaN.
bool IsNear(const std::vector<double>& left, const std::vector<double>& right, double tolerance) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [tolerance](double a, double b) {
                          return a == b || (std::isnan(a) && std::isnan(b)) ||
                                 std::fabs(a - b) <= tolerance * std::fmax(1.0, std::fabs(b));
                      });
}

template <class I>
void CheckRead(const IReadDataStream& input, const I& original) {
    Core::TOwnership<I> read;
    TRuntimeDeSerializer<I> reader(read);
    ASSERT_TRUE(input.ReadObject("function", reader));
    ASSERT_TRUE(read);
    EXPECT_STREQ(read->GetClassId(), original.GetClassId());
    EXPECT_TRUE(IsNear(Sample(*read), Sample(original), 0.0));
}

// The function survives memory, the three forms of XML, and cloning.
template <class I>
void CheckSurvives(const I& original) {
    SCOPED_TRACE(original.GetClassId());
    const CTypeSerializer writer(&original);
    CMemDataObject memory;
    ASSERT_TRUE(memory.WriteObject("function", writer));
    CheckRead(memory, original);
    for (const int format : {XmlAttributes, XmlElements, XmlTyped}) {
        SCOPED_TRACE(format);
        CXmlDataObject written("Functions", format), parsed("Functions", format);
        ASSERT_TRUE(written.WriteObject("function", writer));
        char* text = nullptr;
        ASSERT_TRUE(written.GetText(text));
        const std::unique_ptr<char[]> owner(text);
        ASSERT_TRUE(parsed.Parse(text, static_cast<int>(std::strlen(text))));
        CheckRead(parsed, original);
    }
    const std::unique_ptr<I> clone(original.Clone());
    EXPECT_STREQ(clone->GetClassId(), original.GetClassId());
    EXPECT_TRUE(IsNear(Sample(*clone), Sample(original), 0.0));
}

// Each id makes an object of the interface and of no other one, with the values expected.
template <class I, class TOther, class TThird, class TCases>
void CheckIds(const TCases& cases) {
    for (const SCase& test : cases) {
        SCOPED_TRACE(test.m_ClassId);
        EXPECT_EQ(CreateObject<TOther>(test.m_ClassId), nullptr);
        EXPECT_EQ(CreateObject<TThird>(test.m_ClassId), nullptr);
        const std::unique_ptr<I> made(CreateObject<I>(test.m_ClassId));
        ASSERT_NE(made, nullptr);
        EXPECT_STREQ(made->GetClassId(), test.m_ClassId);
        // Other formulas of the same values differ in the last digits.
        EXPECT_TRUE(IsNear(Sample(*made), test.m_Expected, 1e-14));
        CheckSurvives(*made);
    }
}

TEST(StoredFunctions, EveryClassIdMakesItsFunction) {
    CheckIds<IFunction, IBinaryFunction, IConstant>(FunctionCases);
    CheckIds<IBinaryFunction, IFunction, IConstant>(BinaryFunctionCases);
    CheckIds<IConstant, IFunction, IBinaryFunction>(ConstantCases);
    EXPECT_EQ(CreateObject<IFunction>("{00000000-0000-0000-0000-000000000000}"), nullptr);
    // Fresh operations are all 0, so that their ids tell nothing of what they compute.
    using namespace FunctionsLibrary;
    const SCase* operations = std::end(FunctionCases) - 4;
    EXPECT_STREQ(TFunctionsOperation<Sum>::ClassId(), operations[0].m_ClassId);
    EXPECT_STREQ(TFunctionsOperation<Difference>::ClassId(), operations[1].m_ClassId);
    EXPECT_STREQ(TFunctionsOperation<Product>::ClassId(), operations[2].m_ClassId);
    EXPECT_STREQ(TFunctionsOperation<Division>::ClassId(), operations[3].m_ClassId);
}

TEST(StoredFunctions, TreesOfAllClassesSurvive) {
    using namespace FunctionsLibrary;
    auto* list = new CFunctionsComposition;
    list->SetCount(4);
    list->SetFunction(0, &TFunction<Sin>::GetInstance(), false);
    list->SetFunction(2, new CFunctionProxy(new CConstantFunction(-0.1)), true);
    auto* sum = new TFunctionsOperation<Sum>;
    sum->SetCount(3);
    sum->SetFunction(0, list, true);
    sum->SetFunction(2, new TFunction<Cosh>, true);
    const CFunctionsCombination functions(
        sum, new TFunction<NormExp3>,
        new CBinaryFunctionsCombination(
            new CBinaryFunctionProxy(new TBinaryFunction<Power>),
            new CConstantBinaryFunction(1e-300),
            new CBinaryFunctionComposition(new TFunction<Tanh>, new TBinaryFunction<Difference>)));
    CheckSurvives(functions);
    CheckSurvives(CConstantsCombination(
        new CConstantComposition(functions.Clone(), new CConstant(1.0 / 3.0)),
        new CConstantsCombination(new CConstant(-7.5)), new TBinaryFunction<Division>));
}

// A memory object that says that it holds only what changed.
class CIncrementalView : public IReadDataStream {
public:
    explicit CIncrementalView(const IReadDataStream& input) : m_Input(input) {}
    bool IsIncremental() const override { return true; }
    bool ReadBool(const char* n, bool* v) const override { return m_Input.ReadBool(n, v); }
    bool ReadInt(const char* n, int* v) const override { return m_Input.ReadInt(n, v); }
    bool ReadFloat(const char* n, float* v) const override { return m_Input.ReadFloat(n, v); }
    bool ReadDouble(const char* n, double* v) const override { return m_Input.ReadDouble(n, v); }
    bool ReadString(const char* n, char** v) const override { return m_Input.ReadString(n, v); }
    bool ReadData(const char* n, char** d, int* s) const override {
        return m_Input.ReadData(n, d, s);
    }
    bool ReadObject(const char* name, IDeSerialize& object) const override {
        CNested nested(object);
        return m_Input.ReadObject(name, nested);
    }

private:
    class CNested : public IDeSerialize {
    public:
        explicit CNested(IDeSerialize& object) : m_Object(object) {}
        bool DeSerialize(const IReadDataStream& input) override {
            return m_Object.DeSerialize(CIncrementalView(input));
        }

    private:
        IDeSerialize& m_Object;
    };

    const IReadDataStream& m_Input;
};

// `present` reads what `stored` wrote, without the key. A whole stream reports the loss and gives
// the default, an incremental one keeps what was there; the rest is read in both.
template <class T, class... TArguments>
void CheckMissing(const T& stored, const T& present, const char* key, double withDefault,
                  double withPresent, TArguments... arguments) {
    SCOPED_TRACE(key);
    CMemDataObject values;
    EXPECT_TRUE(stored.Serialize(values));
    EXPECT_TRUE(values.HasValue(key));
    values.RemoveValue(key);
    T whole(present), changed(present);
    EXPECT_FALSE(whole.DeSerialize(values));
    EXPECT_EQ(whole.Evaluate(arguments...), withDefault);
    EXPECT_TRUE(changed.DeSerialize(CIncrementalView(values)));
    EXPECT_EQ(changed.Evaluate(arguments...), withPresent);
}

template <class T, class I, class... TArguments>
void CheckMissingInCombination(std::function<I*(double)> make, double func1, double func2,
                               TArguments... arguments) {
    using namespace FunctionsLibrary;
    const T stored(make(1.0), make(2.0), new TBinaryFunction<Difference>);
    const T present(make(5.0), make(6.0), new TBinaryFunction<Sum>);
    CheckMissing(stored, present, "func1", func1, 3.0, arguments...);
    CheckMissing(stored, present, "func2", func2, -5.0, arguments...);
    CheckMissing(stored, present, "combineFunction", 1.5, 3.0, arguments...);
}

TEST(StoredFunctions, MissingKeysGiveDefaultsOrKeepWhatIsThere) {
    using TNegate = TFunction<FunctionsLibrary::Negate>;
    using TSquare = TFunction<FunctionsLibrary::Square>;
    const auto f = [](double value) { return new CConstantFunction(value); };
    const auto b = [](double value) { return new CConstantBinaryFunction(value); };
    const auto c = [](double value) { return new CConstant(value); };
    CheckMissing(CConstant(4.0), CConstant(7.0), "value", 0.0, 7.0);
    CheckMissing(CConstantFunction(4.0), CConstantFunction(7.0), "value", 0.0, 7.0, 1.0);
    CheckMissing(CConstantBinaryFunction(4.0), CConstantBinaryFunction(7.0), "value", 0.0, 7.0, 1.0,
                 1.0);
    CheckMissing(CFunctionProxy(f(4.0)), CFunctionProxy(f(7.0)), "value", 10.0, 7.0, 10.0);
    CheckMissing(CBinaryFunctionProxy(b(4.0)), CBinaryFunctionProxy(b(7.0)), "value", 15.0, 7.0,
                 10.0, 20.0);
    const CConstantComposition negated(new TNegate, c(4.0)), squared(new TSquare, c(7.0));
    CheckMissing(negated, squared, "function", 4.0, 16.0);
    CheckMissing(negated, squared, "constFunction", 0.0, -7.0);
    const CBinaryFunctionComposition negatedB(new TNegate, b(4.0)), squaredB(new TSquare, b(7.0));
    CheckMissing(negatedB, squaredB, "function", 4.0, 16.0, 10.0, 20.0);
    CheckMissing(negatedB, squaredB, "binaryFunction", -15.0, -7.0, 10.0, 20.0);
    CheckMissingInCombination<CFunctionsCombination, IFunction>(f, 8.0, -9.0, 10.0);
    CheckMissingInCombination<CBinaryFunctionsCombination, IBinaryFunction>(b, 13.0, -14.0, 10.0,
                                                                            20.0);
    CheckMissingInCombination<CConstantsCombination, IConstant>(c, -2.0, 1.0);
    CFunctionsComposition stored, present;
    stored.SetCount(1);
    present.SetCount(1);
    present.SetFunction(0, new TSquare, true);
    CheckMissing(stored, present, "functions", 10.0, 100.0, 10.0);
}

// Writes whatever a test needs.
class CHandwritten : public ISerialize {
public:
    using Write = std::function<void(IWriteDataStream&)>;
    explicit CHandwritten(Write write) : m_Write(std::move(write)) {}
    bool Serialize(IWriteDataStream& output) const override {
        m_Write(output);
        return true;
    }

private:
    Write m_Write;
};

TEST(StoredFunctions, DamagedListsKeepValidEntries) {
    const CConstantFunction four(4.0);
    const CConstant wrongKind(1.0);
    // Of what is claimed, the first entry is sound, the second can't be made, the third is null,
    // and there is no fourth.
    const struct {
        int m_Claimed, m_Count;
        double m_Sum;
    } cases[] = {{1, 1, 4.0},  {2, 2, 14.0},          {3, 3, 14.0},
                 {4, 4, 24.0}, {2000000000, 3, 14.0}, {-5, 0, 0.0}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test.m_Claimed);
        CMemDataObject values;
        values.WriteObject("functions", CHandwritten([&](IWriteDataStream& list) {
                               list.WriteInt("itemCount", &test.m_Claimed);
                               list.WriteObject("item0", CTypeSerializer(&four));
                               list.WriteObject("item1", CTypeSerializer(&wrongKind));
                               list.WriteObject("item2", CTypeSerializer(nullptr));
                           }));
        TFunctionsOperation<FunctionsLibrary::Sum> sum;
        EXPECT_EQ(sum.DeSerialize(values), test.m_Claimed == 1);
        EXPECT_EQ(sum.GetCount(), test.m_Count);
        EXPECT_EQ(sum.Evaluate(10.0), test.m_Sum);
    }
}

TEST(StoredFunctions, IncrementalListsChangeWhatTheyHold) {
    const CConstantFunction four(4.0), five(5.0);
    CMemDataObject values;
    values.WriteObject("functions", CHandwritten([&](IWriteDataStream& list) {
                           list.WriteObject("item1", CTypeSerializer(&five));
                       }));
    TFunctionsOperation<FunctionsLibrary::Sum> sum;
    sum.SetCount(3);
    for (int i = 0; i < 3; ++i)
        sum.SetFunction(i, &four, false);
    EXPECT_TRUE(sum.DeSerialize(CIncrementalView(values)));
    EXPECT_EQ(sum.Evaluate(0.0), 13.0);
    EXPECT_EQ(four.GetValue(), 4.0);
}

TEST(StoredFunctions, AStoredNullIsNoLossAndGivesTheDefault) {
    CMemDataObject values;
    values.WriteObject("value", CTypeSerializer(nullptr));
    CFunctionProxy proxy(new CConstantFunction(1.0));
    EXPECT_TRUE(proxy.DeSerialize(values));
    EXPECT_EQ(proxy.Evaluate(10.0), 10.0);
}

TEST(StoredFunctions, ReadIntoOwnedChildrenAndNeverIntoOthers) {
    CMemDataObject values;
    CFunctionProxy(new CConstantFunction(5.0)).Serialize(values);
    auto* owned = new CConstantFunction(1.0);
    CFunctionProxy proxy(owned);
    EXPECT_TRUE(proxy.DeSerialize(values));
    EXPECT_EQ(&proxy.GetFunction(), owned);
    EXPECT_EQ(owned->GetValue(), 5.0);

    const CConstantFunction shared(1.0);
    proxy.SetFunction(&shared, false);
    EXPECT_TRUE(proxy.DeSerialize(values));
    EXPECT_EQ(proxy.Evaluate(0.0), 5.0);
    EXPECT_EQ(shared.GetValue(), 1.0);

    const CFunctionProxy inner(&shared, false);
    CMemDataObject nested;
    CFunctionsCombination(new CFunctionProxy(new CConstantFunction(5.0))).Serialize(nested);
    CFunctionsCombination combination(&inner, &inner, nullptr, false);
    EXPECT_TRUE(combination.DeSerialize(nested));
    EXPECT_EQ(combination.Evaluate(3.0), 4.0);
    EXPECT_EQ(inner.Evaluate(3.0), 1.0);
}

TEST(StoredFunctions, NestingIsBounded) {
    for (const bool tooDeep : {false, true}) {
        IFunction* tree = new CConstantFunction(7.0);
        for (int i = 0; i < (tooDeep ? MaxFunctionNesting + 1 : MaxFunctionNesting); ++i)
            tree = new CFunctionProxy(tree);
        const std::unique_ptr<IFunction> owner(tree);
        CMemDataObject values;
        EXPECT_TRUE(tree->Serialize(values));
        CFunctionProxy read;
        EXPECT_EQ(read.DeSerialize(values), !tooDeep);
        EXPECT_EQ(read.Evaluate(10.0), tooDeep ? 10.0 : 7.0);
    }
}

} // namespace

} // namespace Lathe::Math
