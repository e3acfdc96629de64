// Proves what descriptions keep and copy, and when they tell of changes. That what they own is
// destroyed exactly once shows under the address sanitizer.

#include "datamodel/Journal.h"
#include "datamodel/objects/CurveInfo.h"
#include "datamodel/objects/CustomPropertyInfo.h"
#include "datamodel/objects/StringInfo.h"
#include "datamodel/objects/SurfaceInfo.h"
#include "datamodel/objects/text/LogPositionMapper.h"
#include "datamodel/objects/text/ParamDataToText.h"
#include "datamodel/objects/text/ValueCurveNames.h"

namespace Lathe::DataModel::Objects {

namespace {

using enum EParamType;

TEST(ObjectInfos, FireOnEverySetAndCopyNoListeners) {
    CStringInfo info("Gain", nullptr, "text"), copy;
    EXPECT_STREQ(info.GetDescription(), "");
    CJournal journal(info.GetChangedEvent()), copyJournal(copy.GetChangedEvent());
    info.SetName(info.GetName());
    info.SetDescription("Pre-gain");
    copy = info;
    EXPECT_EQ(copy.GetDescription() + std::string(copy.GetDefaultValue()), "Pre-gaintext");
    EXPECT_EQ(journal.Take() + copyJournal.Take(), "ccc");
    const CCustomPropertyInfo property("p", "", new CEmptyDynamicPropertyValue);
    CCustomPropertyInfo propertyCopy;
    propertyCopy = property;
    EXPECT_TRUE(propertyCopy.GetDefaultValue() &&
                propertyCopy.GetDefaultValue() != property.GetDefaultValue());
}

// All that a description says, and its own text of 1.75.
std::string Describe(const IConstParamInfo& info) {
    CParamDataToText describe("%g", false,
                              "{name} {unit} {comment} {min} {max} {default} {text_value}");
    describe.SetInfo(info);
    return std::unique_ptr<char[]>(describe.ToText(1.75)).get();
}

TEST(ParamInfo, StartsWithTheDefaultsOfItsType) {
    for (const EParamType type : {Boolean, Integer, Reserved})
        EXPECT_EQ(Describe(CParamInfo(type, 0, 7, 3, "n", "u", "c")), "n u c 0 7 3 2");
    EXPECT_EQ(Describe(CParamInfo(EParamType(9), 0, 7, 3, "n", "u", "c")), "n u c 0 7 3 1.75");
    EXPECT_EQ(CParamInfo().GetUnit(), nullptr);
}

TEST(ParamInfo, FiresWhenNumbersDifferAndForTextsAlways) {
    CParamInfo info(Float, 0, 10, 5, "n", "u", "d");
    CJournal journal(info.GetChangedEvent());
    const auto set = [&](double min, double value, double max, EParamType type) {
        info.SetMin(min);
        info.SetDefault(value);
        info.SetMax(max);
        info.SetType(type);
        return journal.Take();
    };
    EXPECT_EQ(set(0, 5, 10, Float), "");
    EXPECT_EQ(set(NAN, NAN, NAN, Float), "");
    EXPECT_EQ(set(10, 6, 11, Float), "ccc") << "through an empty range";
    EXPECT_EQ(info.GetPositionMapper().ValueToPosition(10.5), 0.5) << "the mapper follows";
    EXPECT_EQ(set(1, 6, 11, Integer), "cc");
    EXPECT_EQ(info.GetPositionMapper().PositionToValue(0.34), 4.0);
    info.SetName(info.GetName());
    info.SetUnit("u");
    info.SetDescription(nullptr);
    EXPECT_EQ(journal.Take(), "ccc");
    EXPECT_EQ(Describe(info), "n u  1 11 6 1.75");
}

TEST(ParamInfo, CopiesEverythingAndFiresOnce) {
    CLinearPositionMapper borrowed(Float, 0, 5); // Outlives the copy, which does not delete it.
    CParamInfo copy;
    CJournal journal(copy.GetChangedEvent());
    copy = CParamInfo(Integer, 20, 22000, 650, "Frequency", "Hz", "Centre",
                      new CParamValueToText("%.0f", false, "{value}!"),
                      new CLogPositionMapper(Float, 20, 22000));
    copy.Copy(copy);
    EXPECT_EQ(journal.Take(), "cc");
    EXPECT_EQ(copy.GetType(), Integer);
    EXPECT_EQ(Describe(copy), "Frequency Hz Centre 20 22000 650 2!");
    EXPECT_EQ(copy.GetPositionMapper().ValueToPosition(20.0 * 1100.0), 1.0);

    // The clone of a built-in mapper is an ordinary mapper, which stays with the old range.
    copy = CParamInfo(Float, 0, 10, 0, "", "", "");
    copy.SetMax(20.0);
    EXPECT_EQ(copy.GetPositionMapper().PositionToValue(1.0), 10.0);
    copy.SetPositionMapper(&borrowed, false);
    copy.SetPositionMapper(nullptr, false);
    EXPECT_EQ(copy.GetPositionMapper().PositionToValue(1.0), 20.0);
}

// What curves and surfaces share, TConstant being their constant function.
template <class TInfo, class TConstant>
void CheckFunctionInfo() {
    const auto constant = [](const TInfo& info) {
        return dynamic_cast<const TConstant&>(info.GetDefaultValue()).GetValue();
    };
    TInfo info("Response", nullptr), copy;
    CJournal journal(info.GetChangedEvent()), copyJournal(copy.GetChangedEvent());
    EXPECT_EQ(constant(info), 0.0);
    info.GetYInfo().SetDefault(7.0);
    EXPECT_EQ(constant(info), 7.0) << "the built default follows the Y axis";
    info.SetXInfo(CParamInfo(Float, 20, 22000, 20, "Frequency", "Hz", nullptr));
    info.SetDescription("d");
    EXPECT_EQ(journal.Take(), "ccc");

    copy = info;
    EXPECT_EQ(copyJournal.Take(), "c") << "not once more for each axis";
    EXPECT_STREQ(copy.GetName(), "Response");
    EXPECT_STREQ(copy.GetXInfo().GetUnit(), "Hz");
    copy.GetYInfo().SetDefault(8.0);
    EXPECT_EQ(copyJournal.Take(), "c") << "listens to its axes again";
    copy = *&copy;
    EXPECT_EQ(constant(copy), 7.0) << "a copy's default is given";
    EXPECT_EQ(constant(TInfo(TInfo("", "", new TConstant(3.0)))), 3.0);
}

TEST(FunctionInfos, FollowTheirAxes) {
    CheckFunctionInfo<CCurveInfo, Math::CConstantFunction>();
    CheckFunctionInfo<CSurfaceInfo, Math::CConstantBinaryFunction>();
}

TEST(ValueCurveNames, FindWhatTheyName) {
    using Math::EParamValueCurve;
    for (int i = -1; i <= ValueCurveCount; ++i) {
        EXPECT_EQ(GetValueCurveName(EParamValueCurve(i)) != nullptr, i >= 0 && i < ValueCurveCount);
        const char* keyword = GetValueCurveKeyword(EParamValueCurve(i));
        EXPECT_EQ(FindValueCurve(keyword),
                  keyword ? EParamValueCurve(i) : EParamValueCurve::Linear);
    }
}

} // namespace

} // namespace Lathe::DataModel::Objects
