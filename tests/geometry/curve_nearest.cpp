#include "vxcubic_p.h"

#include <gtest/gtest.h>

namespace {

const vx::Cubic loop{ { 0, 0, 120, 80, -20, 80, 100, 0 } };

TEST(CurveTimes, at_a_coordinate)
{
    double roots[3];
    const int count = vx::timesAtCoordinate(loop, 0, 50, roots, 0, 1);
    ASSERT_EQ(count, 3);
    for (int i = 0; i < count; ++i)
        EXPECT_NEAR(vx::pointAt(loop, roots[i]).x, 50, 1e-12);
    EXPECT_EQ(vx::timesAtCoordinate(loop, 1, 80.1, roots, 0, 1), 0);
    const vx::Cubic level = vx::Cubic::fromLine({ 0, 5 }, { 9, 5 });
    EXPECT_EQ(vx::timesAtCoordinate(level, 1, 5, roots, 0, 1), 0) << "every time solves it: none is reported";
    EXPECT_EQ(vx::timesAtCoordinate(loop, 1, std::nan(""), roots, 0, 1), 0);
}

TEST(CurveTimes, of_points_on_and_off_the_curve)
{
    for (int i = 0; i <= 20; ++i) {
        const vxPoint p = vx::pointAt(loop, i / 20.0);
        EXPECT_NEAR(vx::timeOf(loop, p), i / 20.0, 1e-9);
        EXPECT_NE(vx::timeOf(loop, p.add(vxPoint(1e-8, 1e-8))), vxTolerance::noTime);
    }
    EXPECT_EQ(vx::timeOf(loop, vxPoint(50, 70)), vxTolerance::noTime);
    EXPECT_EQ(vx::timeOf(loop, vxPoint(-1.5e-7, -1e-7)), 0);
    EXPECT_EQ(vx::timeOf(loop, vxPoint(std::nan(""), 0)), vxTolerance::noTime);
}

TEST(CurveTimes, nearest_is_no_farther_than_any_sample)
{
    for (const vxPoint &p : { vxPoint(33, 21), vxPoint(-10, 90), vxPoint(60, -500), vxPoint(71, 45) }) {
        const double t = vx::nearestTime(loop, p);
        const double distance = vx::pointAt(loop, t).getDistance(p);
        for (int i = 0; i <= 5000; ++i)
            EXPECT_LE(distance, vx::pointAt(loop, i / 5000.0).getDistance(p) + 1e-7);
    }
    EXPECT_EQ(vx::nearestTime(loop, vxPoint(std::nan(""), 0)), 0);
}

TEST(CurveTimes, nearest_on_straight_curves)
{
    const vx::Cubic uneven{ { 0, 0, 8, 8, 9, 9, 10, 10 } };
    EXPECT_LT(vx::pointAt(uneven, vx::nearestTime(uneven, vxPoint(10, 0))).getDistance(vxPoint(5, 5)), 1e-12);
    EXPECT_EQ(vx::nearestTime(uneven, vxPoint(11, 40)), 1);
    // So far out the foot is rounded off the line; the nearest time is found all the same.
    const vx::Cubic far = vx::Cubic::fromLine({ 1e12, 1e12 / 3 }, { 1e12 + 64, 1e12 / 3 + 7 });
    for (int x = 1; x < 64; ++x)
        EXPECT_NEAR(vx::pointAt(far, vx::nearestTime(far, vxPoint(1e12 + x, 1e12 / 3))).x, 1e12 + x, 1);
}

} // namespace
