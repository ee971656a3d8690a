#pragma once

#include "vxpair_p.h"

#include <cmath>

namespace vx {

/**
 * Signed distances of many points from the carrier line of one chord: vxLine::getSignedDistance() to the last
 * bit, with what depends on the chord alone computed once.
 */
class ChordDistance
{
public:
    explicit ChordDistance(const Cubic &c)
        : m_x(c.v[0]), m_y(c.v[1]), m_dx(c.v[6] - c.v[0]), m_dy(c.v[7] - c.v[1]),
          m_length(std::sqrt(m_dx * m_dx + m_dy * m_dy))
    {
    }

    double operator()(double x, double y) const
    {
        const double point[] = { x, y };
        double d;
        measure<1>(point, &d);
        return d;
    }
    double operator()(const vxPoint &p) const { return (*this)(p.x, p.y); }

    /** Distances of several points, coordinates in turn: whether the chord is parallel to an axis is asked
     * once. */
    template <int count>
    void measure(const double *points, double *distances) const
    {
        const double *p = points;
        if (m_dx == 0) {
            for (int i = 0; i < count; ++i, p += 2)
                distances[i] = m_dy > 0 ? p[0] - m_x : m_x - p[0];
        } else if (m_dy == 0) {
            for (int i = 0; i < count; ++i, p += 2)
                distances[i] = m_dx < 0 ? p[1] - m_y : m_y - p[1];
        } else {
            for (int i = 0; i < count; ++i, p += 2)
                distances[i] = ((p[0] - m_x) * m_dy - (p[1] - m_y) * m_dx) / m_length;
        }
    }

    /** Distances of two points, side by side: for the innermost loop. */
    Pair measure(Pair p, Pair q) const
    {
        const Pair xs{ p[0], q[0] };
        const Pair ys{ p[1], q[1] };
        if (m_dx == 0)
            return m_dy > 0 ? xs - m_x : m_x - xs;
        if (m_dy == 0)
            return m_dx < 0 ? ys - m_y : m_y - ys;
        return ((xs - m_x) * m_dy - (ys - m_y) * m_dx) / m_length;
    }

private:
    double m_x, m_y, m_dx, m_dy, m_length;
};

} // namespace vx
