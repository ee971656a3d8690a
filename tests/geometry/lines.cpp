#include "vxline.h"

#include <gtest/gtest.h>

#include <random>

namespace {

TEST(Lines, signed_distance_of_axis_parallel_lines_agrees_with_tilted_ones)
{
    // A tilt of 1e-9 takes the general formula and may not change sign or size.
    for (const vxPoint &v : { vxPoint(0, 3), vxPoint(0, -3), vxPoint(3, 0), vxPoint(-3, 0) }) {
        const double exact = vxLine::getSignedDistance(1, 2, v.x, v.y, 4, 7, true);
        const double tilted = vxLine::getSignedDistance(1, 2, v.x + 1e-9, v.y + 1e-9, 4, 7, true);
        EXPECT_NEAR(exact, tilted, 1e-8);
    }
    EXPECT_EQ(vxLine::getSignedDistance(1, 2, 1, 2, 4, 7), -3) << "line of length 0";
    EXPECT_DOUBLE_EQ(vxLine(0, 0, 3, 4).getDistance(vxPoint(4, -3)), 5);
}

TEST(Lines, side_of_points_on_the_carrier_line)
{
    const vxLine line(0, 0, 10, 0);
    EXPECT_EQ(line.getSide(vxPoint(10, 0)), 0);
    EXPECT_EQ(line.getSide(vxPoint(11, 0)), 1);
    EXPECT_EQ(line.getSide(vxPoint(-1, 0)), -1);
    EXPECT_EQ(line.getSide(vxPoint(11, 0), true), 0);
}

TEST(Lines, crossing_of_random_lines_lies_on_both)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> coordinate(-100, 100);
    const auto draw = [&] { return vxPoint(coordinate(random), coordinate(random)); };
    int crossings = 0;
    for (int i = 0; i < 500; ++i) {
        const vxLine a(draw(), draw()), b(draw(), draw());
        const vxPoint p = a.intersect(b, true);
        EXPECT_LT(a.getDistance(p) + b.getDistance(p), 1e-10 * (1 + p.getLength()));
        // Two segments cross exactly when the ends of each are on different sides of the other.
        const auto parts = [](const vxLine &l, const vxLine &m) {
            const vxPoint end = m.getPoint().add(m.getVector());
            return l.getSide(m.getPoint(), true) != l.getSide(end, true);
        };
        const bool crosses = parts(a, b) && parts(b, a);
        EXPECT_EQ(a.intersect(b).isNaN(), !crosses);
        crossings += crosses;
    }
    EXPECT_GT(crossings, 50);
}

TEST(Lines, crossing_at_the_ends)
{
    const vxLine line(0, 0, 1, 0);
    EXPECT_EQ(line.intersect(vxLine(1 + 9e-13, -1, 1 + 9e-13, 1)), vxPoint(1, 0)) << "clamped to the end";
    EXPECT_TRUE(line.intersect(vxLine(1 + 2e-12, -1, 1 + 2e-12, 1)).isNaN());
    EXPECT_TRUE(line.intersect(vxLine(0.5, 0, 2, 0)).isNaN()) << "overlapping";
}

} // namespace
