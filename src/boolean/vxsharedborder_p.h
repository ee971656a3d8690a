#pragma once

#include "vxcubic_p.h"

namespace vx {

/**
 * Whether curve a surely runs along all of b, either way round: every place computed on a lies within
 * closeDistance of b, and timeOf() finds a time for it there. Quick; false where it is not sure.
 */
bool runsAlong(const Cubic &a, const Cubic &b);

} // namespace vx
