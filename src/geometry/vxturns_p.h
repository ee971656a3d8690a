#pragma once

#include "vxcubic_p.h"
#include "vxnumeric_p.h"

namespace vx {

/**
 * Times from min to max at which a coordinate with these control values turns back: the roots of its
 * derivative divided by 3. At most two, in no order; returns what solveQuadratic() does.
 */
inline int turnTimes(double q0, double q1, double q2, double q3, double roots[2], double min, double max)
{
    return solveQuadratic(3 * (q1 - q2) - q0 + q3, 2 * (q0 + q2) - 4 * q1, q1 - q0, roots, min, max);
}

/** The same for coordinate 0 (x) or 1 (y) of a curve. */
inline int turnTimes(const Cubic &c, int coordinate, double roots[2], double min, double max)
{
    const double *v = c.v + coordinate;
    return turnTimes(v[0], v[2], v[4], v[6], roots, min, max);
}

} // namespace vx
