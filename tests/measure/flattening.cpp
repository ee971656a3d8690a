#include "elementpath/elements.h"
#include "vxmatrix.h"
#include "vxpathit.h"
#include "xpath.h"

#include <gtest/gtest.h>

using elements::distance;

namespace {

double distanceToPolygon(const QPointF &p, const QPolygonF &polygon)
{
    double nearest = elements::inf;
    for (int i = 1; i < polygon.count(); ++i) {
        const QPointF a = polygon.at(i - 1), d = polygon.at(i) - a;
        const double along = QPointF::dotProduct(p - a, d) / QPointF::dotProduct(d, d);
        nearest = std::fmin(nearest, distance(p, a + d * std::fmin(std::fmax(along, 0), 1)));
    }
    return nearest;
}

QPolygonF flattened(PZPath path, double flatness)
{
    XPath xpath;
    path.toXPath(xpath);
    xpath.flatten(flatness);
    QPolygonF polygon;
    for (const vxSegment *segment : xpath.getFirstChild()->getSegments())
        polygon << segment->point.toPt();
    if (xpath.getFirstChild()->isClosed())
        polygon << polygon.value(0);
    return polygon;
}

} // namespace

TEST(Flattening, outlines_stay_within_the_flatness)
{
    PZPath circle;
    circle.ellipse(QRectF(-100, -100, 200, 200));
    const PZPath wave = elements::read("M 0 0 C 300 0 -200 100 100 100 C 130 100 130 160 100 150");
    for (double flatness : { 4.0, 0.25, 0.01 }) {
        for (const PZPath &path : { circle, wave }) {
            const QPolygonF polygon = flattened(path, flatness);
            for (const QPointF &p : elements::outline(path, 400))
                ASSERT_LE(distanceToPolygon(p, polygon), flatness);
        }
    }
    const QPolygonF polygon = flattened(circle, 0.25);
    EXPECT_LT(polygon.count(), 100);
    for (int i = 1; i < polygon.count(); ++i) {
        const QPointF middle = (polygon.at(i - 1) + polygon.at(i)) / 2;
        EXPECT_NEAR(std::hypot(middle.x(), middle.y()), 100, 0.25);
    }
}

TEST(Flattening, numbers_of_points)
{
    const auto count = [](const char *path, double flatness) {
        return flattened(elements::read(path), flatness).count();
    };
    EXPECT_EQ(count("M 0 0 L 90 0 L 90 90 L 90 90 L 0 90 L 0 0 Z", 0.1), 5);
    EXPECT_EQ(count("M 0 0 C 20 0 70 0 90 0", 0), 2); // straight
    EXPECT_EQ(count("M 0 0 C 0 50 50 90 90 90", 0), 257);
    EXPECT_EQ(count("M 0 0 C 1e300 nan 0 0 50 50", 1), 2);
    EXPECT_EQ(count("M 5 5", 1), 0);
}

TEST(Flattening, pieces_come_in_order_with_their_running_length)
{
    const PZPath curve = elements::read("M 0 0 C 50 0 90 40 90 90");
    PZPath path = curve;
    path.addPath(elements::read("M 90 90 L 0 200 L 0 0 Z"), true);
    XPath xpath;
    path.toXPath(xpath);
    const vxPathIt it(xpath.getFirstChild(), 0, 100, true, nullptr);
    ASSERT_EQ(it.parts.count(), 128 + 1 + 1); // 1/100 is passed at the seventh halving
    const std::vector<QPointF> points = elements::outline(curve, 128);
    double length = 0;
    for (int i = 0; i < 128; ++i) {
        const vxPathIt::Part &part = it.parts.at(i);
        length += distance(points[i], points[i + 1]);
        EXPECT_NEAR(part.offset, length, 1e-9);
        EXPECT_TRUE(part.index == 0 && part.time == (i + 1) / 128.0);
        EXPECT_LT(distance(points[i + 1], QPointF(part.curve.at(6), part.curve.at(7))), 1e-12);
    }
    EXPECT_TRUE(it.parts.last().index == 2 && it.parts.last().time == 1);
    EXPECT_NEAR(it.length, length + std::hypot(90, 110) + 200, 1e-9);
    const vxMatrix twice(2, 0, 0, 2, 5, 5);
    EXPECT_NEAR(vxPathIt(xpath.getFirstChild(), 0, 100, true, &twice).length, 2 * it.length, 1e-9);
    EXPECT_EQ(vxPathIt(xpath.getFirstChild(), 0, -5, false, nullptr).parts.count(), 3);
    // A span that halving never comes to.
    for (const double minSpan : { 0.0, -1.0, elements::undefined, 1e-300 }) {
        vxPathIt bounded(nullptr, 0, 1, false, nullptr);
        bounded.computeParts({ 0, 0, 0, 50, 50, 90, 90, 90 }, 0, 0, 1, 1e-3, minSpan, false);
        EXPECT_LT(bounded.parts.count(), 1000);
        EXPECT_NEAR(bounded.length, elements::length(elements::read("M 0 0 C 0 50 50 90 90 90")), 1e-2);
        bounded.computeParts({ 0, 0, 0, 50, 50, 90, 90, 90 }, 0, 0, elements::inf, 0, minSpan, false);
        EXPECT_NEAR(bounded.parts.last().offset - bounded.parts.at(bounded.parts.count() - 2).offset,
                    std::hypot(90, 90), 1e-9);
    }
}
