#include "vxcubic_p.h"

#include <gtest/gtest.h>

#include <random>

namespace {

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

} // namespace
