// Proves that positions and values are inverse to each other, where the ends and the middle of
// ranges lie, and what happens outside of ranges and in empty ones.

#include "datamodel/objects/text/LinearPositionMapper.h"
#include "datamodel/objects/text/LogPositionMapper.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <memory>

namespace Lathe::DataModel::Objects {

namespace {

using Mappers = std::initializer_list<const IParamPositionMapper*>;

// Ten steps of double rounding, for numbers up to those of the ranges below.
constexpr double Tolerance = 1e-10;

// The clone of each mapper maps alike.
void CheckPair(const IParamPositionMapper& mapper, double value, double position) {
    const std::unique_ptr<IParamPositionMapper> clone(mapper.Clone());
    for (const IParamPositionMapper* each : Mappers{&mapper, clone.get()}) {
        EXPECT_NEAR(each->ValueToPosition(value), position, Tolerance) << value;
        EXPECT_NEAR(each->PositionToValue(position), value, Tolerance * std::fabs(value))
            << position;
    }
}

TEST(PositionMappers, AreInverseInBothDirections) {
    const CLinearPositionMapper linear(EParamType::Float, -40, 40);
    const CLinearPositionMapper falling(EParamType::Float, 5, -3);
    const CLogPositionMapper log(EParamType::Float, 20, 22000);
    for (const IParamPositionMapper* mapper : Mappers{&linear, &falling, &log}) {
        for (double position = -0.5; position <= 1.5; position += 0.03125)
            CheckPair(*mapper, mapper->PositionToValue(position), position);
    }
}

TEST(PositionMappers, ReachTheEndsExactly) {
    const CLinearPositionMapper linear(EParamType::Float, -40, 40);
    EXPECT_EQ(linear.PositionToValue(0.0), -40.0);
    EXPECT_EQ(linear.PositionToValue(1.0), 40.0);
    EXPECT_EQ(linear.ValueToPosition(60.0), 1.25) << "nothing is clamped";
    const CLogPositionMapper log(EParamType::Float, 20, 22000);
    EXPECT_EQ(log.PositionToValue(0.0), 20.0);
    EXPECT_EQ(log.PositionToValue(1.0), 22000.0);
    CheckPair(log, std::sqrt(20.0 * 22000.0), 0.5);
}

TEST(PositionMappers, BringValuesOntoTheirType) {
    const CLinearPositionMapper linear(EParamType::Integer, 0, 4);
    EXPECT_EQ(linear.ValueToPosition(2.4), 0.5);
    EXPECT_EQ(linear.PositionToValue(0.4), 2.0);
    const CLinearPositionMapper onOff(EParamType::Boolean, 0, 1);
    EXPECT_EQ(onOff.PositionToValue(0.5), 0.0);
    EXPECT_EQ(onOff.PositionToValue(0.51), 1.0);
    const CLogPositionMapper log(EParamType::Integer, 1, 16);
    EXPECT_EQ(log.PositionToValue(0.3), 2.0);
    EXPECT_EQ(log.ValueToPosition(2.3), 0.25);
}

TEST(PositionMappers, HaveOnePositionInAnEmptyRange) {
    const CLinearPositionMapper linear(EParamType::Float, 3.3, 3.3);
    const CLogPositionMapper log(EParamType::Float, 3.3, 3.3);
    for (const IParamPositionMapper* mapper : Mappers{&linear, &log}) {
        for (double any : {-1.0, 0.0, 0.3, 1.0, 3.3, 7.0}) {
            EXPECT_EQ(mapper->ValueToPosition(any), 0.0);
            EXPECT_EQ(mapper->PositionToValue(any), 3.3);
        }
    }
}

TEST(LogPositionMapper, KnowsOnlyTheEndsAboveZero) {
    const CLogPositionMapper log(EParamType::Float, 0, 100);
    EXPECT_EQ(log.ValueToPosition(100.0), 1.0);
    EXPECT_EQ(log.ValueToPosition(99.9), 0.0);
    EXPECT_EQ(log.ValueToPosition(0.0), 0.0);
    EXPECT_EQ(log.PositionToValue(1.0), 100.0);
    EXPECT_EQ(log.PositionToValue(0.5), 0.0);
}

TEST(LinearPositionMapper, FollowsItsSetters) {
    CLinearPositionMapper mapper;
    EXPECT_EQ(mapper.ValueToPosition(5.0), 0.0);
    mapper.SetMax(10.0);
    EXPECT_EQ(mapper.ValueToPosition(5.0), 0.5);
    mapper.SetMin(5.0);
    EXPECT_EQ(mapper.ValueToPosition(7.5), 0.5);
    mapper.SetType(EParamType::Integer);
    EXPECT_EQ(mapper.PositionToValue(0.55), 8.0);
    mapper.SetMax(5.0);
    EXPECT_EQ(mapper.ValueToPosition(7.5), 0.0);
    mapper.SetMax(6.0);
    EXPECT_EQ(mapper.ValueToPosition(6.0), 1.0);
}

} // namespace

} // namespace Lathe::DataModel::Objects
