#include "support/shapes.h"

#include "vxcubic_p.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

const vx::Cubic arch{ { 0, 0, 10, 40, 70, 50, 100, 0 } };

double polygonLength(const vx::Cubic &c, double a, double b)
{
    double sum = 0;
    const int n = 20000;
    const auto at = [&](int i) { return vx::pointAt(c, std::min(a + (b - a) * i / n, 1.0)); };
    for (int i = 0; i < n; ++i)
        sum += at(i).getDistance(at(i + 1));
    return sum;
}

TEST(CurveLength, matches_a_fine_polygon)
{
    EXPECT_NEAR(vx::length(arch), polygonLength(arch, 0, 1), 1e-5);
    // The quarter of a parabola y = x^2 / 4 raised to a cubic has a closed form.
    const vx::Cubic parabola{ { 0, 0, 2.0 / 3, 0, 4.0 / 3, 1.0 / 3, 2, 1 } };
    EXPECT_NEAR(vx::length(parabola), std::sqrt(2) + std::asinh(1), 1e-12);
}

TEST(CurveLength, of_straight_curves_does_not_depend_on_speed)
{
    const vx::Cubic uneven{ { 0, 0, 24, 32, 27, 36, 30, 40 } };
    EXPECT_DOUBLE_EQ(vx::length(uneven), 50);
    const double expected = vx::pointAt(uneven, 0.3).getDistance(vx::pointAt(uneven, 0.6));
    EXPECT_NEAR(vx::length(uneven, 0.3, 0.6), expected, 1e-12);
    EXPECT_EQ(vx::length(uneven, 0.5, 0), 0);
}

TEST(TimeAtLength, is_the_inverse_of_length)
{
    const vx::Cubic cusp{ { 0, 0, 100, 100, 0, 100, 100, 0 } };
    const vx::Cubic uneven{ { 0, 0, 24, 32, 27, 36, 30, 40 } };
    for (const vx::Cubic &c : { arch, cusp, uneven }) {
        // Quadrature across a cusp, where the speed has a corner, is good to a few thousandths only.
        const double total = vx::length(c);
        const double tolerance = total * (c.v[2] == 100 ? 5e-3 : 1e-6);
        for (int i = 1; i < 20; ++i) {
            const double t = vx::timeAtLength(c, total * i / 20, vxTolerance::noTime);
            EXPECT_NEAR(polygonLength(c, 0, t), total * i / 20, tolerance);
            EXPECT_EQ(vx::timeAtLengthOf(c, total * i / 20, total), t)
                << "the same bits with the length known";
            const double back = vx::timeAtLength(c, -total * i / 20, vxTolerance::noTime);
            EXPECT_EQ(vx::timeAtLengthOf(c, -total * i / 20, total), back);
            EXPECT_NEAR(polygonLength(c, back, 1), total * i / 20, tolerance);
        }
    }
    const double t = vx::timeAtLength(arch, 20, 0.25);
    EXPECT_NEAR(polygonLength(arch, 0.25, t), 20, 1e-5);
}

TEST(TimeAtLength, of_a_line_gives_the_place_in_proportion)
{
    // Counting windings takes that for granted, far out and on short lines too.
    shapes::Random random(4);
    for (int i = 0; i < 20000; ++i) {
        const double far = std::pow(10, random.between(0, 4));
        const double size = std::pow(10, random.between(-2, 4));
        const double angle = random.between(0, 6.3);
        const vxPoint start(random.between(-far, far), random.between(-far, far));
        const vxPoint end(start.x + size * std::cos(angle), start.y + size * std::sin(angle));
        const vx::Cubic line = vx::Cubic::fromLine(start, end);
        const double length = vx::length(line);
        const double part = i % 3 == 0 ? 1. / 64 : i % 3 == 1 ? 63. / 64 : random.between(1. / 64, 63. / 64);
        const vxPoint found = vx::pointAt(line, vx::timeAtLengthOf(line, part * length, length));
        ASSERT_LT(found.getDistance(start.add(end.subtract(start).multiply(part))), 2e-10) << i;
    }
}

TEST(TimeAtLength, ends_and_out_of_range)
{
    const double none = vxTolerance::noTime;
    const double total = vx::length(arch);
    EXPECT_EQ(vx::timeAtLength(arch, total, none), 1);
    EXPECT_EQ(vx::timeAtLength(arch, -total, none), 0);
    EXPECT_EQ(vx::timeAtLength(arch, total + 1e-9, none), none);
    const double nearEnd = vx::timeAtLength(arch, total - 1e-11, none);
    EXPECT_TRUE(nearEnd > 0.999999 && nearEnd <= 1);
    for (double bad : { std::nan(""), HUGE_VAL, -HUGE_VAL })
        EXPECT_EQ(vx::timeAtLength(arch, bad, none), none) << bad;
    EXPECT_EQ(vx::timeAtLength(arch, 1, std::nan("")), none);
    EXPECT_EQ(vx::timeAtLength(arch, 1, 2), none);
    EXPECT_EQ(vx::timeAtLength(vx::Cubic::fromLine({ 1, 1 }, { 1, 1 }), 1, none), none);
}

} // namespace
