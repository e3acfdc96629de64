// Proves that sine and cosine taken together are those taken alone, to the bit: filters that run on
// either must not differ.

#include "math/SinCos.h"

#include "core/Fixtures.h"
#include "core/SameBits.h"

#include <limits>

namespace Lathe::Math {

TEST(SinCos, GivesTheBitsOfEachAlone) {
    SCOPED_TRACE("seed " + std::to_string(GetSeed()));
    std::mt19937 engine(GetSeed());
    std::uniform_real_distribution<double> exponent(-300.0, 300.0);
    std::vector<double> angles = {0.0, -0.0, 1e300, std::numeric_limits<double>::denorm_min()};
    for (int i = 0; i < 20000; ++i)
        angles.push_back((i % 2 ? -1.0 : 1.0) * std::exp2(exponent(engine) / (1 + i % 50)));
    for (const double angle : angles) {
        double sine = 0.0;
        double cosine = 0.0;
        SinCos(angle, sine, cosine);
        // The compiler would join two calls for one angle.
        const volatile double alone = angle;
        EXPECT_TRUE(Core::SameBits(sine, std::sin(alone))) << angle;
        EXPECT_TRUE(Core::SameBits(cosine, std::cos(alone))) << angle;
    }
}

} // namespace Lathe::Math
