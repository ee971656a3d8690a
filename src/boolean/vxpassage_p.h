#pragma once

#include "vxcubic_p.h"
#include "vxmono.h"
#include "vxtolerance.h"

#include <limits>

/**
 * Which way a level passes a monotone piece of an outline, mostly without solving for the crossing. Every
 * answer is what solving and comparing would give, rounding included.
 */
namespace vx {

/**
 * Levels (low < y < high) at which solving for the crossing of a piece finds exactly one; none where that is
 * not sure.
 */
struct Passage {
    double low, high;
};

/**
 * reach: reachOf() the piece.
 *
 * With control points in order of height the height y rises from end to end (or falls). Consider a level that
 * keeps a fraction m of the height h from the start, t its time, and d0, d1, d2 >= 0 the steps of the control
 * heights, which sum up to h. From y - y0 >= t^3 h and t y' >= (1 - t)^2 (y - y0) the slope there is nearly
 * m^(2/3) h or more. Before the start y comes up to that level again at -sqrt(m) / 2 at the earliest, since
 * y - y0 is there at most some 3 t^2 h. So the solver, which finds the roots of a cubic that is off by a few
 * 1e-15 of the largest coordinate, finds this root and no other in [0, 1] as long as m h is far above that. A
 * start with d0 > h / 10 is steeper than 0.2 h all around, and only the root itself must not fall before 0.
 */
inline Passage passageOf(const vxMono &piece, const Box &reach)
{
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double smallestHeight = 1e-2;
    // Up to here rounding moves curve points by less than a hundredth of closeDistance.
    constexpr double largestCoordinate = 1e6;
    const double *v = piece.values;
    const double height = reach.maxY - reach.minY;
    const double largest = largestOf(reach);
    const double slack = -1e-9 * height; // a cut at an extremum leaves its handle level but for rounding
    const double up = v[7] > v[1] ? 1 : -1;
    const bool sure = largest <= largestCoordinate && height >= smallestHeight && piece.winding != 0 &&
                      (v[3] - v[1]) * up >= slack && (v[5] - v[3]) * up >= slack &&
                      (v[7] - v[5]) * up >= slack;
    if (!sure)
        return { infinite, -infinite };
    const double level = largest < 1e4 * height ? height / 1e5 : height / 100;
    const double steep = 1e-13 * largest;
    const double atStart = (v[3] - v[1]) * up > height / 10 ? steep : level;
    const double atEnd = (v[7] - v[5]) * up > height / 10 ? steep : level;
    return { reach.minY + (up > 0 ? atStart : atEnd), reach.maxY - (up > 0 ? atEnd : atStart) };
}

/** Where a crossing lies from a point on the same level; On within closeDistance. */
enum class Side { Left, On, Right, Unsure };
/** Of the one crossing where the level of a point passes a piece, if its bounds do not say it. */
Side sideByBracket(const vxMono &piece, const Box &reach, const vxPoint &point);

/**
 * Where a monotone piece lies from a box, at all of the box's levels, each of which passes it. Told by lines
 * along chords that leave the piece on one side and the box on the other.
 */
Side sideAcrossChord(Cubic piece, const Box &box);

/**
 * Whether a piece surely meets each vertical of a box once; if so, top and bottom become bounds of the levels
 * where it does.
 */
bool meetsVerticals(const vxMono &piece, const Box &box, double &top, double &bottom);

/** Of the crossing of a piece with the level through a point; Unsure: it has to be solved for. */
inline Side sideOfCrossing(const vxMono &piece, const Passage &passage, const Box &reach,
                           const vxPoint &point)
{
    using vxTolerance::closeDistance;
    if (!(point.y > passage.low && point.y < passage.high))
        return Side::Unsure;
    if (reach.maxX < point.x - 2 * closeDistance)
        return Side::Left;
    if (reach.minX > point.x + 2 * closeDistance)
        return Side::Right;
    return sideByBracket(piece, reach, point);
}

} // namespace vx
