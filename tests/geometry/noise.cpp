#include "vxnumeric.h"

#include <gtest/gtest.h>

namespace {

TEST(Noise, lattice_values_are_fixed)
{
    EXPECT_EQ(vxNumeric::intNoise_1D(0), 1 - 1376312589 / 1073741824.0);
    // n = 1 scrambles 2^13 + 1; this once nothing wraps, so plain integers tell the value.
    const long long m = 8193;
    const long long sum = m * (m * m * 15731 + 789221) + 1376312589;
    EXPECT_EQ(vxNumeric::intNoise_1D(1), 1 - static_cast<double>(sum % 2147483648LL) / 1073741824.0);
}

TEST(Noise, huge_and_non_finite_arguments)
{
    EXPECT_EQ(vxNumeric::smoothNoise_1D(4294967296.0 * 1000 + 17.9), vxNumeric::intNoise_1D(17));
    for (double x : { std::nan(""), HUGE_VAL, -HUGE_VAL }) {
        EXPECT_EQ(vxNumeric::smoothNoise_1D(x), vxNumeric::intNoise_1D(0));
        EXPECT_EQ(vxNumeric::perlinNoise_1D(x), vxNumeric::perlinNoise_1D(0));
    }
}

TEST(Noise, interpolation_meets_the_lattice)
{
    EXPECT_EQ(vxNumeric::interpolateNoise_1D(7), vxNumeric::intNoise_1D(7));
    EXPECT_NEAR(vxNumeric::interpolateNoise_1D(7.999999), vxNumeric::intNoise_1D(8), 1e-6);
    EXPECT_EQ(vxNumeric::cubicInterpolate_1D(9, 2, 5, -4, 0), 2);
    EXPECT_EQ(vxNumeric::cubicInterpolate_1D(9, 2, 5, -4, 1), 5);
    EXPECT_NEAR(vxNumeric::perlinNoise_1D(3),
                vxNumeric::intNoise_1D(3) + vxNumeric::intNoise_1D(6) * 0.1 +
                    vxNumeric::intNoise_1D(12) * 0.01 + vxNumeric::intNoise_1D(24) * 0.001,
                1e-15);
}

} // namespace
