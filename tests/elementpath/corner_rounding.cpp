#include "elements.h"

#include <gtest/gtest.h>

using namespace elements;

namespace {

const char *square = "M 0 0 L 10 0 L 10 10 L 0 10 L 0 0 Z";

/** A quarter circle of radius 100 about the origin, from (100, 0) to (0, 100). */
const QString quarter = "C 100 55.228475 55.228475 100 0 100 ";

PZPath along(const QString &elements, double distance)
{
    PZPath path = read(elements);
    path.setCornerRound(distance);
    return path;
}

PZPath byEdge(const QString &elements, double distance)
{
    PZPath path = read(elements);
    path.setCornerRound2(distance);
    return path;
}

QPointF pointAt(const PZPath &path, int i)
{
    return path.at(i).toPoint();
}

/** Length of the elements in [from, to), the first of which only gives the start point. */
double lengthOf(const PZPath &path, int from, int to)
{
    PZPath part = path;
    part.resize(to);
    part.erase(part.begin(), part.begin() + from);
    part[0].type = PZPath::MoveToElement;
    return length(part);
}

struct Row {
    const char *before;
    double distance;
    const char *after;
};

} // namespace

TEST(CornerRounding, along_the_path)
{
    // Handles are 0.448 * 1.5 = 0.672 of the distance long.
    const Row rows[] = {
        { "M 0 0 L 100 0 L 100 100", 10, "M 0 0 L 90 0 C 96.72 0 100 3.28 100 10 L 100 100" },
        { "M 0 0 L 50 0 L 100 0", 10, "M 0 0 L 40 0 C 46.72 0 53.28 0 60 0 L 100 0" },
        // Short edges are swallowed, up to the ends of an open path.
        { "M 0 0 L 50 0 L 54 0 L 54 4 L 54 90", 10, "M 0 0 L 40 0 C 46.72 0 54 -0.72 54 6 L 54 90" },
        { "M 0 0 L 5 0 L 5 100", 10, "M 0 0 C 6.72 0 5 3.28 5 10 L 5 100" },
        { "M 0 0 C 30 0 70 0 100 0 C 130 0 170 0 200 50", 20,
          "M 0 0 C 30 0 70 0 100 0 C 130 0 170 0 200 50" },
        // No room for two cuts: on the edges of the corner, or on one that both walks come to.
        { square, 25, square },
        { "M 0 0 L 100 -150 L 100 150 L 0 0 Z", 400, "M 0 0 L 100 -150 L 100 150 L 0 0 Z" },
        { "M 0 0 L 10 0 L 10 10", 20, "M 0 0 L 10 0 L 10 10" },
        { square, -3, square },
        { "M 0 0 L 1e15 0 L 1e15 1e15", 1, "M 0 0 L 1e+15 0 L 1e+15 1e+15" }, // lost in rounding
    };
    for (const Row &row : rows)
        EXPECT_EQ(text(along(row.before, row.distance)), row.after) << row.before;
}

TEST(CornerRounding, along_closed_paths)
{
    EXPECT_EQ(text(along("M 0 0 L 100 0 L 100 100 L 0 100 L 0 0 Z", 10)),
              "M 10 0 L 90 0 C 96.72 0 100 3.28 100 10 L 100 90 C 100 96.72 96.72 100 90 100 L 10 100 "
              "C 3.28 100 0 96.72 0 90 L 0 10 C 0 3.28 3.28 0 10 0 Z");
    // The start is no corner, and the rounding of (0, 0), the last one, swallows it.
    const PZPath round =
        along("M 25 0 C 35 0 90 0 100 0 L 100 100 L 0 100 L 0 0 L 20 0 C 22 0 23 0 25 0 Z", 30);
    ASSERT_EQ(round.count(), 20) << text(round);
    EXPECT_EQ(pointAt(round, 0), QPointF(30, 0));
}

TEST(CornerRounding, edge_by_edge)
{
    const char *round3 = "M 3 0 L 7 0 C 8.656 0 10 1.344 10 3 L 10 7 C 10 8.656 8.656 10 7 10 L 3 10 "
                         "C 1.344 10 0 8.656 0 7 L 0 3 C 0 1.344 1.344 0 3 0 Z";
    const Row rows[] = {
        { square, 3, round3 },
        // At most half of each edge, in whole units.
        { "M 0 0 L 7 0 L 7 20 L 0 20", 10,
          "M 0 0 L 4 0 C 5.656 0 7 1.344 7 3 L 7 17 C 7 18.656 5.656 20 4 20 L 0 20" },
        { "M 0 0 L 20 0 L 20 7", 1e300, "M 0 0 L 17 0 C 18.656 0 20 1.344 20 3 L 20 7" },
        { "M 0 0 L 9 0 L 9 9", 0.5, "M 0 0 L 9 0 C 9 0 9 0 9 0 L 9 9" },
        // Straight on, back again, a cusp, a smooth end of a curve: no corners.
        { "M 0 0 L 50 0 L 90 0 L 20 0", 9, "M 0 0 L 50 0 L 90 0 L 20 0" },
        { "M 0 0 L 50 0 C 20 0 20 40 60 60", 9, "M 0 0 L 50 0 C 20 0 20 40 60 60" },
        // What is drawn on after a close is rounded, but not where it closes.
        { "Z L 9 0 L 9 9 Z", 4, "Z L 5 0 C 7.208 0 9 1.792 9 4 L 9 9 Z" },
        { "M 0 0 D 1 1 L 9 0 D 2 2", 3, "M 0 0 L 9 0" },
        { square, -3, square },
    };
    for (const Row &row : rows)
        EXPECT_EQ(text(byEdge(row.before, row.distance)), row.after) << row.before;
}

TEST(CornerRounding, at_curves)
{
    const double whole = length(read("M 100 0 " + quarter));
    const PZPath curveLine = byEdge("M 100 0 " + quarter + "L 0 0", 20);
    ASSERT_EQ(curveLine.count(), 1 + 3 + 3 + 1);
    EXPECT_NEAR(lengthOf(curveLine, 0, 4), whole - 20, 1e-3);
    EXPECT_NEAR(distance(pointAt(curveLine, 4), pointAt(curveLine, 3)), 0.672 * 20, 1e-9);
    EXPECT_NEAR(distance(pointAt(curveLine, 5), QPointF(0, 100 - 0.448 * 20)), 0, 1e-9);
    EXPECT_NEAR(distance(pointAt(curveLine, 6), QPointF(0, 80)), 0, 1e-9);
    // The same corner walked the other way; a smooth joint of line and curve is rounded too.
    for (const QString line : { "M 0 0 L 100 0 ", "M 100 -90 L 100 0 " }) {
        const PZPath lineCurve = byEdge(line + quarter, 20);
        ASSERT_EQ(lineCurve.count(), 1 + 1 + 3 + 3);
        EXPECT_NEAR(lengthOf(lineCurve, 4, 8), whole - 20, 1e-3);
        EXPECT_NEAR(distance(pointAt(lineCurve, 3), pointAt(lineCurve, 4)), 0.672 * 20, 1e-9);
        EXPECT_LT(distance(pointAt(lineCurve, 3), QPointF(100, 0)), 20 - 0.6 * 20); // towards the corner
        EXPECT_NEAR(distance(pointAt(lineCurve, 1), QPointF(100, 0)), 20, 1e-9);
    }
    // A half moon closed by its chord: the first edge starts at the cut of the closing corner.
    const QString bow = "M 100 0 C 100 133.3333 -100 133.3333 -100 0 ";
    const PZPath moon = byEdge(bow + "L 100 0 Z", 20);
    ASSERT_EQ(moon.count(), 1 + 3 + 3 + 1 + 3 + 1);
    EXPECT_NEAR(lengthOf(moon, 0, 4), length(read(bow)) - 20, 1e-3);
    EXPECT_EQ(pointAt(moon, 11), pointAt(moon, 0));
    EXPECT_NEAR(distance(pointAt(moon, 7), QPointF(80, 0)), 0, 1e-9);
}
