// Proves what descriptions keep and copy, when they tell of changes, and that what they own is
// destroyed exactly once.

#include "core/Tracked.h"
#include "core/runtime/ObjectsFactory.h"
#include "datamodel/Journal.h"
#include "datamodel/objects/CurveInfo.h"
#include "datamodel/objects/CustomPropertyInfo.h"
#include "datamodel/objects/StringInfo.h"
#include "datamodel/objects/SurfaceInfo.h"
#include "datamodel/objects/text/LogPositionMapper.h"
#include "datamodel/objects/text/ParamValueToText.h"
#include "datamodel/objects/text/ValueCurveNames.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>

namespace Lathe::DataModel::Objects {

namespace {

std::string Text(const IConstParamInfo& info, double value) {
    const std::unique_ptr<char[]> text(info.GetValueToText().ToText(value));
    return text.get();
}

TEST(ObjectInfo, FiresOnEverySetAndCopiesNoListeners) {
    CObjectInfo info(nullptr, nullptr), copy;
    EXPECT_STREQ(info.GetDescription(), "");
    CJournal journal(info.GetChangedEvent()), copyJournal(copy.GetChangedEvent());
    info.SetName("Gain");
    info.SetName(info.GetName());
    info.SetDescription("Pre-gain");
    static_cast<IObjectInfo&>(copy) = info;
    EXPECT_EQ(copyJournal.Take(), "c");
    EXPECT_STREQ(copy.GetName(), "Gain");
    EXPECT_STREQ(copy.GetDescription(), "Pre-gain");
    copy.SetName("x");
    EXPECT_EQ(journal.Take(), "ccc");
}

TEST(ParamInfo, StartsWithTheDefaultsOfItsType) {
    struct {
        EParamType m_Type;
        const char* m_Text;
    } const cases[] = {
        {EParamType::Boolean, "2"},  {EParamType::Integer, "2"}, {EParamType::Float, "1.75"},
        {EParamType::Reserved, "2"}, {EParamType(9), "1.75"},
    };
    for (const auto& row : cases)
        EXPECT_EQ(Text(CParamInfo(row.m_Type, 0, 7, 0, "", "", ""), 1.75), row.m_Text);
    const CParamInfo info;
    EXPECT_EQ(info.GetType(), EParamType::Float);
    EXPECT_TRUE(!info.GetName() && !info.GetUnit() && !info.GetDescription());
}

TEST(ParamInfo, FiresWhenNumbersDifferAndForTextsAlways) {
    CParamInfo info(EParamType::Float, 0, 10, 5, "n", "u", "d");
    CJournal journal(info.GetChangedEvent());
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const auto set = [&](double min, double value, double max, EParamType type) {
        info.SetMin(min);
        info.SetDefault(value);
        info.SetMax(max);
        info.SetType(type);
        return journal.Take();
    };
    EXPECT_EQ(set(0, 5, 10, EParamType::Float), "");
    EXPECT_EQ(set(nan, nan, nan, EParamType::Float), "");
    EXPECT_EQ(set(1, 6, 11, EParamType::Integer), "cccc");
    EXPECT_EQ(info.GetPositionMapper().PositionToValue(0.34), 4.0) << "the mapper follows";
    info.SetName(info.GetName());
    info.SetUnit("u");
    info.SetDescription(nullptr);
    EXPECT_EQ(journal.Take(), "ccc");
    EXPECT_STREQ(info.GetName(), "n");
    EXPECT_EQ(info.GetDescription(), nullptr);
}

TEST(ParamInfo, DestroysWhatItOwns) {
    struct CTestMapper : CLinearPositionMapper, CTracked {
        using CLinearPositionMapper::Clone;
    };
    CTestMapper borrowed;
    {
        auto* owned = new CTestMapper;
        CParamInfo info(EParamType::Float, 0, 1, 0, "", "", "", nullptr, owned);
        CJournal journal(info.GetChangedEvent());
        info.SetPositionMapper(owned, true);
        EXPECT_EQ(CTracked::s_Alive, 2) << "the same one stays";
        info.SetPositionMapper(&borrowed, false);
        EXPECT_EQ(CTracked::s_Alive, 1);
        info.SetPositionMapper(new CTestMapper, true);
        EXPECT_EQ(CTracked::s_Alive, 2) << "the borrowed one lives";
        info.SetPositionMapper(nullptr, false);
        EXPECT_EQ(info.GetPositionMapper().ValueToPosition(0.125), 0.125) << "the built-in one";
        EXPECT_EQ(journal.Take(), "cccc");
    }
    EXPECT_EQ(CTracked::s_Alive, 1);
}

TEST(ParamInfo, CopiesEverythingAndFiresOnce) {
    const CParamInfo source(EParamType::Integer, 20, 22000, 650, "Frequency", "Hz", "Centre",
                            new CParamValueToText("%.0f", false, "{value}!"),
                            new CLogPositionMapper(EParamType::Integer, 20, 22000));
    CParamInfo copy;
    CJournal journal(copy.GetChangedEvent());
    copy = source;
    copy.Copy(copy);
    EXPECT_EQ(journal.Take(), "cc");
    EXPECT_EQ(copy.GetType(), EParamType::Integer);
    EXPECT_STREQ(copy.GetName(), "Frequency");
    EXPECT_STREQ(copy.GetUnit(), "Hz");
    EXPECT_STREQ(copy.GetDescription(), "Centre");
    EXPECT_EQ(copy.GetDefault(), 650.0);
    EXPECT_EQ(Text(copy, 3.0), "3!");
    EXPECT_EQ(copy.GetPositionMapper().PositionToValue(1.0), 22000.0);

    // The clone of a built-in mapper is an ordinary mapper, which stays with the old range.
    CParamInfo linear;
    linear = CParamInfo(EParamType::Float, 0, 10, 0, "", "", "");
    linear.SetMax(20.0);
    EXPECT_EQ(linear.GetPositionMapper().PositionToValue(1.0), 10.0);
    linear.SetPositionMapper(nullptr, false);
    EXPECT_EQ(linear.GetPositionMapper().PositionToValue(1.0), 20.0);
}

double Evaluate(const CCurveInfo& info) {
    return info.GetDefaultValue().Evaluate(123.0);
}
double Evaluate(const CSurfaceInfo& info) {
    return info.GetDefaultValue().Evaluate(123.0, 456.0);
}

// What curves and surfaces share, TConstant being their constant function.
template <class TInfo, class TConstant>
void CheckFunctionInfo() {
    TInfo info("Response", nullptr), copy;
    CJournal journal(info.GetChangedEvent()), copyJournal(copy.GetChangedEvent());
    EXPECT_EQ(Evaluate(info), 0.0);
    info.GetYInfo().SetDefault(7.0);
    EXPECT_EQ(Evaluate(info), 7.0) << "the built default follows the Y axis";
    info.SetXInfo(CParamInfo(EParamType::Float, 20, 22000, 20, "Frequency", "Hz", nullptr));
    info.SetDescription("d");
    EXPECT_EQ(journal.Take(), "ccc");

    copy = info;
    EXPECT_EQ(copyJournal.Take(), "c") << "not once more for each axis";
    EXPECT_STREQ(copy.GetName(), "Response");
    EXPECT_STREQ(copy.GetDescription(), "d");
    EXPECT_STREQ(copy.GetXInfo().GetUnit(), "Hz");
    copy.GetYInfo().SetDefault(8.0);
    EXPECT_EQ(copyJournal.Take(), "c") << "listens to its axes again";
    EXPECT_EQ(Evaluate(copy), 7.0) << "a copy's default is given";
    copy = *&copy;
    EXPECT_EQ(Evaluate(copy), 7.0);
    EXPECT_EQ(Evaluate(TInfo(TInfo("", "", new TConstant(3.0)))), 3.0);
}

TEST(FunctionInfos, FollowTheirAxes) {
    CheckFunctionInfo<CCurveInfo, Math::CConstantFunction>();
    CheckFunctionInfo<CSurfaceInfo, Math::CConstantBinaryFunction>();
    CSurfaceInfo info;
    info.GetZInfo().SetDefault(5.0);
    EXPECT_EQ(Evaluate(info), 0.0) << "the default is that of Y, not of Z";
}

TEST(StringAndCustomPropertyInfo, CopyTheirDefault) {
    CStringInfo string;
    CJournal journal(string.GetChangedEvent());
    string = CStringInfo("Name", "Comment", "text");
    EXPECT_EQ(journal.Take(), "c");
    EXPECT_STREQ(string.GetDefaultValue(), "text");
    EXPECT_STREQ(string.GetName(), "Name");

    const CCustomPropertyInfo property("p", "", new CEmptyDynamicPropertyValue);
    CCustomPropertyInfo copy;
    copy = property;
    EXPECT_TRUE(copy.GetDefaultValue());
    EXPECT_NE(copy.GetDefaultValue(), property.GetDefaultValue());
    copy = CCustomPropertyInfo();
    EXPECT_EQ(copy.GetDefaultValue(), nullptr);
}

TEST(DynamicPropertyValue, IsMadeAndAskedByClassId) {
    const char* id = CEmptyDynamicPropertyValue::ClassId();
    const std::unique_ptr<IDynamicPropertyValue> value(
        Runtime::CreateObject<IDynamicPropertyValue>(id));
    ASSERT_NE(value, nullptr) << "not registered";
    EXPECT_TRUE(value->IsSameType(CEmptyDynamicPropertyValue()));
    EXPECT_EQ(value->QueryInterface(id), dynamic_cast<CEmptyDynamicPropertyValue*>(value.get()));
    EXPECT_EQ(value->QueryInterface(IDynamicPropertyValue::InterfaceId()), nullptr);
    EXPECT_EQ(value->QueryInterface(nullptr), nullptr);
}

TEST(ValueCurveNames, FindWhatTheyName) {
    for (int i = -1; i <= ValueCurveCount; ++i) {
        const auto curve = static_cast<Math::EParamValueCurve>(i);
        const bool known = i >= 0 && i < ValueCurveCount;
        EXPECT_EQ(GetValueCurveName(curve) && GetValueCurveSpeedName(curve), known);
        const char* keyword = GetValueCurveKeyword(curve);
        EXPECT_EQ(FindValueCurve(keyword), keyword ? curve : Math::EParamValueCurve::Linear);
    }
    EXPECT_STREQ(GetValueCurveName(Math::EParamValueCurve::Linear), "Linear");
    EXPECT_STREQ(GetValueCurveSpeedName(Math::EParamValueCurve::Linear), "Linear");
    EXPECT_EQ(FindValueCurve("square_root"), Math::EParamValueCurve::SquareRoot);
    EXPECT_EQ(FindValueCurve("log0"), Math::EParamValueCurve::Linear);
}

} // namespace

} // namespace Lathe::DataModel::Objects
