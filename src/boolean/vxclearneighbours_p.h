#pragma once

#include "vxpassage_p.h"

#include <algorithm>
#include <limits>

namespace vx {

/**
 * How far off the nearest outlines above and below a place on a level line are, within bounds: the count of
 * such a place is taken halfway to them. This requires that every piece that reaches the verticals of a box
 * around the place, but for the line itself, lies clearly above or below.
 */
class ClearNeighbours
{
public:
    explicit ClearNeighbours(const Box &box) : m_box(box), m_level((box.minY + box.maxY) / 2) {}

    /** Pieces that reach none of its verticals need no visit. */
    const Box &box() const { return m_box; }

    /** Takes in a piece that reaches the box's verticals; isOwn: of the line that holds the place. */
    void visit(const vxMono &piece, bool isOwn, bool isSecond)
    {
        if (isOwn || !m_isClear)
            return;
        const double *v = piece.values;
        double top = std::min(std::min(v[1], v[3]), std::min(v[5], v[7]));
        double bottom = std::max(std::max(v[1], v[3]), std::max(v[5], v[7]));
        Distance &above = m_above[isSecond];
        Distance &below = m_below[isSecond];
        if (m_level - bottom > above.most || top - m_level > below.most)
            return; // behind another
        const bool isSure = meetsVerticals(piece, m_box, top, bottom);
        if (bottom < m_box.minY - beside)
            above.add(m_level - bottom, m_level - top, isSure);
        else if (top > m_box.maxY + beside)
            below.add(top - m_level, bottom - m_level, isSure);
        else
            m_isClear = false;
    }

    /** Whether no other curve comes near the place. */
    bool isClear() const { return m_isClear; }

    /** Which operands' outlines are meant. */
    enum class Of { First, Second, Both };
    /** Distance of the nearest outline, if there is one, from least to most; most is infinite if unsure. */
    struct Distance {
        double least = infinite;
        double most = infinite;

        bool isNone() const { return least == infinite; }
        bool isSure() const { return most < infinite; }
        void add(double from, double to, bool isSure)
        {
            least = std::min(least, from);
            if (isSure)
                most = std::min(most, to);
        }
    };
    Distance above(Of operands) const { return nearest(m_above, operands); }
    Distance below(Of operands) const { return nearest(m_below, operands); }
    /** Verticals of the box, and the levels halfway to what is above or below it. */
    Box halfwayAbove(const Distance &distance) const
    {
        return { m_box.minX, m_level - distance.most / 2 - slack, m_box.maxX,
                 m_level - distance.least / 2 + slack };
    }
    Box halfwayBelow(const Distance &distance) const
    {
        return { m_box.minX, m_level + distance.least / 2 - slack, m_box.maxX,
                 m_level + distance.most / 2 + slack };
    }

private:
    static constexpr double infinite = std::numeric_limits<double>::infinity();
    /** Path units; far more than the distance within which places are the same. */
    static constexpr double beside = 1e-3;
    /** Path units; far more than rounding. */
    static constexpr double slack = 1e-7;

    static Distance nearest(const Distance (&distances)[2], Of operands)
    {
        if (operands != Of::Both)
            return distances[operands == Of::Second];
        return { std::min(distances[0].least, distances[1].least),
                 std::min(distances[0].most, distances[1].most) };
    }

    Box m_box;
    double m_level;
    /** Of the first operand and of the second. */
    Distance m_above[2];
    Distance m_below[2];
    bool m_isClear = true;
};

} // namespace vx
