#pragma once

#include "vxcubic_p.h"

namespace vx {

/**
 * Whether the control points of two curves are the same within a twentieth of closeDistance: then each place
 * of one is as near to the place at the same time of the other.
 */
bool agree(const Cubic &a, const Cubic &b);

/**
 * Whether curve a surely runs along all of b, either way round: every place computed on a lies within
 * closeDistance of b, and timeOf() finds a time for it there. Quick; false where it is not sure.
 */
bool runsAlong(const Cubic &a, const Cubic &b);

} // namespace vx
