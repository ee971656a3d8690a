#pragma once

#include "vxboxruns_p.h"
#include "vxclearcount_p.h"
#include "vxclearneighbours_p.h"
#include "vxintervalindex_p.h"
#include "vxintervalstrips_p.h"
#include "vxlevelcount_p.h"
#include "vxmono.h"
#include "vxorderedboxes_p.h"
#include "vxpoint.h"

#include <QList>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

class vxCurve;
class vxPath;

namespace vx {

struct StandingCurve;
class StandingCurves;

/**
 * The monotone pieces of one or several paths with an index over where they lie: gives XPath::getWinding's
 * counts, to the bit, by looking only at the pieces that a probe meets. It keeps pieces of its own; edits of
 * the paths do not reach it. The counts are implemented beside the plain form in xpath_winding.cpp.
 */
class MonoIndex
{
public:
    MonoIndex();
    explicit MonoIndex(const vxPath &path);
    /** Pieces as getMonoCurves() lists them, path by path. */
    explicit MonoIndex(const QList<vxMono *> &monos);
    ~MonoIndex();

    /** Makes room for the pieces of so many curves. */
    void reserve(int curves);
    /**
     * Adds the pieces of a path, which tell which of its curves they belong to; those that standing keeps
     * (null: none) are taken from there.
     */
    void append(const vxPath &path, StandingCurves *standing = nullptr);
    /** Adds the pieces of a path, which do not tell their curves: they are null. */
    void appendUnnamed(const vxPath &path) { appendOutline(path, nullptr, nullptr); }
    /** Number of pieces. */
    int size() const { return m_reaches.size(); }

    vxWinding winding(const vxPoint &point, bool horizontal) const
    {
        return winding(point, horizontal, 0, size());
    }
    /** Counts the pieces in [first, last), which are those of whole paths. */
    vxWinding winding(const vxPoint &point, bool horizontal, int first, int last) const;

    /** Finds the pieces whose reach comes within slack of a point, in order. */
    void findNear(const vxPoint &point, double slack, std::vector<int> &found) const;
    /**
     * Counts for a place on one of the appended curves; pieces from second on are the second operand's. The
     * count's box reaches slack around the place. Outlines aside of it that the level of the place meets as
     * often upwards as downwards are left out.
     */
    void countClearly(const vxPoint &place, double slack, const vxCurve *own, int second,
                      ClearCount &count) const;
    /** Finds the neighbours of a place on one of the appended curves, as countClearly() does. */
    void findNeighbours(const vxCurve *own, int second, ClearNeighbours &neighbours) const;
    /** Counts the pieces in [first, last) for a box that lies on no curve. False where it is not clear. */
    bool countAside(const Box &box, int first, int last, vxWinding &winding) const;
    /** Counts all pieces for a place on no curve. False where that is not clear. */
    bool countAside(const vxPoint &place, vxWinding &winding) const;
    /** Whether outlines that cancel are left out, so that a count is for one level only. */
    bool hasManyOutlines() const
    {
        constexpr size_t few = 64;
        return m_outlines.size() > few;
    }
    /** Reach of a piece: its levels from end to end, and the width of its control points. */
    const Box &reach(int piece) const { return m_reaches[piece]; }
    /** The appended curve that a piece belongs to; null for a line that closes an open path. */
    const vxCurve *curveOf(int piece) const { return m_pieces[size_t(piece)].curve; }
    /** The curves whose place no piece tells: they have no length, or NaN among their heights. */
    const std::vector<const vxCurve *> &curvesWithoutReach() const { return m_curvesWithoutReach; }
    /** Bound of the coordinates of all pieces; infinite with NaN. */
    double largestCoordinate() const { return m_largestCoordinate; }
    /**
     * How far off the reach of its pieces a curve may still pass within closeDistance of a point: it leaves
     * that reach by closeDistance where it counts as straight, and by a millionth of a millionth of its size
     * where an extremum counts as its end.
     */
    double reachOfCurves() const { return 4 * vxTolerance::closeDistance + 1e-11 * m_largestCoordinate; }
    /** Whether some piece that counts as level is not. */
    bool hasTiltedLevel() const { return m_hasTiltedLevel; }

    /** Tells count that the pieces to come are this index's, even if none of them is on the level. */
    void enter(LevelCount &count) const
    {
        if (!m_outlines.empty())
            m_outlines.front().enter(count);
    }
    /**
     * Hands the pieces in [first, last) on the level of a point to count, in order. Outlines whose crossings
     * cancel on one side of the point may be left out.
     */
    void visitLevel(const vxPoint &point, int first, int last, LevelCount &count) const;
    /**
     * Calls visit for pieces in [first, last) that the vertical through a point may meet, those next to it
     * first; leaves out those that lie above yTop or below yBottom altogether, which visit moves to the
     * nearest crossings that it finds. Pieces may come more than once.
     */
    template <typename Visit>
    void visitVertical(const vxPoint &point, int first, int last, const double &yTop, const double &yBottom,
                       Visit &&visit) const
    {
        for (double reach = usualReach();; reach *= 4) {
            const double top = std::max(point.y - reach, yTop);
            const double bottom = std::min(point.y + reach, yBottom);
            for (const Height &height : heightsOnVertical(point, top, bottom, first, last)) {
                if (!(height.bottom < yTop || height.top > yBottom))
                    visit(m_pieces[size_t(height.piece)].mono);
            }
            // What was left out lies beyond; so it does when all of the outlines are within reach.
            const bool isBeyondBoth = yTop >= point.y - reach && yBottom <= point.y + reach;
            if (isBeyondBoth || !(reach < m_largestCoordinate + std::fabs(point.y)))
                return;
        }
    }

private:
    struct Piece {
        vxMono mono;
        Passage passage;
        const vxCurve *curve;

        Piece(const vxMono &mono, const Passage &passage, const vxCurve *curve)
            : mono(mono), passage(passage), curve(curve)
        {
        }
    };
    /**
     * What the counting closes for itself: the pieces from first to the next outline's. A path of level
     * pieces alone goes on with the outline before it.
     */
    struct Outline {
        int first;
        /** Of its last piece that winds; 0 and NaN where the list begins with level pieces alone. */
        int lastWinding;
        double lastX;

        void enter(LevelCount &count) const
        {
            if (lastWinding != 0)
                count.enterOutline(lastWinding, lastX);
        }
    };
    /** Bounds of y beyond rounding; infinite where coordinates are too large to say. */
    struct Height {
        int piece;
        double top, bottom;
        double distance; ///< from the probe
    };
    class Spread;
    class OutlineVisit;

    /** Curves are null where nobody asks for them. */
    void appendOutline(const vxPath &path, const QList<vxCurve *> *curves, StandingCurves *standing);
    void appendCurve(const Cubic &c, const vxCurve *curve);
    void appendPiece(const vxMono &piece, const vxCurve *curve);
    void appendPiece(const vxMono &piece, const Passage &passage, const Box &reach, const vxCurve *curve);
    /** Appends the pieces that are kept of a curve; false where none are. */
    bool appendKept(const StandingCurves &standing, const StandingCurve &known, const vxCurve *curve);
    /** Keeps the pieces from first on. */
    void keepPieces(int first, StandingCurves &standing, StandingCurve &known) const;
    void beginOutline(int first, const vxMono *last);
    int endOf(size_t outline) const;
    /** Null where there are few outlines. */
    Spread *spread() const;
    /** Null for the first few questions. */
    const IntervalStrips *strips() const { return m_strips ? m_strips.get() : makeStrips(); }
    const IntervalStrips *makeStrips() const;
    /** Calls visit(piece), ascending, for those that reach levels from lo to hi. */
    template <typename Visit>
    void visitLevels(double lo, double hi, Visit &&visit) const;
    /** Calls visit(piece) for those in [first, last) of some outlines whose reach meets something. */
    template <typename Meets, typename Visit>
    void visitOutlines(const std::vector<int> &outlines, int first, int last, const Meets &meets,
                       Visit &&visit) const;
    /**
     * Calls visit(piece) for the pieces whose levels come within slack of the point's, ascending; leaves out
     * outlines that cancel and are farther off than slack.
     */
    template <typename Visit>
    void visitNearLevel(const vxPoint &point, double slack, Visit &&visit) const;
    /** How far to look for neighbours on a vertical at first, in path units; infinite: all the way. */
    double usualReach() const;
    /** Of the pieces that the vertical through a point may meet from top to bottom, and others; nearest
     * first. */
    std::vector<Height> heightsOnVertical(const vxPoint &point, double top, double bottom, int first,
                                          int last) const;
    Height heightOf(int piece, double y) const;

    std::vector<Piece> m_pieces;
    BoxRuns m_reaches;
    std::vector<Outline> m_outlines;
    std::vector<const vxCurve *> m_curvesWithoutReach;
    double m_largestCoordinate = 0;
    bool m_hasTiltedLevel = false;
    /** Made at the first question where there are many outlines. */
    mutable std::unique_ptr<Spread> m_spread;
    /** Over the levels of pieces; made when they are asked for again and again. */
    mutable std::unique_ptr<IntervalStrips> m_strips;
    mutable int m_questions = 0;
};

} // namespace vx
