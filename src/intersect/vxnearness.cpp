#include "vxnearness_p.h"

#include "vxchorddistance_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>

using namespace vxTolerance;

namespace vx {

bool isFarFromChord(const Cubic &c, const vxPoint &p, double slack)
{
    const double points[] = { c.v[2], c.v[3], c.v[4], c.v[5], p.x, p.y };
    double distances[3];
    ChordDistance(c).measure<3>(points, distances);
    const double d1 = distances[0];
    const double d2 = distances[1];
    const double d = distances[2];
    return d < std::min({ d1, d2, 0.0 }) - slack || d > std::max({ d1, d2, 0.0 }) + slack;
}

namespace {

/** Whether a point lies farther than distance off the box of the control points; the margin covers rounding.
 */
bool isFarFromHull(const Cubic &c, const vxPoint &p, double distance)
{
    const double reach = distance * (1 + 1e-9) + closeDistance + 1e-12 * (std::fabs(p.x) + std::fabs(p.y));
    const double *v = c.v;
    const double left = p.x - reach, right = p.x + reach, top = p.y - reach, bottom = p.y + reach;
    return (v[0] < left && v[2] < left && v[4] < left && v[6] < left) ||
           (v[0] > right && v[2] > right && v[4] > right && v[6] > right) ||
           (v[1] < top && v[3] < top && v[5] < top && v[7] < top) ||
           (v[1] > bottom && v[3] > bottom && v[5] > bottom && v[7] > bottom);
}

/**
 * Moves a time to that of the place nearest to a point by the Gauss-Newton method: Newton on
 * (B(t) - p) . B'(t) = 0 with B'' left out, which converges wherever the curve is no sharp bend. Returns how
 * far the place is off.
 */
inline double settle(const SteppedCurve &c, const vxPoint &point, double &t)
{
    constexpr int rounds = 4;
    vxPoint place, d1;
    c.evaluate(t, place, d1);
    for (int i = 0; i < rounds; ++i) {
        const double step = place.subtract(point).dot(d1) / d1.dot(d1);
        if (!std::isfinite(step) || std::fabs(step) < 1e-15)
            break;
        const double next = std::clamp(t - step, 0.0, 1.0);
        if (next == t)
            break; // held at an end: all rounds come to the same
        t = next;
        c.evaluate(t, place, d1);
    }
    return place.getDistance(point);
}

/**
 * Offers times from which the place nearest to a point may be reached: where the curve has one of its
 * coordinates, and the ends. Until accept(t) says yes; false when it never does.
 */
template <typename Accept>
bool offerTimes(const Cubic &c, const vxPoint &point, Accept &&accept)
{
    for (int axis : { 0, 1 }) {
        const double *v = c.v + axis;
        if (v[0] == v[2] && v[0] == v[4] && v[0] == v[6])
            continue; // all times or none, for the solver none
        double roots[3];
        const int count = timesAtCoordinate(c, axis, axis == 0 ? point.x : point.y, roots, 0, 1);
        for (int i = 0; i < count; ++i) {
            if (accept(roots[i]))
                return true;
        }
    }
    return accept(0) || accept(1);
}

} // namespace

double timeNear(const Cubic &c, const vxPoint &point, double &distance)
{
    if (isFarFromHull(c, point, distance))
        return noTime;
    double best = noTime;
    const SteppedCurve curve(c);
    // Never accepts, so that all times are tried: the nearest place is wanted, not the first.
    const auto tryFrom = [&](double t) {
        const double d = settle(curve, point, t);
        if (d <= distance) {
            distance = d;
            best = t;
        }
        return false;
    };
    // Shortcut: ends are tried last and ties go to the later, so if the point is an end nothing tried before
    // can win.
    if (point == c.p3()) {
        tryFrom(1);
        if (distance == 0 && best == 1)
            return best;
    }
    if (point == c.p0()) {
        tryFrom(0);
        if (distance == 0 && best == 0) {
            tryFrom(1);
            return best;
        }
    }
    offerTimes(c, point, tryFrom);
    return best;
}

bool comesNear(const Cubic &c, const vxPoint &point, double &distance)
{
    if (isFarFromHull(c, point, distance))
        return false;
    const SteppedCurve curve(c);
    return offerTimes(c, point, [&](double t) {
        const double d = settle(curve, point, t);
        if (!(d <= distance))
            return false;
        distance = d;
        return true;
    });
}

} // namespace vx
