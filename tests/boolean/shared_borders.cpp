#include "support/shapes.h"

#include "vxsharedborder_p.h"
#include "vxtolerance.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

// What is said of all places of a curve by its control points, against the places themselves.

using namespace vxTolerance;

namespace {

/** A gentle arc, a chord, a straight curve with handles, or any four points. */
vx::Cubic randomCurve(shapes::Random &random, const vxPoint &start, double size)
{
    const vxPoint low(-size, -size);
    const vxPoint high(size, size);
    const vxPoint chord = random.between(low, high);
    const vxPoint end = start.add(chord);
    const double kind = random.between(0, 1);
    if (kind < 0.3)
        return vx::Cubic::fromLine(start, end);
    if (kind < 0.4)
        return vx::Cubic::fromPoints(start, start.add(chord.multiply(random.between(0, 1))),
                                     end.subtract(chord.multiply(random.between(0, 1))), end);
    if (kind < 0.5)
        return vx::Cubic::fromPoints(start, start.add(random.between(low, high)),
                                     end.add(random.between(low, high)), end);
    const double bend = random.between(-0.3, 0.3);
    const vxPoint aside(-chord.y * bend, chord.x * bend);
    return vx::Cubic::fromPoints(start, start.add(chord.multiply(0.35)).add(aside),
                                 end.subtract(chord.multiply(random.between(0.2, 0.5))).add(aside), end);
}

/** A copy whose control points are moved by up to distance along each axis, perhaps the other way round. */
vx::Cubic beside(const vx::Cubic &c, double distance, shapes::Random &random)
{
    vx::Cubic moved = c;
    for (double &value : moved.v)
        value += random.between(-distance, distance);
    return random.between(0, 1) < 0.5 ? moved.reversed() : moved;
}

} // namespace

TEST(SharedBorders, give_every_place_a_time_on_the_other_curve)
{
    shapes::Random random(7);
    const double fractions[] = { 1e-9, 1e-6, 1e-4, 0.01, 0.145898, 0.381966, 0.5, 0.618034 };
    int along = 0;
    for (int i = 0; i < 40000; ++i) {
        const double size = std::pow(10, random.between(-2, 3));
        const double far = std::pow(10, random.between(-1, 4.9));
        const vx::Cubic b = randomCurve(random, vxPoint(random.between(-far, far), far), size);
        const vx::Cubic a = beside(b, i % 3 == 0 ? 0 : std::pow(10, random.between(-12, -7.5)), random);
        if (!vx::runsAlong(a, b))
            continue;
        ++along;
        for (double fraction : fractions) {
            for (double t : { fraction, 1 - fraction })
                ASSERT_NE(vx::timeOf(b, vx::pointAt(a, t)), noTime) << i << " at " << t;
        }
    }
    std::printf("%d run along\n", along);
    EXPECT_GT(along, 10000);
}

TEST(SharedBorders, are_told_only_where_it_is_sure)
{
    const auto runsAlong = [](const std::string &a, const std::string &b) {
        vx::Cubic cubics[2];
        const QVector<double> values = shapes::numbers(a + " " + b);
        EXPECT_EQ(values.size(), 16);
        std::copy(values.begin(), values.begin() + 8, cubics[0].v);
        std::copy(values.begin() + 8, values.end(), cubics[1].v);
        return vx::runsAlong(cubics[0], cubics[1]);
    };
    const std::string arc = "0 0 4 1 8 1 12 0";
    EXPECT_TRUE(runsAlong(arc, arc));
    EXPECT_TRUE(runsAlong("12 0 8 1 4 1 0 0", arc));
    EXPECT_FALSE(runsAlong("0 0 4 1.0000001 8 1 12 0", arc)) << "a handle elsewhere";
    EXPECT_FALSE(runsAlong("0 0 0 0 8 1 12 0", "0 0 0 0 8 1 12 0")) << "comes to rest at its start";
    EXPECT_FALSE(runsAlong("0 0 20 9 -8 9 12 0", "0 0 20 9 -8 9 12 0")) << "a loop";
    EXPECT_FALSE(runsAlong("5 5 5 5 5 5 5 5", "5 5 5 5 5 5 5 5")) << "no extent";
    EXPECT_FALSE(runsAlong("0 0 0 0 9e5 0 9e5 0", "0 0 0 0 9e5 0 9e5 0")) << "too far out";
}
