#include "vxmatrix.h"

#include "vxrect.h"

#include <QString>

#include <algorithm>

namespace {

constexpr double radiansPerDegree = 0.017453292519943295;

void transformInPlace(const vxMatrix &m, double *xy, int count)
{
    for (const double *end = xy + 2 * count; xy != end; xy += 2) {
        const vxPoint p = m.transformXY(xy[0], xy[1]);
        xy[0] = p.x;
        xy[1] = p.y;
    }
}

} // namespace

bool vxMatrix::isInvertible() const
{
    const double det = a * d - c * b;
    return det != 0 && !std::isnan(det) && hasFiniteShift();
}

vxPoint vxMatrix::inverseTransform(const vxPoint &p) const
{
    const double det = a * d - b * c;
    if (std::isnan(det) || !hasFiniteShift())
        return p;
    const double x = p.x - tx;
    const double y = p.y - ty;
    return vxPoint((d * x - c * y) / det, (a * y - b * x) / det);
}

void vxMatrix::transformCoords(QVector<double> &coords, int count) const
{
    count = std::min(count, coords.size() / 2);
    if (count >= 1)
        transformInPlace(*this, coords.data(), count);
}

void vxMatrix::transformCorners(const vxRect &rect, QVector<double> &out) const
{
    // resize() keeps the capacity, so that a caller's scratch vector is allocated once.
    out.resize(0);
    for (const vxPoint &corner : { rect.topLeft(), rect.topRight(), rect.bottomRight(), rect.bottomLeft() })
        out << corner.x << corner.y;
    transformCoords(out, 4);
}

vxRect vxMatrix::transformBounds(const vxRect &rect) const
{
    const vxPoint p = transformPoint(rect.topLeft());
    vxPoint min = p;
    vxPoint max = p;
    for (const vxPoint &corner : { rect.topRight(), rect.bottomRight(), rect.bottomLeft() }) {
        const vxPoint q = transformPoint(corner);
        min = vxPoint(std::min(min.x, q.x), std::min(min.y, q.y));
        max = vxPoint(std::max(max.x, q.x), std::max(max.y, q.y));
    }
    return vxRect(min.x, min.y, max.x - min.x, max.y - min.y);
}

void vxMatrix::transformPoints(QVector<vxPoint> &points) const
{
    for (vxPoint &p : points)
        p = transformPoint(p);
}

void vxMatrix::translate(double dx, double dy)
{
    tx += a * dx + c * dy;
    ty += b * dx + d * dy;
}

void vxMatrix::scale(double sx, double sy, const vxPoint *center)
{
    if (center)
        translate(center->x, center->y);
    a *= sx;
    b *= sx;
    c *= sy;
    d *= sy;
    if (center)
        translate(-center->x, -center->y);
}

void vxMatrix::rotate(double degrees)
{
    const double angle = degrees * radiansPerDegree;
    const double co = std::cos(angle);
    const double si = std::sin(angle);
    *this = vxMatrix(a * co + c * si, b * co + d * si, c * co - a * si, d * co - b * si, tx, ty);
}

void vxMatrix::rotateAt(double degrees, const vxPoint &center)
{
    translate(center.x, center.y);
    rotate(degrees);
    translate(-center.x, -center.y);
}

void vxMatrix::shear(double shx, double shy, const vxPoint *center)
{
    if (center)
        translate(center->x, center->y);
    *this = vxMatrix(a + c * shy, b + d * shy, c + a * shx, d + b * shx, tx, ty);
    if (center)
        translate(-center->x, -center->y);
}

void vxMatrix::skew(double degreesX, double degreesY, const vxPoint *center)
{
    shear(std::tan(degreesX * radiansPerDegree), std::tan(degreesY * radiansPerDegree), center);
}

void vxMatrix::append(const vxMatrix &m)
{
    *this = vxMatrix(m.a * a + m.b * c, m.a * b + m.b * d, m.c * a + m.d * c, m.c * b + m.d * d,
                     tx + m.tx * a + m.ty * c, ty + m.tx * b + m.ty * d);
}

void vxMatrix::prepend(const vxMatrix &m)
{
    *this = vxMatrix(m.a * a + m.c * b, m.b * a + m.d * b, m.a * c + m.c * d, m.b * c + m.d * d,
                     m.a * tx + m.c * ty + m.tx, m.b * tx + m.d * ty + m.ty);
}

void vxMatrix::invert()
{
    const double det = a * d - b * c;
    if (std::isnan(det) || !hasFiniteShift())
        return;
    *this = vxMatrix(d / det, -b / det, -c / det, a / det, (c * ty - d * tx) / det, (b * tx - a * ty) / det);
}

QString vxMatrix::toString() const
{
    return QStringLiteral("a: %1, b: %2, c: %3, d: 4%, tx: %5, ty: %6")
        .arg(a)
        .arg(b)
        .arg(c)
        .arg(d)
        .arg(tx)
        .arg(ty);
}
