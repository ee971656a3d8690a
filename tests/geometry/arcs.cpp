#include "vxbezier.h"
#include "vxcubic_p.h"
#include "vxnumeric.h"
#include "vxrect.h"

#include <gtest/gtest.h>

namespace {

const vxRect frame(-30, 10, 80, 40);
const vxRect circle(-30, 10, 80, 80);

QVector<vxPoint> arc(double start, double sweep, vxPoint *from = nullptr, const vxRect &rect = frame)
{
    QVector<vxPoint> points;
    const vxPoint p = vxBezier::arcToBezier(rect, start, sweep, points);
    if (from)
        *from = p;
    return points;
}

TEST(Arcs, pieces_follow_the_circle)
{
    const struct {
        const char *name;
        double start, sweep;
        int pieces;
    } rows[] = {
        { "quarter", 0, 90, 1 },
        { "backward_quarter", 90, -90, 1 },
        { "full_turn", 0, 360, 4 },
        { "more_than_a_turn", 0, 400, 4 },
        { "backward_partial", 100, -130, 3 },
        { "many_turns", 720030, 45, 1 },
        { "negative_start", -200, 95, 2 },
        { "back_from_a_corner", 180, -1, 1 },
        { "over_a_corner", 89.9, 0.2, 2 },
        { "no_sweep_at_a_corner", 90, 0, 0 },
        { "rounding", 0, 1e-13, 0 },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        vxPoint from;
        const QVector<vxPoint> points = arc(row.start, row.sweep, &from, circle);
        ASSERT_EQ(points.size(), 3 * row.pieces);
        EXPECT_LT(from.getDistance(vxNumeric::ellipsePoint(circle, -row.start)), 1e-12);
        // Every point within 0.1 % of the circle, turning steadily (counterclockwise on screen) through the
        // sweep.
        double turned = 0;
        vxPoint last = from.subtract(circle.center());
        for (int i = 0; i < points.size(); i += 3) {
            const vx::Cubic piece = vx::Cubic::fromPoints(from, points[i], points[i + 1], points[i + 2]);
            for (int k = 1; k <= 16; ++k) {
                const vxPoint ray = vx::pointAt(piece, k / 16.0).subtract(circle.center());
                EXPECT_NEAR(ray.getLength(), 40, 0.04);
                const double step = -last.getDirectedAngle(ray);
                EXPECT_GT(step * row.sweep, 0);
                turned += step;
                last = ray;
            }
            from = points[i + 2];
        }
        EXPECT_NEAR(turned, points.isEmpty() ? 0 : vxNumeric::clamp(row.sweep, -360, 360), 1e-9);
    }
}

TEST(Arcs, impossible_parameters_append_nothing)
{
    testing::internal::CaptureStderr();
    for (double bad : { std::nan(""), HUGE_VAL })
        EXPECT_EQ(
            arc(bad, 10).size() + arc(10, bad).size() + arc(0, 10, nullptr, vxRect(0, bad, 1, 1)).size(), 0);
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("adding arc where a parameter is NaN"), std::string::npos);
    EXPECT_TRUE(arc(0, 90, nullptr, vxRect(5, 5, 1e-13, 9)).isEmpty());
    for (double huge : { 1e18, -1e300, 2e11 })
        EXPECT_LE(arc(huge, 300).size(), 15) << huge;
}

TEST(EllipsePoints, rays_in_all_directions)
{
    for (double angle = -720; angle <= 720; angle += 7.5) {
        const vxPoint ray = vxNumeric::ellipsePoint(frame, angle).subtract(frame.center());
        EXPECT_NEAR(std::hypot(ray.x / 40, ray.y / 20), 1, 1e-12) << angle;
        EXPECT_NEAR(std::remainder(ray.getAngle() - angle, 360), 0, 1e-9) << angle;
    }
    // A flat frame has height 0.1 for the direction and radius 0.05.
    EXPECT_NEAR(vxNumeric::ellipsePoint(vxRect(0, 0, 2, 0.05), 90).getDistance(vxPoint(1, 0.1)), 0, 1e-12);
    EXPECT_TRUE(vxNumeric::ellipsePoint(frame, HUGE_VAL).isNaN());
}

} // namespace
