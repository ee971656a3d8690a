#include "vxapart_p.h"

#include "vxpair_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>

using namespace vxTolerance;

namespace vx {

namespace {

/**
 * Path units: points farther apart than this do not meet, nor come near, for any part of the search, which
 * looks no farther than five times closeDistance.
 */
constexpr double apartDistance = 10 * closeDistance;

/**
 * Path units: a curve whose other control points lie this far on one side of a line has left it by more than
 * 3 timeMargin times this (6e-7) where the joint's time margin ends. That is more than closeDistance for the
 * meeting itself and another closeDistance by which a straight curve may leave its chord.
 */
constexpr double departingDistance = 0.5;
static_assert(3 * timeMargin * departingDistance > 2.5 * closeDistance,
              "what is near the joint is in its margin");

/** All of one sign, and farther from 0 than margin. */
template <typename... Values>
bool areOnOneSide(double margin, Values... values)
{
    return ((values > margin) && ...) || ((values < -margin) && ...);
}

/** Cross products of a curve's control points with another's chord: distances times the length of the chord.
 */
struct Heights {
    double h[4];

    Heights(const PreparedCurve &chord, const Cubic &c)
    {
        for (int i = 0; i < 4; ++i)
            h[i] = chord.heightOf(c.v[2 * i], c.v[2 * i + 1]);
    }
    double least() const { return std::min(std::min(h[0], h[1]), std::min(h[2], h[3])); }
    double greatest() const { return std::max(std::max(h[0], h[1]), std::max(h[2], h[3])); }
};

/** Whether a curve of the given heights over the chord lies beside the strip along it that holds the hull. */
bool isClearOfStrip(const PreparedCurve &curve, const Heights &heights)
{
    const double margin = apartDistance * curve.chordBound;
    return heights.least() > curve.highest + margin || heights.greatest() < curve.lowest - margin;
}

/** Whether a point lies clear of the box of the control points. */
bool isClearOfHullBox(const Cubic &c, const vxPoint &p)
{
    const double *v = c.v;
    return areOnOneSide(apartDistance, v[0] - p.x, v[2] - p.x, v[4] - p.x, v[6] - p.x) ||
           areOnOneSide(apartDistance, v[1] - p.y, v[3] - p.y, v[5] - p.y, v[7] - p.y);
}

/** Whether a point of the given height over the curve's chord may be near the curve. */
bool mayTouch(const PreparedCurve &curve, double height, const vxPoint &p)
{
    const double margin = apartDistance * curve.chordBound;
    return height <= curve.highest + margin && height >= curve.lowest - margin &&
           p.x <= curve.box.maxX + apartDistance && p.x >= curve.box.minX - apartDistance &&
           p.y <= curve.box.maxY + apartDistance && p.y >= curve.box.minY - apartDistance;
}

/** Whether a point lies clear of the hull of a part: beside its box or the strip along its chord. */
bool isClearOfHull(const Cubic &part, const vxPoint &p)
{
    if (isClearOfHullBox(part, p))
        return true;
    const double *v = part.v;
    const double dx = v[6] - v[0];
    const double dy = v[7] - v[1];
    const auto height = [&](int i) { return (v[i] - p.x) * dy - (v[i + 1] - p.y) * dx; };
    const double margin = apartDistance * (std::fabs(dx) + std::fabs(dy));
    return areOnOneSide(margin, height(0), height(2), height(4), height(6));
}

/** Point k of a curve. */
void setPoint(Cubic &c, int k, Pair point)
{
    c.v[2 * k] = point[0];
    c.v[2 * k + 1] = point[1];
}

/** De Casteljau's construction at the middle, where it takes means: subdivide() to within rounding. */
void halve(const Cubic &c, Cubic &first, Cubic &second)
{
    const Pair p0 = pairOf(c, 0), p1 = pairOf(c, 1), p2 = pairOf(c, 2), p3 = pairOf(c, 3);
    const Pair p01 = 0.5 * (p0 + p1), p12 = 0.5 * (p1 + p2), p23 = 0.5 * (p2 + p3);
    const Pair p012 = 0.5 * (p01 + p12), p123 = 0.5 * (p12 + p23);
    const Pair middle = 0.5 * (p012 + p123);
    setPoint(first, 0, p0);
    setPoint(first, 1, p01);
    setPoint(first, 2, p012);
    setPoint(first, 3, middle);
    setPoint(second, 0, middle);
    setPoint(second, 1, p123);
    setPoint(second, 2, p23);
    setPoint(second, 3, p3);
}

/**
 * The same of all parts after a few halvings: a point within the hull, but aside of the curve, mostly is
 * clear of them. Halving moves points by rounding alone, far below the margin.
 */
bool isClearOfParts(const Cubic &c, const vxPoint &p, int halvings)
{
    Cubic parts[2];
    halve(c, parts[0], parts[1]);
    for (const Cubic &part : parts) {
        if (!isClearOfHull(part, p) && (halvings == 1 || !isClearOfParts(part, p, halvings - 1)))
            return false;
    }
    return true;
}

bool isAtAnEnd(const Cubic &c, const vxPoint &p)
{
    return p.isClose(c.p0(), apartDistance) || p.isClose(c.p3(), apartDistance);
}

/** Whether a point of the given height over the curve's chord may be near the curve, looked at closely. */
bool mayTouchParts(const PreparedCurve &curve, double height, const vxPoint &p)
{
    constexpr int halvings = 4;
    return mayTouch(curve, height, p) &&
           (curve.straight || isAtAnEnd(curve.values, p) || !isClearOfParts(curve.values, p, halvings));
}

} // namespace

bool mayComeNear(const PreparedCurve &curve, const vxPoint &p)
{
    return !curve.ordinary || mayTouchParts(curve, curve.heightOf(p.x, p.y), p);
}

PossibleContact possibleContact(const PreparedCurve &c1, const PreparedCurve &c2)
{
    int nearEnd;
    return possibleContact(c1, c2, nearEnd);
}

PossibleContact possibleContact(const PreparedCurve &c1, const PreparedCurve &c2, int &nearEnd)
{
    nearEnd = 0;
    if (!c1.ordinary || !c2.ordinary)
        return PossibleContact::Any;
    const Heights over2(c2, c1.values);
    // Clipping, too, begins with c1 and the fat line along c2's chord.
    if (isClearOfStrip(c2, over2))
        return PossibleContact::None;
    const Heights over1(c1, c2.values);
    // Lines meet what lies near them, while clipping sees only that strips cross: it has to look for itself.
    if (isClearOfStrip(c1, over1))
        return c1.straight || c2.straight ? PossibleContact::None : PossibleContact::Crossing;
    if (mayTouchParts(c2, over2.h[0], c1.values.p0()))
        nearEnd = 0;
    else if (mayTouchParts(c2, over2.h[3], c1.values.p3()))
        nearEnd = 1;
    else if (mayTouchParts(c1, over1.h[0], c2.values.p0()))
        nearEnd = 2;
    else if (mayTouchParts(c1, over1.h[3], c2.values.p3()))
        nearEnd = 3;
    else
        return PossibleContact::Crossing;
    return PossibleContact::Any;
}

namespace {

/** A curve at a joint. */
struct JoinedCurve {
    const PreparedCurve &curve;
    bool atEnd; ///< the joint is its end

    double x() const { return curve.values.v[atEnd ? 6 : 0]; }
    double y() const { return curve.values.v[atEnd ? 7 : 1]; }
    /** Number of its control point at the other end. */
    int far() const { return atEnd ? 0 : 3; }
    /** Numbers of the other three control points: first() to first() + 2. */
    int first() const { return atEnd ? 0 : 1; }
    vxPoint farEnd() const { return atEnd ? curve.values.p0() : curve.values.p3(); }
};

bool shareTheirJoint(const JoinedCurve &j1, const JoinedCurve &j2)
{
    return j1.curve.ordinary && j2.curve.ordinary && j1.x() == j2.x() && j1.y() == j2.y();
}

/** Least and greatest height of all control points but the joint. */
struct DepartingHeights {
    double least, greatest;
    double ofFar;

    DepartingHeights(const PreparedCurve &chord, const JoinedCurve &joined)
    {
        const Heights heights(chord, joined.curve.values);
        const double *h = heights.h + joined.first();
        least = std::min(h[0], std::min(h[1], h[2]));
        greatest = std::max(h[0], std::max(h[1], h[2]));
        ofFar = heights.h[joined.far()];
    }
    /** Distance from the chord's line, times the chord's length, up to which the curve has left it; or less.
     */
    double clearance() const { return std::max(least, -greatest); }
};

/**
 * Two lines that are clearly not parallel. linePoint() gives the joint to within rounding, and when that is
 * machineZero, its time on both is that of the end.
 */
bool linesDiverge(const JoinedCurve &j1, const JoinedCurve &j2)
{
    const PreparedCurve &c1 = j1.curve;
    const PreparedCurve &c2 = j2.curve;
    const double cross = c1.chordX * c2.chordY - c1.chordY * c2.chordX;
    if (!(std::fabs(cross) > apartDistance * (c1.chordBound + c2.chordBound)))
        return false;
    if (!j1.atEnd)
        return true; // linePoint() counts from the start of the first: it is exact
    const double errorX = c1.values.v[0] + c1.chordX - c1.values.v[6];
    const double errorY = c1.values.v[1] + c1.chordY - c1.values.v[7];
    return std::fabs(errorX) + std::fabs(errorY) <= machineZero / 2;
}

/** Whether a curve leaves a line sideways: all of it but the joint lies to one side. */
bool turnsOff(const JoinedCurve &line, const JoinedCurve &curve)
{
    const DepartingHeights heights(line.curve, curve);
    // The second condition keeps the line's far end away from the curve's chord: they may not count as one
    // line.
    return heights.clearance() > departingDistance * line.curve.chordBound &&
           std::fabs(heights.ofFar) > apartDistance * curve.curve.chordBound;
}

/** Whether a curve goes on from a line: all of it but the joint lies ahead, where the line has ended. */
bool goesOn(const JoinedCurve &line, const JoinedCurve &curve)
{
    const double sign = line.atEnd ? 1 : -1;
    const double aheadX = sign * line.curve.chordX;
    const double aheadY = sign * line.curve.chordY;
    const double *v = curve.curve.values.v + 2 * curve.first();
    const double least = departingDistance * line.curve.chordBound;
    for (int i = 0; i < 6; i += 2) {
        if (!((v[i] - line.x()) * aheadX + (v[i + 1] - line.y()) * aheadY > least))
            return false;
    }
    return true;
}

/**
 * A line and a curve that leaves it at once: what curve times remain beyond the joint's margin belong to
 * points that timeOf() does not take for points of the line. The tangent arcs of rounded corners go on.
 */
bool leavesLine(const JoinedCurve &line, const JoinedCurve &curve)
{
    return goesOn(line, curve) || turnsOff(line, curve);
}

/** Whether all of a curve but the joint lies to the left of it, or all to the right. */
bool isLeftOrRightOfJoint(const JoinedCurve &joined)
{
    const double *v = joined.curve.values.v + 2 * joined.first();
    const double x = joined.x();
    return areOnOneSide(0, v[0] - x, v[2] - x, v[4] - x);
}

/**
 * Whether clipping a curve to the fat line of the joint, a mere point, ends with times at the joint and no
 * doubt. A point's fat line is the vertical through it.
 *
 * Where all of the curve but the joint lies to one side of that vertical, the first step leaves the joint
 * alone. The other case is a curve that starts upright: its handle at the joint is on the vertical, its other
 * two points lie aside of it, by A or more. Let x be the joint's coordinate, u the time, counted from the
 * joint, at which the part at the joint ends after k rounds of a clip and a halving, and v the time at which
 * the half that is cut off ends.
 *
 * 1. A clip leaves a third of the part, and halving that a sixth: u = 6^-k.
 * 2. Rounding moves a part's points by less than 6 last places of x, since halving takes means, some
 *    1.4e-15 |x|; it moves the handle by less than 2.
 * 3. By 2 the third that a clip leaves is longer by 4.4e-16 |x| / (u^2 A) of itself.
 * 4. The half that is cut off lies aside by 0.7 v^2 A or more.
 * 5. With A of 0.005 |x| that half is, by 2 and 4, rejected at once down to v = 1.2e-6, for k = 7, and the
 *    next third, by 3 longer by less than a half, ends below timeMargin: what is found there belongs to the
 *    joint.
 * 6. That is at most 400 parts to halve before clipping has converged at 1e-9, four calls each, within the
 *    limits of calls and depth.
 * 7. Parts are given up as doubtful only if their boxes hold the joint: going upwards by 0.01 units keeps
 *    those to times below 1e-4.
 */
bool shrinksToJoint(const JoinedCurve &joined)
{
    if (isLeftOrRightOfJoint(joined))
        return true;
    double x[3];
    double y[3];
    for (int i = 0; i < 3; ++i) {
        const int point = joined.atEnd ? 2 - i : 1 + i;
        x[i] = joined.curve.values.v[2 * point] - joined.x();
        y[i] = joined.curve.values.v[2 * point + 1] - joined.y();
    }
    const Box &box = joined.curve.box;
    const double aside = std::max(0.005 * std::fabs(joined.x()), 0.01);
    const double upwards = 0.01 * (1 + box.maxX - box.minX + box.maxY - box.minY);
    return x[0] == 0 && areOnOneSide(aside, x[1], x[1], x[2]) && areOnOneSide(upwards, y[0], y[1], y[2]);
}

/** Whether two curves lie on different sides of the second's chord; heights: of the first over that chord. */
bool lieOnDifferentSides(const DepartingHeights &heights, const PreparedCurve &c2)
{
    const double margin = apartDistance * c2.chordBound;
    return (heights.greatest < -margin && c2.lowest == 0) || (heights.least > margin && c2.highest == 0);
}

/**
 * Two curves on different sides of the second's chord, as at smooth joints of convex outlines. Clipping
 * begins by cutting the first down to the joint itself, where the second's fat line ends, and goes on with
 * the second and that point.
 */
bool curvesDiverge(const JoinedCurve &j1, const JoinedCurve &j2)
{
    const PreparedCurve &c1 = j1.curve;
    const PreparedCurve &c2 = j2.curve;
    const DepartingHeights heights(c2, j1);
    if (!lieOnDifferentSides(heights, c2))
        return false;
    const double margin = apartDistance * c2.chordBound;
    // The second's far end lies on the chord's line, so the first may come near it only as near to the joint
    // as its heights shrink below apartDistance.
    const double extent = 2 * (c1.box.maxX - c1.box.minX + c1.box.maxY - c1.box.minY);
    const double reach = std::max(std::fabs(c2.chordX), std::fabs(c2.chordY));
    return heights.clearance() * (reach - apartDistance) > margin * extent && shrinksToJoint(j2);
}

} // namespace

bool meetOnlyAtJoint(const PreparedCurve &c1, const PreparedCurve &c2, Joint joint)
{
    const JoinedCurve j1{ c1, joint == Joint::EndToStart };
    const JoinedCurve j2{ c2, joint == Joint::StartToEnd };
    if (!shareTheirJoint(j1, j2))
        return false;
    if (c1.straight && c2.straight)
        return linesDiverge(j1, j2);
    if (c1.straight)
        return leavesLine(j1, j2);
    return c2.straight ? leavesLine(j2, j1) : curvesDiverge(j1, j2);
}

bool clipToSharedEnd(const PreparedCurve &c1, const PreparedCurve &c2, TimePair &meeting)
{
    for (const bool atEnd1 : { false, true }) {
        for (const bool atEnd2 : { false, true }) {
            const JoinedCurve j1{ c1, atEnd1 };
            const JoinedCurve j2{ c2, atEnd2 };
            if (shareTheirJoint(j1, j2)) {
                meeting = { atEnd1 ? 1.0 : 0.0, atEnd2 ? 1.0 : 0.0 };
                return isLeftOrRightOfJoint(j2) && lieOnDifferentSides(DepartingHeights(c2, j1), c2);
            }
        }
    }
    return false;
}

bool touchOnlyAtJoint(const PreparedCurve &c1, const PreparedCurve &c2, Joint joint)
{
    const JoinedCurve j1{ c1, joint == Joint::EndToStart };
    const JoinedCurve j2{ c2, joint == Joint::StartToEnd };
    return shareTheirJoint(j1, j2) && !mayComeNear(c2, j1.farEnd()) && !mayComeNear(c1, j2.farEnd());
}

} // namespace vx
