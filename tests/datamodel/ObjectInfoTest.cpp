// Proves what descriptions keep and copy, when they tell of changes, and that what they own is
// destroyed exactly once.

#include "core/runtime/ObjectsFactory.h"
#include "datamodel/EventCounter.h"
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
#include <utility>

namespace Lathe::DataModel::Objects {

namespace {

std::string Text(const IConstParamInfo& info, double value) {
    const std::unique_ptr<char[]> text(info.GetValueToText().ToText(value));
    return text.get();
}

// A mapper whose constant position tells it apart, and which tells of its death.
class CTestMapper : public IParamPositionMapper {
public:
    explicit CTestMapper(int& alive, double position) : m_Alive(alive), m_Position(position) {
        ++m_Alive;
    }
    ~CTestMapper() override { --m_Alive; }
    double ValueToPosition(double) const override { return m_Position; }
    double PositionToValue(double) const override { return 0.0; }
    CTestMapper* Clone() const override { return new CTestMapper(m_Alive, m_Position); }

private:
    int& m_Alive;
    double m_Position;
};

TEST(ObjectInfo, FiresOnEverySet) {
    CObjectInfo info(nullptr, nullptr);
    EXPECT_STREQ(info.GetName(), "");
    EXPECT_STREQ(info.GetDescription(), "");
    CEventCounter changed(info.GetChangedEvent());
    info.SetName("Gain");
    info.SetName(info.GetName());
    info.SetDescription("Pre-gain");
    EXPECT_EQ(changed.Take(), 3);

    CObjectInfo copy;
    CEventCounter copyChanged(copy.GetChangedEvent());
    IObjectInfo& target = copy;
    target = info;
    EXPECT_EQ(copyChanged.Take(), 1);
    EXPECT_STREQ(copy.GetName(), "Gain");
    EXPECT_STREQ(copy.GetDescription(), "Pre-gain");
    copy.SetName("x");
    EXPECT_EQ(changed.Take(), 0) << "listeners are not copied";
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
    EXPECT_EQ(info.GetName(), nullptr);
    EXPECT_EQ(info.GetUnit(), nullptr);
    EXPECT_EQ(info.GetDescription(), nullptr);
}

TEST(ParamInfo, FiresWhenNumbersDifferAndForTextsAlways) {
    CParamInfo info(EParamType::Float, 0, 10, 5, "n", "u", "d");
    CEventCounter changed(info.GetChangedEvent());
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const auto numbers = [&](double min, double value, double max, EParamType type) {
        info.SetMin(min);
        info.SetDefault(value);
        info.SetMax(max);
        info.SetType(type);
        return changed.Take();
    };
    EXPECT_EQ(numbers(0, 5, 10, EParamType::Float), 0);
    EXPECT_EQ(numbers(nan, nan, nan, EParamType::Float), 0);
    EXPECT_EQ(numbers(1, 6, 11, EParamType::Integer), 4);
    EXPECT_EQ(info.GetMin() + info.GetDefault() + info.GetMax(), 18.0);
    EXPECT_EQ(info.GetPositionMapper().PositionToValue(0.34), 4.0) << "the mapper follows";

    info.SetName(info.GetName());
    info.SetUnit("u");
    info.SetDescription(nullptr);
    EXPECT_EQ(changed.Take(), 3);
    EXPECT_STREQ(info.GetName(), "n");
    EXPECT_EQ(info.GetDescription(), nullptr);
}

TEST(ParamInfo, DestroysWhatItOwns) {
    int alive = 0;
    CTestMapper borrowed(alive, 0.25);
    {
        auto* owned = new CTestMapper(alive, 0.5);
        CParamInfo info(EParamType::Float, 0, 1, 0, "", "", "", nullptr, owned);
        CEventCounter changed(info.GetChangedEvent());
        info.SetPositionMapper(owned, true);
        EXPECT_EQ(info.GetPositionMapper().ValueToPosition(1.0), 0.5) << "the same one stays";
        info.SetPositionMapper(&borrowed, false);
        EXPECT_EQ(alive, 1);
        info.SetPositionMapper(new CTestMapper(alive, 0.75), true);
        EXPECT_EQ(alive, 2) << "the borrowed one lives";
        info.SetPositionMapper(nullptr, false);
        EXPECT_EQ(alive, 1);
        EXPECT_EQ(info.GetPositionMapper().ValueToPosition(0.125), 0.125);
        info.SetValueToText(new CParamValueToText("%.3f", false, "{value}"), true);
        EXPECT_EQ(changed.Take(), 5);
        EXPECT_EQ(Text(info, 1.0), "1.000");
    }
    EXPECT_EQ(alive, 1);
}

TEST(ParamInfo, CopiesEverythingAndFiresOnce) {
    const CParamInfo source(EParamType::Integer, 20, 22000, 650, "Frequency", "Hz", "Centre",
                            new CParamValueToText("%.0f", false, "{value}!"),
                            new CLogPositionMapper(EParamType::Integer, 20, 22000));
    CParamInfo copy;
    CEventCounter changed(copy.GetChangedEvent());
    copy = source;
    EXPECT_EQ(changed.Take(), 1);
    copy.Copy(copy);
    EXPECT_EQ(changed.Take(), 1);
    const CParamInfo second(copy);
    for (const CParamInfo* info : {&std::as_const(copy), &second}) {
        EXPECT_EQ(info->GetType(), EParamType::Integer);
        EXPECT_STREQ(info->GetName(), "Frequency");
        EXPECT_STREQ(info->GetUnit(), "Hz");
        EXPECT_STREQ(info->GetDescription(), "Centre");
        EXPECT_EQ(info->GetMin(), 20.0);
        EXPECT_EQ(info->GetMax(), 22000.0);
        EXPECT_EQ(info->GetDefault(), 650.0);
        EXPECT_EQ(Text(*info, 3.0), "3!");
        EXPECT_EQ(info->GetPositionMapper().PositionToValue(1.0), 22000.0);
    }

    // The clone of a built-in mapper is an ordinary mapper, which stays with the old range.
    const CParamInfo linearSource(EParamType::Float, 0, 10, 0, "", "", "");
    CParamInfo linear(linearSource);
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

// What curves and surfaces share, the default's constant function being TConstant.
template <class TInfo, class TConstant>
void CheckFunctionInfo() {
    TInfo info("Response", nullptr);
    CEventCounter changed(info.GetChangedEvent());
    EXPECT_EQ(Evaluate(info), 0.0);
    info.GetYInfo().SetDefault(7.0);
    EXPECT_EQ(changed.Take(), 1);
    EXPECT_EQ(Evaluate(info), 7.0) << "the built default follows the Y axis";
    EXPECT_EQ(&info.GetDefaultValue(), &info.GetDefaultValue());
    info.SetXInfo(CParamInfo(EParamType::Float, 20, 22000, 20, "Frequency", "Hz", nullptr));
    info.SetDescription("d");
    info.SetName(info.GetName());
    EXPECT_EQ(changed.Take(), 3);

    TInfo copy;
    CEventCounter copyChanged(copy.GetChangedEvent());
    copy = info;
    EXPECT_EQ(copyChanged.Take(), 1) << "not once more for each axis";
    EXPECT_STREQ(copy.GetName(), "Response");
    EXPECT_STREQ(copy.GetDescription(), "d");
    EXPECT_STREQ(copy.GetXInfo().GetUnit(), "Hz");
    copy.GetYInfo().SetDefault(8.0);
    EXPECT_EQ(copyChanged.Take(), 1) << "listens to its axes again";
    EXPECT_EQ(Evaluate(copy), 7.0) << "a copy's default is given";
    const TInfo& itself = copy;
    copy = itself;
    EXPECT_EQ(Evaluate(copy), 7.0);

    const TInfo given("", "", new TConstant(3.0));
    const TInfo second(given);
    EXPECT_EQ(Evaluate(second), 3.0);
    EXPECT_NE(&given.GetDefaultValue(), &second.GetDefaultValue());
}

TEST(CurveInfo, FollowsItsAxes) {
    CheckFunctionInfo<CCurveInfo, Math::CConstantFunction>();
}

TEST(SurfaceInfo, FollowsItsAxes) {
    CheckFunctionInfo<CSurfaceInfo, Math::CConstantBinaryFunction>();
    CSurfaceInfo info;
    info.GetZInfo().SetDefault(5.0);
    EXPECT_EQ(Evaluate(info), 0.0) << "the default is that of Y, not of Z";
}

TEST(StringAndCustomPropertyInfo, CopyTheirDefault) {
    const CStringInfo source("Name", "Comment", "text");
    CStringInfo string;
    CEventCounter stringChanged(string.GetChangedEvent());
    string = source;
    EXPECT_EQ(stringChanged.Take(), 1);
    EXPECT_STREQ(string.GetDefaultValue(), "text");
    EXPECT_STREQ(string.GetName(), "Name");

    const CCustomPropertyInfo property("p", "", new CEmptyDynamicPropertyValue);
    CCustomPropertyInfo copy;
    EXPECT_EQ(copy.GetDefaultValue(), nullptr);
    copy = property;
    ASSERT_NE(copy.GetDefaultValue(), nullptr);
    EXPECT_NE(copy.GetDefaultValue(), property.GetDefaultValue());
    copy.Copy(copy);
    EXPECT_NE(copy.GetDefaultValue(), nullptr);
    copy = CCustomPropertyInfo();
    EXPECT_EQ(copy.GetDefaultValue(), nullptr);
}

TEST(DynamicPropertyValue, IsMadeAndAskedByClassId) {
    const char* id = CEmptyDynamicPropertyValue::ClassId();
    const std::unique_ptr<IDynamicPropertyValue> value(
        Runtime::CreateObject<IDynamicPropertyValue>(id));
    ASSERT_NE(value, nullptr) << "not registered";
    const std::unique_ptr<IDynamicPropertyValue> clone(value->Clone());
    EXPECT_TRUE(value->IsSameType(*clone));
    EXPECT_EQ(clone->QueryInterface(id), dynamic_cast<CEmptyDynamicPropertyValue*>(clone.get()));
    EXPECT_EQ(clone->QueryInterface(IDynamicPropertyValue::InterfaceId()), nullptr);
    EXPECT_EQ(clone->QueryInterface(nullptr), nullptr);
}

TEST(ValueCurveNames, FindWhatTheyName) {
    for (int i = -1; i <= ValueCurveCount; ++i) {
        const auto curve = static_cast<Math::EParamValueCurve>(i);
        const bool known = i >= 0 && i < ValueCurveCount;
        EXPECT_EQ(GetValueCurveName(curve) != nullptr, known);
        EXPECT_EQ(GetValueCurveSpeedName(curve) != nullptr, known);
        const char* keyword = GetValueCurveKeyword(curve);
        EXPECT_EQ(FindValueCurve(keyword), keyword ? curve : Math::EParamValueCurve::Linear);
    }
    EXPECT_STREQ(GetValueCurveName(Math::EParamValueCurve::Linear), "Linear");
    EXPECT_STREQ(GetValueCurveSpeedName(Math::EParamValueCurve::Linear), "Linear");
    EXPECT_EQ(FindValueCurve("square_root"), Math::EParamValueCurve::SquareRoot);
    for (const char* word : {"log0", "linear", "LOG", "", static_cast<const char*>(nullptr)})
        EXPECT_EQ(FindValueCurve(word), Math::EParamValueCurve::Linear);
}

} // namespace

} // namespace Lathe::DataModel::Objects
