#pragma once

#include "vxpoint.h"

/**
 * A line as a point and a vector; y points down.
 *
 * With isInfinite false a line means the segment from its point to point + vector, otherwise all of the
 * carrier line. In the static forms the second pair of numbers of a line is its vector when asVector is true,
 * else its second point. NaN and infinity lead to NaN distances and points, and to side 0.
 */
class PZGRAPHICS_EXPORT vxLine
{
public:
    constexpr vxLine() = default;
    constexpr vxLine(double x1, double y1, double x2, double y2, bool asVector = false)
        : m_px(x1), m_py(y1), m_vx(asVector ? x2 : x2 - x1), m_vy(asVector ? y2 : y2 - y1)
    {
    }
    constexpr vxLine(const vxPoint &p1, const vxPoint &p2, bool asVector = false)
        : vxLine(p1.x, p1.y, p2.x, p2.y, asVector)
    {
    }

    vxPoint getPoint() const { return vxPoint(m_px, m_py); }
    vxPoint getVector() const { return vxPoint(m_vx, m_vy); }
    /** Length of the vector. */
    double getLength() const { return getVector().getLength(); }

    /** Distance of p from the carrier line, never negative. */
    double getDistance(const vxPoint &p) const
    {
        return std::fabs(getSignedDistance(m_px, m_py, m_vx, m_vy, p.x, p.y, true));
    }
    /** As the static form. */
    int getSide(const vxPoint &p, bool isInfinite = false) const
    {
        return getSide(m_px, m_py, m_vx, m_vy, p.x, p.y, true, isInfinite);
    }
    /** Angle between the vectors within angleMargin of 0 or 180 degrees. */
    bool isCollinear(const vxLine &line) const { return getVector().isCollinear(line.getVector()); }
    /** Angle between the vectors within angleMargin of 90 degrees. */
    bool isOrthogonal(const vxLine &line) const { return getVector().isOrthogonal(line.getVector()); }
    /** As the static form. */
    vxPoint intersect(const vxLine &line, bool isInfinite = false) const
    {
        return intersect(m_px, m_py, m_vx, m_vy, line.m_px, line.m_py, line.m_vx, line.m_vy, true,
                         isInfinite);
    }

    /**
     * Distance of (x, y) from the carrier line, positive on the left of the vector as seen on screen (y
     * down). A vector of length 0 gives px - x.
     */
    static double getSignedDistance(double px, double py, double vx, double vy, double x, double y,
                                    bool asVector = false);
    /**
     * Sign of that distance: -1, 0 or 1. For a finite line, a point exactly on the carrier line counts as 0
     * only between the ends, as -1 before the start and 1 beyond the end.
     */
    static int getSide(double px, double py, double vx, double vy, double x, double y, bool asVector = false,
                       bool isInfinite = false);
    /**
     * Where two lines cross; (NaN, NaN) when they are parallel (cross product of the vectors within
     * machineZero) or, for finite lines, cross outside of them. A finite line reaches machineZero (line
     * parameter) past its ends; the answer is then the end.
     */
    static vxPoint intersect(double p1x, double p1y, double v1x, double v1y, double p2x, double p2y,
                             double v2x, double v2y, bool asVector = false, bool isInfinite = false);

private:
    double m_px = 0;
    double m_py = 0;
    double m_vx = 0;
    double m_vy = 0;
};

inline double vxLine::getSignedDistance(double px, double py, double vx, double vy, double x, double y,
                                        bool asVector)
{
    if (!asVector) {
        vx -= px;
        vy -= py;
    }
    // Axis-parallel lines need no square root and stay exact.
    if (vx == 0)
        return vy > 0 ? x - px : px - x;
    if (vy == 0)
        return vx < 0 ? y - py : py - y;
    return ((x - px) * vy - (y - py) * vx) / std::sqrt(vx * vx + vy * vy);
}
