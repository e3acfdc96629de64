// Proves that every class id makes the function that it stands for, what composites compute from
// their children, that trees survive cloning, writing and reading, and that incomplete or damaged
// streams leave valid functions behind. Plain functions are reached only by their ids, so that a
// lost registration shows; the address sanitizer watches what is deleted.

#include "math/Constant.h"
#include "math/FunctionComposition.h"
#include "math/FunctionProxy.h"
#include "math/FunctionsCombination.h"
#include "math/FunctionsComposition.h"
#include "math/FunctionsOperation.h"
#include "serialization/Streams.h"
#include "serialization/TypedObject.h"

#include <algorithm>
#include <cmath>

namespace Lathe::Math {

namespace {

using namespace FunctionsLibrary;
using namespace Serialization;
using Runtime::CreateObject;
using std::exp, std::exp2, std::log, std::log2, std::pow, std::sqrt;

// No two plain functions agree at all of these.
std::vector<double> Sample(const IFunction& function) {
    return {function.Evaluate(-2.5), function.Evaluate(0.5)};
}
std::vector<double> Sample(const IBinaryFunction& function) {
    return {function.Evaluate(8.9, 3.9), function.Evaluate(2.0, 2.0), function.Evaluate(-3.0, 0.0),
            function.Evaluate(NAN, 1e-310)};
}
std::vector<double> Sample(const IConstant& constant) {
    return {constant.Evaluate()};
}

struct SCase {
    const char* m_ClassId;
    std::vector<double> m_Expected;
};

const SCase FunctionCases[] = {
    {"{83A9F6B1-2360-44f2-9EA2-C0A75A47A554}", {-2.5, 0.5}},
    {"{69196412-EAD8-45aa-B0F6-BD128B2E5E8E}", {2.5, -0.5}},
    {"{F31A0DDB-1670-420a-AA0B-4AED41271DBC}", {6.25, 0.25}},
    {"{9BA5267D-D300-4315-8C25-BDF46423F139}", {0.0, sqrt(0.5)}},
    {"{40211AEA-B310-4254-BE94-B7E5B99CE707}", {1 / exp(2.5), sqrt(exp(1))}},
    {"{7367BBAB-A156-48b9-A512-4F1912C56839}", {NAN, -log(2)}},
    {"{FB1F81BF-F8E7-40ba-8EBE-403988A2E994}", {pow(2, -2.5) - 1, sqrt(2) - 1}},
    {"{94E073D9-BACD-49be-B08C-A70980F5E84E}", {NAN, log2(1.5)}},
    {"{8D0E0F88-5C79-4f48-AD24-1C6BE1A8904B}", {(pow(11, -2.5) - 1) / 10, (sqrt(11) - 1) / 10}},
    {"{10DF14BD-357A-4458-905B-369AD2FD8B21}", {NAN, log2(6) / log2(11)}},
    {"{47C095AC-4502-4b60-97D3-B3D3F3A7A87A}", {(pow(101, -2.5) - 1) / 100, (sqrt(101) - 1) / 100}},
    {"{716AB1B3-FEA8-4dec-B3EA-99B1CCDF852D}", {NAN, log2(51) / log2(101)}},
    {"{F9CA1474-22AE-400b-AFC8-D9A077738A81}",
     {(pow(1001, -2.5) - 1) / 1000, (sqrt(1001) - 1) / 1000}},
    {"{7F4CF089-3DF2-40e4-83F3-736603B40160}", {NAN, log2(501) / log2(1001)}},
    {"{9C5BC273-DBD2-4900-B2C7-BAA8A4284487}", {NAN, -20 / log2(10)}},
    {"{18C4A2D7-BD79-486a-B12E-B21F32FBBF0F}", {pow(10, -0.125), pow(10, 0.025)}},
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
};

const SCase BinaryFunctionCases[] = {
    {"{9038848C-7E52-4f6e-AE4A-ED90434DA85A}", {6.4, 2.0, -1.5, NAN}},
    {"{B48E24EF-CB0D-4bc6-B55E-370474A89CE7}", {8.9, 2.0, 0.0, NAN}},
    {"{95C6E20A-3D3C-4087-AE9E-33900A0BE55C}", {3.9, 2.0, -3.0, NAN}},
    {"{A5E6BA89-DBC5-4659-BCAB-6CAD11C0FDB3}", {12.8, 4.0, -3.0, NAN}},
    {"{B32E9916-D75D-4a9f-B240-C07B49A87E16}", {5.0, 0.0, -3.0, NAN}},
    {"{6CD1764A-CCA1-4872-B522-E5D286388A08}", {34.71, 4.0, 0.0, NAN}},
    {"{F9BD87B6-6B43-4678-BF35-84EB34DC47C2}", {exp2(3.9 * log2(8.9)), 4.0, 1.0, NAN}},
    {"{B5669294-5F80-4c67-B405-5D4B61363532}", {89.0 / 39.0, 1.0, -INFINITY, NAN}},
    {"{5300A115-1DD0-4694-B21A-6D6E1232AF8A}", {sqrt(94.42), sqrt(8), 3.0, NAN}},
    {"{9704DD1D-629D-45ea-AB62-D54657D47EC9}", {5.0, 0.0, 3.0, NAN}},
    {"{63B8D979-D152-438a-87B6-B48231AA2B6E}", {0.0, 1.0, 0.0, 0.0}},
    {"{BA4B3571-18B4-41af-90BE-C43889CFB186}", {1.0, 0.0, 1.0, 1.0}},
    {"{A8DC6D2E-36B4-4c13-859A-A79594E40ABA}", {0.0, 0.0, 1.0, 0.0}},
    {"{AEE0F237-8EEC-43fc-B440-EFA3DC05AA2E}", {0.0, 1.0, 1.0, 0.0}},
    {"{7C4EE5B2-03D0-4d5c-A040-35E565535C0A}", {1.0, 0.0, 0.0, 0.0}},
    {"{1840E00F-B2A7-46e7-B48B-79ECC2E61AEA}", {1.0, 1.0, 0.0, 0.0}},
    {"{CB069C1A-0CF5-46e2-B43F-E0DDDCDC739F}", {1.0, 1.0, 0.0, 1.0}},
    {"{31547569-62DE-4f2d-817B-E272ACD7E188}", {1.0, 1.0, 1.0, 1.0}},
    {"{531FD5C1-F795-41af-8E20-BB3B4C1DAEA4}", {2.0, 0.0, 0.0, 0.0}},
    {"{665E9CCB-3130-40d1-A010-CF45501EF826}", {8.9, 2.0, -3.0, NAN}},
    {"{5B8476AC-CC3B-4cd5-9F3B-3AB71CE7E2D0}", {3.9, 2.0, 0.0, 1e-310}},
};

// Other formulas of the same value differ in the last digits.
bool IsNear(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b)) ||
           std::fabs(a - b) <= 1e-14 * std::fmax(1.0, std::fabs(b));
}

// Cloned, or written to a stream of each kind and read, the function is the same.
template <class I>
void CheckSurvives(const I& original) {
    const auto check = [&](const I& copy) {
        EXPECT_TRUE(std::ranges::equal(Sample(copy), Sample(original), IsNear));
    };
    check(*std::unique_ptr<I>(original.Clone()));
    Tests::ForEachReading<I>(original, check);
}

// Each id makes an object of the interface and of no other one, with the values expected.
template <class I, class TOther, class TCases>
void CheckIds(const TCases& cases) {
    for (const SCase& test : cases) {
        SCOPED_TRACE(test.m_ClassId);
        EXPECT_EQ(CreateObject<TOther>(test.m_ClassId), nullptr);
        const std::unique_ptr<I> made(CreateObject<I>(test.m_ClassId));
        ASSERT_NE(made, nullptr);
        EXPECT_STREQ(made->GetClassId(), test.m_ClassId);
        EXPECT_TRUE(std::ranges::equal(Sample(*made), test.m_Expected, IsNear));
        CheckSurvives(*made);
    }
}

TEST(FunctionObjects, EveryClassIdMakesItsFunction) {
    CheckIds<IFunction, IBinaryFunction>(FunctionCases);
    CheckIds<IBinaryFunction, IFunction>(BinaryFunctionCases);
}

TEST(FunctionObjects, OperationsFoldFromTheLeft) {
    const double values[] = {24.0, 4.0, 3.0};
    // Without the first, the second and the third value, and with all.
    const SCase cases[] = {
        {"{B8280134-87FF-44ae-809E-1B645160B214}", {7.0, 27.0, 28.0, 31.0}},
        {"{F95377FF-6828-4a2d-8CB9-2A63C47EA65D}", {-7.0, 21.0, 20.0, 17.0}},
        {"{3D5E106B-C306-476c-8817-24E755168A5C}", {0.0, 72.0, 96.0, 288.0}},
        {"{41B8F3B2-540C-4c85-B874-FFA435C71129}", {0.0, 8.0, 6.0, 2.0}},
    };
    for (const SCase& test : cases) {
        const std::unique_ptr<IFunction> made(CreateObject<IFunction>(test.m_ClassId));
        auto& list = dynamic_cast<TNFunctionsAggregate<IFunction>&>(*made);
        EXPECT_EQ(list.Evaluate(10.0), 0.0);
        list.SetCount(3);
        for (int absent = 0; absent < 4; ++absent) {
            for (int i = 0; i < 3; ++i)
                list.SetFunction(i, i != absent ? new CConstantFunction(values[i]) : nullptr, true);
            EXPECT_EQ(list.Evaluate(10.0), test.m_Expected[static_cast<std::size_t>(absent)]);
            CheckSurvives<IFunction>(list);
        }
    }
}

template <class I>
void Check(const I& composite, double expected) {
    EXPECT_DOUBLE_EQ(Sample(composite)[0], expected) << composite.GetClassId();
    CheckSurvives(composite);
}

TEST(FunctionObjects, CompositesApplyTheirChildrenInTheirPlaces) {
    const auto divide = [] { return new TBinaryFunction<Division>; };
    const auto negate = [] { return new TFunction<Negate>; };
    Check<IConstant>(CConstantComposition(negate(), new CConstant(3.0)), -3.0);
    const CConstantsCombination constant(new CConstant(1.0), new CConstant(3.0), divide());
    Check<IConstant>(constant, 1.0 / 3.0);
    Check<IBinaryFunction>(CBinaryFunctionComposition(negate(), divide()), -89.0 / 39.0);
    const CBinaryFunctionsCombination binary(
        new TBinaryFunction<Sum>, new CBinaryFunctionProxy(new TBinaryFunction<Y>), divide());
    Check<IBinaryFunction>(binary, 128.0 / 39.0);
    auto* list = new CFunctionsComposition;
    list->SetCount(4);
    list->SetFunction(1, &TFunction<Negate>::GetInstance(), false);
    list->SetFunction(3, new CFunctionProxy(new TFunction<Square>), true);
    Check<IFunction>(*list, 6.25);
    Check<IFunction>(CFunctionsCombination(list, negate(), divide()), 2.5);
}

TEST(FunctionObjects, ClonesOwnAllThatTheyNeed) {
    std::unique_ptr<IFunction> clone;
    {
        CConstantFunction live(1.0);
        CFunctionsComposition list;
        list.SetCount(1);
        list.SetFunction(0, &live, false);
        list.SetCount(50);
        CFunctionProxy proxy(&list, false);
        clone.reset(proxy.Clone());
        live.SetValue(7.0);
        EXPECT_EQ(proxy.Evaluate(0.0), 7.0) << "only a clone may be cut off from a live child";
    }
    EXPECT_EQ(clone->Evaluate(0.0), 1.0);
}

// A whole stream, or one that says that it holds only what changed.
template <class TRead>
void ForBoth(const std::string& text, const TRead& read) {
    CXmlDataObject whole("Root");
    Tests::TChanges<CXmlDataObject> changes("Root");
    EXPECT_TRUE(Tests::Parse(whole, text) && Tests::Parse(changes, text));
    read(whole), read(changes);
}

// `present` reads what `stored` wrote, without the key. A whole stream reports the loss and gives
// the default, an incremental one keeps what was there; the rest is read in both.
template <class T>
void CheckMissing(const T& stored, const T& present, const char* key, double lost, double kept) {
    CXmlDataObject values("Root");
    EXPECT_TRUE(stored.Serialize(values) && values.HasValue(key)) << key;
    values.RemoveValue(key);
    ForBoth(Tests::GetText(values), [&](const IReadDataStream& stream) {
        T read(present);
        EXPECT_EQ(read.DeSerialize(stream), stream.IsIncremental());
        EXPECT_EQ(Sample(read)[0], stream.IsIncremental() ? kept : lost) << key;
    });
}

TEST(FunctionObjects, MissingKeysGiveDefaultsOrKeepWhatIsThere) {
    const auto f = [](double value) { return new CConstantFunction(value); };
    CheckMissing(CConstant(4.0), CConstant(7.0), "value", 0.0, 7.0);
    CheckMissing(CFunctionProxy(f(4.0)), CFunctionProxy(f(7.0)), "value", -2.5, 7.0);
    const CConstantComposition negated(new TFunction<Negate>, new CConstant(4.0));
    const CConstantComposition squared(new TFunction<Square>, new CConstant(7.0));
    CheckMissing(negated, squared, "function", 4.0, 16.0);
    CheckMissing(negated, squared, "constFunction", 0.0, -7.0);
    const CBinaryFunctionComposition negative(new TFunction<Negate>,
                                              new CConstantBinaryFunction(4.0));
    const CBinaryFunctionComposition square(new TFunction<Square>,
                                            new CConstantBinaryFunction(7.0));
    CheckMissing(negative, square, "function", 4.0, 16.0);
    CheckMissing(negative, square, "binaryFunction", -6.4, -7.0);
    const CFunctionsCombination difference(f(1.0), f(2.0), new TBinaryFunction<Difference>);
    const CFunctionsCombination sum(f(5.0), f(6.0), new TBinaryFunction<Sum>);
    CheckMissing(difference, sum, "func1", -4.5, 3.0);
    CheckMissing(difference, sum, "func2", 3.5, -5.0);
    CheckMissing(difference, sum, "combineFunction", 1.5, 3.0);
    CFunctionsComposition list;
    list.SetCount(1);
    const CFunctionsComposition empty;
    list.SetFunction(0, new TFunction<Square>, true);
    CheckMissing(empty, list, "functions", -2.5, 6.25);
}

TEST(FunctionObjects, DamagedListsKeepValidEntries) {
    // The first entry is sound, the second can't be made, the third is null, and there is no
    // fourth.
    const std::string entries = R"(">
        <item0 isNull="0" type="{72E2E475-5248-41cb-BBE2-9E1F1E4BAF30}"><content value="4"/></item0>
        <item1 isNull="0" type="{8794ACBA-1CC8-4ab8-902F-3A2C352E66CE}"><content value="1"/></item1>
        <item2 isNull="1"/></functions></Root>)";
    // The count that is claimed, the count read, and the sum: what can't be read is the identity in
    // a whole stream, and null in an incremental one.
    const struct {
        int claimed, count, whole, changed;
    } cases[] = {{1, 1, 4, 4},  {2, 2, 14, 4},          {3, 3, 14, 4},
                 {4, 4, 24, 4}, {2000000000, 3, 14, 4}, {-5, 0, 0, 0}};
    for (const auto& row : cases) {
        const std::string text =
            "<Root><functions itemCount=\"" + std::to_string(row.claimed) + entries;
        ForBoth(text, [&](const IReadDataStream& stream) {
            const bool incremental = stream.IsIncremental();
            TFunctionsOperation<Sum> sum;
            EXPECT_EQ(sum.DeSerialize(stream), incremental || row.claimed == 1);
            EXPECT_EQ(sum.GetCount(), row.count);
            EXPECT_EQ(sum.Evaluate(10.0), incremental ? row.changed : row.whole) << row.claimed;
        });
    }
}

TEST(FunctionObjects, ReadIntoOwnedChildrenAndNeverIntoOthers) {
    CMemDataObject values;
    CFunctionProxy(new CConstantFunction(5.0)).Serialize(values);
    const CConstantFunction shared(1.0);
    auto* owned = new CConstantFunction(1.0);
    CFunctionProxy owner(owned), user(&shared, false);
    EXPECT_TRUE(owner.DeSerialize(values) && user.DeSerialize(values));
    EXPECT_EQ(&owner.GetFunction(), owned);
    EXPECT_EQ(owner.Evaluate(0.0), 5.0);
    EXPECT_EQ(user.Evaluate(0.0), 5.0);
    EXPECT_EQ(shared.GetValue(), 1.0);
    values.WriteObject("value", CTypeSerializer(nullptr));
    EXPECT_TRUE(owner.DeSerialize(values));
    EXPECT_EQ(&owner.GetFunction(), &TFunction<Identity>::GetInstance());
}

TEST(FunctionObjects, NestingIsBounded) {
    std::unique_ptr<IFunction> tree(new CConstantFunction(7.0));
    for (int above = 0; above <= MaxFunctionNesting; ++above) {
        tree.reset(new CFunctionProxy(tree.release()));
        CMemDataObject values;
        CFunctionProxy read;
        EXPECT_TRUE(tree->Serialize(values));
        EXPECT_EQ(read.DeSerialize(values), above < MaxFunctionNesting);
        EXPECT_EQ(read.Evaluate(10.0), above < MaxFunctionNesting ? 7.0 : 10.0);
    }
}

} // namespace

} // namespace Lathe::Math
