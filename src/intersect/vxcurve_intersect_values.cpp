// The public static operations of vxCurve on value vectors: convert, call the kernel, convert back.

#include "vxcurve.h"
#include "vxcurvepair_p.h"
#include "vxcurvevalues_p.h"
#include "vxdistancehull_p.h"

#include <limits>

namespace {

/** A pair of value vectors as a CurvePair; invalid when either has fewer than eight values. */
struct ValuesPair {
    bool valid;
    vx::PreparedCurve first{};
    vx::PreparedCurve second{};

    ValuesPair(const QVector<double> &vals1, const QVector<double> &vals2)
    {
        vx::Cubic c1;
        vx::Cubic c2;
        valid = vx::toCubic(vals1, c1) && vx::toCubic(vals2, c2);
        if (valid) {
            first = vx::PreparedCurve(c1);
            second = vx::PreparedCurve(c2);
        }
    }
};

} // namespace

QList<vxCurveLocation *> vxCurve::getIntersectionscurve(vxCurve *c1, vxCurve *c2)
{
    QList<vxCurveLocation *> locations;
    if (!c1)
        return locations;
    opParam param;
    const QVector<double> vals2 = c2 && c2 != c1 ? c2->getValues() : QVector<double>();
    return getIntersections(c1->getValues(), vals2, c1, c2, locations, param);
}

QList<vxCurveLocation *> vxCurve::getIntersections(const QVector<double> &vals1, const QVector<double> &vals2,
                                                   vxCurve *c1, vxCurve *c2,
                                                   QList<vxCurveLocation *> &locations, opParam &param)
{
    if (vals2.isEmpty())
        return getSelfIntersection(vals1, c1, locations, param);
    const ValuesPair values(vals1, vals2);
    if (values.valid)
        vx::CurvePair(values.first, values.second, c1, c2, locations, param).intersect();
    return locations;
}

QList<vxCurveLocation *> vxCurve::getSelfIntersection(const QVector<double> &vals1, vxCurve *c1,
                                                      QList<vxCurveLocation *> &locations, opParam &param)
{
    if (!c1)
        return QList<vxCurveLocation *>();
    vx::Cubic c;
    if (vx::toCubic(vals1, c))
        vx::addSelfIntersection(vx::PreparedCurve(c), c1, locations, param);
    return locations;
}

QVector<vxPoint> vxCurve::getOverlaps(const QVector<double> &vals1, const QVector<double> &vals2)
{
    const ValuesPair values(vals1, vals2);
    vx::TimePair pairs[2];
    QVector<vxPoint> result;
    if (values.valid && vx::findOverlap(values.first, values.second, pairs)) {
        for (const vx::TimePair &pair : pairs)
            result.append(vxPoint(pair.t1, pair.t2));
    }
    return result;
}

void vxCurve::addLineIntersection(const QVector<double> &vals1, const QVector<double> &vals2, vxCurve *c1,
                                  vxCurve *c2, QList<vxCurveLocation *> &locations, opParam &param)
{
    const ValuesPair values(vals1, vals2);
    if (values.valid)
        vx::CurvePair(values.first, values.second, c1, c2, locations, param).addLines();
}

void vxCurve::addCurveLineIntersections(const QVector<double> &vals1, const QVector<double> &vals2,
                                        vxCurve *c1, vxCurve *c2, QList<vxCurveLocation *> &locations,
                                        opParam &param)
{
    const ValuesPair values(vals1, vals2);
    if (values.valid)
        vx::CurvePair(values.first, values.second, c1, c2, locations, param).addCurveAndLine();
}

int vxCurve::addCurveIntersections(const QVector<double> &vals1, const QVector<double> &vals2, vxCurve *c1,
                                   vxCurve *c2, QList<vxCurveLocation *> &locations, opParam &param,
                                   double tMin, double tMax, double uMin, double uMax, bool flip,
                                   double recursion, int calls)
{
    const ValuesPair values(vals1, vals2);
    // A depth that is out of range (or NaN) is as good as the limit.
    if (!values.valid || !(recursion >= 0 && recursion < vx::maxClipDepth))
        return calls;
    const vx::ClipRange range{ tMin, tMax, uMin, uMax, flip, int(recursion) };
    return vx::CurvePair(values.first, values.second, c1, c2, locations, param).addCurves(range, calls);
}

// --- the hull of the distance function: public edge only; the engine's form is clipToFatLine() ---

namespace {

/** A chain of the hull: two to four points. */
using HullChain = QVector<vxPoint>;

constexpr int maxChainPoints = 4;

HullChain chainOf(const vx::DistanceHull &hull, bool onTop, double d0, double d1, double d2, double d3)
{
    HullChain chain{ vxPoint(0, d0) };
    if (hull.hasFirst(onTop))
        chain.append(vxPoint(vx::third, d1));
    if (hull.hasSecond(onTop))
        chain.append(vxPoint(vx::twoThirds, d2));
    chain.append(vxPoint(1, d3));
    return chain;
}

} // namespace

QVector<QVector<vxPoint>> vxCurve::getConvexHull(double dq0, double dq1, double dq2, double dq3)
{
    const vx::DistanceHull hull(vx::Pair{ dq0, dq3 }, vx::Pair{ dq1, dq2 }, false);
    return { chainOf(hull, true, dq0, dq1, dq2, dq3), chainOf(hull, false, dq0, dq1, dq2, dq3) };
}

double vxCurve::clipConvexHull(const QVector<vxPoint> &hullTop, const QVector<vxPoint> &hullBottom,
                               double dMin, double dMax)
{
    if (hullTop.isEmpty() || hullBottom.isEmpty())
        return std::numeric_limits<double>::quiet_NaN();
    if (dMin > hullTop.first().y)
        return clipConvexHullPart(hullTop, true, dMin);
    if (hullBottom.first().y > dMax)
        return clipConvexHullPart(hullBottom, false, dMax);
    return hullTop.first().x;
}

double vxCurve::clipConvexHullPart(const QVector<vxPoint> &part, bool top, double threshold)
{
    for (int i = 1; i < part.size() && i < maxChainPoints; ++i) {
        const vxPoint &p = part.at(i - 1);
        const vxPoint &q = part.at(i);
        if (top ? q.y >= threshold : q.y <= threshold)
            return vx::timeOnEdge({ p.x, p.y }, { q.x, q.y }, threshold);
    }
    return std::numeric_limits<double>::quiet_NaN();
}

void vxCurve::addLocation(QList<vxCurveLocation *> &locations, opParam &param, const QVector<double> &vals1,
                          vxCurve *c1, double t1, const vxPoint &p1, const QVector<double> &vals2,
                          vxCurve *c2, double t2, const vxPoint &p2, bool overlap)
{
    const ValuesPair values(vals1, vals2);
    if (values.valid)
        vx::CurvePair(values.first, values.second, c1, c2, locations, param)
            .addLocation(t1, p1, t2, p2, overlap);
}
