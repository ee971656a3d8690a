#include "vxsegment.h"

#include <cmath>

namespace {

/** Factor that asks for the usual one of the type. */
constexpr double defaultFactor = -1;

/** Catmull-Rom handle at p1 towards the side of p0, with the powers da, db of the distances to p0 and p2. */
vxPoint catmullRomHandle(const vxPoint &p0, const vxPoint &p1, const vxPoint &p2, double da, double db)
{
    const double daSquared = da * da;
    const double dbSquared = db * db;
    const double A = 2 * dbSquared + 3 * db * da + daSquared;
    const double N = 3 * db * (db + da);
    // The neighbour on the far side coincides with p1: there is no direction to follow.
    if (N == 0)
        return vxPoint();
    return vxPoint((dbSquared * p0.x + A * p1.x - daSquared * p2.x) / N - p1.x,
                   (dbSquared * p0.y + A * p1.y - daSquared * p2.y) / N - p1.y);
}

} // namespace

void vxSegment::smooth(bool skipIn, bool skipOut, int type, double factor)
{
    const vxSegment *previous = getPrevious();
    const vxSegment *next = getNext();
    const vxPoint p0 = previous ? previous->point : point;
    const vxPoint p1 = point;
    const vxPoint p2 = next ? next->point : point;
    const double d1 = p0.getDistance(p1);
    const double d2 = p1.getDistance(p2);

    if (type == 1) {
        // P. J. Barry and R. N. Goldman, "A recursive evaluation algorithm for a class of Catmull-Rom
        // splines", SIGGRAPH 1988, written as Bézier handles. Exponent 0 is uniform, 0.5 centripetal, 1
        // chordal.
        const double exponent = factor == defaultFactor ? 0.5 : factor;
        const double d1a = std::pow(d1, exponent);
        const double d2a = std::pow(d2, exponent);
        if (previous && !skipIn)
            handleIn = catmullRomHandle(p0, p1, p2, d1a, d2a);
        if (next && !skipOut)
            handleOut = catmullRomHandle(p2, p1, p0, d2a, d1a);
    } else if (type == 2 && previous && next) {
        const double tension = factor == defaultFactor ? 0.4 : factor;
        const vxPoint chord = p0.subtract(p2);
        const double k = tension * d1 / (d2 + d1);
        if (!skipIn)
            handleIn = chord.multiply(k);
        if (!skipOut)
            handleOut = chord.multiply(k - tension);
    }
}
