#pragma once

#include "vxcubic_p.h"

namespace vx {

/** A cubic in power form, ((a t + b) t + c) t + p0 per coordinate, set up once for many evaluations. */
struct Polynomial {
    vxPoint p0, p1, p2, p3; // start, control points, end
    vxPoint a, b, c;

    explicit Polynomial(const Cubic &curve) : p0(curve.p0()), p1(curve.p1()), p2(curve.p2()), p3(curve.p3())
    {
        // Handles of rounding size would give the ends a random tangent.
        if (p1.subtract(p0).isZero())
            p1 = p0;
        if (p2.subtract(p3).isZero())
            p2 = p3;
        // This order of operations is what points on curves are compared by.
        c = vxPoint(3 * (p1.x - p0.x), 3 * (p1.y - p0.y));
        b = vxPoint(3 * (p2.x - p1.x) - c.x, 3 * (p2.y - p1.y) - c.y);
        a = vxPoint(p3.x - p0.x - c.x - b.x, p3.y - p0.y - c.y - b.y);
    }

    /** Point at t in [0, 1], exact at both ends. */
    vxPoint point(double t) const
    {
        if (t == 0)
            return p0;
        if (t == 1)
            return p3;
        return vxPoint(((a.x * t + b.x) * t + c.x) * t + p0.x, ((a.y * t + b.y) * t + c.y) * t + p0.y);
    }
};

} // namespace vx
