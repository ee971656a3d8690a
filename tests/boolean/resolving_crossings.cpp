#include "support/shapes.h"

#include "vxcleancopy_p.h"
#include "vxrunnotes_p.h"

#include <gtest/gtest.h>

#include <cmath>

using shapes::areaOf;
using shapes::read;
using shapes::rectangle;
using shapes::text;
using shapes::XPathPtr;

TEST(ResolvingCrossings, leaves_clean_contours_with_the_same_filled_area)
{
    const std::string outer = rectangle(0, 0, 100, 100);
    const std::string inner = rectangle(25, 25, 50, 50);
    const int anyNumber = -1;
    struct {
        const char *name;
        std::string data;
        bool evenOdd;
        int contours;
        double area;
    } const rows[] = {
        { "one_clean_contour", outer, true, 1, 10000 },
        { "figure_eight", "M 0 0 L 100 100 L 100 0 L 0 100 Z", true, 2, 5000 },
        { "square_in_a_square", outer + inner, true, 2, 7500 },
        { "square_in_a_square_nonzero_opposite", outer + inner, false, 2, 7500 },
        { "squares_crossing", outer + rectangle(50, 50, 100, 100), true, 2, 15000 },
        { "two_apart", outer + rectangle(200, 0, 10, 10), true, 2, 10100 },
        { "contour_drawn_twice", outer + outer, true, anyNumber, 0 },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const XPathPtr path = read(row.data);
        path->evenOdd = row.evenOdd;
        EXPECT_EQ(path->resolveCrossings(), path.get());
        EXPECT_NEAR(areaOf(*path), row.area, 1e-6) << text(*path);
        EXPECT_TRUE(row.contours == anyNumber || path->children.size() == row.contours) << text(*path);
        // Each contour turns against the one around it, so that both fill rules mean the same.
        double sum = 0;
        for (const vxPath *contour : path->children)
            sum += contour->getArea(false, true);
        EXPECT_NEAR(std::fabs(sum), row.area, 1e-6) << text(*path);
    }
}

TEST(ResolvingCrossings, drops_what_the_nonzero_rule_fills_twice)
{
    const XPathPtr path = read(rectangle(0, 0, 100, 100) + rectangle(25, 25, 50, 50));
    path->children[0]->setClockwise(true);
    path->children[1]->setClockwise(true);
    path->evenOdd = false;
    path->resolveCrossings();
    EXPECT_EQ(path->children.size(), 1);
    EXPECT_NEAR(areaOf(*path), 10000, 1e-9);
}

TEST(ResolvingCrossings, doubts_a_nesting_that_a_grazing_ray_found_only_where_another_ray_does_not_agree)
{
    for (const char *level : { "60", "60.0000001" }) {
        vx::RunNotes notes;
        const XPathPtr path = read(std::string("M 0 0 L 100 0 L 90 ") + level + " L 100 120 L 0 120 Z " +
                                   rectangle(40, 40, 20, 40));
        delete vx::cleanCopy(path.get(), notes);
        EXPECT_FALSE(notes.anyDoubt()) << level;
    }
    // Rounding in the level of a vertex makes the ray from the hole's middle count it twice.
    vx::RunNotes notes;
    const XPathPtr path = read("M 30 65 L 45 45 L 85 50 L 85.555555555555557 55 L 81.25 55 "
                               "C 77.798220312500007 55 75 57.7982203125 75 61.25 L 75 83.75 "
                               "C 75 87.201779687499993 77.798220312500007 90 81.25 90 "
                               "L 89.444444444444443 89.999999999999986 L 90 95 L 55 120 L 20 95 Z " +
                               shapes::ellipse(60, 90, 15, 20));
    delete vx::cleanCopy(path.get(), notes);
    EXPECT_TRUE(notes.grazedNesting);
    EXPECT_FALSE(vx::isCleaningConfirmed(*path));
}
