#include "path_fixtures.h"

#include "xpath.h"

using namespace fixture;

namespace {

QVector<vxPoint> pointsOf(const vxPath &path)
{
    QVector<vxPoint> points;
    for (const vxSegment *segment : path.getSegments())
        points.append(segment->point);
    return points;
}

TEST(JoiningPaths, ends_meet_in_any_direction)
{
    const vxPoint a{ 0, 0 }, b{ 10, 0 }, c{ 20, 5 }, d{ 30, 0 };
    const struct {
        const char *name;
        vxPoint otherStart, otherEnd;
        QVector<vxPoint> joined;
    } rows[] = {
        { "end_to_start", b, c, { a, b, c } }, { "end_to_end", c, b, { a, b, c } },
        { "start_to_end", c, a, { c, a, b } }, { "start_to_start", a, c, { c, a, b } },
        { "apart", c, d, { a, b, c, d } },     { "within_tolerance", { 10.05, 0 }, c, { a, b, c } },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const vxRef<vxPath> path = polygon({ a, b }, false);
        const vxRef<vxPath> other = polygon({ row.otherStart, row.otherEnd }, false);
        path->getCurves();
        path->join(other.get(), 0.1);
        EXPECT_EQ(pointsOf(*path), row.joined);
        EXPECT_FALSE(path->isClosed());
        EXPECT_TRUE(other->isEmpty());
        expectConsistent(*path);
    }
}

TEST(JoiningPaths, the_shape_survives_the_seam)
{
    // Cut in two and joined again, in all four directions.
    for (int turn = 0; turn < 4; ++turn) {
        const vxRef<vxPath> path = wave();
        const vxRef<vxPath> piece(path->splitAt(25.0));
        const double length = path->getLength() + piece->getLength();
        if (turn & 1)
            path->reverse();
        if (turn & 2)
            piece->reverse();
        path->join(piece.get(), 1e-6);
        if (turn & 1)
            path->reverse();
        EXPECT_NEAR(path->getLength(), length, 1e-9);
        EXPECT_EQ(path->getSegments().size(), 5);
        for (double offset = 1; offset < length; offset += 4)
            expectPoint(path->getPointAt(offset), wave()->getPointAt(offset), 1e-5);
    }
}

TEST(JoiningPaths, a_ring_closes_and_leaves_the_parent)
{
    XPath compound;
    compound.addChild(polygon({ { 0, 0 }, { 10, 0 } }, false)->clone());
    compound.addChild(polygon({ { 10, 0 }, { 10, 10 }, { 0, 0 } }, false)->clone());
    vxPath *path = compound.getFirstChild();
    path->join(compound.getLastChild(), 1e-6);
    EXPECT_EQ(compound.children.size(), 1);
    EXPECT_TRUE(path->isClosed());
    EXPECT_EQ(path->getSegments().size(), 3);

    const vxRef<vxPath> open = polygon({ { 0, 0 }, { 5, 5 }, { 9, 0 }, { 0, 0 } }, false);
    open->join(open.get(), -1);
    open->join(nullptr, undefined);
    EXPECT_FALSE(open->isClosed());
    open->join(nullptr, 0);
    EXPECT_TRUE(open->isClosed());
    EXPECT_EQ(open->getSegments().size(), 3);
    vxRef<vxPath>(new vxPath)->join(nullptr, 1);
}

TEST(ReducingPaths, what_goes_and_what_stays)
{
    const vxPoint a{ 0, 0 }, b{ 10, 0 }, c{ 20, 0 }, d{ 20, 10 }, e{ 0, 10 };
    const vxPoint nearB{ 10 + 1e-7, 0 }, nearC{ 20 - 1e-7, 0 };
    const struct {
        const char *name;
        bool closed, simplify;
        QVector<vxPoint> points, kept;
    } rows[] = {
        { "collinear_stays_unless_asked", true, false, { a, b, c, d, e }, { a, b, c, d, e } },
        { "collinear_goes_when_asked", true, true, { a, b, c, d, e }, { a, c, d, e } },
        { "several_around_the_start", true, true, { b, { 15, 0 }, c, d, e, a, { 5, 0 } }, { c, d, e, a } },
        { "repeated_start", true, false, { a, b, d, e, a }, { b, d, e, a } },
        { "closed_spike_collapses", true, true, { a, b }, {} },
        { "closed_point_collapses", true, false, { a, a, a }, {} },
        { "spike_of_a_ring_collapses", true, true, { a, b, { 30, 0 }, c, d, e }, { a, c, d, e } },
        { "open_line_keeps_its_ends", false, true, { a, b, c }, { a, c } },
        { "open_line_back_keeps_its_tip", false, true, { a, c, b }, { a, c, b } },
        { "open_tiny_last_curve_keeps_the_end", false, false, { a, b, nearC, c }, { a, b, c } },
        { "open_tiny_first_curve_keeps_the_start", false, false, { b, nearB, c }, { b, c } },
        { "empty", true, true, {}, {} },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const vxRef<vxPath> path(new vxPath(nullptr, row.closed));
        for (const vxPoint &p : row.points)
            path->lineToPt(p);
        const double area = path->getArea(false, true);
        path->getCurves();
        path->reduce(row.simplify);
        EXPECT_EQ(pointsOf(*path), row.kept);
        EXPECT_NEAR(path->getArea(false, true), area, 1e-5);
        expectConsistent(*path);
    }
}

TEST(ReducingPaths, what_is_known_of_a_contour_goes_with_its_copy_until_an_edit)
{
    XPath original;
    original.addChild(polygon({ { 0, 0 }, { 10, -5 }, { 20, 0 }, { 20, 10 } }, true).get(), -1);
    original.children.first()->_noteReduced(); // there is nothing to drop
    const vxBoundOpt option = vxBoundOpt::geometric();
    EXPECT_EQ(original.getBounds(option, vxStyle()).bottom(), 10);
    XPath copy;
    copy.assign(original);
    vxPath &contour = *copy.children.first();
    contour.getSegments().at(1)->setPoint({ 10, 0 });
    contour.getSegments().at(3)->setPoint({ 20, 30 });
    contour._changed();
    EXPECT_EQ(copy.getBounds(option, vxStyle()).bottom(), 30);
    copy.reduce(true);
    EXPECT_EQ(contour.getSegments().size(), 3) << "the second vertex lies on a straight run now";
    EXPECT_EQ(original.children.first()->getSegments().size(), 4);
}

} // namespace
