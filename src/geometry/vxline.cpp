#include "vxline.h"

#include "vxnowhere_p.h"

#include <algorithm>

using vx::nowhere;

namespace {

/** Line parameter between the two ends, with a margin of machineZero; false for NaN. */
bool isOnSegment(double u)
{
    return u > -vxTolerance::machineZero && u < 1 + vxTolerance::machineZero;
}

} // namespace

int vxLine::getSide(double px, double py, double vx, double vy, double x, double y, bool asVector,
                    bool isInfinite)
{
    if (!asVector) {
        vx -= px;
        vy -= py;
    }
    const double dx = x - px;
    const double dy = y - py;
    double ccw = dx * vy - dy * vx;
    if (ccw == 0 && !isInfinite) {
        ccw = (dx * vx + dy * vy) / (vx * vx + vy * vy);
        if (ccw >= 0 && ccw <= 1)
            return 0;
    }
    return ccw < 0 ? -1 : ccw > 0 ? 1 : 0;
}

vxPoint vxLine::intersect(double p1x, double p1y, double v1x, double v1y, double p2x, double p2y, double v2x,
                          double v2y, bool asVector, bool isInfinite)
{
    if (!asVector) {
        v1x -= p1x;
        v1y -= p1y;
        v2x -= p2x;
        v2y -= p2y;
    }
    const double cross = v1x * v2y - v1y * v2x;
    if (cross >= -vxTolerance::machineZero && cross <= vxTolerance::machineZero)
        return nowhere;
    const double dx = p1x - p2x;
    const double dy = p1y - p2y;
    double u1 = (v2x * dy - v2y * dx) / cross;
    if (!isInfinite) {
        if (!isOnSegment(u1) || !isOnSegment((v1x * dy - v1y * dx) / cross))
            return nowhere;
        u1 = std::clamp(u1, 0.0, 1.0);
    }
    return vxPoint(p1x + v1x * u1, p1y + v1y * u1);
}
