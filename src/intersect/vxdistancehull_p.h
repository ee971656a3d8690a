#pragma once

#include "vxpair_p.h"

#include <cmath>

namespace vx {

/** A point of the hull of the distance function: x a time, y a distance. */
struct HullPoint {
    double x, y;
};

inline constexpr double third = 1.0 / 3;
inline constexpr double twoThirds = 2.0 / 3;

/** Time at which an edge of the hull reaches a threshold: its end does, its start does not. */
inline double timeOnEdge(const HullPoint &p, const HullPoint &q, double threshold)
{
    return q.y == threshold ? q.x : p.x + (threshold - p.y) * (q.x - p.x) / (q.y - p.y);
}

/** The hull of the points (0, d0), (1/3, d1), (2/3, d2), (1, d3): which inner points lie on which chain. */
class DistanceHull
{
public:
    /** Of ends (d0, d3) and inner points (d1, d2); negated: all with the opposite sign. */
    DistanceHull(Pair ends, Pair inner, bool negated)
    {
        // Heights of the inner points over the chord from first to last.
        const Pair heights = inner - (2 * ends + swapped(ends)) / 3;
        const double height1 = heights[0];
        const double height2 = heights[1];
        const double size1 = std::fabs(height1);
        const double size2 = std::fabs(height2);
        m_firstOnTop = height1 > 0;
        if (!(height1 > 0 || height1 < 0)) {
            // It is on the second's side then; if that has no height either, on top before negating.
            m_firstOnTop = negated ? height1 == 0 && height2 > 0 : !(height1 == 0 && height2 < 0);
        }
        m_parted = height1 * height2 < 0;
        // One inner point may lie within the triangle of the other three. Sizes, since a height of 0 has no
        // sign to rely on: -1/0 would drop the point that reaches farthest, and with it the meeting. 0/0 is
        // NaN: both stay.
        const double ratio = size1 / size2;
        m_hasFirst = m_parted | !(ratio <= 0.5);
        m_hasSecond = m_parted | !(ratio >= 2);
    }

    bool hasFirst(bool onTop) const { return (onTop == m_firstOnTop) & m_hasFirst; }
    bool hasSecond(bool onTop) const { return ((onTop == m_firstOnTop) != m_parted) & m_hasSecond; }

private:
    /** The chain of the first inner point; the second lies on the other one where they are parted. */
    bool m_firstOnTop;
    bool m_parted;
    /** Points within the hull are left out. */
    bool m_hasFirst, m_hasSecond;
};

} // namespace vx
