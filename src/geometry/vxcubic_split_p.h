#pragma once

#include "vxcubic_p.h"

#include <utility>

/**
 * subdivide() and part() for the inner loops where they are wanted inline: there nobody writes a part that
 * is not asked for.
 */
namespace vx {

inline vxPoint mix(const vxPoint &p, const vxPoint &q, double t)
{
    const double u = 1 - t;
    return vxPoint(u * p.x + t * q.x, u * p.y + t * q.y);
}

inline void split(const Cubic &c, double t, Cubic &left, Cubic &right)
{
    const vxPoint start = c.p0();
    const vxPoint end = c.p3();
    const vxPoint p01 = mix(start, c.p1(), t);
    const vxPoint p12 = mix(c.p1(), c.p2(), t);
    const vxPoint p23 = mix(c.p2(), end, t);
    const vxPoint p012 = mix(p01, p12, t);
    const vxPoint p123 = mix(p12, p23, t);
    const vxPoint middle = mix(p012, p123, t);
    // c is no longer read: it may be left or right itself.
    left = Cubic::fromPoints(start, p01, p012, middle);
    right = Cubic::fromPoints(middle, p123, p23, end);
}

inline Cubic partOf(const Cubic &c, double from, double to)
{
    const bool swapped = from > to;
    if (swapped)
        std::swap(from, to);
    Cubic result = c;
    Cubic rest;
    if (from > 0)
        split(result, from, rest, result);
    if (to < 1)
        split(result, (to - from) / (1 - from), result, rest);
    return swapped ? result.reversed() : result;
}

} // namespace vx
