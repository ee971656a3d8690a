#pragma once

#include "support/shapes.h"
#include "vxcurve.h"
#include "vxcurvelocation.h"
#include "vxpath.h"
#include "vxref_p.h"

#include <gtest/gtest.h>

/** What the tests of this room share. */
namespace meetings {

/** A list of locations that frees them with their partners. */
struct Locations {
    explicit Locations(const QList<vxCurveLocation *> &found) : list(found) {}
    Locations(const Locations &) = delete;
    Locations &operator=(const Locations &) = delete;
    ~Locations() { vxCurveLocation::releaseAll(list); }

    QList<vxCurveLocation *> list;
};

inline vxRef<vxCurveLocation> locationAt(vxCurve *curve, double time)
{
    return vxRef<vxCurveLocation>(new vxCurveLocation(curve, time, vxPoint(qQNaN(), qQNaN()), false, 0));
}

/** A curve of its own from x0 y0 x1 y1 x2 y2 x3 y3; from x0 y0 x1 y1 a line. */
inline vxRef<vxCurve> curve(const std::string &values)
{
    const QVector<double> v = shapes::numbers(values);
    return vxRef<vxCurve>(new vxCurve(v.size() == 4 ? v.mid(0, 2) + v.mid(0, 2) + v.mid(2) + v.mid(2) : v));
}

/**
 * Each location and its partner point at each other, and both curves really are at the place that they tell.
 */
inline void expectOnBothCurves(const QList<vxCurveLocation *> &list, double tolerance = 1e-6)
{
    for (vxCurveLocation *location : list) {
        ASSERT_NE(location->intersection, nullptr);
        EXPECT_EQ(location->intersection->intersection, location);
        const vxPoint p = location->getPoint();
        for (vxCurveLocation *side : { location, location->intersection }) {
            ASSERT_TRUE(side->getCurve() && side->getTime() >= 0 && side->getTime() <= 1);
            const vxPoint q = side->getCurve()->getPointAtTime(side->getTime());
            EXPECT_LE(p.getDistance(q), tolerance) << "told (" << p.x << ", " << p.y << "), time "
                                                   << side->getTime() << " is (" << q.x << ", " << q.y << ")";
        }
    }
}

/**
 * The places of the locations, each once: one place may be told by several of them, because merging looks
 * only at the head of a list, while a shared corner is met by every curve that ends there.
 */
inline std::vector<vxPoint> distinctPlaces(const QList<vxCurveLocation *> &list, double tolerance = 1e-6)
{
    std::vector<vxPoint> places;
    for (const vxCurveLocation *location : list) {
        bool known = false;
        for (const vxPoint &place : places)
            known = known || place.isClose(location->point, tolerance);
        if (!known)
            places.push_back(location->point);
    }
    return places;
}

/** As many places as expected (x y x y ...), and just one near each of those. */
inline void expectPlaces(const QList<vxCurveLocation *> &list, const QVector<double> &expected,
                         double tolerance = 1e-6)
{
    const std::vector<vxPoint> found = distinctPlaces(list);
    EXPECT_EQ(int(found.size()), expected.size() / 2);
    for (int i = 0; i + 1 < expected.size(); i += 2) {
        int near = 0;
        for (const vxPoint &p : found)
            near += p.isClose(vxPoint(expected[i], expected[i + 1]), tolerance);
        EXPECT_EQ(near, 1) << "at (" << expected[i] << ", " << expected[i + 1] << ")";
    }
}

} // namespace meetings
