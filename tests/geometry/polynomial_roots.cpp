#include "vxnumeric.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>

namespace {

const double inf = std::numeric_limits<double>::infinity();

std::vector<double> sorted(const QVector<double> &roots, int count)
{
    std::vector<double> result(roots.begin(), roots.begin() + std::max(0, count));
    std::sort(result.begin(), result.end());
    return result;
}

/** Relative to x, or absolute below 1. */
double nearestGap(double x, const std::vector<double> &values)
{
    double gap = inf;
    for (double v : values)
        gap = std::min(gap, std::fabs(v - x) / std::max(1.0, std::fabs(x)));
    return gap;
}

std::vector<double> cubicRoots(double a, double b, double c, double d, double min = 0, double max = 0)
{
    QVector<double> roots;
    const int count = vxNumeric::solveCubic(a, b, c, d, roots, min, max);
    return sorted(roots, count);
}

TEST(PolynomialRoots, discriminant_survives_cancellation)
{
    // (2^27 + 1)^2 - 2^27 (2^27 + 2) = 1, where the plain products agree in all their bits.
    const double v = 134217728;
    EXPECT_EQ(vxNumeric::getDiscriminant(v, v + 1, v + 2), 1);
}

TEST(PolynomialRoots, quadratics)
{
    const struct {
        const char *name;
        double a, b, c;
        int count;
        double x1, x2;
    } rows[] = {
        { "everything", 0, 0, 0, -1, 0, 0 },
        { "negative_by_rounding", 0.5, -0.2, 0.020000000000000004, 2, 0.2, 0.2 },
        { "double_root", 1, -4, 4, 1, 2, 0 },
        { "no_real_root", 1, 0, 1, 0, 0, 0 },
        { "far_apart", 1, -1e8, 1, 2, 1e-8, 1e8 },
        { "overflowing", 1e200, -3e200, 2e200, 2, 1, 2 },
        { "infinite", 1, inf, 1, 0, 0, 0 },
        { "tiny", 1e-11, -3e-11, 2e-11, 2, 1, 2 },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        QVector<double> roots;
        ASSERT_EQ(vxNumeric::solveQuadratic(row.a, row.b, row.c, roots), row.count);
        const std::vector<double> x = sorted(roots, row.count);
        for (size_t i = 0; i < x.size(); ++i)
            EXPECT_DOUBLE_EQ(x[i], i == 0 ? row.x1 : row.x2);
    }
}

TEST(PolynomialRoots, random_cubics_with_known_roots)
{
    // Roots k/64 make all coefficients exact, so that only the solver's own error shows.
    std::mt19937 random(11);
    std::uniform_int_distribution<int> numerator(-6400, 6400);
    for (int round = 0; round < 20000; ++round) {
        std::vector<double> r{ numerator(random) / 64.0, numerator(random) / 64.0, numerator(random) / 64.0 };
        std::sort(r.begin(), r.end());
        if (r[0] == r[1] || r[1] == r[2])
            continue;
        const double scale = std::ldexp(1, round % 41 - 20);
        const std::vector<double> x =
            cubicRoots(scale, -scale * (r[0] + r[1] + r[2]),
                       scale * (r[0] * r[1] + r[1] * r[2] + r[2] * r[0]), -scale * r[0] * r[1] * r[2]);
        ASSERT_EQ(x.size(), 3u) << r[0] << " " << r[1] << " " << r[2];
        for (int i = 0; i < 3; ++i) {
            // Condition of a root: rounding a coefficient moves it by about eps |x|^3 / product of distances.
            const double others = std::fabs((r[i] - r[(i + 1) % 3]) * (r[i] - r[(i + 2) % 3]));
            const double size = std::max(std::fabs(r[0]), std::fabs(r[2]));
            EXPECT_NEAR(x[i], r[i], 1e-15 * size * (1 + size * size / others));
        }
    }
}

TEST(PolynomialRoots, special_cubics)
{
    const struct {
        const char *name;
        double a, b, c, d;
        std::vector<double> roots;
        double tolerance;
    } rows[] = {
        { "triple", 1, -6, 12, -8, { 2 }, 1e-15 },
        { "double_below_single", 1, -5, 7, -3, { 1, 3 }, 3e-8 },
        { "double_above_single", 1, 1, -5, 3, { -3, 1 }, 3e-8 },
        { "nearly_double", 1, -4.0000001, 5.0000003, -2.0000002, { 1, 1.0000001, 2 }, 3e-8 },
        { "single_at_inflection", 1, 0, 1, -2e-6, { 2e-6 }, 1e-17 },
        { "six_decades_apart", 1, -1000001.000001, 1000001.000001, -1, { 1e-6, 1, 1e6 }, 1e-15 },
        { "overflowing_coefficients", 1e300, -6e300, 11e300, -6e300, { 1, 2, 3 }, 1e-14 },
        { "everything", 0, 0, 0, 0, {}, 0 },
        { "not_a_number", 1, std::nan(""), 0, 1, {}, 0 },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const std::vector<double> x = cubicRoots(row.a, row.b, row.c, row.d);
        ASSERT_TRUE(x.size() >= row.roots.size() && x.empty() == row.roots.empty());
        // Rounding may open a double root into two; each root found is a root, and each root is found.
        for (double found : x)
            EXPECT_LE(nearestGap(found, row.roots), row.tolerance);
        for (double root : row.roots)
            EXPECT_LE(nearestGap(root, x), row.tolerance);
    }
}

} // namespace
