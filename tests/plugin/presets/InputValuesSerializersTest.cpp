// Inputs of all kinds are read as written, and what becomes of them where a stream lacks them,
// lies, or holds only changes.
#include "plugin/presets/InputValuesSerializers.h"

#include "datamodel/Journal.h"
#include "math/Constant.h"
#include "plugin/TestHost.h"

namespace Lathe::Audio::Plugin {
namespace {

using DataModel::Objects::IDynamicPropertyValue;
using Serialization::IDeSerialize;
using Serialization::IReadDataStream;
using Serialization::Tests::CChanges;

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

struct SPrepare : Core::TIArgCommand<IDynamicPropertyValue&> {
    void Execute(IDynamicPropertyValue& value) override {
        m_Seen.push_back(dynamic_cast<CTestProperty&>(value).m_Number);
    }
    std::vector<double> m_Seen;
};

// One of each kind, and the events of all of them, each with its letter.
class InputValues : public testing::Test {
protected:
    InputValues() : m_Journal(m_Params[0]) {
        m_Journal.Listen(m_Objects.GetStrings().GetElement(0).GetValueChangedEvent(), 's');
        m_Journal.Listen(m_Objects.GetCurves().GetElement(0).GetValueChangedEvent(), 'c');
        m_Journal.Listen(m_Objects.GetSurfaces().GetElement(0).GetValueChangedEvent(), 'f');
        m_Journal.Listen(m_Objects.GetCustomProperties().GetElement(0).GetValueChangedEvent(), 'p');
    }
    void Set(double number, const char* text) {
        m_Params[0].SetValue(number);
        m_Objects.GetStrings().GetElement(0).SetValue(text);
        m_Objects.GetCurves().GetElement(0).SetValue(Math::CConstantFunction(number));
        m_Objects.GetSurfaces().GetElement(0).SetValue(Math::CConstantBinaryFunction(number));
        m_Objects.GetCustomProperties().GetElement(0).SetValue(CTestProperty(number));
        m_Journal.Take();
    }
    // Behind the events since the last call.
    std::string Take() {
        const std::unique_ptr<Math::IFunction> curve(
            m_Objects.GetCurves().GetElement(0).GetValue());
        const std::unique_ptr<Math::IBinaryFunction> surface(
            m_Objects.GetSurfaces().GetElement(0).GetValue());
        const std::unique_ptr<IDynamicPropertyValue> value(
            m_Objects.GetCustomProperties().GetElement(0).GetValue());
        const auto* property = dynamic_cast<const CTestProperty*>(value.get());
        std::ostringstream text;
        text << m_Journal.Take() << ' ' << m_Params[0].GetValue() << ' '
             << TakeText(m_Objects.GetStrings().GetElement(0).GetValue()) << ' '
             << curve->Evaluate(0.3) << ' ' << surface->Evaluate(0.3, 0.7) << ' '
             << (property ? property->m_Number : NAN);
        return text.str();
    }
    // How many of the kinds it reads.
    int Read(const IReadDataStream& stream) {
        CInputStringsDeSerializer strings(m_Objects.GetStrings());
        CInputCurvesDeSerializer curves(m_Objects.GetCurves());
        CInputSurfacesDeSerializer surfaces(m_Objects.GetSurfaces());
        return ReadObjectOrDefaults(stream, "p", m_ParamsReader) +
               ReadObjectOrDefaults(stream, "s", strings) +
               ReadObjectOrDefaults(stream, "c", curves) +
               ReadObjectOrDefaults(stream, "f", surfaces) +
               ReadObjectOrDefaults(stream, "u", m_PropertiesReader);
    }

    CPluginTestFilter m_Filter;
    CInputObjects m_Objects{m_Filter};
    THostParams<DataModel::Objects::ICaptureParam> m_Params{m_Filter.GetInputParamsInfo()};
    DataModel::CJournal m_Journal;
    SPrepare m_Prepare;
    CInputParamsDeSerializer m_ParamsReader{m_Params};
    CInputCustomPropertiesDeSerializer m_PropertiesReader{m_Objects.GetCustomProperties(),
                                                          &m_Prepare};
};

TEST_F(InputValues, OfAllKindsAreReadAsWritten) {
    Serialization::Tests::ForEachStream([&](auto& stream, const auto& reload) {
        Set(1.0 / 3.0, "<\xc3\xa4> & \"b\"");
        const std::string written = Take();
        EXPECT_TRUE(stream.WriteObject("p", CInputParamsSerializer(m_Params)));
        EXPECT_TRUE(stream.WriteObject("s", CInputStringsSerializer(m_Objects.GetStrings())));
        EXPECT_TRUE(stream.WriteObject("c", CInputCurvesSerializer(m_Objects.GetCurves())));
        EXPECT_TRUE(stream.WriteObject("f", CInputSurfacesSerializer(m_Objects.GetSurfaces())));
        EXPECT_TRUE(stream.WriteObject(
            "u", CInputCustomPropertiesSerializer(m_Objects.GetCustomProperties())));
        reload();
        EXPECT_EQ(Read(Serialization::CMemDataObject()), 0);
        EXPECT_EQ(Take(), "bvescfp 1 none 0 0 1");
        EXPECT_EQ(Read(stream), 5);
        EXPECT_EQ(Take(), "bvescfp" + written);
        EXPECT_EQ(Read(CChanges()), 5);
        EXPECT_EQ(Take(), written);
    });
    const CInputObjects none(CPluginTestFilter({.m_Objects = 0}));
    Serialization::CMemDataObject stream;
    EXPECT_TRUE(CInputStringsSerializer(none.GetStrings()).Serialize(stream));
    EXPECT_EQ(stream, Serialization::CMemDataObject()) << "not even a count";
}

// The level goes from 0 to 2, with the default 1.
TEST_F(InputValues, AreFiniteInRangeAndAsManyAsTheInstanceHas) {
    // What is stored, and what it becomes of 0.5.
    const double cases[][2] = {{0.75, 0.75}, {7.0, 2.0},      {-1e300, 0.0},
                               {NAN, 1.0},   {INFINITY, 1.0}, {-INFINITY, 1.0}};
    for (const auto& [stored, result] : cases) {
        SCOPED_TRACE(stored);
        m_Params[0].SetValue(0.5);
        Serialization::CMemDataObject stream;
        CChanges changes;
        EXPECT_TRUE(WriteValue(stream, "p0", stored) && WriteValue(changes, "p0", stored));
        EXPECT_TRUE(WriteValue(stream, "p1", 0.25) && WriteValue(stream, "count", 2000000000));
        EXPECT_TRUE(m_ParamsReader.DeSerialize(changes));
        EXPECT_EQ(m_Params[0].GetValue(), std::isfinite(stored) ? result : 0.5);
        EXPECT_EQ(m_ParamsReader.DeSerialize(stream), std::isfinite(stored));
        EXPECT_EQ(m_Params[0].GetValue(), result);
    }
}

TEST_F(InputValues, OfUnknownClassOrNoneGetTheDefault) {
    const std::string known = std::string("<obj0 isNull='0' type='") + CTestProperty::ClassId() +
                              "'><content number='7'/></obj0>";
    // What 5 becomes, with the default 1, in a full stream and in one of changes, where "p" tells
    // of a write; and how many were new.
    const std::tuple<std::string, const char*, const char*, std::size_t> cases[] = {
        {known, "p7 reads", "p7 reads", 2},
        {known.substr(0, known.find("<content")) + "</obj0>", "p1 fails", "5 fails", 2},
        {"<obj0 isNull='0' type='?'><content number='7'/></obj0>", "p1 fails", "5 fails", 0},
        {"<obj0 isNull='1'/>", "p1 reads", "p1 reads", 0},
        {"<obj0><content number='7'/></obj0>", "p1 fails", "p7 reads", 0},
        {"<obj0><content/></obj0>", "p1 fails", "p5 reads", 0},
        {"<obj1 isNull='1'/>", "p1 fails", "5 reads", 0}};
    for (const auto& [object, full, incremental, created] : cases) {
        SCOPED_TRACE(object);
        Serialization::CXmlDataObject document("Root");
        ASSERT_TRUE(
            Serialization::Tests::Parse(document, "<r count='-1' obj0='3'>" + object + "</r>"));
        const CChangesView changes(document);
        m_Prepare.m_Seen.clear();
        for (const bool isFull : {true, false}) {
            Set(5.0, "");
            const bool reads = isFull ? m_PropertiesReader.DeSerialize(document)
                                      : m_PropertiesReader.DeSerialize(changes);
            const std::string shown = Take();
            EXPECT_EQ(shown.substr(0, shown.find(' ')) + shown.substr(shown.rfind(' ') + 1) +
                          (reads ? " reads" : " fails"),
                      isFull ? full : incremental);
        }
        EXPECT_EQ(m_Prepare.m_Seen, std::vector<double>(created)) << "before it reads";
    }
}

} // namespace
} // namespace Lathe::Audio::Plugin
