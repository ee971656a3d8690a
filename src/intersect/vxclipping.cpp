#include "vxintersect_p.h"

#include "vxchorddistance_p.h"
#include "vxcubic_split_p.h"
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
    void halve(PartPair &pair, size_t clipped, int recursion);
    bool isLoss(const Part &clipped, const Part &line) const;

    double m_slack;
    bool m_allOrNone;
    int m_calls;
    TimePairs &m_found;
    TimePairs m_lost;
};

enum class Chain { Top, Bottom };
enum class From { Start, End };

/** A walk along a chain: upwards to the threshold for the top chain, downwards for the bottom one. */
template <Chain which>
class Walk
{
public:
    Walk(const HullPoint &start, double threshold) : m_at(start), m_threshold(threshold) {}

    /** Goes on to a point; true when the threshold was on the way. */
    bool goTo(const HullPoint &q)
    {
        const HullPoint p = m_at;
        m_at = q;
        if (!(which == Chain::Top ? q.y >= m_threshold : q.y <= m_threshold))
            return false;
        if (q.y != m_threshold)
            m_at.x = p.x + (m_threshold - p.y) * (q.x - p.x) / (q.y - p.y);
        return true;
    }
    double time() const { return m_at.x; }

private:
    HullPoint m_at;
    double m_threshold;
};

/** Time at which a chain, walked from its start, first reaches the threshold. NaN when it does not. */
template <Chain which>
double chainTime(const HullChain &chain, double threshold)
{
    if (chain.count == 0)
        return nan;
    Walk<which> walk(chain.points[0], threshold);
    for (int i = 1; i < chain.count; ++i) {
        if (walk.goTo(chain.points[i]))
            return walk.time();
    }
    return nan;
}

/** The hull of the points (0, d0), (1/3, d1), (2/3, d2), (1, d3). */
class Hull
{
public:
    explicit Hull(const double distances[4]) : d(distances)
    {
        // Heights of the inner points over the chord from first to last.
        const double dist1 = d[1] - (2 * d[0] + d[3]) / 3;
        const double dist2 = d[2] - (d[0] + 2 * d[3]) / 3;
        // The first inner point's side; the second's where the first has no height.
        m_main = dist1 < 0 || (dist1 == 0 && dist2 < 0) ? Chain::Bottom : Chain::Top;
        m_hasFirst = m_hasSecond = true;
        m_parted = dist1 * dist2 < 0;
        if (!m_parted) {
            // One inner point may lie within the triangle of the other three. Both heights have one sign
            // here, but a height of 0 has none to rely on: without fabs -1/0 would drop the point that
            // reaches farthest, and with it the meeting. 0/0 is NaN: both are kept.
            const double ratio = std::fabs(dist1 / dist2);
            m_hasFirst = !(ratio <= 0.5);
            m_hasSecond = !(ratio >= 2);
        }
    }

    HullChain chain(Chain which) const
    {
        HullChain chain;
        chain.append(0, d[0]);
        if (hasFirst(which))
            chain.append(third, d[1]);
        if (hasSecond(which))
            chain.append(twoThirds, d[2]);
        chain.append(1, d[3]);
        return chain;
    }

    /** Time at which the hull, entered from one of its ends, reaches [dMin, dMax]; NaN when it does not. */
    template <From from>
    double timeWithin(double dMin, double dMax) const
    {
        const double end = d[from == From::Start ? 0 : 3];
        if (dMin > end)
            return timeAt<Chain::Top, from>(dMin);
        if (end > dMax)
            return timeAt<Chain::Bottom, from>(dMax);
        return from == From::Start ? 0 : 1;
    }

private:
    static constexpr double third = 1.0 / 3;
    static constexpr double twoThirds = 2.0 / 3;

    bool hasFirst(Chain which) const { return which == m_main && m_hasFirst; }
    bool hasSecond(Chain which) const { return (which == m_main) != m_parted && m_hasSecond; }

    /** chainTime() from either end, without the chain. */
    template <Chain which, From from>
    double timeAt(double threshold) const
    {
        if (from == From::Start) {
            Walk<which> walk({ 0, d[0] }, threshold);
            const bool reached = (hasFirst(which) && walk.goTo({ third, d[1] })) ||
                                 (hasSecond(which) && walk.goTo({ twoThirds, d[2] })) ||
                                 walk.goTo({ 1, d[3] });
            return reached ? walk.time() : nan;
        }
        Walk<which> walk({ 1, d[3] }, threshold);
        const bool reached = (hasSecond(which) && walk.goTo({ twoThirds, d[2] })) ||
                             (hasFirst(which) && walk.goTo({ third, d[1] })) || walk.goTo({ 0, d[0] });
        return reached ? walk.time() : nan;
    }

    const double *d;
    /** The chain of the first inner point; the second lies on the other one where they are parted. */
    Chain m_main;
    bool m_parted;
    /** Points within the hull are left out. */
    bool m_hasFirst, m_hasSecond;
};

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
    tMin = 0;
    tMax = 1;
    const auto isInside = [dMin, dMax](double d) { return d >= dMin && d <= dMax; };
    // Nothing to clip off at either end, unless both are on one line: that is an overlap's business.
    if (isInside(d0) && isInside(d3))
        return !(line.isFlat() && d0 == 0 && d1 == 0 && d2 == 0 && d3 == 0);
    const Hull hull(d);
    tMin = hull.timeWithin<From::Start>(dMin, dMax);
    if (std::isnan(tMin))
        return false;
    tMax = hull.timeWithin<From::End>(dMin, dMax);
    return !std::isnan(tMax);
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
        if (to - from > minProgress) {
            halve(pair, size_t(part - pair.data()), recursion);
            return;
        }
    }
}

/** Halves the part of the longer range; where they are equal, that which was not clipped. */
void Clipper::halve(PartPair &pair, size_t clipped, int recursion)
{
    const size_t next = 1 - clipped;
    const size_t longer = pair[clipped].width() > pair[next].width() ? clipped : next;
    PartPair firstHalf = pair;
    Part &first = firstHalf[longer];
    Part &second = pair[longer];
    subdivide(second.curve, 0.5, first.curve, second.curve);
    first.max = second.min = second.middle();
    clip(firstHalf, next, recursion + 1);
    clip(pair, next, recursion + 1);
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
    const double d[] = { d0, d1, d2, d3 };
    const Hull hull(d);
    top = hull.chain(Chain::Top);
    bottom = hull.chain(Chain::Bottom);
}

double clipHull(const HullChain &top, const HullChain &bottom, double dMin, double dMax)
{
    if (top.count == 0 || bottom.count == 0)
        return nan;
    if (dMin > top.points[0].y)
        return chainTime<Chain::Top>(top, dMin);
    if (bottom.points[0].y > dMax)
        return chainTime<Chain::Bottom>(bottom, dMax);
    return top.points[0].x;
}

double clipHullChain(const HullChain &chain, bool top, double threshold)
{
    return top ? chainTime<Chain::Top>(chain, threshold) : chainTime<Chain::Bottom>(chain, threshold);
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
