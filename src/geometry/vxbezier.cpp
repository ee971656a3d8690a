#include "vxbezier.h"

#include "vxcubic_p.h"

namespace {

vx::Cubic toCubic(const vxBezier &b)
{
    return { { b.x1, b.y1, b.x2, b.y2, b.x3, b.y3, b.x4, b.y4 } };
}

vxBezier toBezier(const vx::Cubic &c)
{
    return vxBezier::fromPoints(c.p0(), c.p1(), c.p2(), c.p3());
}

} // namespace

vxBezier vxBezier::fromPoints(const vxPoint &p1, const vxPoint &p2, const vxPoint &p3, const vxPoint &p4)
{
    vxBezier b;
    b.x1 = p1.x;
    b.y1 = p1.y;
    b.x2 = p2.x;
    b.y2 = p2.y;
    b.x3 = p3.x;
    b.y3 = p3.y;
    b.x4 = p4.x;
    b.y4 = p4.y;
    return b;
}

void vxBezier::parameterSplitLeft(double t, vxBezier *left)
{
    if (!left || !std::isfinite(t))
        return;
    vx::Cubic before, after;
    vx::subdivide(toCubic(*this), t, before, after);
    // The rest first: left may be this very record.
    *this = toBezier(after);
    *left = toBezier(before);
}

vxBezier vxBezier::bezierOnInterval(double t0, double t1) const
{
    if ((t0 == 0 && t1 == 1) || !std::isfinite(t0) || !std::isfinite(t1))
        return *this;
    if (t0 == 1) // nothing is left to cut, and the time below would be a division by zero
        return fromPoints(vxPoint(x4, y4), vxPoint(x4, y4), vxPoint(x4, y4), vxPoint(x4, y4));
    vxBezier rest = *this;
    vxBezier part;
    rest.parameterSplitLeft(t0, &part);
    rest.parameterSplitLeft((t1 - t0) / (1 - t0), &part);
    return part;
}
