// Proves that inputs of all kinds are read as written, and what becomes of them where a stream
// lacks them, lies, or holds only changes.
#include "plugin/presets/InputValuesSerializers.h"

#include "core/runtime/ObjectsFactory.h"
#include "datamodel/Journal.h"
#include "datamodel/objects/CurveInfo.h"
#include "datamodel/objects/CustomPropertyInfo.h"
#include "datamodel/objects/StringInfo.h"
#include "datamodel/objects/SurfaceInfo.h"
#include "datamodel/objects/capture/CaptureState.h"
#include "serialization/Streams.h"

#include <cmath>
#include <deque>
#include <limits>

namespace Lathe::Audio::Plugin {

namespace {

using namespace DataModel::Objects;
using DataModel::TICaptureObjectFactory;
using Math::CConstantBinaryFunction;
using Math::CConstantFunction;
using Serialization::CMemDataObject;
using Serialization::CXmlDataObject;
using Serialization::IDeSerialize;
using Serialization::IReadDataStream;
using Serialization::Tests::CChanges;

// Takes what it is given, whatever its range, and counts how often.
template <class I, class T, class TInfo>
struct TInput : DataModel::TCaptureState<I> {
    TInput(T value, const TInfo& info) : m_Info(info), m_Value(value) {}
    const TInfo& GetInfo() const override { return m_Info; }
    typename Core::TValueStorage<T>::Copy GetValue() const override { return m_Value.MakeCopy(); }
    void SetValue(T value) override {
        m_Value.Set(value);
        ++m_Sets;
        this->NotifyValueChanged();
    }
    void Capture() override { this->BeginCapture(); }
    void Release() override { this->EndCapture(); }

    TInfo m_Info;
    Core::TValueStorage<T> m_Value;
    int m_Sets = 0;
};

template <class I, class T, class TInfo, class TDeSerializer>
struct TInputs : Containers::IVector<I> {
    using Serializer = TInputValuesSerializer<Containers::IVector<I>>;
    using DeSerializer = TDeSerializer;
    TInputs& Add(T value, const TInfo& info = TInfo()) {
        m_Inputs.emplace_back(value, info);
        return *this;
    }
    int GetCount() const LATHE_REALTIME override { return static_cast<int>(m_Inputs.size()); }
    const I& GetElement(int i) const LATHE_REALTIME override { return m_Inputs[std::size_t(i)]; }
    I& GetElement(int i) LATHE_REALTIME override { return m_Inputs[std::size_t(i)]; }

    std::deque<TInput<I, T, TInfo>> m_Inputs;
};
using CParams = TInputs<ICaptureParam, double, CParamInfo, CInputParamsDeSerializer>;
template <class T, class TConstInfo, class TInfo, class TDeSerializer>
using TFactories = TInputs<TICaptureObjectFactory<T, TConstInfo>, T, TInfo, TDeSerializer>;
using CStrings = TFactories<const char*, IConstStringInfo, CStringInfo, CInputStringsDeSerializer>;
using CCurves =
    TFactories<const Math::IFunction&, IConstCurveInfo, CCurveInfo, CInputCurvesDeSerializer>;
using CSurfaces = TFactories<const Math::IBinaryFunction&, IConstSurfaceInfo, CSurfaceInfo,
                             CInputSurfacesDeSerializer>;
using CProperties = TFactories<const IDynamicPropertyValue&, IConstCustomPropertyInfo,
                               CCustomPropertyInfo, CInputCustomPropertiesDeSerializer>;

struct CProperty : Serialization::Tests::CIntObject, IDynamicPropertyValue {
    static const char* ClassId() { return "{0B8A4E52-6D0C-4c59-8E67-5B1F6D3A2C11}"; }
    const char* GetClassId() const override { return ClassId(); }
    using CIntObject::CIntObject;
    const void* QueryInterface(const char*) const override { return nullptr; }
    void* QueryInterface(const char*) override { return nullptr; }
    CProperty* Clone() const override { return new CProperty(*this); }
    bool IsSameType(const IDynamicPropertyValue&) const override { return false; }
};
const Runtime::CFactoryRegistration<CProperty, IDynamicPropertyValue> Registration;

struct SPrepare : Core::TIArgCommand<IDynamicPropertyValue&> {
    void Execute(IDynamicPropertyValue& value) override {
        m_Seen.push_back(dynamic_cast<CProperty&>(value).m_Value);
    }
    std::vector<int> m_Seen;
};

std::string Show(double value) {
    return std::to_string(value);
}
std::string Show(char* text) {
    return std::unique_ptr<char[]>(text).get();
}
std::string Show(Math::IFunction* value) {
    return Show(std::unique_ptr<Math::IFunction>(value)->Evaluate(0.3));
}
std::string Show(Math::IBinaryFunction* value) {
    return Show(std::unique_ptr<Math::IBinaryFunction>(value)->Evaluate(0.3, 0.7));
}
std::string Show(IDynamicPropertyValue* value) {
    const std::unique_ptr<IDynamicPropertyValue> owner(value);
    const auto* property = dynamic_cast<CProperty*>(value);
    return property ? std::to_string(property->m_Value) : value->GetClassId();
}

// The values with the number of times that each was set since the last call.
template <class TVector>
std::string Take(TVector& inputs) {
    std::string text;
    for (auto& input : inputs.m_Inputs)
        text += Show(input.GetValue()) + "*" + std::to_string(std::exchange(input.m_Sets, 0)) + " ";
    return text;
}

// A document as one that holds only changes, to any depth.
struct CChangesView : Serialization::CXmlBaseDataObject {
    explicit CChangesView(const IReadDataStream& document)
        : CXmlBaseDataObject(dynamic_cast<const CXmlBaseDataObject&>(document)) {}
    bool IsIncremental() const override { return true; }
    bool ReadObject(const char* name, IDeSerialize& object) const override {
        struct CInner : IDeSerialize {
            explicit CInner(IDeSerialize& inner) : m_Inner(inner) {}
            bool DeSerialize(const IReadDataStream& input) override {
                return m_Inner.DeSerialize(CChangesView(input));
            }
            IDeSerialize& m_Inner;
        } inner(object);
        return CXmlBaseDataObject::ReadObject(name, inner);
    }
};

template <class TInputs>
void CheckRoundTrip(TInputs& source, TInputs& target, const std::string& defaults) {
    Serialization::Tests::ForEachStream([&](auto& stream, const auto& reload) {
        typename TInputs::DeSerializer reader(target);
        EXPECT_TRUE(stream.WriteObject("inputs", typename TInputs::Serializer(source)));
        reload();
        EXPECT_FALSE(ReadObjectOrDefaults(stream, "none", reader));
        EXPECT_EQ(Take(target), defaults);
        EXPECT_TRUE(ReadObjectOrDefaults(stream, "inputs", reader));
        EXPECT_TRUE(ReadObjectOrDefaults(CChanges(), "inputs", reader));
        EXPECT_TRUE(reader.DeSerialize(CChanges()));
        for (auto& input : source.m_Inputs)
            input.m_Sets = 1;
        EXPECT_EQ(Take(target), Take(source));
    });
    const TInputs none;
    CMemDataObject stream;
    EXPECT_TRUE(typename TInputs::Serializer(none).Serialize(stream));
    EXPECT_EQ(stream, CMemDataObject()) << "not even a count";
}

TEST(InputValues, OfAllKindsAreReadAsWritten) {
    const CParamInfo paramInfo(EParamType::Float, -9.0, 9.0, 0.25, "", "", "");
    CParams params, otherParams;
    params.Add(1.0 / 3.0).Add(-2.0);
    otherParams.Add(5.0, paramInfo).Add(5.0, paramInfo);
    CheckRoundTrip(params, otherParams, "0.250000*1 0.250000*1 ");
    CStrings strings, otherStrings;
    strings.Add("").Add("<\xc3\xa4> & \"b\"");
    otherStrings.Add("x", CStringInfo("", "", "default")).Add("y");
    CheckRoundTrip(strings, otherStrings, "default*1 *1 ");
    CCurves curves, otherCurves;
    curves.Add(CConstantFunction(1.5));
    otherCurves.Add(CConstantFunction(7.0), CCurveInfo("", "", new CConstantFunction(3.0)));
    CheckRoundTrip(curves, otherCurves, "3.000000*1 ");
    CSurfaces surfaces, otherSurfaces;
    surfaces.Add(CConstantBinaryFunction(-1.5));
    otherSurfaces.Add(CConstantBinaryFunction(7.0));
    CheckRoundTrip(surfaces, otherSurfaces, "0.000000*1 ");
    CProperties properties, otherProperties;
    properties.Add(CProperty(4)).Add(CProperty(5));
    otherProperties.Add(CProperty(6)).Add(CProperty(6), CCustomPropertyInfo("", "", new CProperty));
    const std::string empty = CEmptyDynamicPropertyValue::ClassId();
    CheckRoundTrip(properties, otherProperties, empty + "*1 -1*1 ");
}

TEST(InputValues, AreFiniteInRangeAndAsManyAsTheInstanceHas) {
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    const CParamInfo info(EParamType::Float, -1.0, 1.0, 0.25, "", "", "");
    // What is stored, and what it becomes.
    const double cases[][2] = {{0.75, 0.75}, {7.0, 1.0},       {-1e300, -1.0},
                               {NAN, 0.25},  {Infinity, 0.25}, {-Infinity, 0.25}};
    for (const auto& [stored, full] : cases) {
        SCOPED_TRACE(stored);
        const bool changes = std::isfinite(stored);
        CParams params;
        params.Add(0.5, info).Add(0.5, info);
        CInputParamsDeSerializer reader(params);
        DataModel::CJournal journal(params.m_Inputs[0]);
        CMemDataObject stream;
        CChanges incremental;
        EXPECT_TRUE(WriteValue(stream, "p0", stored) && WriteValue(incremental, "p0", stored));
        EXPECT_TRUE(reader.DeSerialize(incremental));
        EXPECT_EQ(Take(params), (changes ? Show(full) + "*1 " : "0.500000*0 ") + "0.500000*0 ");
        EXPECT_EQ(journal.Take(), changes ? "bve" : "");
        WriteValue(stream, "p1", "a text");
        WriteValue(stream, "p2", 0.75);
        WriteValue(stream, "count", 2000000000);
        EXPECT_FALSE(reader.DeSerialize(stream));
        EXPECT_EQ(Take(params), Show(full) + "*1 0.250000*1 ");
        EXPECT_EQ(journal.Take(), "bve");
    }
}

TEST(InputValues, OfUnknownClassOrNoneGetTheDefault) {
    const std::string known =
        std::string("<obj0 isNull='0' type='") + CProperty::ClassId() + "'><content v='7'/></obj0>";
    // What 5 becomes, with the default 1, in a full stream and in one of changes; and what was new.
    const std::vector<std::string> cases[] = {
        {known, "7*1 reads", "7*1 reads", "2"},
        {known.substr(0, known.find("<content")) + "</obj0>", "1*1 fails", "5*0 fails", "2"},
        {"<obj0 isNull='0' type='?'><content v='7'/></obj0>", "1*1 fails", "5*0 fails", "0"},
        {"<obj0 isNull='1'/>", "1*1 reads", "1*1 reads", "0"},
        {"<obj0><content v='7'/></obj0>", "1*1 fails", "7*1 reads", "0"},
        {"<obj0><content/></obj0>", "1*1 fails", "5*1 reads", "0"},
        {"<obj1 isNull='1'/>", "1*1 fails", "5*0 reads", "0"}};
    for (const auto& test : cases) {
        SCOPED_TRACE(test[0]);
        CXmlDataObject document("Root");
        ASSERT_TRUE(
            Serialization::Tests::Parse(document, "<r count='-1' obj0='3'>" + test[0] + "</r>"));
        const CChangesView changes(document);
        SPrepare prepare;
        for (const std::size_t i : {1U, 2U}) {
            CProperties inputs;
            inputs.Add(CProperty(5), CCustomPropertyInfo("", "", new CProperty(1)));
            CInputCustomPropertiesDeSerializer reader(inputs, &prepare);
            const bool reads = i == 1 ? reader.DeSerialize(document) : reader.DeSerialize(changes);
            EXPECT_EQ(Take(inputs) + (reads ? "reads" : "fails"), test[i]);
        }
        EXPECT_EQ(prepare.m_Seen, std::vector<int>(std::stoul(test[3]), -1)) << "before it reads";
    }
}

} // namespace

} // namespace Lathe::Audio::Plugin
