#pragma once

#include "vxlevelcount_p.h"

namespace vx {

/**
 * The count of a place on a curve, and the certainty that no other curve comes near: both by one look at the
 * pieces that reach the levels of a box around the place. This requires that each of them passes all these
 * levels and has the box on one side; all but one, of the place's own curve.
 *
 * LevelCount finds the same. Its solver finds a crossing on a level that is off by a few 1e-15 of the largest
 * coordinate, still one of the box's, so that each piece crosses on that side of the box. The own piece
 * crosses off the place by that error divided by the slope, less than closeDistance, and is found to hold it.
 */
class ClearCount
{
public:
    explicit ClearCount(const Box &box) : m_box(box) {}

    /**
     * Takes in a piece that reaches the box's levels; others need no visit. isOwn: of the curve that holds
     * the place.
     */
    void visit(const vxMono &piece, const Passage &passage, const Box &reach, bool isOwn, bool isSecond)
    {
        if (!m_isClear)
            return;
        if (!(passage.low < m_box.minY && m_box.maxY < passage.high))
            m_isClear = false;
        else if (reach.maxX < m_box.minX)
            m_left[isSecond] += piece.winding;
        else if (reach.minX > m_box.maxX)
            m_right[isSecond] += piece.winding;
        else
            visitNear(piece, isOwn, isSecond);
    }

    bool isClear() const { return m_isClear && m_metOwn; }
    /** The same of a place on no curve: all pieces were clear. */
    bool isClearOfAll() const { return m_isClear && !m_metOwn; }
    /** Counts of all pieces, for a place on no curve. */
    vxWinding resultAside() const
    {
        return LevelCount::combine(m_left[0] + m_left[1], m_right[0] + m_right[1]);
    }
    /** Counts of all pieces. */
    vxWinding result() const
    {
        const int left = m_left[0] + m_left[1];
        const int right = m_right[0] + m_right[1];
        return left == 0 && right == 0 ? LevelCount::combine(1, -1) : LevelCount::combine(left, right);
    }
    /** Of those of one operand, to which the place's own curve does not belong. */
    int windingIn(bool second) const { return LevelCount::combine(m_left[second], m_right[second]).winding; }

private:
    void visitNear(const vxMono &piece, bool isOwn, bool isSecond)
    {
        // If another piece of that curve comes first, the one that holds the place will be the unclear one.
        if (isOwn && !m_metOwn) {
            m_metOwn = true;
            return;
        }
        const Side side = sideAcrossChord(cubicOf(piece), m_box);
        if (side == Side::Left)
            m_left[isSecond] += piece.winding;
        else if (side == Side::Right)
            m_right[isSecond] += piece.winding;
        else
            m_isClear = false;
    }

    Box m_box;
    /** Of the first operand and of the second. */
    int m_left[2] = {};
    int m_right[2] = {};
    bool m_metOwn = false;
    bool m_isClear = true;
};

} // namespace vx
