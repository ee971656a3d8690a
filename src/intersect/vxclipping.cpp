#include "vxintersect_p.h"

#include "vxline.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vx {

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr int maxRecursion = 48;
constexpr int maxCalls = 4096;
/** Curve time: where a range this narrow has no meeting, it may be rounding that parts the curves. */
constexpr double lostWidth = 1e-5;
/** Curve time: a part this near to a meeting that was found touches it, which is no loss. */
constexpr double besideWidth = 1e-4;
/** Of its range; a clip that leaves more than this removed too little, so one curve is halved instead. */
constexpr double minProgress = 0.8;

/** Width of the fat line around a curve: distances from its chord that bound it. */
struct FatLine {
    double x0, y0, x3, y3;
    double dMin, dMax;
    bool flat;

    explicit FatLine(const Cubic &c) : x0(c.v[0]), y0(c.v[1]), x3(c.v[6]), y3(c.v[7])
    {
        const double d1 = distance(c.v[2], c.v[3]);
        const double d2 = distance(c.v[4], c.v[5]);
        // A cubic reaches at most 3/4 of its handles' distance when both lie on one side, 4/9 when on two.
        const double factor = d1 * d2 > 0 ? 0.75 : 4.0 / 9;
        dMin = factor * std::min({ d1, d2, 0.0 });
        dMax = factor * std::max({ d1, d2, 0.0 });
        flat = d1 == 0 && d2 == 0;
    }

    double distance(double x, double y) const
    {
        return vxLine::getSignedDistance(x0, y0, x3, y3, x, y, false);
    }
};

class Clipper
{
public:
    Clipper(int calls, TimePairs &found) : m_calls(calls), m_found(found) {}

    int calls() const { return m_calls; }
    /** Tells the list of meetings where one may have been lost to rounding: away from all that were found. */
    void finish();
    void clip(const Cubic &c1, const Cubic &c2, const ClipRange &range);

private:
    void halve(const Cubic &clipped, const Cubic &c2, const ClipRange &range, double tMin, double tMax);
    void report(const ClipRange &range, double tMin, double tMax);
    void noteLoss(const ClipRange &range);

    int m_calls;
    TimePairs &m_found;
    TimePairs m_lost;
};

/**
 * Clips c1 to the fat line of c2; false when none of it lies inside. The part's times go to tMin and tMax.
 */
bool clipToFatLine(const Cubic &c1, const Cubic &c2, double slack, double &tMin, double &tMax)
{
    const FatLine line(c2);
    const double d0 = line.distance(c1.v[0], c1.v[1]);
    const double d1 = line.distance(c1.v[2], c1.v[3]);
    const double d2 = line.distance(c1.v[4], c1.v[5]);
    const double d3 = line.distance(c1.v[6], c1.v[7]);
    if (line.flat && d0 == 0 && d1 == 0 && d2 == 0 && d3 == 0)
        return false; // both on one line: that is an overlap's business

    HullChain top;
    HullChain bottom;
    distanceHull(d0, d1, d2, d3, top, bottom);
    const double dMin = line.dMin - slack;
    const double dMax = line.dMax + slack;
    tMin = clipHull(top, bottom, dMin, dMax);
    if (std::isnan(tMin))
        return false;
    tMax = clipHull(top.reversed(), bottom.reversed(), dMin, dMax);
    return !std::isnan(tMax);
}

void Clipper::clip(const Cubic &c1, const Cubic &c2, const ClipRange &range)
{
    if (range.recursion + 1 >= maxRecursion || ++m_calls > maxCalls) {
        m_found.cutShort();
        return;
    }
    double tMinClip;
    double tMaxClip;
    if (!clipToFatLine(c1, c2, range.slack, tMinClip, tMaxClip)) {
        if (std::min(range.tMax - range.tMin, range.uMax - range.uMin) < lostWidth &&
            boxesMeet(hullBox(c1), hullBox(c2)))
            noteLoss(range);
        return;
    }
    const double tMin = range.tMin + (range.tMax - range.tMin) * tMinClip;
    const double tMax = range.tMin + (range.tMax - range.tMin) * tMaxClip;
    if (std::max(tMax - tMin, range.uMax - range.uMin) < vxTolerance::clipWidth) {
        report(range, tMin, tMax);
        return;
    }
    const Cubic clipped = part(c1, tMinClip, tMaxClip);
    if (tMaxClip - tMinClip > minProgress)
        halve(clipped, c2, range, tMin, tMax);
    else
        clip(c2, clipped,
             { range.uMin, range.uMax, tMin, tMax, !range.flip, range.recursion + 1, range.slack });
}

void Clipper::halve(const Cubic &clipped, const Cubic &c2, const ClipRange &range, double tMin, double tMax)
{
    const double uMin = range.uMin;
    const double uMax = range.uMax;
    const bool flip = !range.flip;
    const int recursion = range.recursion + 1;
    Cubic first;
    Cubic second;
    if (tMax - tMin > uMax - uMin) {
        subdivide(clipped, 0.5, first, second);
        const double tMid = (tMin + tMax) / 2;
        clip(c2, first, { uMin, uMax, tMin, tMid, flip, recursion, range.slack });
        clip(c2, second, { uMin, uMax, tMid, tMax, flip, recursion, range.slack });
    } else {
        subdivide(c2, 0.5, first, second);
        const double uMid = (uMin + uMax) / 2;
        clip(first, clipped, { uMin, uMid, tMin, tMax, flip, recursion, range.slack });
        clip(second, clipped, { uMid, uMax, tMin, tMax, flip, recursion, range.slack });
    }
}

void Clipper::report(const ClipRange &range, double tMin, double tMax)
{
    const double t = (tMin + tMax) / 2;
    const double u = (range.uMin + range.uMax) / 2;
    if (range.flip)
        m_found.append(u, t);
    else
        m_found.append(t, u);
}

void Clipper::noteLoss(const ClipRange &range)
{
    const double t = (range.tMin + range.tMax) / 2;
    const double u = (range.uMin + range.uMax) / 2;
    if (range.flip)
        m_lost.append(u, t);
    else
        m_lost.append(t, u);
}

void Clipper::finish()
{
    const auto isEnd = [](double t) { return t < besideWidth || t > 1 - besideWidth; };
    const auto isKnown = [&](const TimePair &lost) {
        if (isEnd(lost.t1) && isEnd(lost.t2))
            return true; // ends are compared apart from clipping
        for (int i = 0; i < m_found.count(); ++i) {
            if (std::fabs(m_found[i].t1 - lost.t1) < besideWidth &&
                std::fabs(m_found[i].t2 - lost.t2) < besideWidth)
                return true;
        }
        return false;
    };
    for (int i = 0; i < m_lost.count(); ++i) {
        if (!isKnown(m_lost[i]))
            m_found.cutShort();
    }
}

} // namespace

HullChain HullChain::reversed() const
{
    HullChain result;
    for (int i = count - 1; i >= 0; --i)
        result.append(points[i]);
    return result;
}

void distanceHull(double d0, double d1, double d2, double d3, HullChain &top, HullChain &bottom)
{
    const vxPoint p0(0, d0);
    const vxPoint p1(1.0 / 3, d1);
    const vxPoint p2(2.0 / 3, d2);
    const vxPoint p3(1, d3);
    // Heights of the inner points over the chord from p0 to p3.
    const double dist1 = d1 - (2 * d0 + d3) / 3;
    const double dist2 = d2 - (d0 + 2 * d3) / 3;
    top.count = bottom.count = 0;
    top.append(p0);
    bottom.append(p0);
    if (dist1 * dist2 < 0) {
        top.append(p1);
        bottom.append(p2);
    } else {
        // One inner point may lie within the triangle of the other three. Both heights have one sign here,
        // but a height of 0 has none to rely on: without fabs -1/0 would drop the point that reaches
        // farthest, and with it the meeting. 0/0 is NaN: both are kept.
        const double ratio = std::fabs(dist1 / dist2);
        if (!(ratio <= 0.5))
            top.append(p1);
        if (!(ratio >= 2))
            top.append(p2);
    }
    top.append(p3);
    bottom.append(p3);
    if (dist1 < 0 || (dist1 == 0 && dist2 < 0))
        std::swap(top, bottom);
}

double clipHull(const HullChain &top, const HullChain &bottom, double dMin, double dMax)
{
    if (top.count == 0 || bottom.count == 0)
        return nan;
    if (dMin > top.points[0].y)
        return clipHullChain(top, true, dMin);
    if (bottom.points[0].y > dMax)
        return clipHullChain(bottom, false, dMax);
    return top.points[0].x;
}

double clipHullChain(const HullChain &chain, bool top, double threshold)
{
    for (int i = 1; i < chain.count; ++i) {
        const vxPoint &p = chain.points[i - 1];
        const vxPoint &q = chain.points[i];
        if (top ? q.y >= threshold : q.y <= threshold)
            return q.y == threshold ? q.x : p.x + (threshold - p.y) * (q.x - p.x) / (q.y - p.y);
    }
    return nan;
}

int clipCurves(const Cubic &c1, const Cubic &c2, const ClipRange &range, int calls, TimePairs &found)
{
    Clipper clipper(calls, found);
    clipper.clip(c1, c2, range);
    clipper.finish();
    return clipper.calls();
}

} // namespace vx
