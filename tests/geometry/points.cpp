#include "vxpoint.h"

#include <gtest/gtest.h>

namespace {

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

} // namespace
