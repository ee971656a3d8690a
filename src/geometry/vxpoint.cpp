#include "vxpoint.h"

#include "vxmatrix.h"
#include "vxnumeric_p.h"
#include "vxrect.h"

#include <QPointF>
#include <QString>
#include <QtGlobal>

#include <algorithm>
#include <limits>

namespace {

/** Nearest integer with halves towards +infinity; d itself where that is no 32-bit integer. */
double roundedToInt(double d)
{
    // The two branches differ by more than a floor(d + 0.5) would: each adds 0.5 to a number that is not
    // negative.
    const double below = std::trunc(d - 1);
    const double rounded = d >= 0 ? std::trunc(d + 0.5) : below + std::trunc(d - below + 0.5);
    const bool fits =
        rounded >= std::numeric_limits<int>::min() && rounded <= std::numeric_limits<int>::max();
    return fits ? rounded : d;
}

int drawRandom()
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED // callers seed this generator with qsrand() to repeat a drawing
        return qrand();
    QT_WARNING_POP
}

} // namespace

bool vxPoint::isOrthogonal(double x1, double y1, double x2, double y2)
{
    const double dot = x1 * x2 + y1 * y2;
    return std::fabs(dot) <= vxTolerance::angleMargin * std::sqrt((x1 * x1 + y1 * y1) * (x2 * x2 + y2 * y2));
}

bool vxPoint::isInside(const vxRect &rect) const
{
    return rect.containsPt(*this);
}

double vxPoint::getAngleInRadians(const vxPoint *other) const
{
    if (!other)
        return isZero() ? 0 : std::atan2(y, x);
    const double d = getLength() * other->getLength();
    if (d >= -vxTolerance::machineZero && d <= vxTolerance::machineZero)
        return std::numeric_limits<double>::quiet_NaN();
    // Rounding can push the cosine of parallel vectors past 1.
    return std::acos(std::clamp(dot(*other) / d, -1.0, 1.0));
}

double vxPoint::getAngle(const vxPoint *other) const
{
    return getAngleInRadians(other) * 180 / vx::pi;
}

double vxPoint::getDirectedAngle(const vxPoint &p) const
{
    return std::atan2(cross(p), dot(p)) * 180 / vx::pi;
}

void vxPoint::setAngleInRadians(double angle)
{
    if (isZero())
        return;
    const double length = getLength();
    x = std::cos(angle) * length;
    y = std::sin(angle) * length;
}

void vxPoint::setAngle(double degrees)
{
    setAngleInRadians(degrees * vx::pi / 180);
}

double vxPoint::getQuadrant() const
{
    if (x >= 0)
        return y >= 0 ? 1 : 4;
    return y >= 0 ? 2 : 3;
}

vxPoint vxPoint::rotate(double degrees, const vxPoint *center) const
{
    if (degrees == 0)
        return *this;
    const double angle = vx::pi * degrees / 180;
    const double s = std::sin(angle);
    const double c = std::cos(angle);
    const vxPoint v = center ? subtract(*center) : *this;
    const vxPoint turned(v.x * c - v.y * s, v.x * s + v.y * c);
    return center ? turned.add(*center) : turned;
}

vxPoint vxPoint::normalize(double length) const
{
    const double current = getLength();
    return multiply(current != 0 ? length / current : 0);
}

void vxPoint::setLength(double length)
{
    const double scale = length / getLength();
    x *= scale;
    y *= scale;
}

void vxPoint::project(const vxPoint &p)
{
    *this = p.multiply(p.isZero() ? 0 : dot(p) / p.dot(p));
}

void vxPoint::round()
{
    x = roundedToInt(x);
    y = roundedToInt(y);
}

vxPoint vxPoint::random()
{
    // Two statements: the order of draws is fixed, that of evaluated arguments is not.
    const double first = drawRandom();
    const double second = drawRandom();
    return vxPoint(second, first);
}

vxPoint vxPoint::transform(const vxMatrix *matrix) const
{
    return matrix ? matrix->transformPoint(*this) : *this;
}

QPointF vxPoint::toPt() const
{
    return QPointF(x, y);
}

QString vxPoint::toString() const
{
    return QStringLiteral("x: %1, y: %2").arg(x).arg(y);
}
