#include "vxcubic_p.h"
#include "vxnumeric_p.h"
#include "vxtolerance.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

TEST(CurveShape, values_that_surely_rise_or_fall_have_no_extremum)
{
    std::mt19937 engine(4);
    const auto between = [&engine](double low, double high) {
        return low + (high - low) * (engine() / 4294967296.0);
    };
    int sure = 0;
    for (int i = 0; i < 200000; ++i) {
        const double first = between(-1, 1) * std::pow(10, between(-7, 6));
        const double step = std::pow(10, between(-7, 3)) * (i % 2 == 0 ? 1 : -1);
        // Level at the ends, all but evenly spaced, or anyhow.
        const double uneven = std::pow(10, between(-15, 0));
        double q[4] = { first, first, 0, 0 };
        q[1] += i % 3 == 0 ? 0 : step * (i % 3 == 1 ? 1 + uneven : between(0, 1));
        q[2] = q[1] + step;
        q[3] = q[2] + (i % 5 == 0 ? 0 : step * (i % 3 == 1 ? 1 + uneven * between(-1, 1) : between(0, 1)));
        if (!vx::surelyHasNoExtremum(q[0], q[1], q[2], q[3]))
            continue;
        ++sure;
        double roots[2];
        ASSERT_LE(vx::solveQuadratic(3 * (q[1] - q[2]) - q[0] + q[3], 2 * (q[0] + q[2]) - 4 * q[1],
                                     q[1] - q[0], roots, vxTolerance::timeMargin, vxTolerance::timeUpper),
                  0)
            << i;
    }
    EXPECT_GT(sure, 50000);
}

TEST(CurveShape, straight_or_not)
{
    const struct {
        const char *name;
        vx::Cubic c;
        bool straight, linear, handles;
    } rows[] = {
        { "no_handles", { { 0, 0, 0, 0, 9, 3, 9, 3 } }, true, false, false },
        { "thirds", { { 0, 0, 3, 1, 6, 2, 9, 3 } }, true, true, true },
        { "reaching_the_other_end", { { 0, 0, 9, 3, 0, 0, 9, 3 } }, true, false, true },
        { "overshooting", { { 0, 0, 12, 4, 6, 2, 9, 3 } }, false, false, true },
        { "overshooting_backwards", { { 0, 0, 3, 1, -3, -1, 9, 3 } }, false, false, true },
        { "pointing_outward", { { 0, 0, -3, -1, 6, 2, 9, 3 } }, false, false, true },
        { "slightly_off_the_chord", { { 0, 0, 3, 1e-7, 6, 0, 9, 0 } }, true, false, true },
        { "off_the_chord", { { 0, 0, 3, 3e-7, 6, 0, 9, 0 } }, false, false, true },
        { "point", { { 5, 5, 5, 5, 5, 5, 5, 5 } }, true, true, false },
        { "closed_loop", { { 5, 5, 6, 5, 5, 6, 5, 5 } }, false, false, true },
        { "not_a_number", { { 0, 0, std::nan(""), 0, 1, 1, 2, 2 } }, false, false, true },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(vx::isStraight(row.c), row.straight);
        EXPECT_EQ(vx::isLinear(row.c), row.linear);
        EXPECT_EQ(vx::hasHandles(row.c), row.handles);
    }
}

TEST(CurveShape, folds_turn_round_where_the_speed_along_their_line_is_zero)
{
    const struct {
        const char *name;
        vx::Cubic c;
        int turns;
    } rows[] = {
        { "overshooting", { { 0, 0, 16, 8, 16, 8, 4, 2 } }, 1 },
        { "out_and_back", { { 5, 5, 6, 7, 6, 7, 5, 5 } }, 1 },
        { "turning_twice", { { 0, 0, 30, 0, -20, 0, 10, 0 } }, 2 },
        { "handle_on_the_start", { { 60, 40, 60, 40, 40, 0, 80, 80 } }, 1 },
        { "small", { { 0, 0, 4e-7, 0, 4e-7, 0, 1e-7, 0 } }, 1 },
        { "a_little_off_the_line", { { 0, 0, 16, 8, 16, 8 + 1e-7, 4, 2 } }, 1 },
        { "a_loop", { { 0, 0, 16, 8, 16, 9, 4, 2 } }, 0 },
        { "reaching_the_other_end", { { 0, 0, 9, 3, 0, 0, 9, 3 } }, 0 },
        { "straight", { { 0, 0, 3, 1, 6, 2, 9, 3 } }, 0 },
        { "not_a_number", { { 0, 0, std::nan(""), 0, 1, 1, 2, 2 } }, 0 },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        double times[2];
        ASSERT_EQ(vx::foldTimes(row.c, 1e-6, times), row.turns);
        const vxPoint size = row.c.p1().subtract(row.c.p0());
        for (int i = 0; i < row.turns; ++i) {
            const vxPoint speed = vx::evaluate(row.c, times[i], vx::Evaluate::Tangent, false);
            EXPECT_LE(speed.getLength(), 1e-6 * (1 + size.getLength()));
        }
    }
}

TEST(CurveShape, bounds_are_tight)
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> coordinate(-100, 100);
    for (int round = 0; round < 300; ++round) {
        vx::Cubic c;
        for (double &v : c.v)
            v = coordinate(random);
        const vx::Box box = vx::bounds(c);
        vx::Box seen{ c.v[0], c.v[1], c.v[0], c.v[1] };
        for (int i = 0; i <= 2000; ++i) {
            const vxPoint p = vx::pointAt(c, i / 2000.0);
            seen = { std::min(seen.minX, p.x), std::min(seen.minY, p.y), std::max(seen.maxX, p.x),
                     std::max(seen.maxY, p.y) };
        }
        // Between two samples a curve of this size rises by less than 1e-3 over them.
        const double gaps[] = { seen.minX - box.minX, seen.minY - box.minY, box.maxX - seen.maxX,
                                box.maxY - seen.maxY };
        for (double gap : gaps)
            EXPECT_TRUE(gap > -1e-12 && gap < 1e-3) << gap;
    }
}

/** Of all kinds that bounds() tells apart: lines, level or nearly, curves between their ends, and far off. */
vx::Cubic anyCurve(std::mt19937 &random)
{
    const double special[] = { 0, -0.0, 1e-3, 1e9, std::nan(""), std::numeric_limits<double>::infinity() };
    std::uniform_real_distribution<double> coordinate(-100, 100);
    vx::Cubic c;
    for (double &v : c.v)
        v = random() % 64 == 0 ? special[random() % 6] : coordinate(random);
    for (int k = 0; k < 2; ++k) {
        const auto kind = random() % 8;
        if (kind < 3)
            c.v[6 + k] = c.v[k] + (kind == 0 ? 0 : std::pow(10, -double(random() % 18)));
        if (kind % 2 == 0) {
            c.v[2 + k] = c.v[k];
            c.v[4 + k] = c.v[6 + k];
        } else if (kind < 6) {
            c.v[2 + k] = c.v[k] + (c.v[6 + k] - c.v[k]) * (random() % 5) / 4;
        }
    }
    return c;
}

TEST(CurveShape, bounds_are_those_of_each_coordinate)
{
    std::mt19937 random(5);
    for (int round = 0; round < 200000; ++round) {
        const vx::Cubic c = anyCurve(random);
        const vx::Box box = vx::bounds(c);
        vx::Box plain{ c.v[0], c.v[1], c.v[0], c.v[1] };
        vx::addBounds(c.v[0], c.v[2], c.v[4], c.v[6], 0, plain.minX, plain.maxX);
        vx::addBounds(c.v[1], c.v[3], c.v[5], c.v[7], 0, plain.minY, plain.maxY);
        const double found[] = { box.minX, box.minY, box.maxX, box.maxY };
        const double expected[] = { plain.minX, plain.minY, plain.maxX, plain.maxY };
        for (int i = 0; i < 4; ++i)
            ASSERT_TRUE(found[i] == expected[i] || (std::isnan(found[i]) && std::isnan(expected[i])))
                << round;
    }
}

} // namespace
