#include "vxcubic_p.h"
#include "vxcubic_polynomial_p.h"
#include "vxcubic_split_p.h"
#include "vxnowhere_p.h"

using vx::nowhere;

namespace {

/** First derivative at t; near the ends that of the end, which rounding cannot turn. */
vxPoint derivative(const vx::Polynomial &p, double t, bool normalized)
{
    const bool atStart = t < vxTolerance::timeMargin;
    const bool atEnd = t > vxTolerance::timeUpper;
    vxPoint d;
    if (atStart)
        d = p.c;
    else if (atEnd)
        d = vxPoint(3 * (p.p3.x - p.p2.x), 3 * (p.p3.y - p.p2.y));
    else
        d = vxPoint((3 * p.a.x * t + 2 * p.b.x) * t + p.c.x, (3 * p.a.y * t + 2 * p.b.y) * t + p.c.y);
    if (!normalized)
        return d;
    // Without a handle the derivative vanishes at the end, but the curve still leaves in a direction.
    if ((atStart || atEnd) && d.x == 0 && d.y == 0)
        d = p.p2.subtract(p.p1);
    const double length = d.getLength();
    return length != 0 ? d.divide(length) : d;
}

double curvature(const vx::Polynomial &p, double t, const vxPoint &d)
{
    const double denominator = std::pow(d.x * d.x + d.y * d.y, 1.5);
    if (denominator == 0)
        return 0;
    return (d.x * (6 * p.a.y * t + 2 * p.b.y) - d.y * (6 * p.a.x * t + 2 * p.b.x)) / denominator;
}

} // namespace

vxPoint vx::evaluate(const Cubic &c, double t, Evaluate what, bool normalized)
{
    if (!(t >= 0 && t <= 1))
        return nowhere;
    if (what == Evaluate::Point && (t == 0 || t == 1))
        return t == 0 ? c.p0() : c.p3(); // as the polynomial has them
    const Polynomial p(c);
    if (what == Evaluate::Point)
        return p.point(t);
    const vxPoint d = derivative(p, t, normalized);
    if (what == Evaluate::Tangent)
        return d;
    return what == Evaluate::Normal ? vxPoint(d.y, -d.x) : vxPoint(curvature(p, t, d), 0);
}

void vx::pointAndTangentAt(const Cubic &c, double t, vxPoint &point, vxPoint &tangent)
{
    if (!(t >= 0 && t <= 1)) {
        point = tangent = nowhere;
        return;
    }
    const Polynomial p(c);
    point = p.point(t);
    tangent = derivative(p, t, true);
}

void vx::subdivide(const Cubic &c, double t, Cubic &left, Cubic &right)
{
    split(c, t, left, right);
}

vx::Cubic vx::part(const Cubic &c, double from, double to)
{
    return partOf(c, from, to);
}

double vx::signedArea(const Cubic &c)
{
    const double x0 = c.v[0], y0 = c.v[1], x1 = c.v[2], y1 = c.v[3];
    const double x2 = c.v[4], y2 = c.v[5], x3 = c.v[6], y3 = c.v[7];
    return 3 *
           ((y3 - y0) * (x1 + x2) - (x3 - x0) * (y1 + y2) + y1 * (x0 - x2) - x1 * (y0 - y2) +
            y3 * (x2 + x0 / 3) - x3 * (y2 + y0 / 3)) /
           20;
}
