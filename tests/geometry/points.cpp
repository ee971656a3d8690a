#include "vxpoint.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

const double nan = std::numeric_limits<double>::quiet_NaN();

TEST(Points, angles)
{
    const vxPoint zero, diagonal(-1, 1), right(3, 0), up(0, -2);
    EXPECT_EQ(zero.getAngleInRadians(nullptr), 0);
    EXPECT_TRUE(std::isnan(diagonal.getAngle(&zero)));
    EXPECT_DOUBLE_EQ(diagonal.getAngle(), 135);
    EXPECT_DOUBLE_EQ(right.getAngle(&up), 90);
    EXPECT_DOUBLE_EQ(right.getDirectedAngle(up), -90);
    vxPoint turned(3, 4);
    turned.setAngle(-90);
    EXPECT_NEAR(turned.getDistance(vxPoint(0, -5)), 0, 1e-14);
    EXPECT_NE(vxPoint(1, 0).rotate(90).x, 0) << "rotation does not snap";
    EXPECT_NEAR(vxPoint(4, 0).rotate(180, &right).getDistance(vxPoint(2, 0)), 0, 1e-14);
    EXPECT_EQ(vxPoint(-0.0, 1).getQuadrant(), 1);
}

TEST(Points, rounding_sends_halves_up_and_leaves_what_is_no_integer)
{
    const double rows[][2] = { { 2.5, 3 },
                               { -2.5, -2 },
                               { 2147483647.4, 2147483647 },
                               { 2147483647.5, 2147483647.5 },
                               { -HUGE_VAL, -HUGE_VAL } };
    for (const auto &row : rows) {
        vxPoint p(row[0], nan);
        p.round();
        EXPECT_EQ(p.x, row[1]);
        EXPECT_TRUE(std::isnan(p.y));
    }
}

TEST(Points, zero_vectors_and_tolerances)
{
    vxPoint zero, p(1, 2);
    EXPECT_EQ(zero.normalize(5), vxPoint());
    zero.setLength(5);
    EXPECT_TRUE(std::isnan(zero.x) && std::isnan(zero.y));
    p.project(vxPoint());
    EXPECT_EQ(p, vxPoint());
    EXPECT_TRUE(p.isCollinear(vxPoint(1, 1)) && p.isOrthogonal(vxPoint(1, 1)));
    EXPECT_TRUE(vxPoint(1e6, 0).isCollinear(vxPoint(1, 0.9e-7)));
    EXPECT_FALSE(vxPoint(1e6, 0).isCollinear(vxPoint(1, 1.1e-7)));
}

} // namespace
