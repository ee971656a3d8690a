#include "path_fixtures.h"

#include "vxcurvelocation.h"

#include <cmath>

using namespace fixture;

namespace {

TEST(NeighboursOfSegments, curves_and_neighbours_by_position)
{
    const struct {
        const char *name;
        bool closed;
        int segments, at, curve, curvePrev, next, previous;
    } rows[] = {
        { "open_first", false, 3, 0, 0, 0, 1, -1 }, { "open_middle", false, 3, 1, 1, 0, 2, 0 },
        { "open_last", false, 3, 2, 1, 1, -1, 1 },  { "open_single", false, 1, 0, -1, -1, -1, -1 },
        { "closed_first", true, 3, 0, 0, 2, 1, 2 }, { "closed_second", true, 3, 1, 1, 1, 2, 0 },
        { "closed_last", true, 3, 2, 2, 2, 0, 1 },  { "closed_single", true, 1, 0, 0, 0, 0, 0 },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const vxRef<vxPath> path(new vxPath(nullptr, row.closed));
        for (int i = 0; i < row.segments; ++i)
            path->lineTo(i * 10, i * i);
        const vxSegment *segment = path->getSegments().at(row.at);
        const auto indexOf = [](const auto *found) { return found ? found->index : -1; };
        EXPECT_EQ(segment->getCurve() ? segment->getCurve()->index() : -1, row.curve);
        EXPECT_EQ(segment->getCurvePrev() ? segment->getCurvePrev()->index() : -1, row.curvePrev);
        EXPECT_EQ(indexOf(segment->getNext()), row.next);
        EXPECT_EQ(indexOf(segment->getPrevious()), row.previous);
        EXPECT_EQ(segment->isFirst(), row.at == 0);
        EXPECT_EQ(segment->isLast(), row.at == row.segments - 1);
        if (vxCurveLocation *location = segment->getLocation()) {
            expectPoint(location->getPoint(), segment->point);
            location->release();
        } else {
            EXPECT_EQ(row.curve, -1);
        }
    }
}

TEST(NeighboursOfSegments, smoothing_one_segment)
{
    // Uniform Catmull-Rom (exponent 0): a sixth of the chord of the neighbours on either side.
    const vxRef<vxPath> path = polygon({ { 0, 0 }, { 10, 30 }, { 60, 0 } }, false);
    vxSegment *middle = path->getSegments().at(1);
    middle->smooth(false, false, 1, 0);
    expectPoint(middle->handleIn, { -10, 0 });
    expectPoint(middle->handleOut, { 10, 0 });
    middle->clearHandles();
    middle->smooth(true, false, 1, -1);
    EXPECT_TRUE(middle->handleIn.isZero());
    EXPECT_FALSE(middle->handleOut.isZero());

    // Geometric: along the chord, both handles together a fixed share of it.
    middle->smooth(false, false, 2, 0.5);
    expectPoint(middle->handleOut.subtract(middle->handleIn), { 30, 0 });
    const double shares = middle->handleIn.getLength() / middle->handleOut.getLength();
    EXPECT_NEAR(shares, middle->point.getDistance({ 0, 0 }) / middle->point.getDistance({ 60, 0 }), 1e-12);

    const vxRef<vxPath> point = polygon({ { 5, 5 }, { 5, 5 }, { 5, 5 } }, false);
    point->getSegments().at(1)->smooth(false, false, 1, 0.5);
    EXPECT_FALSE(point->hasHandles());
}

TEST(NeighboursOfSegments, text_form)
{
    EXPECT_EQ(vxSegment(1, 2).toString(),
              QStringLiteral("point: x: 1, y: 2, winding: -1, contour: 0, visited: 0 -1 0"));
}

} // namespace
