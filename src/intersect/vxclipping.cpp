#include "vxintersect_p.h"

#include "vxchorddistance_p.h"
#include "vxcubic_split_p.h"
#include "vxdistancehull_p.h"
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
 * Which side a point lies on is unpredictable, and a mispredicted branch costs more than the arithmetic; so
 * masks are used instead of branches where possible.
 */
struct FatLine {
    ChordDistance distance;
    Pair handles;
    /** The least distance, and the greatest with its sign changed. */
    Pair minAndNegatedMax;

    explicit FatLine(const Cubic &c) : distance(c), handles(distance.measure(pairOf(c, 1), pairOf(c, 2)))
    {
        const double d1 = handles[0];
        const double d2 = handles[1];
        const Pair reach{ std::min(d1, d2), -std::max(d1, d2) };
        // A cubic reaches at most 3/4 of its handles' distance when both lie on one side, 4/9 when on two.
        const Pair factor = both(d1 * d2) > 0 ? both(0.75) : both(4.0 / 9);
        minAndNegatedMax = factor * (reach > 0 ? both(0) : reach);
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
    Pair minAndNegatedMax = line.minAndNegatedMax - slack;
    const PairMask startsAboveMask = both(-ends[0]) < both(minAndNegatedMax[1]);
    const bool startsAbove = -ends[0] < minAndNegatedMax[1];
    const bool startsOutside = (ends[0] < minAndNegatedMax[0]) | startsAbove;
    const bool endsOutside = (ends[1] < minAndNegatedMax[0]) | (-ends[1] < minAndNegatedMax[1]);
    tMin = 0;
    tMax = 1;
    // Nothing to clip off at either end, unless both are on one line: that is an overlap's business.
    if (!(startsOutside | endsOutside))
        return !(line.isFlat() && ends[0] == 0 && inner[0] == 0 && inner[1] == 0 && ends[1] == 0);

    // Where c1 starts above the line all is turned upside down, so that it never does. Times come out the
    // same: they are ratios of differences of distances.
    minAndNegatedMax = startsAboveMask ? swapped(minAndNegatedMax) : minAndNegatedMax;
    ends = negatedWhere(startsAboveMask, ends);
    inner = negatedWhere(startsAboveMask, inner);
    const double dMin = minAndNegatedMax[0];
    const double dMax = -minAndNegatedMax[1];
    const double d0 = ends[0], d1 = inner[0], d2 = inner[1], d3 = ends[1];
    const bool reached1 = d1 >= dMin;
    const bool reached2 = d2 >= dMin;
    const bool reached3 = d3 >= dMin;
    // Most clips of curves that do not meet end here; the hull would say the same.
    if (startsOutside & !(reached1 | reached2 | reached3))
        return false;
    const DistanceHull hull(ends, inner, startsAbove);
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
        if (recursion + 1 >= maxClipDepth || ++m_calls > maxCalls) {
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
