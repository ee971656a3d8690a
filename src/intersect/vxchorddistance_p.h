#pragma once

#include "vxcubic_p.h"

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
        : m_x(c.v[0]), m_y(c.v[1]), m_dx(c.v[6] - c.v[0]), m_dy(c.v[7] - c.v[1])
    {
        // Axis-parallel chords, common in drawings, need no square root.
        m_length = m_dx == 0 || m_dy == 0 ? 0 : std::sqrt(m_dx * m_dx + m_dy * m_dy);
    }

    double operator()(double x, double y) const
    {
        if (m_dx == 0)
            return m_dy > 0 ? x - m_x : m_x - x;
        if (m_dy == 0)
            return m_dx < 0 ? y - m_y : m_y - y;
        return ((x - m_x) * m_dy - (y - m_y) * m_dx) / m_length;
    }
    double operator()(const vxPoint &p) const { return (*this)(p.x, p.y); }

private:
    double m_x, m_y, m_dx, m_dy, m_length;
};

} // namespace vx
