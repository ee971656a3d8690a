#pragma once

#include "vxcubic_p.h"
#include "vxnumeric_p.h"

namespace vx {

/**
 * Times from min to max at which a coordinate (0: x, 1: y) of a curve turns back: the roots of its derivative
 * divided by 3. At most two, in no order; returns what solveQuadratic() does.
 */
inline int turnTimes(const Cubic &c, int coordinate, double roots[2], double min, double max)
{
    const double *v = c.v + coordinate;
    return solveQuadratic(3 * (v[2] - v[4]) - v[0] + v[6], 2 * (v[0] + v[4]) - 4 * v[2], v[2] - v[0], roots,
                          min, max);
}

} // namespace vx
