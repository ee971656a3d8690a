#include "vxnumeric.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

namespace {

/** P_n and P_(n-1) at x by Bonnet's recurrence. */
std::pair<long double, long double> legendre(int n, long double x)
{
    long double previous = 1, current = x;
    for (int k = 2; k <= n; ++k)
        previous = std::exchange(current, ((2 * k - 1) * x * current - (k - 1) * previous) / k);
    return { current, previous };
}

/** Half a unit in the last place, and a little for the rounding of the reference. */
bool isNearest(double value, long double exact)
{
    return std::fabs(value - exact) <= 0.52L * (std::nextafter(value, 2) - value) + 1e-19L;
}

TEST(Quadrature, tables_hold_the_legendre_rule)
{
    for (int n = 2; n <= 16; ++n) {
        for (int i = 0; i < 8; ++i) {
            const double node = vxNumeric::abscissas[n - 2][i];
            const double weight = vxNumeric::weights[n - 2][i];
            if (i >= (n + 1) / 2) {
                EXPECT_TRUE(node == 0 && weight == 0);
                continue;
            }
            // Newton's method from the start values of Tricomi, in the higher precision.
            const int k = (n + 1) / 2 - i;
            long double x = std::cos(3.14159265358979323846L * (k - 0.25L) / (n + 0.5L));
            long double slope = 0;
            for (int round = 0; round < 20; ++round) {
                const auto [p, q] = legendre(n, x);
                slope = n * (x * p - q) / (x * x - 1);
                x -= p / slope;
            }
            EXPECT_TRUE(isNearest(node, x)) << n << ", " << i;
            EXPECT_TRUE(isNearest(weight, 2 / ((1 - x * x) * slope * slope))) << n << ", " << i;
        }
    }
}

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
