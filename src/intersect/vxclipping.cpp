#include "vxintersect_p.h"

#include "vxchorddistance_p.h"
#include "vxcubic_split_p.h"
#include "vxpair_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

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

/**
 * The fat line around a curve: distances from its chord that bound it.
 *
 * On which side of a chord points lie is anybody's guess, and a wrong guess costs a processor more than the
 * arithmetic does. Where it can, clipping therefore chooses by masks instead of branches.
 */
struct FatLine {
    ChordDistance distance;
    Pair handles;
    /** The least distance, and the greatest with its sign changed. */
    Pair bounds;

    explicit FatLine(const Cubic &c) : distance(c), handles(distance.measure(pairOf(c, 1), pairOf(c, 2)))
    {
        const double d1 = handles[0];
        const double d2 = handles[1];
        const Pair reach{ std::min(d1, d2), -std::max(d1, d2) };
        // A cubic reaches at most 3/4 of its handles' distance when both lie on one side, 4/9 when on two.
        const Pair factor = both(d1 * d2) > 0 ? both(0.75) : both(4.0 / 9);
        bounds = factor * (reach > 0 ? both(0) : reach);
    }
    bool isFlat() const { return handles[0] == 0 && handles[1] == 0; }
};

/** A part of a curve and its times on the curve. */
struct Part {
    Cubic curve;
    double min, max;

    double width() const { return max - min; }
    double middle() const { return (min + max) / 2; }
};

/** Parts of the two curves that may meet, in the order in which their times are reported. */
using PartPair = std::array<Part, 2>;

class Clipper
{
public:
    Clipper(const ClipRange &range, int calls, TimePairs &found)
        : m_slack(range.slack), m_allOrNone(range.allOrNone), m_calls(calls), m_found(found)
    {
    }

    int calls() const { return m_calls; }
    /** Tells the list of meetings where one may have been lost to rounding: away from all that were found. */
    void finish();
    /** Begins with clipping the part that is named; narrows the pair as it goes. */
    void clip(PartPair &pair, size_t clipped, int recursion);

private:
    void clipFirstHalf(PartPair &pair, size_t clipped, int recursion);
    bool isLoss(const Part &clipped, const Part &line) const;

    double m_slack;
    bool m_allOrNone;
    int m_calls;
    TimePairs &m_found;
    TimePairs m_lost;
};

constexpr double third = 1.0 / 3;
constexpr double twoThirds = 2.0 / 3;

/** Time at which an edge of the hull reaches a threshold: its end does, its start does not. */
inline double timeOnEdge(const HullPoint &p, const HullPoint &q, double threshold)
{
    return q.y == threshold ? q.x : p.x + (threshold - p.y) * (q.x - p.x) / (q.y - p.y);
}

/** The hull of the points (0, d0), (1/3, d1), (2/3, d2), (1, d3): which inner points lie on which chain. */
class Hull
{
public:
    /** Of ends (d0, d3) and inner points (d1, d2); turned: all with the opposite sign. */
    Hull(Pair ends, Pair inner, bool turned)
    {
        // Heights of the inner points over the chord from first to last.
        const Pair heights = inner - (2 * ends + swapped(ends)) / 3;
        const double height1 = heights[0];
        const double height2 = heights[1];
        const double size1 = std::fabs(height1);
        const double size2 = std::fabs(height2);
        m_firstOnTop = height1 > 0;
        if (!(height1 > 0 || height1 < 0)) {
            // It is on the second's side then; if that has no height either, on top before turning.
            m_firstOnTop = turned ? height1 == 0 && height2 > 0 : !(height1 == 0 && height2 < 0);
        }
        m_parted = height1 * height2 < 0;
        // One inner point may lie within the triangle of the other three. Sizes, since a height of 0 has no
        // sign to rely on: -1/0 would drop the point that reaches farthest, and with it the meeting. 0/0 is
        // NaN: both stay.
        const double ratio = size1 / size2;
        m_hasFirst = m_parted | !(ratio <= 0.5);
        m_hasSecond = m_parted | !(ratio >= 2);
    }

    bool hasFirst(bool onTop) const { return (onTop == m_firstOnTop) & m_hasFirst; }
    bool hasSecond(bool onTop) const { return ((onTop == m_firstOnTop) != m_parted) & m_hasSecond; }

private:
    /** The chain of the first inner point; the second lies on the other one where they are parted. */
    bool m_firstOnTop;
    bool m_parted;
    /** Points within the hull are left out. */
    bool m_hasFirst, m_hasSecond;
};

/** A point on the way along a chain. */
struct Stop {
    HullPoint point;
    /** Points within the hull are passed by. */
    bool isOnChain;
    /** Whether the threshold is reached there. */
    bool isBeyond;
};

/** Time at which a chain from a start short of the threshold first reaches it; NaN when it does not. */
inline double timeOnChain(const HullPoint &start, const Stop &near, const Stop &far, const Stop &end,
                          double threshold)
{
    HullPoint last = start;
    if (near.isOnChain) {
        if (near.isBeyond)
            return timeOnEdge(start, near.point, threshold);
        last = near.point;
    }
    if (far.isOnChain) {
        if (far.isBeyond)
            return timeOnEdge(last, far.point, threshold);
        last = far.point;
    }
    return end.isBeyond ? timeOnEdge(last, end.point, threshold) : nan;
}

/**
 * Clips c1 to the fat line of c2; false when none of it lies inside. The part's times go to tMin and tMax.
 */
bool clipToFatLine(const Cubic &c1, const Cubic &c2, double slack, double &tMin, double &tMax)
{
    const FatLine line(c2);
    Pair ends = line.distance.measure(pairOf(c1, 0), pairOf(c1, 3));
    Pair inner = line.distance.measure(pairOf(c1, 1), pairOf(c1, 2));
    Pair bounds = line.bounds - slack;
    const PairMask startsAbove = both(-ends[0]) < both(bounds[1]);
    const bool turned = -ends[0] < bounds[1];
    const bool startsOutside = (ends[0] < bounds[0]) | turned;
    const bool endsOutside = (ends[1] < bounds[0]) | (-ends[1] < bounds[1]);
    tMin = 0;
    tMax = 1;
    // Nothing to clip off at either end, unless both are on one line: that is an overlap's business.
    if (!(startsOutside | endsOutside))
        return !(line.isFlat() && ends[0] == 0 && inner[0] == 0 && inner[1] == 0 && ends[1] == 0);

    // Where c1 starts above the line all is turned upside down, so that it never does. Times come out the
    // same: they are ratios of differences of distances.
    bounds = startsAbove ? swapped(bounds) : bounds;
    ends = negatedWhere(startsAbove, ends);
    inner = negatedWhere(startsAbove, inner);
    const double dMin = bounds[0];
    const double dMax = -bounds[1];
    const double d0 = ends[0], d1 = inner[0], d2 = inner[1], d3 = ends[1];
    const bool reached1 = d1 >= dMin;
    const bool reached2 = d2 >= dMin;
    const bool reached3 = d3 >= dMin;
    // Most clips of curves that do not meet end here; the hull would say the same.
    if (startsOutside & !(reached1 | reached2 | reached3))
        return false;
    const Hull hull(ends, inner, turned);
    const HullPoint p0{ 0, d0 };
    const HullPoint p1{ third, d1 };
    const HullPoint p2{ twoThirds, d2 };
    const HullPoint p3{ 1, d3 };
    if (startsOutside) {
        tMin = timeOnChain(p0, { p1, hull.hasFirst(true), reached1 }, { p2, hull.hasSecond(true), reached2 },
                           { p3, true, reached3 }, dMin);
    }
    if (endsOutside) {
        const bool endsBelow = !reached3;
        const double threshold = endsBelow ? dMin : dMax;
        const auto isBeyond = [=](double d) { return endsBelow ? d >= dMin : d <= dMax; };
        tMax = timeOnChain(p3, { p2, hull.hasSecond(endsBelow), isBeyond(d2) },
                           { p1, hull.hasFirst(endsBelow), isBeyond(d1) }, { p0, true, isBeyond(d0) },
                           threshold);
    }
    return !std::isunordered(tMin, tMax);
}

void append(const PartPair &pair, TimePairs &list)
{
    list.append(pair[0].middle(), pair[1].middle());
}

void Clipper::clip(PartPair &pair, size_t clipped, int recursion)
{
    Part *part = &pair[clipped];
    Part *line = &pair[1 - clipped];
    // The two are clipped in turn.
    for (;; std::swap(part, line), ++recursion) {
        if (recursion + 1 >= maxRecursion || ++m_calls > maxCalls) {
            m_found.cutShort();
            if (m_allOrNone)
                m_calls = maxCalls; // no further call gets beyond this
            return;
        }
        double from;
        double to;
        if (!clipToFatLine(part->curve, line->curve, m_slack, from, to)) {
            if (isLoss(*part, *line))
                append(pair, m_lost);
            return;
        }
        const double width = part->width();
        part->max = part->min + width * to;
        part->min += width * from;
        if (std::max(part->width(), line->width()) < vxTolerance::clipWidth) {
            append(pair, m_found);
            return;
        }
        part->curve = partOf(part->curve, from, to);
        if (to - from > minProgress)
            clipFirstHalf(pair, size_t(part - pair.data()), recursion);
    }
}

/**
 * Halves the part of the longer range; where they are equal, that which was not clipped. Deals with the first
 * half, beginning with the one that was not clipped; the second is left in the pair.
 */
void Clipper::clipFirstHalf(PartPair &pair, size_t clipped, int recursion)
{
    const size_t next = 1 - clipped;
    const size_t longer = pair[clipped].width() > pair[next].width() ? clipped : next;
    PartPair firstHalf;
    firstHalf[1 - longer] = pair[1 - longer];
    Part &first = firstHalf[longer];
    Part &second = pair[longer];
    split(second.curve, 0.5, first.curve, second.curve);
    first.min = second.min;
    first.max = second.min = second.middle();
    clip(firstHalf, next, recursion + 1);
}

bool Clipper::isLoss(const Part &clipped, const Part &line) const
{
    return std::min(clipped.width(), line.width()) < lostWidth &&
           boxesMeet(hullBox(clipped.curve), hullBox(line.curve));
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
    const Hull hull(Pair{ d0, d3 }, Pair{ d1, d2 }, false);
    for (const bool onTop : { true, false }) {
        HullChain &chain = onTop ? top : bottom;
        chain.count = 0;
        chain.append(0, d0);
        if (hull.hasFirst(onTop))
            chain.append(third, d1);
        if (hull.hasSecond(onTop))
            chain.append(twoThirds, d2);
        chain.append(1, d3);
    }
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
        const HullPoint &q = chain.points[i];
        if (top ? q.y >= threshold : q.y <= threshold)
            return timeOnEdge(chain.points[i - 1], q, threshold);
    }
    return nan;
}

int clipCurves(const Cubic &c1, const Cubic &c2, const ClipRange &range, int calls, TimePairs &found)
{
    PartPair pair{ Part{ c1, range.tMin, range.tMax }, Part{ c2, range.uMin, range.uMax } };
    if (range.flip)
        std::swap(pair[0], pair[1]);
    Clipper clipper(range, calls, found);
    clipper.clip(pair, range.flip ? 1 : 0, range.recursion);
    clipper.finish();
    return clipper.calls();
}

} // namespace vx
