// The public static operations of vxCurve on value vectors: convert, call the kernel, convert back.

#include "vxcurve.h"
#include "vxcurvepair_p.h"
#include "vxcurvevalues_p.h"

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

vx::HullChain toChain(const QVector<vxPoint> &points)
{
    vx::HullChain chain;
    for (int i = 0; i < points.size() && i < 4; ++i)
        chain.append(points.at(i).x, points.at(i).y);
    return chain;
}

QVector<vxPoint> fromChain(const vx::HullChain &chain)
{
    QVector<vxPoint> points;
    for (int i = 0; i < chain.count; ++i)
        points.append(vxPoint(chain.points[i].x, chain.points[i].y));
    return points;
}

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
    if (!values.valid || !(recursion >= 0 && recursion < 48))
        return calls;
    const vx::ClipRange range{ tMin, tMax, uMin, uMax, flip, int(recursion) };
    return vx::CurvePair(values.first, values.second, c1, c2, locations, param).addCurves(range, calls);
}

QVector<QVector<vxPoint>> vxCurve::getConvexHull(double dq0, double dq1, double dq2, double dq3)
{
    vx::HullChain top;
    vx::HullChain bottom;
    vx::distanceHull(dq0, dq1, dq2, dq3, top, bottom);
    return { fromChain(top), fromChain(bottom) };
}

double vxCurve::clipConvexHull(const QVector<vxPoint> &hullTop, const QVector<vxPoint> &hullBottom,
                               double dMin, double dMax)
{
    return vx::clipHull(toChain(hullTop), toChain(hullBottom), dMin, dMax);
}

double vxCurve::clipConvexHullPart(const QVector<vxPoint> &part, bool top, double threshold)
{
    return vx::clipHullChain(toChain(part), top, threshold);
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
