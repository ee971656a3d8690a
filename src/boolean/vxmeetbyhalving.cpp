#include "vxmeetingplaces_p.h"

#include "vxnearness_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

using namespace vxTolerance;

namespace vx {

namespace {

/** In units of the arrangement's frame: a curve that leaves its chord by less is as good as its chord. */
constexpr double flatness = 1e-4;
/** Curves that run together would be halved without end; what was found by then serves. */
constexpr int maxVisits = 4000;
constexpr int maxDepth = 40;
/** Where curves touch, Newton's steps only halve the distance: from a flat part's size to a few last places.
 */
constexpr int maxSteps = 40;
/** In units of the frame: places this near are a meeting. */
constexpr double meetingDistance = 10 * closeDistance;

/**
 * Refines a meeting by Newton's method on B1(t) - B2(u) = 0; false when it leaves the curves or does not
 * meet.
 */
bool refine(const Cubic &c1, const Cubic &c2, double &t, double &u)
{
    for (int i = 0; i < maxSteps; ++i) {
        const vxPoint d = placeAt(c1, t).subtract(placeAt(c2, u));
        if (d.getLength() < 1e-11)
            break;
        const vxPoint d1 = velocityAt(c1, t);
        const vxPoint d2 = velocityAt(c2, u);
        const double det = d1.cross(d2);
        if (det == 0)
            break;
        const double nextT = t - d.cross(d2) / det;
        const double nextU = u - d.cross(d1) / det;
        if (!std::isfinite(nextT) || !std::isfinite(nextU))
            break;
        t = std::clamp(nextT, 0.0, 1.0);
        u = std::clamp(nextU, 0.0, 1.0);
    }
    return pointAt(c1, t).isClose(pointAt(c2, u), meetingDistance);
}

/** A part of a curve. */
struct Part {
    Cubic values;
    double from, to;
    Box box;
    bool flat;

    Part(const Cubic &c, double t0, double t1)
        : values(c), from(t0), to(t1), box(hullBox(c)), flat(isFlatEnough(c, flatness))
    {
    }
    double middle() const { return (from + to) / 2; }
    double width() const { return to - from; }
};

/**
 * Whether a curve lies on one side of another's hull, as seen across that one's chord, by more than refine()
 * takes for a meeting. Boxes of curves that run side by side overlap everywhere.
 */
bool liesBeside(const Cubic &curve, const Cubic &other)
{
    const double chordX = curve.v[6] - curve.v[0];
    const double chordY = curve.v[7] - curve.v[1];
    const auto height = [&](const Cubic &c, int i) { // times the length of the chord
        return (c.v[2 * i] - curve.v[0]) * chordY - (c.v[2 * i + 1] - curve.v[1]) * chordX;
    };
    const auto hull = std::minmax({ 0.0, height(curve, 1), height(curve, 2) });
    const auto beside =
        std::minmax({ height(other, 0), height(other, 1), height(other, 2), height(other, 3) });
    const double margin = 2 * meetingDistance * (std::fabs(chordX) + std::fabs(chordY));
    return beside.first > hull.second + margin || beside.second < hull.first - margin;
}

/**
 * Whether two curves keep apart though one bends along with the other, by more than refine() takes for a
 * meeting. Let D(s) = A(s) - B(s), e point along B's chord and n across. Where A(s) = B(r), B goes by D(s)
 * from s to r, and so across no more than its steepness, the greatest |n . B'| by the least e . B', times
 * what it goes along. They do not meet where n . D is greater than steepness |e . D| everywhere; control
 * points bound all of these.
 */
bool keepBeside(const Cubic &a, const Cubic &b)
{
    const vxPoint e = b.p3().subtract(b.p0());
    const vxPoint n(-e.y, e.x);
    const vxPoint steps[] = { b.p1().subtract(b.p0()), b.p2().subtract(b.p1()), b.p3().subtract(b.p2()) };
    const double leastAlong = std::min({ e.dot(steps[0]), e.dot(steps[1]), e.dot(steps[2]) });
    const double across =
        std::max({ std::fabs(n.dot(steps[0])), std::fabs(n.dot(steps[1])), std::fabs(n.dot(steps[2])) });
    if (!(across < leastAlong))
        return false;
    const bool opposite = e.dot(a.p3().subtract(a.p0())) < 0;
    double least = std::numeric_limits<double>::infinity();
    double greatest = -least;
    double along = 0;
    for (int i = 0; i < 4; ++i) {
        const int k = opposite ? 6 - 2 * i : 2 * i;
        const vxPoint d(a.v[k] - b.v[2 * i], a.v[k + 1] - b.v[2 * i + 1]);
        least = std::min(least, n.dot(d));
        greatest = std::max(greatest, n.dot(d));
        along = std::max(along, std::fabs(e.dot(d)));
    }
    // Twice the margin: what is missing to a meeting counts along and across.
    const double margin = 4 * meetingDistance * (std::fabs(e.x) + std::fabs(e.y));
    return std::max(least, -greatest) > across / leastAlong * along + margin;
}

class Halving
{
public:
    Halving(const Cubic &c1, const Cubic &c2) : m_c1(c1), m_c2(c2) {}

    TimePairs run()
    {
        visit(Part(m_c1, 0, 1), Part(m_c2, 0, 1), 0);
        TimePairs found;
        for (const TimePair &pair : m_found)
            found.append(pair.t1, pair.t2);
        if (m_visits > maxVisits)
            found.cutShort();
        return found;
    }

private:
    void visit(const Part &a, const Part &b, int depth)
    {
        if (++m_visits > maxVisits || !boxesMeet(a.box, b.box) || liesBeside(a.values, b.values) ||
            liesBeside(b.values, a.values) || keepBeside(a.values, b.values))
            return;
        if ((a.flat && b.flat) || depth >= maxDepth) {
            report(a.middle(), b.middle());
            return;
        }
        Cubic first;
        Cubic second;
        if (!a.flat && (b.flat || a.width() >= b.width())) {
            subdivide(a.values, 0.5, first, second);
            visit(Part(first, a.from, a.middle()), b, depth + 1);
            visit(Part(second, a.middle(), a.to), b, depth + 1);
        } else {
            subdivide(b.values, 0.5, first, second);
            visit(a, Part(first, b.from, b.middle()), depth + 1);
            visit(a, Part(second, b.middle(), b.to), depth + 1);
        }
    }

    void report(double t, double u)
    {
        if (refine(m_c1, m_c2, t, u) && !isKnown(t, u))
            m_found.insert(firstFrom(t), { t, u });
    }

    bool isKnown(double t, double u) const
    {
        // Twice the margin, so that no rounding leaves out what is compared below.
        for (auto at = firstFrom(t - 2 * timeMargin); at != m_found.end() && at->t1 < t + 2 * timeMargin;
             ++at) {
            if (std::fabs(at->t1 - t) < timeMargin && std::fabs(at->t2 - u) < timeMargin)
                return true;
        }
        return false;
    }

    std::vector<TimePair>::const_iterator firstFrom(double t) const
    {
        return std::lower_bound(m_found.begin(), m_found.end(), t,
                                [](const TimePair &pair, double time) { return pair.t1 < time; });
    }

    const Cubic &m_c1;
    const Cubic &m_c2;
    std::vector<TimePair> m_found; ///< sorted by the first time
    int m_visits = 0;
};

} // namespace

TimePairs meetByHalving(const Cubic &c1, const Cubic &c2)
{
    return Halving(c1, c2).run();
}

} // namespace vx
