#include "vxnumeric.h"

#include <gtest/gtest.h>

namespace {

TEST(Noise, huge_and_non_finite_arguments)
{
    EXPECT_EQ(vxNumeric::smoothNoise_1D(4294967296.0 * 1000 + 17.9), vxNumeric::intNoise_1D(17));
    for (double x : { std::nan(""), HUGE_VAL, -HUGE_VAL }) {
        EXPECT_EQ(vxNumeric::smoothNoise_1D(x), vxNumeric::intNoise_1D(0));
        EXPECT_EQ(vxNumeric::perlinNoise_1D(x), vxNumeric::perlinNoise_1D(0));
    }
}

} // namespace
