#include "support/shapes.h"

#include "vxmeetingplaces_p.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using shapes::Random;
using vx::Cubic;
using vx::TimePair;

namespace {

vxPoint turned(const vxPoint &p, double angle)
{
    return vxPoint(p.x * std::cos(angle) - p.y * std::sin(angle),
                   p.x * std::sin(angle) + p.y * std::cos(angle));
}

/** The curve turned about a point. */
Cubic turned(const Cubic &c, const vxPoint &about, double angle)
{
    const auto map = [&](const vxPoint &p) { return about.add(turned(p.subtract(about), angle)); };
    return Cubic::fromPoints(map(c.p0()), map(c.p1()), map(c.p2()), map(c.p3()));
}

/** A quarter of a circle that touches the x axis at the origin, its middle at (0, radius), over some angle.
 */
Cubic arc(double radius, double from, double angle)
{
    const double handle = 4.0 / 3 * std::tan(angle / 4) * radius;
    const Cubic c = Cubic::fromPoints(
        vxPoint(0, 0), vxPoint(handle, 0),
        turned(vxPoint(-handle, 0), angle).add(turned(vxPoint(0, -radius), angle)).add(vxPoint(0, radius)),
        turned(vxPoint(0, -radius), angle).add(vxPoint(0, radius)));
    return turned(c, vxPoint(0, radius), from);
}

} // namespace

TEST(MeetingPlaces, are_the_same_by_clipping_and_by_halving)
{
    Random random(11);
    const auto point = [&] { return random.between(vxPoint(0, 0), vxPoint(1000, 1000)); };
    size_t met = 0;
    for (int i = 0; i < 2000; ++i) {
        const Cubic a = Cubic::fromPoints(point(), point(), point(), point());
        const Cubic b = Cubic::fromPoints(point(), point(), point(), point());
        const std::vector<TimePair> clipped = vx::placesWhereMeet(a, b);
        const std::vector<TimePair> halved = vx::placesByHalving(a, b);
        ASSERT_EQ(clipped.size(), halved.size()) << i;
        for (size_t k = 0; k < clipped.size(); ++k) {
            EXPECT_NEAR(clipped[k].t1, halved[k].t1, 1e-7) << i;
            EXPECT_NEAR(clipped[k].t2, halved[k].t2, 1e-7) << i;
        }
        met += clipped.size();
    }
    EXPECT_GT(met, 1000u);
}

TEST(MeetingPlaces, of_arcs_that_touch_lie_where_they_touch)
{
    const double radii[] = { 20, 80, 235, 400 };
    // One end or the inside of an arc touches that of another, from within or from the other side.
    struct {
        double from, otherFrom, side;
    } const rows[] = { { 0, 0, 0 },       { 0, 0, M_PI },    { -0.7, 0, 0 },
                       { -0.7, 0, M_PI }, { -0.7, -0.4, 0 }, { -0.7, -0.4, M_PI } };
    for (const auto &row : rows) {
        for (double radius : radii) {
            for (double other : radii) {
                if (other == radius)
                    continue;
                const Cubic a = turned(arc(radius, row.from, 1.5), vxPoint(0, 0), 0.3);
                const Cubic b = turned(arc(other, row.otherFrom, 1.5), vxPoint(0, 0), row.side + 0.3);
                EXPECT_FALSE(vx::meetByHalving(a, b).isCutShort());
                // One cubic leaves its arc by less than 3e-4 of the radius, which may make two crossings of a
                // touch: so far apart as the arcs take to part by that.
                const double bend = std::fabs(1 / radius - (row.side == 0 ? 1 : -1) / other);
                const double reach = std::sqrt(2 * 3e-4 * (radius + other) / bend);
                for (const TimePair &place : vx::placesWhereMeet(a, b))
                    EXPECT_LT(vx::pointAt(a, place.t1).getLength(), reach) << radius << ' ' << other;
            }
        }
    }
}

TEST(MeetingPlaces, are_found_where_one_curve_runs_beside_another)
{
    Random random(12);
    for (int i = 0; i < 300; ++i) {
        const auto near = [&](double x, double y) {
            return random.between(vxPoint(x - 60, y - 60), vxPoint(x + 60, y + 60));
        };
        const Cubic a = Cubic::fromPoints(near(0, 0), near(200, 300), near(400, 300), near(600, 0));
        const double t = random.between(0.05, 0.95);
        const double angle = std::pow(10, random.between(-5, -1)) * (i % 2 == 0 ? 1 : -1);
        const Cubic turnedA = turned(a, vx::pointAt(a, t), angle);
        const Cubic b = i % 3 == 0 ? turnedA.reversed() : turnedA;
        const auto isThere = [&](const TimePair &place) {
            return std::fabs(place.t1 - t) < 1e-4 &&
                   std::fabs((i % 3 == 0 ? 1 - place.t2 : place.t2) - t) < 1e-4;
        };
        for (const std::vector<TimePair> &places : { vx::placesWhereMeet(a, b), vx::placesByHalving(a, b) })
            EXPECT_TRUE(std::any_of(places.begin(), places.end(), isThere)) << i << ", turned by " << angle;
    }
}

TEST(MeetingPlaces, of_curves_that_follow_each_other_are_told_to_be_their_joint)
{
    // The one comes to rest where the other starts, and clipping halves without end.
    const Cubic before = Cubic::fromPoints(vxPoint(2235, 10249.8), vxPoint(2215.267, 10260.467),
                                           vxPoint(2205.4, 10265.8), vxPoint(2205.4, 10265.8));
    const Cubic after = Cubic::fromPoints(vxPoint(2205.4, 10265.8), vxPoint(2207.133, 10263.267),
                                          vxPoint(2208, 10258.767), vxPoint(2208, 10252.3));
    EXPECT_TRUE(vx::meetAtSharedEndsOnly(before, after));
    const Cubic back =
        Cubic::fromPoints(after.p0(), vxPoint(2205.4, 10220), vxPoint(2240, 10300), vxPoint(2240, 10240));
    EXPECT_FALSE(vx::meetAtSharedEndsOnly(before, back)) << "it crosses";
    EXPECT_FALSE(vx::meetAtSharedEndsOnly(before, before)) << "they run together";
}
