#pragma once

namespace vx {

/**
 * Places along a curve or a piece of outline, as parts of its time or its length, in the order in which they
 * are tried as samples: the middle, then golden sections, so that no regular drawing has a vertex, or another
 * outline, at all of them.
 */
constexpr double sampleFractions[] = { 0.5, 0.381966, 0.618034, 0.236068, 0.763932, 0.145898, 0.854102 };

} // namespace vx
