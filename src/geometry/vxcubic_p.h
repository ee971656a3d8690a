#pragma once

#include "vxbox_p.h"
#include "vxpoint.h"

class vxLine;

/**
 * The kernel: one cubic Bézier as eight doubles on the stack, and all curve mathematics as free functions on
 * it. Nothing here allocates or knows Qt. The static operations of vxCurve on value vectors are the public
 * edge.
 *
 * Conventions: v = { x0, y0, x1, y1, x2, y2, x3, y3 } in absolute path units (start, control points, end);
 * coordinate c (0 for x, 1 for y) of point k is v[2k + c]; y points down, so a positive signed area is
 * clockwise on screen. Every function accepts NaN and infinity and returns without looping for ever.
 */
namespace vx {

struct Cubic {
    double v[8];

    vxPoint p0() const { return vxPoint(v[0], v[1]); }
    vxPoint p1() const { return vxPoint(v[2], v[3]); }
    vxPoint p2() const { return vxPoint(v[4], v[5]); }
    vxPoint p3() const { return vxPoint(v[6], v[7]); }

    static Cubic fromPoints(const vxPoint &p0, const vxPoint &p1, const vxPoint &p2, const vxPoint &p3)
    {
        return { { p0.x, p0.y, p1.x, p1.y, p2.x, p2.y, p3.x, p3.y } };
    }
    /** The straight curve from a to b with its control points on its ends. */
    static Cubic fromLine(const vxPoint &a, const vxPoint &b) { return fromPoints(a, a, b, b); }
    Cubic reversed() const { return { { v[6], v[7], v[4], v[5], v[2], v[3], v[0], v[1] } }; }
};

// --- evaluation, parts: vxcubic_evaluate.cpp ---

/** What evaluate() gives. */
enum class Evaluate { Point, Tangent, Normal, Curvature };

/**
 * Point, derivative, normal (dy, -dx) or curvature (k, 0) at time t; (NaN, NaN) for t outside [0, 1]. With
 * normalized, derivative and normal have length 1; at an end where the derivative vanishes the direction
 * between the two control points stands in.
 */
vxPoint evaluate(const Cubic &c, double t, Evaluate what, bool normalized);

inline vxPoint pointAt(const Cubic &c, double t)
{
    return evaluate(c, t, Evaluate::Point, false);
}
/** Unit tangent. */
inline vxPoint tangentAt(const Cubic &c, double t)
{
    return evaluate(c, t, Evaluate::Tangent, true);
}

/** Both at once. */
void pointAndTangentAt(const Cubic &c, double t, vxPoint &point, vxPoint &tangent);

/** De Casteljau's construction; left ends and right starts at the same computed point. */
void subdivide(const Cubic &c, double t, Cubic &left, Cubic &right);

/** The part between two times; reversed when from > to. */
Cubic part(const Cubic &c, double from, double to);

/**
 * Signed area between the curve and the origin (Green's theorem), so that a closed chain sums to its area.
 */
double signedArea(const Cubic &c);

// --- shape: vxcubic_shape.cpp ---

/** No handles, or both handles on the chord, pointing inward and not overshooting. */
bool isStraight(const Cubic &c);
/** The same of a chord and the handles relative to its ends. */
bool isStraight(const vxLine &line, const vxPoint &h1, const vxPoint &h2);
/**
 * Times at which a curve turns round that runs back and forth over itself: one with its control points on one
 * line, but for margin path units. Their number, 0 for any other curve.
 */
int foldTimes(const Cubic &c, double margin, double times[2]);
/** Both control points sit at the thirds of the chord, within machineZero per coordinate. */
bool isLinear(const Cubic &c);
bool isLinear(const vxLine &line, const vxPoint &h1, const vxPoint &h2);
/** A control point differs from its end point by more than machineZero in a coordinate. */
bool hasHandles(const Cubic &c);
/** The control points sit on the ends, number for number. */
inline bool isChord(const Cubic &c)
{
    return c.v[2] == c.v[0] && c.v[3] == c.v[1] && c.v[4] == c.v[6] && c.v[5] == c.v[7];
}
/** Whether the curve surely stays within flatness path units of its chord. */
bool isFlatEnough(const Cubic &c, double flatness);

/**
 * Whether control values rise or fall all the way, so steeply that solving for an extremum between timeMargin
 * and timeUpper finds none. Quick; false where it is not sure.
 */
bool surelyHasNoExtremum(double q0, double q1, double q2, double q3);
/** Extends min and max, which hold q0, by the values that a coordinate takes; see vxCurve::addBounds. */
void addBounds(double q0, double q1, double q2, double q3, double padding, double &min, double &max);
/** Tight bounds. */
Box bounds(const Cubic &c);

// --- roots and nearest points: vxcubic_roots.cpp ---

/**
 * Times in [min, max] (0, 0: unbounded) where coordinate coord equals value; count 0 to 3, never negative.
 */
int timesAtCoordinate(const Cubic &c, int coord, double value, double roots[3], double min, double max);
/** Time of a point on the curve, noTime when it lies farther off than closeDistance. */
double timeOf(const Cubic &c, const vxPoint &point);
/**
 * Time of the curve point nearest to point, always in [0, 1]: the foot of the perpendicular on a straight
 * curve, else a scan of 101 times, then halving refinement down to timeMargin. 0 for NaN.
 */
double nearestTime(const Cubic &c, const vxPoint &point);

// --- arc length: vxcubic_length.cpp ---

/** Gauss-Legendre order for the time range [a, b]: 32 nodes a unit of time, within 2 to 16. */
int quadratureOrder(double a, double b);
/** Arc length in path units between times a and b. */
double length(const Cubic &c, double a = 0, double b = 1);
/**
 * Time at arc length offset from time start (noTime: from the start of the curve, or its end for a negative
 * offset); see vxCurve::getTimeAt. noTime when the curve ends before, when start is outside [0, 1], or for
 * NaN; an offset of 0 gives start back, whatever it is.
 */
double timeAtLength(const Cubic &c, double offset, double start);
/** The same from the start, or back from the end, of a curve whose length() is known. */
double timeAtLengthOf(const Cubic &c, double offset, double wholeLength);

} // namespace vx
