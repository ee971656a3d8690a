#include "vxcubic_p.h"

#include <gtest/gtest.h>

namespace {

const vx::Cubic arch{ { 0, 0, 10, 40, 70, 50, 100, 0 } };

TEST(CurveEvaluation, ends_are_exact_and_beyond_is_nothing)
{
    const vx::Cubic c{ { 0.1, 0.2, 1e8, -3, 7, 1e-3, 0.3, 0.7 } };
    EXPECT_EQ(vx::pointAt(c, 0), c.p0());
    EXPECT_EQ(vx::pointAt(c, 1), c.p3());
    for (double t : { -1e-9, 1.0000001, std::nan(""), HUGE_VAL })
        EXPECT_TRUE(vx::pointAt(c, t).isNaN()) << t;
}

TEST(CurveEvaluation, derivatives_agree_with_differences)
{
    const double h = 1e-5;
    for (double t : { 0.1, 0.35, 0.5, 0.92 }) {
        const vxPoint d = vx::evaluate(arch, t, vx::Evaluate::Tangent, false);
        const vxPoint difference = vx::pointAt(arch, t + h).subtract(vx::pointAt(arch, t - h)).divide(2 * h);
        EXPECT_LT(d.getDistance(difference), 1e-6);
        // Curvature is the turning of the tangent over the way gone.
        const vxPoint before = vx::tangentAt(arch, t - h), after = vx::tangentAt(arch, t + h);
        const double turning = before.cross(after) / (2 * h) / d.getLength();
        EXPECT_NEAR(vx::evaluate(arch, t, vx::Evaluate::Curvature, false).x, turning, 1e-8);
        EXPECT_EQ(vx::evaluate(arch, t, vx::Evaluate::Normal, false), vxPoint(d.y, -d.x));
    }
}

TEST(CurveEvaluation, missing_handles_leave_along_the_other_control_point)
{
    const vxPoint a(0, 0), b(3, 4);
    EXPECT_LT(vx::tangentAt(vx::Cubic::fromLine(a, b), 0).getDistance(vxPoint(0.6, 0.8)), 1e-15);
    // A handle of rounding size pointing backwards is no handle.
    const vx::Cubic noisy = vx::Cubic::fromPoints(a, vxPoint(-1e-12, 0), vxPoint(3, 0), b);
    EXPECT_EQ(vx::tangentAt(noisy, 0), vxPoint(1, 0));
    EXPECT_EQ(vx::tangentAt(noisy, 1), vxPoint(0, 1));
    EXPECT_EQ(vx::tangentAt(vx::Cubic::fromLine(a, a), 0.5), vxPoint());
    EXPECT_EQ(vx::evaluate(vx::Cubic::fromLine(a, a), 0, vx::Evaluate::Curvature, false), vxPoint());
}

TEST(CurveParts, trace_the_same_curve)
{
    const vx::Cubic part = vx::part(arch, 0.2, 0.7);
    for (int i = 0; i <= 10; ++i) {
        const double t = i / 10.0;
        EXPECT_LT(vx::pointAt(part, t).getDistance(vx::pointAt(arch, 0.2 + 0.5 * t)), 1e-13);
    }
    const vx::Cubic back = vx::part(arch, 0.7, 0.2);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(back.v[i], part.reversed().v[i]);
    vx::Cubic left = arch, right;
    vx::subdivide(left, 0.3, left, right); // in place
    EXPECT_TRUE(left.p0() == arch.p0() && left.p3() == right.p0() && right.p3() == arch.p3());
}

TEST(CurveArea, is_that_of_a_fine_polygon)
{
    double twice = 0;
    const int n = 20000;
    for (int i = 0; i < n; ++i)
        twice += vx::pointAt(arch, double(i) / n).cross(vx::pointAt(arch, double(i + 1) / n));
    EXPECT_NEAR(vx::signedArea(arch), twice / 2, 1e-4);
    EXPECT_DOUBLE_EQ(vx::signedArea(arch.reversed()), -vx::signedArea(arch));
}

} // namespace
