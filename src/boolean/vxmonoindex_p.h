#pragma once

#include "vxmono.h"
#include "vxorderedboxes_p.h"
#include "vxorderedintervals_p.h"
#include "vxpoint.h"

#include <QList>

#include <memory>
#include <vector>

namespace vx {

/**
 * Monotone pieces, listed path by path, with an index over where they lie: gives XPath::getWinding's counts,
 * to the bit, by looking only at the pieces that a probe meets. The pieces must stay alive. Implemented
 * beside the plain form in xpath_winding.cpp.
 */
class MonoIndex
{
public:
    explicit MonoIndex(const QList<vxMono *> &monos);

    vxWinding winding(const vxPoint &point, bool horizontal) const;

    /**
     * Hands the pieces on the level of a point to count, in list order, and tells it where an outline begins.
     * Outlines whose crossings cancel on one side of the point may be left out.
     */
    template <typename Count>
    void visitLevel(const vxPoint &point, Count &count) const
    {
        const auto visit = [&](const Outline &outline) {
            if (outline.last)
                count.enterOutline(*outline.last);
            outline.heights.query(point.y, [&](int i) {
                const Piece &piece = m_pieces[size_t(outline.first + i)];
                if (point.y > piece.passage.low && point.y < piece.passage.high)
                    count.visitPassage(*piece.mono, piece.passage.left, piece.passage.right);
                else
                    count.visit(*piece.mono);
            });
        };
        if (m_boxes) {
            for (int i : outlinesThatCount(point))
                visit(m_outlines[size_t(i)]);
        } else {
            for (const Outline &outline : m_outlines)
                visit(outline);
        }
    }
    /**
     * Calls visit for pieces that the vertical at x may meet, in list order; leaves out those that lie above
     * yTop or below yBottom altogether, which visit may move towards each other.
     */
    template <typename Visit>
    void visitVertical(double x, const double &yTop, const double &yBottom, Visit &&visit) const
    {
        m_widths.query(x, [&](int i) {
            const Piece &piece = m_pieces[size_t(i)];
            if (!(piece.bottom < yTop || piece.top > yBottom))
                visit(*piece.mono);
        });
    }

private:
    /**
     * Levels (low < y < high) that a piece surely crosses at one time, as solving for it would find, and
     * bounds of the x where it does. No level at all where that is not sure.
     */
    struct Passage {
        double low, high, left, right;
    };
    struct Piece {
        const vxMono *mono;
        Passage passage;
        /** Bounds of y beyond rounding; infinite where coordinates are too large to say. */
        double top, bottom;
    };
    /** What the counting closes for itself: the pieces from one with a last link to the next such. */
    struct Outline {
        const vxMono *last; ///< that link; null where the list begins with level pieces
        int first;          ///< of its pieces
        OrderedIntervals heights;
    };

    /** Of a piece whose coordinates are moderate. */
    static Passage passageOf(const vxMono &piece);
    static Piece pieceOf(const vxMono &piece);
    int endOf(size_t outline) const;
    bool isClosed(size_t outline) const;
    Box boxOf(size_t outline) const;
    void addUnsure(size_t outline);
    std::vector<int> outlinesThatCount(const vxPoint &point) const;

    std::vector<Piece> m_pieces;
    std::vector<Outline> m_outlines;
    OrderedIntervals m_widths;
    /** Set where there are many outlines: the boxes around their pieces. */
    std::unique_ptr<OrderedBoxes> m_boxes;
    /** Then also the heights at which some piece has no passage, and the outlines which those belong to. */
    OrderedIntervals m_unsure;
    std::vector<int> m_unsureOutlines;
};

} // namespace vx
