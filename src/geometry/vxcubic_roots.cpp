#include "vxcubic_p.h"
#include "vxcubic_polynomial_p.h"
#include "vxnumeric_p.h"

#include <algorithm>
#include <limits>

using vxTolerance::closeDistance;
using vxTolerance::machineZero;
using vxTolerance::noTime;

int vx::timesAtCoordinate(const Cubic &curve, int coord, double value, double roots[3], double min,
                          double max)
{
    const double *v = curve.v + (coord == 1 ? 1 : 0);
    const double p0 = v[0], p1 = v[2], p2 = v[4], p3 = v[6];
    if ((p0 < value && p1 < value && p2 < value && p3 < value) ||
        (p0 > value && p1 > value && p2 > value && p3 > value))
        return 0;
    if (p0 == value && p1 == p0 && p2 == p0 && p3 == p0)
        return 0; // everywhere
    const double b = 3 * (p1 - p0);
    const double c = 3 * (p2 - p1) - b;
    const double a = p3 - p0 - b - c;
    return std::max(0, solveCubic(a, c, b, p0 - value, roots, min, max));
}

namespace {

/**
 * Whether all four control values lie on one side of value, so far off that no computed curve point comes
 * within closeDistance of it: rounding moves a point by less than 1e-12 of the largest value. False with NaN.
 */
bool allBeyond(const double *v, double value)
{
    const double largest =
        std::max(std::max(std::fabs(v[0]), std::fabs(v[2])), std::max(std::fabs(v[4]), std::fabs(v[6])));
    const double reach = 2 * closeDistance + 1e-12 * largest;
    const double lo = value - reach;
    const double hi = value + reach;
    return (v[0] < lo && v[2] < lo && v[4] < lo && v[6] < lo) ||
           (v[0] > hi && v[2] > hi && v[4] > hi && v[6] > hi);
}

} // namespace

double vx::timeOf(const Cubic &c, const vxPoint &point)
{
    if (allBeyond(c.v, point.x) || allBeyond(c.v + 1, point.y))
        return noTime;
    const vxPoint start = c.p0();
    const vxPoint end = c.p3();
    if (point.isClose(start, machineZero))
        return 0;
    if (point.isClose(end, machineZero))
        return 1;
    const Polynomial polynomial(c);
    for (int coord = 0; coord < 2; ++coord) {
        double roots[3];
        const int count = timesAtCoordinate(c, coord, coord == 0 ? point.x : point.y, roots, 0, 1);
        for (int i = 0; i < count; ++i) {
            if (point.isClose(polynomial.point(roots[i]), closeDistance))
                return roots[i];
        }
    }
    // Last, so that a point just inside an end gets its own time where it has one.
    if (point.isClose(start, closeDistance))
        return 0;
    return point.isClose(end, closeDistance) ? 1 : noTime;
}

namespace {

/** Time of the foot of the perpendicular, or of the nearer end; noTime where rounding hides the foot. */
double nearestTimeOnChord(const vx::Cubic &c, const vxPoint &point)
{
    const vxPoint d = c.p3().subtract(c.p0());
    const double square = d.dot(d);
    if (square == 0)
        return 0;
    const double u = point.subtract(c.p0()).dot(d) / square;
    if (u < machineZero)
        return 0;
    if (u > 1 - machineZero)
        return 1;
    return vx::timeOf(c, c.p0().add(d.multiply(u)));
}

/** The best time so far in a search for the nearest point. */
struct NearestSearch {
    vx::Polynomial curve;
    vxPoint point;
    double best = std::numeric_limits<double>::infinity(); // squared distance
    double time = 0;

    bool improves(double t)
    {
        if (!(t >= 0 && t <= 1))
            return false;
        const double distance = point.getDistance(curve.point(t), true);
        if (!(distance < best))
            return false;
        best = distance;
        time = t;
        return true;
    }
};

} // namespace

double vx::nearestTime(const Cubic &c, const vxPoint &point)
{
    if (isStraight(c)) {
        const double t = nearestTimeOnChord(c, point);
        if (t != noTime)
            return t;
    }
    constexpr int scanSteps = 100;
    NearestSearch search{ Polynomial(c), point };
    for (int i = 0; i <= scanSteps; ++i)
        search.improves(static_cast<double>(i) / scanSteps);
    double step = 1.0 / (scanSteps * 2);
    while (step > vxTolerance::timeMargin) {
        if (!search.improves(search.time - step) && !search.improves(search.time + step))
            step /= 2;
    }
    return search.time;
}
