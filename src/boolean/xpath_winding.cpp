#include "xpath.h"

#include "vxcubic_p.h"
#include "vxmonoindex_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cstring>

using namespace vxTolerance;

namespace {

vx::Cubic cubicOf(const vxMono &piece)
{
    vx::Cubic c;
    std::memcpy(c.v, piece.values, sizeof c.v);
    return c;
}

/** x where a piece meets the level py, which lies between its ends; NaN when that is not one point. */
double crossingX(const vxMono &piece, double py)
{
    const double *v = piece.values;
    if (py == v[1])
        return v[0];
    if (py == v[7])
        return v[6];
    const vx::Cubic c = cubicOf(piece);
    double roots[3];
    return vx::timesAtCoordinate(c, 1, py, roots, 0, 1) == 1 ? vx::pointAt(c, roots[0]).x : qQNaN();
}

bool reachesLevel(const vxMono &piece, double y)
{
    const double start = piece.values[1];
    const double end = piece.values[7];
    return (y >= start && y <= end) || (y >= end && y <= start);
}

/**
 * Counts crossings of the level through a point, left and right of it, over the outlines of several paths:
 * outline by outline, of each the pieces that reach the level, in their order.
 */
class LevelCount
{
public:
    explicit LevelCount(const vxPoint &point) : m_x(point.x), m_y(point.y) {}

    /** last: the outline's last piece that winds, which comes before its first one. */
    void enterOutline(const vxMono &last)
    {
        leaveOutline();
        m_previousWinding = last.winding;
        m_previousXEnd = last.values[6];
    }

    void visit(const vxMono &piece)
    {
        if (piece.winding != 0)
            visitCrossing(piece);
        else if ((m_x - piece.values[0]) * (m_x - piece.values[6]) <= 0)
            m_onCurve = true;
    }

    /**
     * A piece that crosses the level once, somewhere between left and right: solved for only when it matters.
     */
    void visitPassage(const vxMono &piece, double left, double right)
    {
        if (m_x >= left && m_x <= right) {
            visit(piece);
            return;
        }
        (right < m_x ? m_left : m_right) += piece.winding;
        m_previousWinding = piece.winding;
        m_previousXEnd = piece.values[6];
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
        return { qMax(qAbs(left), qAbs(right)), (left == 0) != (right == 0) };
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

    void visitCrossing(const vxMono &piece)
    {
        const double x = crossingX(piece, m_y);
        if (x >= m_x - closeDistance && x <= m_x + closeDistance) {
            m_onCurve = true;
        } else if (!qIsNaN(x) && !isCountedAlready(piece, x)) {
            if (x < m_x - closeDistance)
                m_left += piece.winding;
            else if (x > m_x + closeDistance)
                m_right += piece.winding;
        }
        m_previousWinding = piece.winding;
        m_previousXEnd = piece.values[6];
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

    double m_x;
    double m_y;
    int m_left = 0;
    int m_right = 0;
    int m_onLeft = 0;
    int m_onRight = 0;
    bool m_onCurve = false;
    int m_previousWinding = 0;
    double m_previousXEnd = qQNaN();
};

/** The pieces as they are listed: every one is looked at. */
struct ListedPieces {
    const QList<vxMono *> &monos;

    void visitLevel(const vxPoint &point, LevelCount &count) const
    {
        for (const vxMono *piece : monos) {
            if (piece->last)
                count.enterOutline(*piece->last);
            if (reachesLevel(*piece, point.y))
                count.visit(*piece);
        }
    }
    template <typename Visit>
    void visitVertical(double, const double &, const double &, Visit &&visit) const
    {
        for (const vxMono *piece : monos)
            visit(*piece);
    }
};

/** The pieces of a compound path's children, each by its own index. */
struct IndexedChildren {
    const QVector<vxPath *> &children;

    void visitLevel(const vxPoint &point, LevelCount &count) const
    {
        for (const vxPath *child : children) {
            // An outline of level pieces alone has no last one; it goes on counting for the one before it.
            const vxMono *first = child->getMonoCurves().value(0, nullptr);
            if (first && first->last)
                count.enterOutline(*first->last);
            child->_monoIndex().visitLevel(point, count);
        }
    }
    template <typename Visit>
    void visitVertical(double x, const double &yTop, const double &yBottom, Visit &&visit) const
    {
        for (const vxPath *child : children)
            child->_monoIndex().visitVertical(x, yTop, yBottom, visit);
    }
};

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
    pieces.visitVertical(point.x, yTop, yBottom, [&](const vxMono &piece) {
        const vx::Cubic c = cubicOf(piece);
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

namespace {

/** Whether coordinates are so moderate that rounding moves curve points by far less than closeDistance. */
bool roundsFinely(const vxMono &piece)
{
    constexpr double largest = 1e6;
    return std::all_of(piece.values, piece.values + 8, [](double v) { return std::fabs(v) <= largest; });
}

} // namespace

vx::MonoIndex::MonoIndex(const QList<vxMono *> &monos)
{
    constexpr size_t fewOutlines = 16;
    m_pieces.reserve(size_t(monos.size()));
    m_widths.reserve(size_t(monos.size()));
    for (const vxMono *piece : monos) {
        if (piece->last || m_pieces.empty())
            m_outlines.push_back({ piece->last, int(m_pieces.size()), {} });
        m_pieces.push_back(pieceOf(*piece));
        const double *v = piece->values;
        const auto height = std::minmax(v[1], v[7]);
        m_outlines.back().heights.append(height.first, height.second);
        const auto width = std::minmax({ v[0], v[2], v[4], v[6] });
        m_widths.append(width.first, width.second);
    }
    if (m_outlines.size() <= fewOutlines)
        return;
    std::vector<Box> boxes;
    for (size_t i = 0; i < m_outlines.size(); ++i) {
        boxes.push_back(boxOf(i));
        addUnsure(i);
    }
    m_boxes = std::make_unique<OrderedBoxes>(std::move(boxes));
}

int vx::MonoIndex::endOf(size_t outline) const
{
    return outline + 1 < m_outlines.size() ? m_outlines[outline + 1].first : int(m_pieces.size());
}

/** Whether every piece begins at the very height where the one before it ends: no level slips through. */
bool vx::MonoIndex::isClosed(size_t outline) const
{
    const int first = m_outlines[outline].first;
    const int end = endOf(outline);
    const vxMono *before = m_pieces[size_t(end - 1)].mono;
    for (int i = first; i < end; ++i) {
        const vxMono *piece = m_pieces[size_t(i)].mono;
        if (!(piece->values[1] == before->values[7]))
            return false;
        before = piece;
    }
    return true;
}

/** A box around all pieces, beyond which a probe has each of them clearly on one side. */
vx::Box vx::MonoIndex::boxOf(size_t outline) const
{
    Box box{ qInf(), qInf(), -qInf(), -qInf() };
    for (int i = m_outlines[outline].first; i < endOf(outline); ++i) {
        const double *v = m_pieces[size_t(i)].mono->values;
        for (int k = 0; k < 8; k += 2) {
            box.minX = qMin(box.minX, v[k]);
            box.maxX = qMax(box.maxX, v[k]);
            box.minY = qMin(box.minY, v[k + 1]);
            box.maxY = qMax(box.maxY, v[k + 1]);
        }
    }
    return { box.minX - 2 * closeDistance, box.minY, box.maxX + 2 * closeDistance, box.maxY };
}

void vx::MonoIndex::addUnsure(size_t outline)
{
    const auto add = [&](double low, double high) {
        m_unsure.append(low, high);
        m_unsureOutlines.push_back(int(outline));
    };
    if (!isClosed(outline)) {
        add(-qInf(), qInf());
        return;
    }
    for (int i = m_outlines[outline].first; i < endOf(outline); ++i) {
        const double *v = m_pieces[size_t(i)].mono->values;
        const Passage &passage = m_pieces[size_t(i)].passage;
        const auto height = std::minmax(v[1], v[7]);
        if (passage.low < passage.high) {
            add(height.first, passage.low);
            add(passage.high, height.second);
        } else {
            add(height.first, height.second);
        }
    }
}

/**
 * The outlines whose crossings with the level of a point have to be looked at. Any other lies to one side of
 * the point, and the level passes all its pieces that reach it: it comes back as often as it goes, so that
 * its windings sum up to 0.
 */
std::vector<int> vx::MonoIndex::outlinesThatCount(const vxPoint &point) const
{
    std::vector<int> found;
    const auto take = [&found](int outline) { found.push_back(outline); };
    m_boxes->query({ point.x, point.y, point.x, point.y }, 0, 0, take);
    m_unsure.query(point.y, [&](int i) { take(m_unsureOutlines[size_t(i)]); });
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

vx::MonoIndex::Piece vx::MonoIndex::pieceOf(const vxMono &piece)
{
    if (!roundsFinely(piece))
        return { &piece, { qInf(), -qInf(), 0, 0 }, -qInf(), qInf() };
    const double *v = piece.values;
    const auto height = std::minmax({ v[1], v[3], v[5], v[7] });
    return { &piece, passageOf(piece), height.first - 2 * closeDistance, height.second + 2 * closeDistance };
}

// With control points in order of height the slope is 3 ((1 - t)^2 d0 + 2 t (1 - t) d1 + t^2 d2) for
// differences d >= 0 that sum up to the height h. A level that keeps h / 100 from both ends is met at a t
// that keeps 1/300 from both ends, where the slope is above 3 h / 300^2, and no further root of the
// polynomial comes near [0, 1]. That is far more than rounding moves, so the solver finds exactly one time,
// and which one it is does not matter while all of the piece lies to one side of the probe.
vx::MonoIndex::Passage vx::MonoIndex::passageOf(const vxMono &piece)
{
    constexpr double smallestHeight = 1e-2;
    const double *v = piece.values;
    const double height = std::fabs(v[7] - v[1]);
    const double slack = 1e-9 * height; // a cut at an extremum leaves its handle level but for rounding
    const double up = v[7] > v[1] ? 1 : -1;
    bool sure = height >= smallestHeight && piece.winding != 0;
    for (int i = 1; i < 7; i += 2)
        sure = sure && (v[i + 2] - v[i]) * up >= -slack;
    if (!sure)
        return { qInf(), -qInf(), 0, 0 };
    const double margin = height / 100;
    const auto width = std::minmax({ v[0], v[2], v[4], v[6] });
    return { qMin(v[1], v[7]) + margin, qMax(v[1], v[7]) - margin, width.first - 2 * closeDistance,
             width.second + 2 * closeDistance };
}

vxWinding vx::MonoIndex::winding(const vxPoint &point, bool horizontal) const
{
    return countWinding(point, *this, horizontal);
}

vxWinding XPath::getWinding(const vxPoint &point, const QList<vxMono *> &monos, bool horizontal)
{
    return countWinding(point, ListedPieces{ monos }, horizontal);
}

vxWinding XPath::getWinding(const vxPoint &point, bool horizontal) const
{
    return countWinding(point, IndexedChildren{ children }, horizontal);
}
