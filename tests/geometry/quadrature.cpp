#include "vxnumeric.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

TEST(Quadrature, order_n_is_exact_up_to_degree_2n_minus_1)
{
    for (int n = 2; n <= 16; ++n) {
        for (int degree = 0; degree < 2 * n; ++degree) {
            const auto power = [degree](double x) { return std::pow(x, degree); };
            EXPECT_NEAR(vxNumeric::integrate(power, 0, 1, n) * (degree + 1), 1, 1e-14) << n << ", " << degree;
        }
    }
}

TEST(RootFinding, stays_in_the_bracket)
{
    const auto f = [](double x) { return x * x * x - 0.027; };
    const auto df = [](double x) { return 3 * x * x; };
    EXPECT_NEAR(vxNumeric::findRoot(f, df, 0.9, 0, 1, 32, 1e-12), 0.3, 1e-15);
    EXPECT_NEAR(vxNumeric::findRoot(f, df, 0, 0, 1, 32, 1e-12), 0.3, 1e-15) << "flat start: bisects";
    const auto broken = [](double) { return std::nan(""); };
    const double x = vxNumeric::findRoot(broken, broken, 0.5, 0, 1, 32, 1e-12);
    EXPECT_TRUE(x >= 0 && x <= 1);
    EXPECT_EQ(vxNumeric::findRoot(f, nullptr, 0.5, 0, 1, 9, 1e-12), 0.5);
}

} // namespace
