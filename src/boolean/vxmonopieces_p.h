#pragma once

#include "vxcubic_p.h"
#include "vxmono.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vx {

/**
 * Whether ends are apart so that the arc length, as computed, is not 0: it gives a straight curve its
 * distance and any other a speed that is not 0 everywhere. Not sure where they are so near each other that
 * squares of their distance vanish, or for NaN.
 */
inline bool surelyHasLength(const Cubic &c)
{
    constexpr double apart = 1e-6;
    return std::fabs(c.v[6] - c.v[0]) > apart || std::fabs(c.v[7] - c.v[1]) > apart;
}

/** Whether it takes part in counting: it has a length. */
inline bool isCounted(const Cubic &c)
{
    return surelyHasLength(c) || length(c) != 0;
}

/** Whether a curve is one piece because its control points are in order of height. */
inline bool isOnePiece(const Cubic &c)
{
    const double y0 = c.v[1], y1 = c.v[3], y2 = c.v[5], y3 = c.v[7];
    const bool inOrder = (y0 >= y1) == (y1 >= y2) && (y1 >= y2) == (y2 >= y3);
    return inOrder || isChord(c) || surelyHasNoExtremum(y0, y1, y2, y3);
}

/** A curve as one piece. */
inline vxMono pieceOf(const Cubic &c)
{
    const double *v = c.v;
    const double slope = (v[1] - v[7]) / (v[0] - v[6]);
    // A closed piece has a NaN slope, which is no level one: it winds, by its ends upwards.
    const int winding = std::fabs(slope) < vxTolerance::closeDistance ? 0 : v[1] > v[7] ? -1 : 1;
    return { { v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7] }, winding, nullptr };
}

/** The y-monotone pieces of a curve, at most three, in its order; their number. */
int monotonePieces(const Cubic &c, vxMono pieces[3]);

inline Cubic cubicOf(const vxMono &piece)
{
    const double *v = piece.values;
    return { { v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7] } };
}

/**
 * The levels that a piece reaches, from end to end, and the width of its control points. Coordinates that are
 * NaN give no levels, or an infinite width.
 */
inline Box reachOf(const vxMono &piece)
{
    constexpr double infinite = std::numeric_limits<double>::infinity();
    const double *v = piece.values;
    Box box{ std::min(std::min(v[0], v[2]), std::min(v[4], v[6])), std::min(v[1], v[7]),
             std::max(std::max(v[0], v[2]), std::max(v[4], v[6])), std::max(v[1], v[7]) };
    if (!std::isnan(v[0] + v[2] + v[4] + v[6] + v[1] + v[7]))
        return box;
    if (std::isnan(v[1]) || std::isnan(v[7])) {
        box.minY = infinite;
        box.maxY = -infinite;
    }
    if (std::isnan(v[0] + v[2] + v[4] + v[6])) {
        box.minX = -infinite;
        box.maxX = infinite;
    }
    return box;
}

} // namespace vx
