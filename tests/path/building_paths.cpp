#include "path_fixtures.h"

#include <cmath>

using namespace fixture;

namespace {

constexpr double pi = 3.141592653589793;

TEST(BuildingPaths, arcs_lie_on_their_circle)
{
    const struct {
        const char *name;
        bool large, sweep;
        vxPoint center;
        double turn;
    } rows[] = {
        { "short_growing", false, true, { 0, 10 }, pi / 2 },
        { "short_falling", false, false, { 10, 0 }, pi / 2 },
        { "long_growing", true, true, { 10, 0 }, 3 * pi / 2 },
        { "long_falling", true, false, { 0, 10 }, 3 * pi / 2 },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const vxRef<vxPath> path = polygon({ { 0, 0 } }, false);
        path->arcTo({ 10, 10 }, { -10, 10 }, 30, row.large, row.sweep);
        EXPECT_EQ(path->getSegments().size(), row.large ? 4 : 2);
        EXPECT_EQ(path->getLastSegment()->point, vxPoint(10, 10));
        EXPECT_NEAR(path->getLength(), 10 * row.turn, 0.01);
        for (const vxCurve *curve : path->getCurves()) {
            for (double t : { 0.0, 0.2, 0.5, 0.7, 1.0 })
                EXPECT_NEAR(curve->getPointAtTime(t).getDistance(row.center), 10, 0.003);
        }
    }
}

TEST(BuildingPaths, elliptic_arcs_follow_rotation_and_scale_up)
{
    // Chord along the long axis, turned by 45 degrees: half of the ellipse, and half of its area.
    const double reach = 20 / std::sqrt(2.0);
    const vxRef<vxPath> half = polygon({ { 0, 0 } }, false);
    half->arcTo({ 2 * reach, 2 * reach }, { 20, 5 }, 45, false, true);
    EXPECT_NEAR(std::fabs(half->getArea(false, true)), pi * 20 * 5 / 2, 0.05);
    expectPoint(half->getPointAt(half->getLength() / 2),
                { reach + 5 / std::sqrt(2.0), reach - 5 / std::sqrt(2.0) }, 1e-3);
    // Radii too small for the chord: a half circle over it.
    const vxRef<vxPath> scaled = polygon({ { 0, 0 } }, false);
    scaled->arcBy({ 20, 0 }, { 1e-3, 1e-3 }, 0, true, true);
    EXPECT_EQ(scaled->getSegments().size(), 3);
    EXPECT_NEAR(scaled->getLength(), 10 * pi, 0.01);
}

TEST(BuildingPaths, degenerate_arcs)
{
    for (const vxSize &radii :
         { vxSize(0, 5), vxSize(5, undefined), vxSize(infinity, 5), vxSize(1e-320, 1e-320) }) {
        const vxRef<vxPath> path = polygon({ { 0, 0 } }, false);
        path->arcTo({ 10, 0 }, radii, 0, false, true);
        EXPECT_EQ(path->getLength(), 10) << "a line: " << radii.width;
    }
    const vxRef<vxPath> path = polygon({ { 3, 3 } }, false);
    path->arcTo({ 3, 3 }, { 5, 5 }, 0, true, true);
    EXPECT_EQ(path->getSegments().size(), 1);
    path->arcTo2({ 0, 0, 10, 0 }, 0, 90);
    path->arcTo2({ 0, 0, 10, undefined }, 0, 90);
    path->arcTo2({ 0, 0, 10, 10 }, infinity, 90);
    EXPECT_EQ(path->getSegments().size(), 1);
    const vxRef<vxPath> huge = polygon({ { -1e300, 0 } }, false);
    huge->arcTo({ 1e300, 1e300 }, { 1e308, 1e-308 }, 1e18, true, false);
    EXPECT_EQ(huge->getLastSegment()->point, vxPoint(1e300, 1e300));
}

} // namespace
