#include "support/shapes.h"

#include <gtest/gtest.h>

#include <cstdio>

using shapes::ellipse;
using shapes::read;
using shapes::rectangle;
using shapes::text;
using shapes::XPathPtr;

TEST(Containment, follows_the_fill_rule)
{
    const std::string square = rectangle(0, 0, 100, 100);
    const std::string star = "M 0 -100 L 59 81 L -95 -31 L 95 -31 L -59 81 Z";
    struct {
        const char *name;
        std::string data;
        vxPoint point;
        bool evenOdd, nonzero;
    } const rows[] = {
        { "inside", square, { 50, 50 }, true, true },
        { "outside_the_box", square, { 150, 50 }, false, false },
        { "on_the_border", square, { 100, 50 }, false, false },
        { "in_the_box_of_a_disc_but_outside", ellipse(50, 50, 50, 50), { 5, 5 }, false, false },
        { "open_triangle", "M 0 0 L 100 0 L 100 100", { 70, 40 }, true, true },
        { "heart_of_a_star_wound_twice", star, { 1, 2 }, false, true },
        { "arm_of_a_star", star, { 1, -70 }, true, true },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const XPathPtr path = read(row.data);
        EXPECT_EQ(path->contains(row.point, vxStyle::filled(true)), row.evenOdd);
        EXPECT_EQ(path->contains(row.point, vxStyle::filled(false)), row.nonzero);
        EXPECT_EQ(path->getFirstChild()->contains(row.point, vxStyle::filled(true)), row.evenOdd);
        EXPECT_EQ(path->getFirstChild()->contains(row.point, vxStyle::filled(false)), row.nonzero);
    }
    EXPECT_FALSE(XPath().contains(vxPoint(0, 0), vxStyle::filled(false)));
}

TEST(Containment, interior_point_is_inside_every_contour_of_real_shapes)
{
    int contours = 0;
    for (const shapes::Case &c : shapes::cases()) {
        const XPathPtr path = read(c.a);
        for (const vxPath *contour : qAsConst(path->children)) {
            XPath alone;
            alone.addChild(contour->clone());
            const vxPoint p = contour->getInteriorPoint(true);
            ++contours;
            EXPECT_TRUE(shapes::Outline(alone).contains(p))
                << c.id << " (" << p.x << ", " << p.y << ") " << text(alone);
        }
    }
    std::printf("%d contours\n", contours);
    EXPECT_GE(contours, 40);
}
