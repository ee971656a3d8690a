#include "vxintersect_p.h"

#include "vxline.h"
#include "vxnumeric_p.h"
#include "vxpair_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace vxTolerance;

namespace vx {

namespace {

/** Path units; see PreparedCurve::ordinary. */
constexpr double ordinarySize = 1e6;
constexpr double ordinaryChord = 10 * closeDistance;

} // namespace

// The box of the ends, extended by three quarters of what inner control values lie beyond it: their weights
// 3 t (1 - t)^2 and 3 t^2 (1 - t) sum up to 3 t (1 - t), at most 3 / 4.
Box pulledBox(const Cubic &c)
{
    const Pair start = pairOf(c, 0), handle1 = pairOf(c, 1), handle2 = pairOf(c, 2), end = pairOf(c, 3);
    const Pair least = lesser(start, end);
    const Pair greatest = greater(start, end);
    return boxOf(least - 0.75 * greater(both(0), least - lesser(handle1, handle2)),
                 greatest + 0.75 * greater(both(0), greater(handle1, handle2) - greatest));
}

PreparedCurve::PreparedCurve(const Cubic &c, const Box &itsBox)
    : values(c), box(itsBox), chordX(c.v[6] - c.v[0]), chordY(c.v[7] - c.v[1]),
      chordBound(std::fabs(chordX) + std::fabs(chordY))
{
    ordinary = box.minX >= -ordinarySize && box.maxX <= ordinarySize && box.minY >= -ordinarySize &&
               box.maxY <= ordinarySize && chordBound >= ordinaryChord;
    if (ordinary && isChord(c)) {
        // What the rest would say: numbers of this size cancel exactly.
        lowest = highest = 0;
        straight = true;
        return;
    }
    const double height1 = heightOf(c.v[2], c.v[3]);
    const double height2 = heightOf(c.v[4], c.v[5]);
    lowest = std::min(std::min(height1, height2), 0.0);
    highest = std::max(std::max(height1, height2), 0.0);
    // A handle far off the chord settles it; isStraight() allows closeDistance.
    straight = !isBent() && isStraight(c);
}

vxPoint linePoint(const Cubic &line1, const Cubic &line2)
{
    return vxLine::intersect(line1.v[0], line1.v[1], line1.v[6], line1.v[7], line2.v[0], line2.v[1],
                             line2.v[6], line2.v[7], false, false);
}

namespace {

/**
 * Whether all control points lie on one side of the line through a chord, by far more than sine and cosine of
 * its angle are off (some 1e-15 of the distances). With NaN there are no roots either way.
 */
bool isClearlyBeside(const Cubic &curve, const Cubic &line)
{
    const double dx = line.v[6] - line.v[0];
    const double dy = line.v[7] - line.v[1];
    double least = std::numeric_limits<double>::infinity();
    double greatest = -least;
    double farthest = 0;
    for (int i = 0; i < 8; i += 2) {
        const double x = curve.v[i] - line.v[0];
        const double y = curve.v[i + 1] - line.v[1];
        const double height = y * dx - x * dy;
        least = std::min(least, height);
        greatest = std::max(greatest, height);
        farthest = std::max(farthest, std::fabs(x) + std::fabs(y));
    }
    const double margin = 1e-12 * farthest * (std::fabs(dx) + std::fabs(dy));
    return least > margin || greatest < -margin;
}

} // namespace

int curveLineTimes(const Cubic &curve, const Cubic &line, double roots[3])
{
    if (isClearlyBeside(curve, line))
        return 0;
    const double x0 = line.v[0];
    const double y0 = line.v[1];
    const double angle = std::atan2(-(line.v[7] - y0), line.v[6] - x0);
    const double sine = std::sin(angle);
    const double cosine = std::cos(angle);
    // Turned about the line's start so that the line lies on the x axis; only the heights are asked for.
    Cubic turned{};
    for (int i = 0; i < 8; i += 2)
        turned.v[i + 1] = (curve.v[i] - x0) * sine + (curve.v[i + 1] - y0) * cosine;
    return timesAtCoordinate(turned, 1, 0, roots, 0, 1);
}

namespace {

int sign(double value)
{
    return (value > 0) - (value < 0);
}

} // namespace

double loopSplitTime(const Cubic &c)
{
    const double x0 = c.v[0], y0 = c.v[1], x1 = c.v[2], y1 = c.v[3];
    const double x2 = c.v[4], y2 = c.v[5], x3 = c.v[6], y3 = c.v[7];
    const double dx = x3 - x0, dy = y3 - y0;
    const int side1 = sign((x1 - x0) * dy - (y1 - y0) * dx);
    const int side2 = sign((x2 - x0) * dy - (y2 - y0) * dx);
    const double edgeSum = (x0 - x2) * (y1 - y3) + (x1 - x3) * (y2 - y0);
    if (side1 == side2 && side1 * edgeSum > 0)
        return noTime; // control points on one side, their edges not crossing: no loop

    const double px = x3 - 3 * x2 + 3 * x1 - x0, py = y3 - 3 * y2 + 3 * y1 - y0;
    const double qx = x2 - 2 * x1 + x0, qy = y2 - 2 * y1 + y0;
    const double rx = x1 - x0, ry = y1 - y0;
    const double pr = py * rx - px * ry;
    if (!(pr * pr - 4 * (py * qx - px * qy) * (qy * rx - qx * ry) < 0))
        return noTime; // a negative discriminant is the loop's mark

    // First derivative orthogonal to the second: the times of extreme speed, one of which lies inside the
    // loop.
    double roots[3];
    const int count = solveCubic(px * px + py * py, 3 * (px * qx + py * qy),
                                 2 * (qx * qx + qy * qy) + px * rx + py * ry, qx * rx + qy * ry, roots, 0, 1);
    if (count <= 0)
        return noTime;
    double split = 0.5;
    double sharpest = 0;
    for (int i = 0; i < count; ++i) {
        const double curvature = std::fabs(evaluate(c, roots[i], Evaluate::Curvature, false).x);
        if (curvature > sharpest) {
            sharpest = curvature;
            split = roots[i];
        }
    }
    return split;
}

} // namespace vx
