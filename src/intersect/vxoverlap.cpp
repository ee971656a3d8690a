#include "vxapart_p.h"

#include "vxline.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>

using namespace vxTolerance;

namespace vx {

namespace {

double chordSquared(const Cubic &c)
{
    const double dx = c.v[6] - c.v[0];
    const double dy = c.v[7] - c.v[1];
    return dx * dx + dy * dy;
}

bool nearLine(const Cubic &line, const vxPoint &p)
{
    const double d = vxLine::getSignedDistance(line.v[0], line.v[1], line.v[6], line.v[7], p.x, p.y, false);
    return std::fabs(d) < closeDistance;
}

/**
 * Whether the two curves may share a stretch at all: both as good as straight on one line (straight becomes
 * true then), or both curved. A straight and a curved one never do.
 */
bool mayShare(const PreparedCurve &c1, const PreparedCurve &c2, bool &straight)
{
    straight = c1.straight && c2.straight;
    if (c1.isBent() && c2.isBent())
        return true; // whichever is the reference: its own handles are not on its line
    const bool swap = chordSquared(c1.values) < chordSquared(c2.values);
    const Cubic &reference = swap ? c2.values : c1.values;
    const Cubic &probe = swap ? c1.values : c2.values;
    if (nearLine(reference, probe.p0()) && nearLine(reference, probe.p3())) {
        if (straight)
            return true;
        if (nearLine(reference, reference.p1()) && nearLine(reference, reference.p2()) &&
            nearLine(reference, probe.p1()) && nearLine(reference, probe.p2())) {
            straight = true;
            return true;
        }
    } else if (straight) {
        return false;
    }
    return c1.straight == c2.straight;
}

/** timeOf() of a point that mostly is an end of the curve, or off it. */
double timeOnCurve(const PreparedCurve &curve, const vxPoint &p)
{
    if (curve.ordinary && p == curve.values.p0())
        return 0;
    if (curve.ordinary && p == curve.values.p3())
        return 1; // not so near the start as to be taken for it
    return mayComeNear(curve, p) ? timeOf(curve.values, p) : noTime;
}

/**
 * Tries the end points from number first on against the other curve, in order; true when two different pairs
 * are found.
 */
bool findPairs(const PreparedCurve &c1, const PreparedCurve &c2, int first, TimePair pairs[2])
{
    int count = 0;
    for (int i = first; i < 4 && count < 2; ++i) {
        const bool ofFirst = i < 2;
        const bool atEnd = i % 2 == 1;
        if (i == 3 && count == 0)
            return false; // one pair at most is left to find
        const Cubic &own = ofFirst ? c1.values : c2.values;
        const double t = atEnd ? 1 : 0;
        const double u = timeOnCurve(ofFirst ? c2 : c1, atEnd ? own.p3() : own.p0());
        if (u == noTime)
            continue;
        const TimePair pair = ofFirst ? TimePair{ t, u } : TimePair{ u, t };
        if (count == 0 ||
            (std::fabs(pair.t1 - pairs[0].t1) > timeMargin && std::fabs(pair.t2 - pairs[0].t2) > timeMargin))
            pairs[count++] = pair;
    }
    return count == 2;
}

bool sameControlPoints(const Cubic &a, const Cubic &b)
{
    for (int i = 2; i < 6; ++i) {
        if (std::fabs(a.v[i] - b.v[i]) > closeDistance)
            return false;
    }
    return true;
}

} // namespace

bool findOverlap(const PreparedCurve &c1, const PreparedCurve &c2, TimePair pairs[2], int nearEnd)
{
    bool straight = false;
    if (!mayShare(c1, c2, straight) || !findPairs(c1, c2, nearEnd, pairs))
        return false;
    return straight || sameControlPoints(part(c1.values, pairs[0].t1, pairs[1].t1),
                                         part(c2.values, pairs[0].t2, pairs[1].t2));
}

} // namespace vx
