#include "xpath.h"

#include "vxcubic_p.h"
#include "vxtolerance.h"

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

/** Counts crossings of the level through a point, left and right of it, over the pieces of several paths. */
class LevelCount
{
public:
    explicit LevelCount(const vxPoint &point) : m_x(point.x), m_y(point.y) {}

    void visit(const vxMono &piece, bool endsPath)
    {
        if (piece.last) {
            m_previousWinding = piece.last->winding;
            m_previousXEnd = piece.last->values[6];
            m_onCurve = false;
        }
        const double yStart = piece.values[1];
        const double yEnd = piece.values[7];
        if ((m_y >= yStart && m_y <= yEnd) || (m_y >= yEnd && m_y <= yStart)) {
            if (piece.winding != 0)
                visitCrossing(piece);
            else if ((m_x - piece.values[0]) * (m_x - piece.values[6]) <= 0)
                m_onCurve = true;
        }
        if (endsPath && m_onCurve) {
            ++m_onLeft;
            --m_onRight;
        }
    }

    vxWinding result() const
    {
        int left = m_left;
        int right = m_right;
        if (left == 0 && right == 0) {
            left = m_onLeft;
            right = m_onRight;
        }
        return { qMax(qAbs(left), qAbs(right)), (left == 0) != (right == 0) };
    }

private:
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

    /** A vertex on the level belongs to the piece before it, unless the outline turns back there beside the
     * point. */
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

vxWinding countOnLevel(const vxPoint &point, const QList<vxMono *> &monos)
{
    LevelCount count(point);
    const int last = monos.size() - 1;
    for (int i = 0; i <= last; ++i)
        count.visit(*monos.at(i), i == last || monos.at(i + 1)->last);
    return count.result();
}

/** The nearest outline above (smaller y) and below a point on the vertical through it; infinite where none.
 */
void neighboursOnVertical(const vxPoint &point, const QList<vxMono *> &monos, double &yTop, double &yBottom)
{
    yTop = -qInf();
    yBottom = qInf();
    for (const vxMono *piece : monos) {
        const vx::Cubic c = cubicOf(*piece);
        double roots[3];
        for (int i = vx::timesAtCoordinate(c, 0, point.x, roots, 0, 1) - 1; i >= 0; --i) {
            const double y = vx::pointAt(c, roots[i]).y;
            if (y < point.y - closeDistance && y > yTop)
                yTop = y;
            else if (y > point.y + closeDistance)
                yBottom = qMin(yBottom, y);
        }
    }
}

/** For a point on a level stretch: the counts halfway to the next outline above and below. */
vxWinding countAboveAndBelow(const vxPoint &point, const QList<vxMono *> &monos)
{
    double yTop;
    double yBottom;
    neighboursOnVertical(point, monos, yTop, yBottom);
    yTop = (yTop + point.y) / 2;
    yBottom = (yBottom + point.y) / 2;
    int above = 0;
    if (qIsFinite(yTop)) {
        above = countOnLevel(vxPoint(point.x, yTop), monos).winding;
        if (!qIsFinite(yBottom))
            return { above, above != 0 };
    } else if (!qIsFinite(yBottom)) {
        return {};
    }
    const int below = countOnLevel(vxPoint(point.x, yBottom), monos).winding;
    return { qMax(above, below), (above == 0) != (below == 0) };
}

} // namespace

vxWinding XPath::getWinding(const vxPoint &point, const QList<vxMono *> &monos, bool horizontal)
{
    return horizontal ? countAboveAndBelow(point, monos) : countOnLevel(point, monos);
}

vxWinding XPath::getWinding(const vxPoint &point, bool horizontal) const
{
    QList<vxMono *> monos;
    for (const vxPath *child : children)
        monos += child->getMonoCurves();
    return getWinding(point, monos, horizontal);
}
