#include "support/shapes.h"

#include <gtest/gtest.h>

#include <cstdio>

using shapes::ellipse;
using shapes::read;
using shapes::rectangle;
using shapes::XPathPtr;

TEST(Winding, tells_inside_from_outside_on_real_shapes)
{
    int tested = 0;
    int shapeCount = 0;
    for (const shapes::Case &c : shapes::cases()) {
        if (!c.isSimple)
            continue; // elsewhere the count adds up what the even-odd rule takes apart
        const XPathPtr path = read(c.a);
        const shapes::Outline outline(*path);
        shapes::Random random(1);
        ++shapeCount;
        for (int i = 0; i < 300; ++i) {
            const vxPoint p = random.between(outline.low, outline.high);
            if (!outline.isOff(p, 1e-5))
                continue;
            ++tested;
            const int winding = path->getWinding(p, false).winding;
            ASSERT_EQ(winding % 2 != 0, outline.contains(p)) << c.id << " at (" << p.x << ", " << p.y << ")\n"
                                                             << c.a;
            ASSERT_EQ(path->contains(p, vxStyle::filled(true)), outline.contains(p)) << c.id;
        }
    }
    std::printf("%d points on %d shapes\n", tested, shapeCount);
    EXPECT_GE(shapeCount, 15);
    EXPECT_GE(tested, 290 * shapeCount);
}

TEST(Winding, at_vertices_edges_and_level_stretches)
{
    const std::string square = rectangle(0, 0, 100, 100);
    const std::string diamond = "M 50 0 L 100 50 L 50 100 L 0 50 Z";
    // Vertices and level edges lie on the heights 0, 50 and 100.
    const std::string step = "M 0 0 L 50 0 L 50 50 L 100 50 L 100 100 L 0 100 Z";
    const std::string corner = "M 0 0 L 100 0 L 100 100"; // open: closed by a line
    struct {
        const char *name;
        std::string data;
        vxPoint point;
        bool horizontal;
        int winding;
        bool contour;
    } const rows[] = {
        { "inside", square, { 50, 30 }, false, 1, false },
        { "on_an_upright_edge", square, { 100, 30 }, false, 1, true },
        { "on_the_top_edge", square, { 50, 0 }, true, 1, true },
        { "beside_everything_probed_upright", square, { -50, 30 }, true, 0, false },
        { "between_two_vertices", diamond, { 50, 50 }, false, 1, false },
        { "outside_at_the_height_of_two_vertices", diamond, { 120, 50 }, false, 0, false },
        { "outside_at_the_height_of_a_tip", diamond, { 80, 0 }, false, 0, false },
        { "inside_at_the_height_of_a_step", step, { 20, 50 }, false, 1, false },
        { "on_a_step", step, { 75, 50 }, true, 1, true },
        { "disc_at_the_height_of_its_ends", ellipse(0, 0, 10, 10), { 3, 0 }, false, 1, false },
        { "beside_a_disc_at_the_height_of_its_top", ellipse(0, 0, 10, 10), { 8, -10 }, false, 0, false },
        { "inside_the_closing_line", corner, { 70, 40 }, false, 1, false },
        { "beyond_the_closing_line", corner, { 30, 60 }, false, 0, false },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const vxWinding count = read(row.data)->getWinding(row.point, row.horizontal);
        EXPECT_EQ(count.winding, row.winding);
        EXPECT_EQ(count.contour, row.contour);
    }
}

TEST(Winding, adds_up_over_nested_contours_and_follows_edits)
{
    const XPathPtr path = read(rectangle(0, 0, 100, 100) + rectangle(25, 25, 50, 50));
    const vxPoint inBoth(50, 40);
    EXPECT_EQ(path->getWinding(inBoth, false).winding, 0) << "the inner one is turned against the outer";
    EXPECT_FALSE(path->contains(inBoth, vxStyle::filled(false)));
    path->children[1]->setClockwise(true);
    EXPECT_EQ(path->getWinding(inBoth, false).winding, 2);
    EXPECT_FALSE(path->contains(inBoth, vxStyle::filled(true)));
    EXPECT_TRUE(path->contains(inBoth, vxStyle::filled(false)));
}
