// Function objects over the plain functions of the library, and the class ids of those functions.
#pragma once

#include "math/Function.h"
#include "math/FunctionsLibrary.h"

#include <cstddef>
#include <iterator>
#include <type_traits>
#include <utility>

namespace Lathe::Math {

using PlainFunction = double (*)(double);
using PlainBinaryFunction = double (*)(double, double);

template <class TFunctionPointer>
struct SFunctionClassId {
    TFunctionPointer m_Function;
    const char* m_ClassId;
};

// Stored trees hold these ids, so none of them changes.
inline constexpr SFunctionClassId<PlainFunction> FunctionClassIds[] = {
    {FunctionsLibrary::Identity, "{83A9F6B1-2360-44f2-9EA2-C0A75A47A554}"},
    {FunctionsLibrary::Negate, "{69196412-EAD8-45aa-B0F6-BD128B2E5E8E}"},
    {FunctionsLibrary::Square, "{F31A0DDB-1670-420a-AA0B-4AED41271DBC}"},
    {FunctionsLibrary::SquareRoot, "{9BA5267D-D300-4315-8C25-BDF46423F139}"},
    {FunctionsLibrary::Exp, "{40211AEA-B310-4254-BE94-B7E5B99CE707}"},
    {FunctionsLibrary::Log, "{7367BBAB-A156-48b9-A512-4F1912C56839}"},
    {FunctionsLibrary::NormExp, "{FB1F81BF-F8E7-40ba-8EBE-403988A2E994}"},
    {FunctionsLibrary::NormLog, "{94E073D9-BACD-49be-B08C-A70980F5E84E}"},
    {FunctionsLibrary::NormExp1, "{8D0E0F88-5C79-4f48-AD24-1C6BE1A8904B}"},
    {FunctionsLibrary::NormLog1, "{10DF14BD-357A-4458-905B-369AD2FD8B21}"},
    {FunctionsLibrary::NormExp2, "{47C095AC-4502-4b60-97D3-B3D3F3A7A87A}"},
    {FunctionsLibrary::NormLog2, "{716AB1B3-FEA8-4dec-B3EA-99B1CCDF852D}"},
    {FunctionsLibrary::NormExp3, "{F9CA1474-22AE-400b-AFC8-D9A077738A81}"},
    {FunctionsLibrary::NormLog3, "{7F4CF089-3DF2-40e4-83F3-736603B40160}"},
    {FunctionsLibrary::TodB, "{9C5BC273-DBD2-4900-B2C7-BAA8A4284487}"},
    {FunctionsLibrary::FromdB, "{18C4A2D7-BD79-486a-B12E-B21F32FBBF0F}"},
    {FunctionsLibrary::Not, "{F6D3F1CB-9FC7-414e-A0EF-A5D60928AC52}"},
    {FunctionsLibrary::Cos, "{8D84EA0E-1D78-4169-96A2-A6C37A8ACD46}"},
    {FunctionsLibrary::Sin, "{50F1B4E0-13CD-42b1-AD49-4D63F0CF2432}"},
    {FunctionsLibrary::Tan, "{4E0F4888-B561-4e5a-9563-315B667D1E18}"},
    {FunctionsLibrary::Cosh, "{83C7C189-D7BB-4b92-899F-892D82545E44}"},
    {FunctionsLibrary::Sinh, "{07429AE8-D018-4df8-B2F3-C9534773818F}"},
    {FunctionsLibrary::Tanh, "{37350F24-0D6A-43ac-BAF2-EC78838DA237}"},
    {FunctionsLibrary::Floor, "{D40F8690-718C-4618-8C0F-0557C0DE4093}"},
    {FunctionsLibrary::Ceil, "{BC7532AE-67AC-4498-9173-B49FBADBBCD8}"},
    {FunctionsLibrary::Round, "{D5FB4F0A-614D-422e-877F-87FB9894ADCB}"},
    {FunctionsLibrary::Abs, "{7D162F87-5903-4052-9DE6-1A40211A5812}"},
};

inline constexpr SFunctionClassId<PlainBinaryFunction> BinaryFunctionClassIds[] = {
    {FunctionsLibrary::Average, "{9038848C-7E52-4f6e-AE4A-ED90434DA85A}"},
    {FunctionsLibrary::Max, "{B48E24EF-CB0D-4bc6-B55E-370474A89CE7}"},
    {FunctionsLibrary::Min, "{95C6E20A-3D3C-4087-AE9E-33900A0BE55C}"},
    {FunctionsLibrary::Sum, "{A5E6BA89-DBC5-4659-BCAB-6CAD11C0FDB3}"},
    {FunctionsLibrary::Difference, "{B32E9916-D75D-4a9f-B240-C07B49A87E16}"},
    {FunctionsLibrary::Product, "{6CD1764A-CCA1-4872-B522-E5D286388A08}"},
    {FunctionsLibrary::Power, "{F9BD87B6-6B43-4678-BF35-84EB34DC47C2}"},
    {FunctionsLibrary::Division, "{B5669294-5F80-4c67-B405-5D4B61363532}"},
    {FunctionsLibrary::Module, "{5300A115-1DD0-4694-B21A-6D6E1232AF8A}"},
    {FunctionsLibrary::Distance, "{9704DD1D-629D-45ea-AB62-D54657D47EC9}"},
    {FunctionsLibrary::Equality, "{63B8D979-D152-438a-87B6-B48231AA2B6E}"},
    {FunctionsLibrary::NotEqual, "{BA4B3571-18B4-41af-90BE-C43889CFB186}"},
    {FunctionsLibrary::LowerThan, "{A8DC6D2E-36B4-4c13-859A-A79594E40ABA}"},
    {FunctionsLibrary::LowerThanEqual, "{AEE0F237-8EEC-43fc-B440-EFA3DC05AA2E}"},
    {FunctionsLibrary::GreaterThan, "{7C4EE5B2-03D0-4d5c-A040-35E565535C0A}"},
    {FunctionsLibrary::GreaterThanEqual, "{1840E00F-B2A7-46e7-B48B-79ECC2E61AEA}"},
    {FunctionsLibrary::And, "{CB069C1A-0CF5-46e2-B43F-E0DDDCDC739F}"},
    {FunctionsLibrary::Or, "{31547569-62DE-4f2d-817B-E272ACD7E188}"},
    {FunctionsLibrary::Modulo, "{531FD5C1-F795-41af-8E20-BB3B4C1DAEA4}"},
    {FunctionsLibrary::X, "{665E9CCB-3130-40d1-A010-CF45501EF826}"},
    {FunctionsLibrary::Y, "{5B8476AC-CC3B-4cd5-9F3B-3AB71CE7E2D0}"},
};

// The id in the row of F, or null. The functions are compared as types: compilers differ in
// whether they compare addresses at compile time.
template <auto F>
struct TFunctionTag {};
template <const auto& Rows, auto F, std::size_t... Row>
constexpr const char* FindClassId(std::index_sequence<Row...>) {
    const char* id = nullptr;
    ((std::is_same_v<TFunctionTag<Rows[Row].m_Function>, TFunctionTag<F>> ? id = Rows[Row].m_ClassId
                                                                          : id),
     ...);
    return id;
}
template <const auto& Rows, auto F>
constexpr const char* FindClassId() {
    constexpr const char* id = FindClassId<Rows, F>(std::make_index_sequence<std::size(Rows)>());
    static_assert(id != nullptr, "the function has no row in the table of class ids");
    return id;
}

template <PlainFunction F>
class TFunction : public IFunction {
public:
    static const char* ClassId() { return FindClassId<FunctionClassIds, F>(); }
    // The one shared object, which lives to the end of the process.
    static const TFunction& GetInstance() {
        static const TFunction instance;
        return instance;
    }

    bool Serialize(Serialization::IWriteDataStream&) const override { return true; }
    const char* GetClassId() const override { return ClassId(); }
    double Evaluate(double x) const LATHE_REALTIME override { return F(x); }
    TFunction* Clone() const override { return new TFunction; }
    bool DeSerialize(const Serialization::IReadDataStream&) override { return true; }
};

template <PlainBinaryFunction F>
class TBinaryFunction : public IBinaryFunction {
public:
    static const char* ClassId() { return FindClassId<BinaryFunctionClassIds, F>(); }
    // The one shared object, which lives to the end of the process.
    static const TBinaryFunction& GetInstance() {
        static const TBinaryFunction instance;
        return instance;
    }

    bool Serialize(Serialization::IWriteDataStream&) const override { return true; }
    const char* GetClassId() const override { return ClassId(); }
    double Evaluate(double x, double y) const LATHE_REALTIME override { return F(x, y); }
    TBinaryFunction* Clone() const override { return new TBinaryFunction; }
    bool DeSerialize(const Serialization::IReadDataStream&) override { return true; }
};

} // namespace Lathe::Math
