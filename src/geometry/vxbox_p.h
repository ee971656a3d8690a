#pragma once

#include "vxpoint.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vx {

/** Axis-aligned box by its edges. */
struct Box {
    double minX, minY, maxX, maxY;
};

/** What a box is grown from: it holds nothing, and any box with numbers extends it. */
inline constexpr Box emptyBox{ std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity(),
                               -std::numeric_limits<double>::infinity() };

/** A box with its edges moved out by slack path units. */
inline Box widened(const Box &box, double slack)
{
    return { box.minX - slack, box.minY - slack, box.maxX + slack, box.maxY + slack };
}

/** Extends a box by another; edges that are NaN change nothing. */
inline void extend(Box &box, const Box &other)
{
    box.minX = std::min(box.minX, other.minX);
    box.minY = std::min(box.minY, other.minY);
    box.maxX = std::max(box.maxX, other.maxX);
    box.maxY = std::max(box.maxY, other.maxY);
}

/** The same, but one with an edge that is NaN extends it to the whole plane. */
inline void extendToAllByNaN(Box &box, const Box &other)
{
    constexpr double infinite = std::numeric_limits<double>::infinity();
    if (std::isnan(other.minX + other.minY + other.maxX + other.maxY))
        box = { -infinite, -infinite, infinite, infinite };
    else
        extend(box, other);
}

/** Whether a point lies in a box, or beside it by no more than slack along each axis. */
inline bool holds(const Box &box, const vxPoint &p, double slack)
{
    return p.x >= box.minX - slack && p.x <= box.maxX + slack && p.y >= box.minY - slack &&
           p.y <= box.maxY + slack;
}

/** Whether two boxes come within slack of each other; NaN comes within reach of everything. */
inline bool comeWithin(const Box &a, const Box &b, double slack)
{
    return !(a.maxX + slack < b.minX || b.maxX + slack < a.minX || a.maxY + slack < b.minY ||
             b.maxY + slack < a.minY);
}

/** The largest absolute coordinate of a box. */
inline double largestOf(const Box &box)
{
    return std::max(std::max(std::fabs(box.minX), std::fabs(box.maxX)),
                    std::max(std::fabs(box.minY), std::fabs(box.maxY)));
}

} // namespace vx
