#include "meetings.h"

#include "vxlocationowner_p.h"

using namespace meetings;
using shapes::ellipse;
using shapes::read;
using shapes::rectangle;

namespace {

/** Divides path's first curve at the times and gives the points of the contour that comes out. */
std::vector<vxPoint> divideFirstCurve(XPath &path, const std::vector<double> &times)
{
    QList<vxCurveLocation *> places;
    for (double t : times) {
        vxCurve *curve = path.getFirstChild()->getCurves().first();
        places.append(locationAt(curve, t).take());
    }
    const vx::LocationOwner owner(places);
    path.divideLocations(places, 0);
    std::vector<vxPoint> points;
    for (const vxSegment *segment : path.getFirstChild()->getSegments())
        points.push_back(segment->getPoint());
    for (vxCurveLocation *place : qAsConst(places))
        EXPECT_NE(place->segmentM(), nullptr);
    return points;
}

} // namespace

TEST(Division, cuts_one_curve_at_several_places_without_moving_it)
{
    const QVector<double> whole = { 3, 1, 20, 40, 55, -30, 80, 12 };
    const shapes::XPathPtr path = read("M 3 1 C 20 40 55 -30 80 12");
    const std::vector<vxPoint> points = divideFirstCurve(*path, { 0.2, 0.5, 0.8 });
    ASSERT_EQ(points.size(), 5u);
    const double times[] = { 0, 0.2, 0.5, 0.8, 1 };
    const QList<vxCurve *> curves = path->getFirstChild()->getCurves();
    for (int i = 0; i < 4; ++i) {
        const QVector<double> expected = vxCurve::getPart(whole, times[i], times[i + 1]);
        const QVector<double> actual = curves.at(i)->getValues();
        for (int k = 0; k < 8; ++k)
            EXPECT_NEAR(actual[k], expected[k], 1e-9) << "piece " << i << ", value " << k;
    }
}

TEST(Division, leaves_straight_curves_straight)
{
    const shapes::XPathPtr path = read(rectangle(0, 0, 100, 50));
    EXPECT_EQ(divideFirstCurve(*path, { 0.1, 0.5, 0.9 }).size(), 7u);
    EXPECT_FALSE(path->getFirstChild()->hasHandles());
    for (const vxCurve *curve : path->getCurves())
        EXPECT_TRUE(curve->isStraight());
    EXPECT_EQ(path->getFirstChild()->getArea(false, true), 5000);
}

TEST(Division, near_an_end_uses_the_segment_that_is_there)
{
    const std::pair<std::vector<double>, size_t> rows[] = {
        { { 0 }, 4 },        { { 3e-7 }, 4 }, { { 0.9999999 }, 4 }, { { 0, 0.5, 0.9999996 }, 6 },
        { { 0.5, 0.5 }, 5 },
    };
    for (const auto &[times, count] : rows) {
        const shapes::XPathPtr path = read(ellipse(0, 0, 10, 10));
        EXPECT_EQ(divideFirstCurve(*path, times).size(), count);
        EXPECT_NEAR(shapes::areaOf(*path), shapes::areaOf(*read(ellipse(0, 0, 10, 10))), 1e-6);
    }
}
