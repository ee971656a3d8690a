#include "vxcubic_p.h"
#include "vxline.h"
#include "vxnumeric_p.h"
#include "vxpair_p.h"
#include "vxturns_p.h"

#include <algorithm>
#include <cmath>

using vxTolerance::closeDistance;
using vxTolerance::timeMargin;
using vxTolerance::timeUpper;

namespace {

void extendRange(double value, double pad, double &min, double &max)
{
    if (value - pad < min)
        min = value - pad;
    if (value + pad > max)
        max = value + pad;
}

/** See surelyHasNoExtremum(). */
constexpr double leastSlope = 1e-3;
constexpr double leastSlopeOfLargest = 1e-6;

/**
 * Whether the box of a curve's ends is its bounds, asked of both coordinates at once: control values between
 * the ends, or a line without an extremum that rounding makes up.
 */
bool endsAreExtremes(const vx::Cubic &c, vx::Pair least, vx::Pair greatest)
{
    using vx::whereLess;
    const vx::Pair handle1 = vx::pairOf(c, 1), handle2 = vx::pairOf(c, 2);
    const int below = whereLess(handle1, least) | whereLess(handle2, least);
    const int belowGreatest = whereLess(handle1, greatest) & whereLess(handle2, greatest);
    if ((belowGreatest & ~below) == 3)
        return true;
    const vx::Pair largest = vx::greater(greatest, -least);
    const int steep = whereLess(vx::both(leastSlope) + leastSlopeOfLargest * largest, greatest - least);
    const int level = 3 ^ whereLess(least, greatest);
    return vx::isChord(c) && (steep | level) == 3;
}

bool isWithin(double q, double min, double max)
{
    return q >= min && q <= max;
}

double size(const vxPoint &p)
{
    return std::fabs(p.x) + std::fabs(p.y);
}

/**
 * Whether a handle ends so far off the chord that no rounding brings it within closeDistance: of distances
 * times the chord's length, at most the sum of its sides. Spares most curves the roots of isStraight().
 */
bool isBent(const vxPoint &start, const vxPoint &chord, const vxPoint &h1, const vxPoint &h2)
{
    const double rounding = 1e-14 * (size(start) + size(chord) + size(h1) + size(h2));
    const double least = (2 * closeDistance + rounding) * size(chord);
    return std::fabs(h1.cross(chord)) > least || std::fabs(h2.cross(chord)) > least;
}

/**
 * Whether vectors are not all within margin of the line along one of them. Each line is off by two of the
 * three cross products, so that two large ones tell for all three; sizes are at least the lengths.
 */
bool areSpread(const vxPoint to[3], double margin)
{
    const double reach = 2 * margin * std::max(std::max(size(to[0]), size(to[1])), size(to[2]));
    const bool far01 = std::fabs(to[0].cross(to[1])) > reach;
    const bool far02 = std::fabs(to[0].cross(to[2])) > reach;
    const bool far12 = std::fabs(to[1].cross(to[2])) > reach;
    return (far01 && far02) || (far01 && far12) || (far02 && far12);
}

} // namespace

bool vx::isStraight(const Cubic &c)
{
    const vxPoint h1 = c.p1().subtract(c.p0());
    const vxPoint h2 = c.p2().subtract(c.p3());
    return !isBent(c.p0(), c.p3().subtract(c.p0()), h1, h2) && isStraight(vxLine(c.p0(), c.p3()), h1, h2);
}

bool vx::isStraight(const vxLine &line, const vxPoint &h1, const vxPoint &h2)
{
    if (h1.isZero() && h2.isZero())
        return true;
    const vxPoint v = line.getVector();
    if (v.isZero())
        return false;
    const vxPoint start = line.getPoint();
    if (!(line.getDistance(start.add(h1)) < closeDistance &&
          line.getDistance(start.add(v).add(h2)) < closeDistance))
        return false;
    const double square = v.dot(v);
    const double s1 = v.dot(h1) / square;
    const double s2 = v.dot(h2) / square;
    return s1 >= 0 && s1 <= 1 && s2 >= -1 && s2 <= 0;
}

int vx::foldTimes(const Cubic &c, double margin, double times[2])
{
    if (!hasHandles(c))
        return 0;
    const vxPoint start = c.p0();
    const vxPoint to[] = { c.p1().subtract(start), c.p2().subtract(start), c.p3().subtract(start) };
    if (areSpread(to, margin))
        return 0;
    const vxPoint &along =
        *std::max_element(to, to + 3, [](const vxPoint &p, const vxPoint &q) { return p.dot(p) < q.dot(q); });
    const double square = along.dot(along);
    const double reach = margin * std::sqrt(square);
    for (const vxPoint &p : to) {
        if (!(std::fabs(along.cross(p)) <= reach))
            return 0;
    }
    // The derivative along the line, as a quadratic of these control points; of a size for the solver.
    const double d0 = along.dot(to[0]) / square;
    const double d1 = along.dot(to[1].subtract(to[0])) / square;
    const double d2 = along.dot(to[2].subtract(to[1])) / square;
    if (d0 * d2 >= 0 && !(d1 * (d0 + d2) < 0 && d1 * d1 > d0 * d2))
        return 0;
    const int count = solveQuadratic(d0 - 2 * d1 + d2, 2 * (d1 - d0), d0, times, 0, 1);
    // A handle that lies on its end makes a root of the end, where nothing turns.
    return int(std::remove_if(times, times + count, [](double t) { return t == 0 || t == 1; }) - times);
}

bool vx::isLinear(const Cubic &c)
{
    return isLinear(vxLine(c.p0(), c.p3()), c.p1().subtract(c.p0()), c.p2().subtract(c.p3()));
}

bool vx::isLinear(const vxLine &line, const vxPoint &h1, const vxPoint &h2)
{
    const vxPoint third = line.getVector().divide(3);
    return h1.subtract(third).isZero() && h2.negate().subtract(third).isZero();
}

bool vx::hasHandles(const Cubic &c)
{
    return !(c.p1().subtract(c.p0()).isZero() && c.p2().subtract(c.p3()).isZero());
}

bool vx::isFlatEnough(const Cubic &c, double flatness)
{
    // Bound of the distance between a cubic and its chord run at even speed, after K. Fischer, "Piecewise
    // Linear Approximation of Bezier Curves" (2000).
    const double *v = c.v;
    const double ux = 3 * v[2] - 2 * v[0] - v[6];
    const double uy = 3 * v[3] - 2 * v[1] - v[7];
    const double wx = 3 * v[4] - 2 * v[6] - v[0];
    const double wy = 3 * v[5] - 2 * v[7] - v[1];
    return std::max(ux * ux, wx * wx) + std::max(uy * uy, wy * wy) <= 16 * flatness * flatness;
}

// The derivative, a parabola a t^2 + b t + c with control values (q1 - q0), (q2 - q1), (q3 - q2), is at least
// 2 t (1 - t) (q2 - q1), between the margins 8e-13 of the largest value: the solver's parabola is off by a
// few 1e-15 of that. By leaving out an a below machineZero it moves a root from outside by less than 1e-9,
// and where its least value lies between the margins the discriminant is -8e-16 or less, both thanks to the
// least slope.
bool vx::surelyHasNoExtremum(double q0, double q1, double q2, double q3)
{
    const double largest =
        std::max(std::max(std::fabs(q0), std::fabs(q1)), std::max(std::fabs(q2), std::fabs(q3)));
    const double up = q3 > q0 ? 1 : -1;
    return (q1 - q0) * up >= 0 && (q3 - q2) * up >= 0 &&
           (q2 - q1) * up > leastSlope + leastSlopeOfLargest * largest;
}

void vx::addBounds(double q0, double q1, double q2, double q3, double padding, double &min, double &max)
{
    const double pad = padding / 2;
    const double lower = min - pad;
    const double upper = max + pad;
    // The curve stays within its control points: nothing can stick out.
    if (isWithin(q0, lower, upper) && isWithin(q1, lower, upper) && isWithin(q2, lower, upper) &&
        isWithin(q3, lower, upper))
        return;
    // Control values between the ends: the extremes are the ends.
    if ((q0 > q1) != (q3 > q1) && (q0 > q2) != (q3 > q2)) {
        extendRange(q0, pad, min, max);
        extendRange(q3, pad, min, max);
        return;
    }
    extendRange(q3, 0, min, max);
    if (surelyHasNoExtremum(q0, q1, q2, q3))
        return;
    double roots[2];
    const int count = turnTimes(q0, q1, q2, q3, roots, 0, 0);
    for (int i = 0; i < count; ++i) {
        const double t = roots[i];
        const double u = 1 - t;
        if (t > timeMargin && t < timeUpper)
            extendRange(u * u * u * q0 + 3 * u * u * t * q1 + 3 * u * t * t * q2 + t * t * t * q3, pad, min,
                        max);
    }
}

vx::Box vx::bounds(const Cubic &c)
{
    const Pair least = lesser(pairOf(c, 0), pairOf(c, 3));
    const Pair greatest = greater(pairOf(c, 0), pairOf(c, 3));
    if (endsAreExtremes(c, least, greatest))
        return boxOf(least, greatest);
    const double *v = c.v;
    Box box{ v[0], v[1], v[0], v[1] };
    addBounds(v[0], v[2], v[4], v[6], 0, box.minX, box.maxX);
    addBounds(v[1], v[3], v[5], v[7], 0, box.minY, box.maxY);
    return box;
}
