#pragma once

#include "vxmono.h"
#include "vxmonopieces_p.h"
#include "vxpassage_p.h"
#include "vxpoint.h"
#include "vxtolerance.h"

#include <cmath>
#include <cstdlib>
#include <limits>

namespace vx {

/**
 * Counts crossings of the level through a point, left and right of it, over the outlines of several paths:
 * outline by outline, of each the pieces that reach the level, in their order.
 */
class LevelCount
{
public:
    explicit LevelCount(const vxPoint &point) : m_x(point.x), m_y(point.y) {}

    static bool reachesLevel(const vxMono &piece, double y)
    {
        const double start = piece.values[1];
        const double end = piece.values[7];
        return (y >= start && y <= end) || (y >= end && y <= start);
    }

    /**
     * Winding and end of the outline's last piece that winds, which comes before its first one. To be called
     * before an outline's first piece on the level; outlines without any may be left out.
     */
    void enterOutline(int lastWinding, double lastX)
    {
        leaveOutline();
        m_previousWinding = lastWinding;
        m_previousXEnd = lastX;
    }

    /** A piece that reaches the level. */
    void visit(const vxMono &piece)
    {
        if (piece.winding != 0)
            visitCrossing(piece);
        else if ((m_x - piece.values[0]) * (m_x - piece.values[6]) <= 0)
            m_onCurve = true;
    }

    /** The same with what is known of the piece: solves for the crossing only when it matters. */
    void visit(const vxMono &piece, const Passage &passage, const Box &reach)
    {
        switch (sideOfCrossing(piece, passage, reach, vxPoint(m_x, m_y))) {
        case Side::Unsure:
            visit(piece);
            return;
        case Side::Left:
            m_left += piece.winding;
            break;
        case Side::On:
            m_onCurve = true;
            break;
        case Side::Right:
            m_right += piece.winding;
            break;
        }
        goOnFrom(piece);
    }

    vxWinding result()
    {
        leaveOutline();
        int left = m_left;
        int right = m_right;
        if (left == 0 && right == 0) {
            left = m_onLeft;
            right = m_onRight;
        }
        return combine(left, right);
    }

    /** What the sums of windings on both sides of a point make of it. */
    static vxWinding combine(int left, int right)
    {
        return { std::max(std::abs(left), std::abs(right)), (left == 0) != (right == 0) };
    }

private:
    void leaveOutline()
    {
        if (m_onCurve) {
            ++m_onLeft;
            --m_onRight;
        }
        m_onCurve = false;
    }

    void goOnFrom(const vxMono &piece)
    {
        m_previousWinding = piece.winding;
        m_previousXEnd = piece.values[6];
    }

    void visitCrossing(const vxMono &piece)
    {
        using vxTolerance::closeDistance;
        const double x = crossingX(piece);
        if (x >= m_x - closeDistance && x <= m_x + closeDistance) {
            m_onCurve = true;
        } else if (!std::isnan(x) && !isCountedAlready(piece, x)) {
            if (x < m_x - closeDistance)
                m_left += piece.winding;
            else if (x > m_x + closeDistance)
                m_right += piece.winding;
        }
        goOnFrom(piece);
    }

    /** x where a piece meets the level, which lies between its ends; NaN when that is not one point. */
    double crossingX(const vxMono &piece) const
    {
        const double *v = piece.values;
        if (m_y == v[1])
            return v[0];
        if (m_y == v[7])
            return v[6];
        const Cubic c = cubicOf(piece);
        double roots[3];
        return timesAtCoordinate(c, 1, m_y, roots, 0, 1) == 1 ? pointAt(c, roots[0]).x : undefined;
    }

    /**
     * A vertex on the level belongs to the piece before it, unless the outline turns back there beside the
     * point.
     */
    bool isCountedAlready(const vxMono &piece, double x) const
    {
        if (m_y != piece.values[1])
            return false;
        return piece.winding == m_previousWinding || (m_x - x) * (m_x - m_previousXEnd) < 0;
    }

    static constexpr double undefined = std::numeric_limits<double>::quiet_NaN();

    double m_x;
    double m_y;
    int m_left = 0;
    int m_right = 0;
    int m_onLeft = 0;
    int m_onRight = 0;
    bool m_onCurve = false;
    int m_previousWinding = 0;
    double m_previousXEnd = undefined;
};

} // namespace vx
