#include "vxrect.h"

#include <gtest/gtest.h>

namespace {

TEST(Rectangles, borders_count_as_documented)
{
    const vxRect square(vxPoint(4, 0), vxPoint(0, 4));
    EXPECT_FALSE(square.containsPt(square.topLeft()) || square.containsPt(vxPoint(2, 4)));
    EXPECT_TRUE(square.containsPt(square.center()) && square.containsRect(square));
    const struct {
        const char *name;
        vxRect other;
        bool intersects, touches;
    } rows[] = {
        { "shared_edge", { 4, 0, 4, 4 }, false, true },
        { "shared_corner", { 4, 4, 1, 1 }, false, true },
        { "above", { 0, -2, 4, 1 }, false, false },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(square.intersects(row.other), row.intersects);
        EXPECT_EQ(square.touches(row.other), row.touches);
        EXPECT_EQ(row.other.intersects(square), row.intersects);
        EXPECT_EQ(row.other.touches(square), row.touches);
    }
}

TEST(Rectangles, empty_ones_add_nothing_to_a_union)
{
    const vxRect a(0, 0, 2, 2), far(100, 100, 0, 5);
    EXPECT_EQ(a.unite(far), a);
    EXPECT_EQ(far.unite(a), a);
    EXPECT_EQ(a.unite(vxRect(3, -1, 1, 1)), vxRect(0, -1, 4, 3));
    EXPECT_EQ(vxRect().include(vxPoint(-1, 2)), vxRect(-1, 0, 1, 2));
}

} // namespace
