#include "elements.h"

#include <gtest/gtest.h>

using namespace elements;

namespace {

PZPath rectangle(double x, double y, double w, double h)
{
    PZPath path;
    path.addRect(QRectF(x, y, w, h));
    return path;
}

/** Shoelace area of straight subpaths, positive for clockwise on screen. */
double area(const PZPath &path)
{
    double sum = 0;
    for (int i = 1; i < path.count(); ++i) {
        if (path.at(i).type != PZPath::MoveToElement)
            sum += (path.at(i - 1).x * path.at(i).y - path.at(i).x * path.at(i - 1).y) / 2;
    }
    return sum;
}

} // namespace

TEST(Cutting, booleans_of_rectangles)
{
    PZPath a = rectangle(0, 0, 40, 40), b = rectangle(20, 10, 40, 20);
    PZPath united = a, common = a, rest = a;
    united.unite(b);
    common.intersect(b);
    rest.subtract(b);
    EXPECT_NEAR(area(common), 20 * 20, 1e-9);
    EXPECT_NEAR(area(united), 1600 + 800 - 400, 1e-9);
    EXPECT_NEAR(area(rest), 1600 - 400, 1e-9);
    EXPECT_EQ(b, rectangle(20, 10, 40, 20));
    a.unite(a); // its own operand
    EXPECT_NEAR(area(a), 1600, 1e-9);
    a.subtract(a);
    EXPECT_TRUE(a.isEmpty());
}

TEST(Cutting, trimming_by_whole_units_along_the_path)
{
    const struct {
        const char *before;
        double start, end;
        const char *after;
    } rows[] = {
        { "M 0 0 L 100 0", 10, 20, "M 10 0 L 80 0" },
        { "M 0 0 L 50 0 L 50 50", 60, 0.9, "M 50 10 L 50 50" },
        { "M 0 0 L 100 0", -30, 0, "M 70 0 L 100 0" },
        { "M 0 0 L 50 0 L 50 50 L 0 0 Z", 25, 80, "M 25 0 L 50 0 L 50 50 L 38.89087 38.89087" },
        { "M 0 0 L 100 0", 0.9, 5, nullptr },
        { "M 0 0 L 100 0", undefined, 5, nullptr },
    };
    for (const auto &row : rows) {
        PZPath path = read(row.before);
        EXPECT_EQ(path.splitAt(row.start, row.end), row.after != nullptr) << row.start;
        EXPECT_EQ(text(path), row.after ? row.after : row.before) << row.start;
    }
}

TEST(Cutting, division_at_the_first_crossing)
{
    PZPath far = read("M 500 0 L 600 0");
    PZPath knife = read("M 30 -50 L 30 50");
    PZPath before = read("M 0 0 L 100 0 M 0 80 L 100 80"), after = before, ring = rectangle(0, 0, 100, 20);
    QPointF point(7, 7);
    EXPECT_FALSE(before.dividePath(far, point, true));
    EXPECT_EQ(point, QPointF(7, 7));
    EXPECT_EQ(before.bestCrossPoint(far), QPointF(0, 0));
    EXPECT_EQ(before.crossPoints(knife), QVector<QPointF>{ QPointF(30, 0) });
    EXPECT_TRUE(before.dividePath(knife, point, true) && after.dividePath(knife, point, false));
    EXPECT_EQ(text(before), "M 0 0 L 30 0 M 0 80 L 100 80");
    EXPECT_EQ(text(after), "M 30 0 L 100 0");
    EXPECT_EQ(point, QPointF(30, 0));
    EXPECT_TRUE(ring.dividePath(knife, point, true));
    EXPECT_NEAR(length(ring), 240, 1e-9); // only opened
}

TEST(Cutting, smoothing_and_normalised_copies)
{
    PZPath path = read("M 0 0 L 100 0 L 100 100 L 0 100 L 0 0 Z");
    path.smooth(4);
    ASSERT_EQ(path.count(), 14);
    EXPECT_EQ(path.at(6).toPoint(), QPointF(100, 100));
    // Three points at one place have no direction: a corner, not a hole in the outline.
    PZPath coincident = read("M 0 0 L 50 50 L 50 50 L 50 50 L 90 0");
    coincident.smooth(2);
    for (const PZPath::PZElement &e : coincident)
        EXPECT_TRUE(std::isfinite(e.x) && std::isfinite(e.y));
    PZPath copied = read("M 3 3 M 0 0 L 50 0 L 0.5 0.5");
    copied.evenOdd(); // appended to the elements, which are cleaned up but not normalised
    EXPECT_EQ(text(copied), "M 0 0 L 50 0 L 0.5 0.5 M 0 0 L 50 0 L 0.5 0.5");
}
