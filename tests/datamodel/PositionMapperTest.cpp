// Proves that positions and values are inverse to each other, where the ends and the middle of
// ranges lie, and what happens outside of ranges and in empty ones.

#include "datamodel/objects/text/LinearPositionMapper.h"
#include "datamodel/objects/text/LogPositionMapper.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <memory>
#include <utility>

namespace Lathe::DataModel::Objects {

namespace {

using enum EParamType;
using Pairs = std::initializer_list<std::pair<double, double>>;

// Values and the positions that they have; then positions and the values that they give.
void CheckMapper(const IParamPositionMapper& mapper, Pairs positions, Pairs values) {
    for (const auto& [value, position] : positions)
        EXPECT_DOUBLE_EQ(mapper.ValueToPosition(value), position) << value;
    for (const auto& [position, value] : values)
        EXPECT_DOUBLE_EQ(mapper.PositionToValue(position), value) << position;
}

TEST(PositionMappers, AreInverseInBothDirections) {
    const CLinearPositionMapper linear(Float, -40, 40), falling(Float, 5, -3);
    const CLogPositionMapper log(Float, 20, 22000);
    for (const IParamPositionMapper* mapper :
         std::initializer_list<const IParamPositionMapper*>{&linear, &falling, &log}) {
        const std::unique_ptr<IParamPositionMapper> clone(mapper->Clone());
        for (double position = -0.5; position <= 1.5; position += 0.03125) {
            const double value = mapper->PositionToValue(position);
            EXPECT_NEAR(clone->ValueToPosition(value), position, 1e-13) << "a few roundings";
        }
    }
}

TEST(PositionMappers, BringValuesOntoTheirTypeWithoutClamping) {
    CheckMapper(CLinearPositionMapper(Float, -40, 40), {{60, 1.25}}, {{0, -40}, {1, 40}});
    CheckMapper(CLinearPositionMapper(Integer, 0, 4), {{2.4, 0.5}}, {{0.4, 2}, {2, 8}});
    CheckMapper(CLinearPositionMapper(Boolean, 0, 1), {{0.6, 1}}, {{0.5, 0}, {0.51, 1}});
    CheckMapper(CLinearPositionMapper(Float, 3.3, 3.3), {{-1, 0}, {7, 0}}, {{0, 3.3}, {0.3, 3.3}});
    CheckMapper(CLogPositionMapper(Float, 20, 22000), {},
                {{0, 20}, {0.5, std::sqrt(20.0 * 22000.0)}, {1, 22000}});
    CheckMapper(CLogPositionMapper(Integer, 1, 16), {{2.3, 0.25}}, {{0.3, 2}});
    CheckMapper(CLogPositionMapper(Float, 3.3, 3.3), {{-1, 0}, {7, 0}}, {{0, 3.3}, {0.3, 3.3}});
    CheckMapper(CLogPositionMapper(Float, 0, 100), {{100, 1}, {99.9, 0}, {0, 0}},
                {{0.5, 0}, {1, 100}});
}

} // namespace

} // namespace Lathe::DataModel::Objects
