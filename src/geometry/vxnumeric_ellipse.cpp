#include "vxnumeric.h"

#include "vxnumeric_p.h"
#include "vxrect.h"

#include <QPointF>
#include <QRectF>

namespace {

/** Angle in degrees brought to [-180, 180]. */
double normalizedAngle(double angle)
{
    if (angle < -360 || angle > 360)
        angle -= 360 * std::trunc(angle / 360);
    if (angle < -180)
        angle += 360;
    else if (angle > 180)
        angle -= 360;
    return angle;
}

} // namespace

vxPoint vxNumeric::ellipsePoint(const vxRect &rect, double angle)
{
    const double theta = vx::pi * normalizedAngle(angle) / 180;
    // Only the height is kept from vanishing: it is the divisor below.
    const double h = rect.height < 0.1 ? 0.1 : rect.height;
    const double w = rect.width;
    const double rx = 0.5 * w;
    const double ry = 0.5 * h;
    double phi = std::atan(std::tan(theta) * w / h);
    // The arc tangent knows half a turn; theta has the same sign as the true parameter.
    if (theta < 0 && phi > 0)
        phi -= vx::pi;
    if (theta > 0 && phi < 0)
        phi += vx::pi;
    return vxPoint(rect.x + rx + rx * std::cos(phi), rect.y + ry + ry * std::sin(phi));
}

QPointF vxNumeric::ellipsePoint(const QRectF &rect, double angle)
{
    return ellipsePoint(vxRect(rect.x(), rect.y(), rect.width(), rect.height()), angle).toPt();
}
