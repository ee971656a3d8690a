#include "area.h"

#include "pathdata.h"

#include <pzgraphics/vxcurve.h>
#include <pzgraphics/vxpath.h>
#include <pzgraphics/xpath.h>

#include <QHash>
#include <QPair>

#include <algorithm>
#include <cmath>

// 1. Contours that touch themselves at a vertex are taken apart there: their loops may turn either way, so
//    that their signed areas need not add up.
// 2. The loops are sorted by size; one counts as many levels deep as there are larger ones around it.
// 3. Areas at even depth are added, those at odd depth taken off.

namespace {

/** Path units; vertices this near, as the engine sees it, are one. */
constexpr double samePoint = vxTolerance::closeDistance;

using Cell = QPair<qint64, qint64>;

/**
 * Where on a contour a point was met before: points sorted into cells, of which neighbours are searched too.
 */
class VertexIndex
{
public:
    /** Position of the vertex at p, -1 when there is none. */
    int find(const QPointF &p) const
    {
        const Cell cell = cellOf(p);
        for (qint64 dx = -1; dx <= 1; ++dx) {
            for (qint64 dy = -1; dy <= 1; ++dy) {
                const int position = m_cells.value({ cell.first + dx, cell.second + dy }, -1);
                if (position >= 0)
                    return position;
            }
        }
        return -1;
    }
    void insert(const QPointF &p, int position) { m_cells.insert(cellOf(p), position); }
    void remove(const QPointF &p) { m_cells.remove(cellOf(p)); }

private:
    static Cell cellOf(const QPointF &p)
    {
        // Far from the origin all numbers are coarser than a cell; the cast must stay in range there.
        const auto index = [](double v) {
            return std::isnan(v) ? 0 : static_cast<qint64>(qBound(-9e18, v / samePoint, 9e18));
        };
        return { index(p.x()), index(p.y()) };
    }

    QHash<Cell, int> m_cells;
};

/** The loops of one closed contour, each a closed contour that passes every vertex once. */
PathCommands loopsOf(PathCommands contour)
{
    // The closing line counts like any other; a trailing vertex on the start then ends the last loop.
    contour.last() = PathCommand{ 'L', { contour.first().end() } };
    PathCommands loops;
    PathCommands open; // from the start to here, without the loops that are done
    VertexIndex index;
    for (const PathCommand &command : contour) {
        const int met = open.isEmpty() ? -1 : index.find(command.end());
        if (met < 0) {
            index.insert(command.end(), open.size());
            open << command;
            continue;
        }
        loops << PathCommand{ 'M', { open[met].end() } };
        for (int i = met + 1; i < open.size(); ++i) {
            loops << open[i];
            index.remove(open[i].end());
        }
        loops << command << PathCommand{ 'Z', {} };
        open.resize(met + 1);
    }
    return loops;
}

struct Loop {
    const vxPath *path;
    vxRect box;
    double area;
};

QVector<Loop> loopsBySize(const XPath &path)
{
    QVector<Loop> loops;
    for (const vxPath *child : path.children)
        loops.append({ child, child->getBounds(vxBoundOpt::geometric(), vxStyle()),
                       std::fabs(child->getArea(false, true)) });
    // What lies around a loop is larger than it. A point inside a ring may lie inside its hole, so the
    // smaller ones must not be asked.
    std::stable_sort(loops.begin(), loops.end(),
                     [](const Loop &a, const Loop &b) { return a.area > b.area; });
    return loops;
}

/**
 * A point beside the middle of the longest curve: inside the loop, and off every outline that shares an edge
 * or a vertex with it, as results of a boolean do.
 */
vxPoint pointInside(const vxPath &loop)
{
    const QList<vxCurve *> curves = loop.getCurves();
    const auto shorter = [](const vxCurve *a, const vxCurve *b) { return a->getLength() < b->getLength(); };
    const vxCurve *longest = *std::max_element(curves.begin(), curves.end(), shorter);
    const vxPoint middle = longest->getPointAtTime(0.5);
    const vxPoint across = longest->getNormalAtTime(0.5).multiply(longest->getLength());
    for (const double step : { 1e-3, -1e-3, 1e-5, -1e-5, 1e-7, -1e-7 }) {
        const vxPoint point = middle.add(across.multiply(step));
        if (loop.contains(point, vxStyle::filled(true)))
            return point;
    }
    // Too thin to matter.
    return loop.getInteriorPoint(true);
}

bool covers(const vxRect &outer, const vxPoint &p)
{
    return p.x >= outer.x && p.y >= outer.y && p.x <= outer.right() && p.y <= outer.bottom();
}

} // namespace

double filledArea(const XPath &path)
{
    PathCommands closed;
    for (const vxPath *child : path.children) {
        if (child->isClosed() && !child->isEmpty())
            closed += loopsOf(commandsOf(*child));
    }
    if (closed.isEmpty())
        return 0;
    // About a point of the path itself: far from the origin the areas would drown in their own rounding.
    const std::unique_ptr<XPath> parts = toXPathAsDrawn(mapped(closed, 1, -closed.first().end()));
    const QVector<Loop> loops = loopsBySize(*parts);
    double total = 0;
    for (int i = 0; i < loops.size() && loops[i].area > 0; ++i) {
        const vxPoint inside = pointInside(*loops[i].path);
        int depth = 0;
        // The box first: among thousands of loops few lie around any one of them.
        for (int k = 0; k < i; ++k)
            depth += covers(loops[k].box, inside) && loops[k].path->contains(inside, vxStyle::filled(true));
        total += depth % 2 ? -loops[i].area : loops[i].area;
    }
    return total;
}
