#pragma once

#include "vxpoint.h"

#include <vector>

namespace vx {

/**
 * Groups points that lie within a distance of each other, directly or through others: gives for each the
 * least index of its group. distance > 0, in the points' units. Cost: near that of the points, however
 * crowded.
 */
std::vector<int> clusters(const std::vector<vxPoint> &points, double distance);

} // namespace vx
