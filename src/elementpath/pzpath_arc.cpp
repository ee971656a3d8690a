#include "pzpath.h"
#include "vxbezier.h"
#include "vxtolerance.h"

#include <cmath>

namespace {

/** Finite, and large enough for the arc construction, which gives nothing for an empty rectangle. */
bool canHoldArc(const QRectF &rect)
{
    return std::isfinite(rect.x()) && std::isfinite(rect.y()) && std::isfinite(rect.width()) &&
           std::isfinite(rect.height()) && rect.width() >= vxTolerance::machineZero &&
           rect.height() >= vxTolerance::machineZero;
}

void appendCubics(PZPath &path, const QVector<QPointF> &points)
{
    for (int i = 0; i < points.count() - 2; i += 3)
        path.cubicTo(points.at(i), points.at(i + 1), points.at(i + 2));
}

} // namespace

void PZPath::arcTo(const QRectF &rect, double startAngle, double sweepLength)
{
    QVector<QPointF> points;
    // This class's angles turn the other way than those of the arc construction, which warns of NaN.
    const QPointF start = vxBezier::arcToBezier(rect, -startAngle, -sweepLength, points);
    if (!canHoldArc(rect) || !std::isfinite(startAngle) || !std::isfinite(sweepLength))
        return;
    if (m_elements.isEmpty() || m_elements.constLast().type == CloseElement)
        moveTo(start);
    else
        lineTo(start);
    appendCubics(*this, points);
}

void PZPath::arcTo(double x, double y, double w, double h, double startAngle, double sweepLength)
{
    arcTo(QRectF(x, y, w, h), startAngle, sweepLength);
}

void PZPath::ellipse(const QRectF &rect)
{
    QVector<QPointF> points;
    const QPointF start = vxBezier::arcToBezier(rect, 0.0, -360.0, points);
    if (!canHoldArc(rect))
        return;
    moveTo(start);
    appendCubics(*this, points);
    // The last curve ends on the start exactly, so there is nothing for closeSubpath() to snap.
    const PZElement end = m_elements.constLast();
    m_elements.append({ end.x, end.y, 0, 0, CloseElement });
}
