#include "vxintersect_p.h"

#include "vxchorddistance_p.h"
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

/** The fat line around a curve: distances from its chord that bound it. */
struct FatLine {
    ChordDistance distance;
    double handles[2];
    double dMin, dMax;

    explicit FatLine(const Cubic &c) : distance(c)
    {
        distance.measure<2>(c.v + 2, handles);
        const double d1 = handles[0];
        const double d2 = handles[1];
        // A cubic reaches at most 3/4 of its handles' distance when both lie on one side, 4/9 when on two.
        const double factor = d1 * d2 > 0 ? 0.75 : 4.0 / 9;
        dMin = factor * std::min(std::min(d1, d2), 0.0);
        dMax = factor * std::max(std::max(d1, d2), 0.0);
    }
    bool isFlat() const { return handles[0] == 0 && handles[1] == 0; }
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

enum class Chain { Top, Bottom };
enum class From { Start, End };

/**
 * Time at which a chain, walked from one of its ends, first reaches the threshold: upwards for the top chain,
 * downwards for the bottom one. NaN when it does not.
 */
template <Chain which, From from>
double chainTime(const HullChain &chain, double threshold)
{
    constexpr int step = from == From::Start ? 1 : -1;
    const HullPoint *p = &chain.end(from == From::Start);
    for (int i = 1; i < chain.count; ++i, p += step) {
        const HullPoint &q = p[step];
        if (which == Chain::Top ? q.y >= threshold : q.y <= threshold)
            return q.y == threshold ? q.x : p->x + (threshold - p->y) * (q.x - p->x) / (q.y - p->y);
    }
    return nan;
}

/** Time at which the hull, entered from one of its ends, reaches [dMin, dMax]; NaN when it does not. */
template <From from>
double hullTime(const HullChain &top, const HullChain &bottom, double dMin, double dMax)
{
    constexpr bool start = from == From::Start;
    if (dMin > top.end(start).y)
        return chainTime<Chain::Top, from>(top, dMin);
    if (bottom.end(start).y > dMax)
        return chainTime<Chain::Bottom, from>(bottom, dMax);
    return top.end(start).x;
}

/** distanceHull() where it is wanted inline. */
inline void makeHull(double d0, double d1, double d2, double d3, HullChain &top, HullChain &bottom)
{
    // Heights of the inner points over the chord from first to last.
    const double dist1 = d1 - (2 * d0 + d3) / 3;
    const double dist2 = d2 - (d0 + 2 * d3) / 3;
    // The chain of the side where the first inner point lies; of the second's where the first has no height.
    const bool below = dist1 < 0 || (dist1 == 0 && dist2 < 0);
    HullChain &own = below ? bottom : top;
    HullChain &other = below ? top : bottom;
    own.count = other.count = 0;
    own.append(0, d0);
    other.append(0, d0);
    if (dist1 * dist2 < 0) {
        own.append(1.0 / 3, d1);
        other.append(2.0 / 3, d2);
    } else {
        // One inner point may lie within the triangle of the other three. Both heights have one sign here,
        // but a height of 0 has none to rely on: without fabs -1/0 would drop the point that reaches
        // farthest, and with it the meeting. 0/0 is NaN: both are kept.
        const double ratio = std::fabs(dist1 / dist2);
        if (!(ratio <= 0.5))
            own.append(1.0 / 3, d1);
        if (!(ratio >= 2))
            own.append(2.0 / 3, d2);
    }
    own.append(1, d3);
    other.append(1, d3);
}

/**
 * Clips c1 to the fat line of c2; false when none of it lies inside. The part's times go to tMin and tMax.
 */
bool clipToFatLine(const Cubic &c1, const Cubic &c2, double slack, double &tMin, double &tMax)
{
    const FatLine line(c2);
    double d[4];
    line.distance.measure<4>(c1.v, d);
    const double d0 = d[0], d1 = d[1], d2 = d[2], d3 = d[3];
    const double dMin = line.dMin - slack;
    const double dMax = line.dMax + slack;
    // Most clips of curves that do not meet end here; the hull would say the same.
    if ((d0 < dMin && d1 < dMin && d2 < dMin && d3 < dMin) ||
        (d0 > dMax && d1 > dMax && d2 > dMax && d3 > dMax))
        return false;
    if (d0 == 0 && d1 == 0 && d2 == 0 && d3 == 0 && line.isFlat())
        return false; // both on one line: that is an overlap's business

    tMin = 0;
    tMax = 1;
    const auto isInside = [dMin, dMax](double d) { return d >= dMin && d <= dMax; };
    if (isInside(d0) && isInside(d3))
        return true; // nothing to clip off at either end
    HullChain top;
    HullChain bottom;
    makeHull(d0, d1, d2, d3, top, bottom);
    tMin = hullTime<From::Start>(top, bottom, dMin, dMax);
    if (std::isnan(tMin))
        return false;
    tMax = hullTime<From::End>(top, bottom, dMin, dMax);
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
    if (tMinClip == 0 && tMaxClip == 1) {
        halve(c1, c2, range, tMin, tMax);
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

void distanceHull(double d0, double d1, double d2, double d3, HullChain &top, HullChain &bottom)
{
    makeHull(d0, d1, d2, d3, top, bottom);
}

double clipHull(const HullChain &top, const HullChain &bottom, double dMin, double dMax)
{
    if (top.count == 0 || bottom.count == 0)
        return nan;
    return hullTime<From::Start>(top, bottom, dMin, dMax);
}

double clipHullChain(const HullChain &chain, bool top, double threshold)
{
    return top ? chainTime<Chain::Top, From::Start>(chain, threshold)
               : chainTime<Chain::Bottom, From::Start>(chain, threshold);
}

int clipCurves(const Cubic &c1, const Cubic &c2, const ClipRange &range, int calls, TimePairs &found)
{
    Clipper clipper(calls, found);
    clipper.clip(c1, c2, range);
    clipper.finish();
    return clipper.calls();
}

} // namespace vx
