#pragma once

#include "vxintersect_p.h"

#include <vector>

/** Where two curves of an arrangement meet, in its frame, so that tolerances are relative to the drawing. */
namespace vx {

/**
 * All places where two curves meet. Clipping cannot part curves that touch, or go on from one another:
 * halving does. Where they run together it takes too long as well; what both found by then serves, and of a
 * row of meetings the first and last alone.
 */
std::vector<TimePair> placesWhereMeet(const Cubic &a, const Cubic &b);
/** The same, by halving whatever clipping might say. */
std::vector<TimePair> placesByHalving(const Cubic &a, const Cubic &b);

/**
 * Whether two curves surely meet nowhere but at some places, or so near to one that it makes no difference.
 * Halves them until parts are surely apart, which comes to an end where they touch, when clipping does not.
 * Coordinates may be of any frame.
 */
bool meetOnlyAt(const Cubic &c1, const Cubic &c2, const std::vector<vxPoint> &places);
/** The same for the ends that they share. */
bool meetAtSharedEndsOnly(const Cubic &a, const Cubic &b);

/**
 * All meetings of two curves by halving both until they are flat or surely apart: slower than clipping, but
 * misses none, unless it was cut short.
 */
TimePairs meetByHalving(const Cubic &c1, const Cubic &c2);

} // namespace vx
