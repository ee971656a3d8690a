#include "pzpath.h"
#include "pzpath_p.h"
#include "vxtolerance.h"

#include <cmath>

using pz::makeElement;

namespace {

bool isSamePoint(const PZPath::PZElement &element, double x, double y)
{
    return std::fabs(x - element.x) < vxTolerance::mergeExtent &&
           std::fabs(y - element.y) < vxTolerance::mergeExtent;
}

/** The start rule: a first point continues the current subpath or, where there is none, starts one. */
void startAt(PZPath &path, const QPointF &p)
{
    if (path.isEmpty() || path.last().type == PZPath::CloseElement)
        path.moveTo(p);
    else
        path.lineTo(p);
}

template <typename Point>
void drawLines(PZPath &path, const Point *pts, int n)
{
    if (!pts || n <= 0)
        return;
    startAt(path, pts[0]);
    for (int i = 1; i < n; ++i)
        path.lineTo(pts[i]);
}

/** The point of the last move; the origin when the list has none. */
QPointF subpathStart(const QVector<PZPath::PZElement> &elements)
{
    for (int i = elements.count() - 1; i >= 0; --i) {
        if (elements.at(i).type == PZPath::MoveToElement)
            return elements.at(i).toPoint();
    }
    return QPointF(0, 0);
}

} // namespace

void PZPath::moveTo(const QPointF &p)
{
    m_elements.append(makeElement(p, MoveToElement));
}

void PZPath::lineTo(const QPointF &p)
{
    if (!m_elements.isEmpty() && isSamePoint(m_elements.constLast(), p.x(), p.y()))
        return;
    m_elements.append(makeElement(p, LineToElement));
}

void PZPath::cubicTo(const QPointF &c1, const QPointF &c2, const QPointF &end)
{
    m_elements.append(makeElement(c1, CurveToElement));
    m_elements.append(makeElement(c2, CurveToDataElement));
    m_elements.append(makeElement(end, CurveToDataElement));
}

void PZPath::closeSubpath()
{
    if (m_elements.count() < 2 || m_elements.constLast().type == CloseElement)
        return;
    const QPointF start = subpathStart(m_elements);
    PZElement &end = m_elements.last();
    if (isSamePoint(end, start.x(), start.y())) {
        // Whatever its type: a curve's end snaps shut too.
        end.x = start.x();
        end.y = start.y();
    } else {
        m_elements.append(makeElement(start, LineToElement));
    }
    m_elements.append(makeElement(start, CloseElement));
}

void PZPath::addBezier(const QPointF &p0, const QPointF &c1, const QPointF &c2, const QPointF &p3)
{
    startAt(*this, p0);
    cubicTo(c1, c2, p3);
}

void PZPath::addBeziers(const QPointF *pts, int n)
{
    if (!pts || n <= 0)
        return;
    startAt(*this, pts[0]);
    for (int i = 1; i < n - 2; i += 3)
        cubicTo(pts[i], pts[i + 1], pts[i + 2]);
}

void PZPath::addLines(const QPointF *pts, int n)
{
    drawLines(*this, pts, n);
}

void PZPath::addLines(const QPoint *pts, int n)
{
    drawLines(*this, pts, n);
}

void PZPath::addLine(const QPointF &a, const QPointF &b)
{
    startAt(*this, a);
    lineTo(b);
}

void PZPath::addLine(double x1, double y1, double x2, double y2)
{
    addLine(QPointF(x1, y1), QPointF(x2, y2));
}

void PZPath::addRect(const QRectF &r)
{
    const double right = r.x() + r.width();
    const double bottom = r.y() + r.height();
    moveTo(r.topLeft());
    lineTo(QPointF(right, r.y()));
    lineTo(QPointF(right, bottom));
    lineTo(QPointF(r.x(), bottom));
    closeSubpath();
}

void PZPath::addPolygon(const QPolygonF &polygon)
{
    // A move that was just made is the polygon's start; any other point before it stays unconnected.
    bool connected = !m_elements.isEmpty() && m_elements.constLast().type == MoveToElement;
    m_elements.reserve(m_elements.count() + polygon.count());
    for (const QPointF &p : polygon) {
        m_elements.append(makeElement(p, connected ? LineToElement : MoveToElement));
        connected = true;
    }
}

void PZPath::addPath(const PZPath &other, bool connect)
{
    // Shares the list, so that a path appended to itself reads what it was before.
    const QVector<PZElement> added = other.m_elements;
    if (added.isEmpty())
        return;
    PZElement first = added.first();
    bool dropFirst = false;
    if (connect && !m_elements.isEmpty()) {
        dropFirst = isSamePoint(m_elements.constLast(), first.x, first.y);
        first.type = LineToElement;
    }
    m_elements.reserve(m_elements.count() + added.count());
    if (!dropFirst)
        m_elements.append(first);
    for (int i = 1; i < added.count(); ++i)
        m_elements.append(added.at(i));
}

void PZPath::setBackX(double v)
{
    if (!m_elements.isEmpty())
        m_elements.last().x = v;
}

void PZPath::setBackY(double v)
{
    if (!m_elements.isEmpty())
        m_elements.last().y = v;
}
