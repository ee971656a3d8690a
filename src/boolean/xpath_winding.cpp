#include "xpath.h"

#include "vxlevelcount_p.h"
#include "vxmonoindex_p.h"
#include "vxmonopieces_p.h"
#include "vxoutline_p.h"
#include "vxtolerance.h"

#include <algorithm>

using namespace vxTolerance;
using vx::LevelCount;

namespace {

// --- where pieces come from; each gives the counting below the same answers ---

/** The pieces as they are listed: every one is looked at, and solved for. */
struct ListedPieces {
    const QList<vxMono *> &monos;

    void visitLevel(const vxPoint &point, LevelCount &count) const
    {
        for (const vxMono *piece : monos) {
            if (piece->last)
                count.enterOutline(piece->last->winding, piece->last->values[6]);
            if (LevelCount::reachesLevel(*piece, point.y))
                count.visit(*piece);
        }
    }
    template <typename Visit>
    void visitVertical(const vxPoint &, const double &, const double &, Visit &&visit) const
    {
        for (const vxMono *piece : monos)
            visit(*piece);
    }
};

/** Some of the pieces of an index. */
struct IndexedPieces {
    const vx::MonoIndex &index;
    int first;
    int last;

    void visitLevel(const vxPoint &point, LevelCount &count) const
    {
        index.visitLevel(point, first, last, count);
    }
    template <typename Visit>
    void visitVertical(const vxPoint &point, const double &yTop, const double &yBottom, Visit &&visit) const
    {
        index.visitVertical(point, first, last, yTop, yBottom, visit);
    }
};

/** Whether all of the curve between two segments keeps off a level, by more than dividing it moves it. */
bool keepsOff(const vxSegment &from, const vxSegment &to, double y)
{
    const double y0 = from.point.y, y1 = y0 + from.handleOut.y;
    const double y3 = to.point.y, y2 = y3 + to.handleIn.y;
    const double lo = std::min(std::min(y0, y1), std::min(y2, y3));
    const double hi = std::max(std::max(y0, y1), std::max(y2, y3));
    const double slack = 1e-12 * (std::fabs(lo) + std::fabs(hi));
    return y < lo - slack || y > hi + slack;
}

/** The curves of one path, divided into pieces on the way: cheapest for a single question. */
struct UndividedPath {
    const vxPath &path;

    void visitLevel(const vxPoint &point, LevelCount &count) const
    {
        enter(count);
        const QList<vxSegment *> &segments = path._segments();
        const int curves = path._countCurves();
        for (int i = 0; i < curves; ++i) {
            const vxSegment &from = *segments.at(i);
            const vxSegment &to = *segments.at(i + 1 < segments.size() ? i + 1 : 0);
            if (!keepsOff(from, to, point.y))
                visit(vx::cubicBetween(from, to), point.y, count);
        }
        if (curves < vx::outlineSize(path))
            visit(vx::outlineCurve(path, curves), point.y, count);
    }

private:
    static void visit(const vx::Cubic &c, double y, LevelCount &count)
    {
        if (!vx::isCounted(c))
            return;
        vxMono pieces[3];
        const int found = vx::monotonePieces(c, pieces);
        for (int k = 0; k < found; ++k) {
            if (LevelCount::reachesLevel(pieces[k], y))
                visit(pieces[k], count);
        }
    }

    static void visit(const vxMono &piece, LevelCount &count)
    {
        const vx::Box reach = vx::reachOf(piece);
        count.visit(piece, vx::passageOf(piece, reach), reach);
    }

    /** A path of level pieces alone goes on counting for the one before it. */
    void enter(LevelCount &count) const
    {
        for (int i = vx::outlineSize(path) - 1; i >= 0; --i) {
            const vx::Cubic c = vx::outlineCurve(path, i);
            if (!vx::isCounted(c))
                continue;
            vxMono pieces[3];
            for (int k = vx::monotonePieces(c, pieces) - 1; k >= 0; --k) {
                if (pieces[k].winding != 0)
                    return count.enterOutline(pieces[k].winding, pieces[k].values[6]);
            }
        }
    }
};

/** The pieces of a compound path's children, each by its own index where it has one. */
struct IndexedChildren {
    const QVector<vxPath *> &children;

    void visitLevel(const vxPoint &point, LevelCount &count) const
    {
        for (const vxPath *child : children) {
            const vx::MonoIndex *index = child->_monoIndexIfAskedOften();
            if (index) {
                index->enter(count);
                index->visitLevel(point, 0, index->size(), count);
            } else {
                UndividedPath{ *child }.visitLevel(point, count);
            }
        }
    }
    template <typename Visit>
    void visitVertical(const vxPoint &point, const double &yTop, const double &yBottom, Visit &&visit) const
    {
        for (const vxPath *child : children) {
            const vx::MonoIndex &index = child->_monoIndex();
            index.visitVertical(point, 0, index.size(), yTop, yBottom, visit);
        }
    }
};

// --- counting ---

template <typename Pieces>
vxWinding countOnLevel(const vxPoint &point, const Pieces &pieces)
{
    LevelCount count(point);
    pieces.visitLevel(point, count);
    return count.result();
}

/**
 * The nearest outline above (smaller y) and below a point on the vertical through it; infinite where none.
 */
template <typename Pieces>
void neighboursOnVertical(const vxPoint &point, const Pieces &pieces, double &yTop, double &yBottom)
{
    yTop = -qInf();
    yBottom = qInf();
    pieces.visitVertical(point, yTop, yBottom, [&](const vxMono &piece) {
        const vx::Cubic c = vx::cubicOf(piece);
        double roots[3];
        for (int i = vx::timesAtCoordinate(c, 0, point.x, roots, 0, 1) - 1; i >= 0; --i) {
            const double y = vx::pointAt(c, roots[i]).y;
            if (y < point.y - closeDistance && y > yTop)
                yTop = y;
            else if (y > point.y + closeDistance)
                yBottom = qMin(yBottom, y);
        }
    });
}

/** For a point on a level stretch: the counts halfway to the next outline above and below. */
template <typename Pieces>
vxWinding countAboveAndBelow(const vxPoint &point, const Pieces &pieces)
{
    double yTop;
    double yBottom;
    neighboursOnVertical(point, pieces, yTop, yBottom);
    yTop = (yTop + point.y) / 2;
    yBottom = (yBottom + point.y) / 2;
    int above = 0;
    if (qIsFinite(yTop)) {
        above = countOnLevel(vxPoint(point.x, yTop), pieces).winding;
        if (!qIsFinite(yBottom))
            return { above, above != 0 };
    } else if (!qIsFinite(yBottom)) {
        return {};
    }
    const int below = countOnLevel(vxPoint(point.x, yBottom), pieces).winding;
    return { qMax(above, below), (above == 0) != (below == 0) };
}

template <typename Pieces>
vxWinding countWinding(const vxPoint &point, const Pieces &pieces, bool horizontal)
{
    return horizontal ? countAboveAndBelow(point, pieces) : countOnLevel(point, pieces);
}

} // namespace

vxWinding vx::MonoIndex::winding(const vxPoint &point, bool horizontal, int first, int last) const
{
    return countWinding(point, IndexedPieces{ *this, first, last }, horizontal);
}

vxWinding vxPath::_winding(const vxPoint &point) const
{
    const vx::MonoIndex *index = _monoIndexIfAskedOften();
    return index ? index->winding(point, false) : countOnLevel(point, UndividedPath{ *this });
}

vxWinding XPath::getWinding(const vxPoint &point, const QList<vxMono *> &monos, bool horizontal)
{
    return countWinding(point, ListedPieces{ monos }, horizontal);
}

vxWinding XPath::getWinding(const vxPoint &point, bool horizontal) const
{
    return countWinding(point, IndexedChildren{ children }, horizontal);
}
