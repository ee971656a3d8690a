#include "path_fixtures.h"

#include "vxcurvelocation.h"
#include "vxmatrix.h"
#include "xpath.h"

#include <cmath>

using namespace fixture;

namespace {

TEST(MeasuringAlongPaths, places_by_arc_length)
{
    const struct {
        const char *name;
        bool closed;
        double offset;
        int curve;
        double share; ///< of the curve's length
    } rows[] = {
        { "start", true, 0, 0, 0 },
        { "corner_belongs_to_the_next_curve", true, 20, 2, 0 },
        { "from_the_end", true, -5, 3, 0.5 },
        { "all_the_way_back", true, -40, 0, 0 },
        { "end_of_an_open_path", false, 30, 2, 1 },
        { "end_of_a_closed_path_is_its_start", true, 40, 0, 0 },
        { "beyond_the_end", false, 30.001, -1, 0 },
        { "not_a_number", true, undefined, -1, 0 },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const vxRef<vxPath> path = square();
        path->setClosed(row.closed);
        const vxRef<vxCurveLocation> location(path->getLocationAt(row.offset));
        ASSERT_EQ(bool(location), row.curve >= 0);
        EXPECT_EQ(path->getPointAt(row.offset).isNaN(), row.curve < 0);
        if (!location)
            continue;
        EXPECT_EQ(location->getCurve()->index(), row.curve);
        EXPECT_NEAR(location->getCurveOffset(), 10 * row.share, 1e-9);
        expectPoint(path->getPointAt(row.offset), location->getPoint());
    }
}

TEST(MeasuringAlongPaths, offsets_points_and_directions_agree)
{
    const vxRef<vxPath> path = wave();
    const double length = path->getLength();
    const double step = 1e-5;
    for (double offset = 1; offset < length - 1; offset += 2.7) {
        SCOPED_TRACE(offset);
        const vxPoint p = path->getPointAt(offset);
        EXPECT_NEAR(path->getOffsetOf(p), offset, 1e-6);
        double within = offset;
        const vxCurve *curve = path->getCurveAtOff(within);
        EXPECT_NEAR(curve->getOffsetAtTime(curve->getTimeAt(within)), offset, 1e-6);
        const vxPoint ahead = path->getPointAt(offset + step).subtract(path->getPointAt(offset - step));
        expectPoint(path->getTangentAt(offset), ahead.divide(2 * step), 1e-5);
        const vxPoint tangent = path->getWeightedTangentAt(offset);
        expectPoint(path->getWeightedNormalAt(offset), { tangent.y, -tangent.x });
        EXPECT_NEAR(path->getNormalAt(offset).getLength(), 1, 1e-12);
        const vxRef<vxCurveLocation> nearest(
            path->getNearestLocation(p.add(path->getNormalAt(offset).multiply(.01))));
        EXPECT_NEAR(nearest->distance, 0.01, 1e-6);
        EXPECT_NEAR(nearest->getOffset(), offset, 1e-3);
    }
    EXPECT_EQ(path->getCurvatureAt(length - 5), 0) << "on the line";
    EXPECT_EQ(path->getOffsetOf({ 0, 50 }), -1);
    double beyond = length + 1;
    EXPECT_EQ(path->getCurveAtOff(beyond), nullptr);
    EXPECT_EQ(beyond, length + 1);
}

TEST(MeasuringAlongPaths, bounds_hold_the_curves_and_map_first)
{
    const vxRef<vxPath> path(new vxPath);
    path->moveTo(0, 0);
    path->quadraticCurveTo({ 50, 100 }, { 100, 0 });
    const vxRect box = boundsOf(*path);
    expectPoint(box.topLeft(), { 0, 0 });
    expectPoint(box.bottomRight(), { 100, 50 });
    // Bounds of the turned curve, not of the turned box.
    const double c = std::sqrt(0.5);
    const vxMatrix turned(c, c, -c, c, 0, 0);
    const vxRect mapped = path->getBounds(vxBoundOpt::geometric(), vxStyle(), &turned);
    const vxRef<vxPath> copy(path->clone());
    copy->transformContent(&turned);
    expectPoint(mapped.bottomRight(), boundsOf(*copy).bottomRight());
    EXPECT_EQ(boundsOf(*polygon({ { 3, 4 } }, false)), vxRect(3, 4, 0, 0));
    EXPECT_EQ(boundsOf(*vxRef<vxPath>(new vxPath)), vxRect());
    XPath compound;
    compound.addChildren({ new vxPath, polygon({ { 5, 5 }, { 25, 5 } }, false)->clone(),
                           polygon({ { 30, 6 }, { 30, 16 } }, false)->clone() });
    EXPECT_EQ(compound.getBounds(vxBoundOpt::geometric(), vxStyle()), vxRect(5, 5, 25, 11))
        << "an empty child does not bring in the origin";
    expectPoint(compound.getNearestPoint({ 29, 12 }), { 30, 12 });
    EXPECT_EQ(
        boundsOf(
            *polygon({ { 0, 0 }, { undefined, undefined }, { undefined, undefined }, { 9, 9 }, { 5, 7 } },
                     false))
            .right(),
        9);
}

TEST(MeasuringAlongPaths, hostile_coordinates_end_in_a_defined_answer)
{
    for (double value : { undefined, infinity, 1e300, 5e-324 }) {
        SCOPED_TRACE(value);
        const vxRef<vxPath> path = polygon({ { 0, 0 }, { value, 1 }, { 1, value }, { value, value } }, true);
        path->cubicCurveTo({ value, 0 }, { 0, value }, { 3, 3 });
        path->getLength();
        path->getArea(true, true);
        boundsOf(*path);
        vxRef<vxCurveLocation>(path->getNearestLocation({ 1, 1 }));
        vxRef<vxCurveLocation>(path->getLocationAt(1e-9));
        path->getCurves().at(1)->divideAtTime(0.5, true);
        path->setClockwise(false);
        path->reduce(true);
        path->splitAt(value);
        path->join(nullptr, value);
        const vxMatrix matrix(value, 0, value, 1, 0, value);
        path->transformContent(&matrix);
        EXPECT_EQ(path->getCurves().size(), path->_countCurves());
    }
}

} // namespace
