#include "vxpath.h"

#include "vxbezier.h"
#include "vxnumeric_p.h"

#include <algorithm>
#include <cmath>

using vx::pi;

namespace {

bool isFinite(const vxPoint &p)
{
    return std::isfinite(p.x) && std::isfinite(p.y);
}

/** An elliptic arc by centre, as a map of the unit circle, and the stretch of angles it covers in radians. */
struct CenterArc {
    vxPoint center;
    vxSize radii;
    double cosine;
    double sine;
    double start;
    double sweep;

    /** The drawing vector of a vector in the plane of the unit circle. */
    vxPoint fromUnit(const vxPoint &u) const
    {
        const double x = u.x * radii.width;
        const double y = u.y * radii.height;
        return vxPoint(x * cosine - y * sine, x * sine + y * cosine);
    }
};

/**
 * From end points to centre, after Scalable Vector Graphics 1.1, appendix F.6.5 and F.6.6, with the division
 * by the radii done first: on the unit circle large radii cannot overflow. False when there is no arc.
 */
bool toCenterArc(const vxPoint &from, const vxPoint &to, const vxSize &size, double rotation, bool large,
                 bool sweep, CenterArc &arc)
{
    arc.radii = vxSize(std::fabs(size.width), std::fabs(size.height));
    const double angle = rotation * pi / 180;
    if (!isFinite(from) || !isFinite(to) || !std::isfinite(arc.radii.width) ||
        !std::isfinite(arc.radii.height) || arc.radii.width == 0 || arc.radii.height == 0 ||
        !std::isfinite(angle))
        return false;
    arc.cosine = std::cos(angle);
    arc.sine = std::sin(angle);

    // Half the chord, from the end to the start, in the plane of the unit circle; its middle lies at the
    // origin.
    const vxPoint half = from.subtract(to).divide(2);
    vxPoint u((half.x * arc.cosine + half.y * arc.sine) / arc.radii.width,
              (half.y * arc.cosine - half.x * arc.sine) / arc.radii.height);
    const double lambda = u.dot(u);
    vxPoint center;
    if (lambda > 1) {
        // Too small an ellipse is scaled up until the chord is a diameter.
        const double grow = std::sqrt(lambda);
        arc.radii = vxSize(arc.radii.width * grow, arc.radii.height * grow);
        u = u.divide(grow);
    } else {
        const double k = std::sqrt((1 - lambda) / lambda) * (large == sweep ? -1 : 1);
        center = vxPoint(u.y * k, -u.x * k);
    }
    arc.center = from.add(to).divide(2).add(arc.fromUnit(center));
    const vxPoint a = u.subtract(center);
    const vxPoint b = u.negate().subtract(center);
    arc.start = std::atan2(a.y, a.x);
    arc.sweep = std::atan2(b.y, b.x) - arc.start;
    if (sweep && arc.sweep < 0)
        arc.sweep += 2 * pi;
    else if (!sweep && arc.sweep > 0)
        arc.sweep -= 2 * pi;
    return isFinite(arc.center) && std::isfinite(arc.radii.width) && std::isfinite(arc.radii.height) &&
           std::isfinite(arc.sweep);
}

} // namespace

// --- lines and curves ---

void vxPath::moveTo(double x, double y)
{
    if (m_segments.size() > 1)
        return;
    setSegments({ new vxSegment(x, y) });
}

void vxPath::lineTo(double x, double y)
{
    addSegment(new vxSegment(x, y));
}

vxPoint vxPath::startedPoint()
{
    if (m_segments.isEmpty())
        moveTo(0, 0);
    return m_segments.last()->point;
}

void vxPath::lineBy(const vxPoint &delta)
{
    lineToPt(startedPoint().add(delta));
}

void vxPath::cubicCurveTo(const vxPoint &handle1, const vxPoint &handle2, const vxPoint &to)
{
    if (m_segments.isEmpty()) {
        moveToPt(to);
        return;
    }
    vxSegment *from = m_segments.last();
    from->handleOut = handle1.subtract(from->point);
    addSegment(new vxSegment(to, handle2.subtract(to), vxPoint()));
}

void vxPath::cubicCurveBy(const vxPoint &handle1, const vxPoint &handle2, const vxPoint &to)
{
    const vxPoint from = startedPoint();
    cubicCurveTo(from.add(handle1), from.add(handle2), from.add(to));
}

void vxPath::quadraticCurveTo(const vxPoint &handle, const vxPoint &to)
{
    // Degree elevation: the cubic's control points lie two thirds of the way to the quadratic's.
    const vxPoint from = m_segments.isEmpty() ? to : m_segments.last()->point;
    const auto elevated = [&handle](const vxPoint &p) { return p.add(handle.subtract(p).multiply(2.0 / 3)); };
    cubicCurveTo(elevated(from), elevated(to), to);
}

void vxPath::quadraticCurveBy(const vxPoint &handle, const vxPoint &to)
{
    const vxPoint from = startedPoint();
    quadraticCurveTo(from.add(handle), from.add(to));
}

// --- arcs ---

void vxPath::arcTo(const vxPoint &to, const vxSize &radii, double rotation, bool large, bool sweep)
{
    if (m_segments.isEmpty()) {
        moveToPt(to);
        return;
    }
    const vxPoint from = m_segments.last()->point;
    if (from == to)
        return;
    CenterArc arc;
    if (!toCenterArc(from, to, radii, rotation, large, sweep, arc)) {
        lineToPt(to);
        return;
    }
    // At most a quarter turn a piece; the margin keeps rounding from adding a fifth one.
    constexpr double angleSlack = 1e-9;
    const int count = qBound(1, static_cast<int>(std::ceil(std::fabs(arc.sweep) / (pi / 2) - angleSlack)), 4);
    const double step = arc.sweep / count;
    // Handle length of a circular arc whose middle lies on the cubic.
    const double reach = 4.0 / 3 * std::tan(step / 4);
    double angle = arc.start;
    vxPoint point = from;
    for (int i = 1; i <= count; ++i) {
        const vxPoint handleOut = arc.fromUnit(vxPoint(-std::sin(angle), std::cos(angle)).multiply(reach));
        angle = arc.start + i * step;
        const vxPoint radius(std::cos(angle), std::sin(angle));
        const vxPoint end = i == count ? to : arc.center.add(arc.fromUnit(radius));
        const vxPoint handleIn = arc.fromUnit(vxPoint(radius.y, -radius.x).multiply(reach));
        cubicCurveTo(point.add(handleOut), end.add(handleIn), end);
        point = end;
    }
}

void vxPath::arcBy(const vxPoint &to, const vxSize &radii, double rotation, bool large, bool sweep)
{
    arcTo(startedPoint().add(to), radii, rotation, large, sweep);
}

void vxPath::arcTo2(const vxRect &rect, double start, double sweep)
{
    const bool finite = isFinite(rect.topLeft()) && isFinite(rect.bottomRight()) && std::isfinite(start) &&
                        std::isfinite(sweep);
    if (!finite || rect.isEmpty())
        return;
    QVector<vxPoint> points;
    const vxPoint first = vxBezier::arcToBezier(rect, start, sweep, points);
    if (m_segments.isEmpty())
        moveToPt(first);
    else if (!m_segments.last()->point.subtract(first).isZero())
        lineToPt(first);
    for (int i = 0; i + 2 < points.size(); i += 3)
        cubicCurveTo(points.at(i), points.at(i + 1), points.at(i + 2));
}

void vxPath::ellipse(const vxRect &rect)
{
    const bool becomesEllipse = m_segments.isEmpty();
    // A negative turn runs clockwise on screen: the area is positive.
    arcTo2(rect, 0, -360);
    if (becomesEllipse)
        closeAtEnds(vxTolerance::closeDistance);
}
