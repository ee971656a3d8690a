#pragma once

#include "vxcubic_p.h"

#include <algorithm>

/** Points near a curve: quick answers and places. */
namespace vx {

/**
 * Point and derivative at t in [0, 1], without the kernel's care for coincident handles and times outside:
 * the inner loops here ask for millions of them.
 */
inline vxPoint placeAt(const Cubic &c, double t)
{
    const double u = 1 - t;
    const double a = u * u * u, b = 3 * u * u * t, d = 3 * u * t * t, e = t * t * t;
    return vxPoint(a * c.v[0] + b * c.v[2] + d * c.v[4] + e * c.v[6],
                   a * c.v[1] + b * c.v[3] + d * c.v[5] + e * c.v[7]);
}
inline vxPoint velocityAt(const Cubic &c, double t)
{
    const double u = 1 - t;
    const double a = 3 * u * u, b = 6 * u * t, d = 3 * t * t;
    return vxPoint(a * (c.v[2] - c.v[0]) + b * (c.v[4] - c.v[2]) + d * (c.v[6] - c.v[4]),
                   a * (c.v[3] - c.v[1]) + b * (c.v[5] - c.v[3]) + d * (c.v[7] - c.v[5]));
}

/**
 * A curve for Newton's steps: placeAt() and velocityAt() at one time, to the last bit, with what they share
 * and what all times share computed once.
 */
class SteppedCurve
{
public:
    explicit SteppedCurve(const Cubic &c) : m_curve(c)
    {
        for (int i = 0; i < 6; ++i)
            m_steps[i] = c.v[i + 2] - c.v[i];
    }

    void evaluate(double t, vxPoint &place, vxPoint &velocity) const
    {
        const double *v = m_curve.v;
        const double *s = m_steps;
        const double u = 1 - t;
        const double f = 3 * u * u, g = 6 * u * t, h = 3 * t * t;
        velocity = vxPoint(f * s[0] + g * s[2] + h * s[4], f * s[1] + g * s[3] + h * s[5]);
        const double a = u * u * u, b = f * t, d = 3 * u * t * t, e = t * t * t;
        place = vxPoint(a * v[0] + b * v[2] + d * v[4] + e * v[6], a * v[1] + b * v[3] + d * v[5] + e * v[7]);
    }

private:
    const Cubic &m_curve;
    double m_steps[6];
};

/** Bound of |B'(t)|. */
inline double greatestSpeed(const Cubic &c)
{
    return 3 *
           std::max({ c.p0().getDistance(c.p1()), c.p1().getDistance(c.p2()), c.p2().getDistance(c.p3()) });
}

/**
 * Whether a point lies farther than slack from the hull of a curve, as seen across its chord. Quick, no false
 * alarm.
 */
bool isFarFromChord(const Cubic &c, const vxPoint &p, double slack);

/**
 * Time of a place on the curve within distance of a point, as near as can be found, else noTime; distance
 * becomes how far it is off.
 */
double timeNear(const Cubic &c, const vxPoint &point, double &distance);

/**
 * Whether timeNear() finds a time, for less than half its cost: it stops at the first place within distance,
 * which becomes how far that one is off.
 */
bool comesNear(const Cubic &c, const vxPoint &point, double &distance);

} // namespace vx
