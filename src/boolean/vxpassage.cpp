#include "vxpassage_p.h"

#include "vxmonopieces_p.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>

using namespace vxTolerance;

namespace vx {

namespace {

/** One coordinate of a cubic as ((a t + b) t + c) t + d. */
struct PowerForm {
    double a, b, c, d;

    PowerForm(const double *v, double level)
    {
        c = 3 * (v[2] - v[0]);
        b = 3 * (v[4] - v[2]) - c;
        a = v[6] - v[0] - c - b;
        d = v[0] - level;
    }
    double at(double t) const { return ((a * t + b) * t + c) * t + d; }
    double slopeAt(double t) const { return (3 * a * t + 2 * b) * t + c; }
};

/** Newton's method; not proven to arrive, so that the caller has to look. */
double guessRoot(const PowerForm &f, double t, double accuracy)
{
    constexpr int rounds = 8;
    for (int i = 0; i < rounds; ++i) {
        const double step = f.at(t) / f.slopeAt(t);
        t -= step;
        if (!(std::fabs(step) > accuracy))
            break;
    }
    return t;
}

/** meetsVerticals() of a line, as far from its start, across, as a place is, and beside that. */
bool chordMeetsVerticals(const double *v, double fromStart, double beside, double &top, double &bottom)
{
    const double width = std::fabs(v[6] - v[0]);
    if (!(fromStart > beside && width - fromStart > beside))
        return false;
    const double rise = (v[7] - v[1]) / width;
    const double y = v[1] + fromStart * rise;
    top = y - std::fabs(beside * rise);
    bottom = y + std::fabs(beside * rise);
    return true;
}

} // namespace

Side sideAcrossChord(Cubic piece, const Box &box)
{
    const vxPoint center((box.minX + box.maxX) / 2, (box.minY + box.maxY) / 2);
    const double halfWidth = (box.maxX - box.minX) / 2;
    const double halfHeight = (box.maxY - box.minY) / 2;
    constexpr int halvings = 4;
    for (int i = 0;; ++i) {
        const double *v = piece.v;
        const double dx = v[6] - v[0];
        const double dy = v[7] - v[1];
        // Distances to the right of the chord, all scaled by its length.
        const auto off = [&](double x, double y) { return dy * (x - v[0]) - dx * (y - v[1]); };
        const double off1 = off(v[2], v[3]);
        const double off2 = off(v[4], v[5]);
        const double boxOff = off(center.x, center.y);
        const double boxWidth = halfWidth * std::fabs(dy) + halfHeight * std::fabs(dx);
        if (boxOff + boxWidth < std::min({ off1, off2, 0.0 }))
            return dy > 0 ? Side::Right : Side::Left;
        if (boxOff - boxWidth > std::max({ off1, off2, 0.0 }))
            return dy > 0 ? Side::Left : Side::Right;
        if (i == halvings)
            return Side::Unsure;
        Cubic first, second;
        subdivide(piece, 0.5, first, second);
        const double middle = second.v[1];
        if (!(box.maxY < middle || box.minY > middle))
            return Side::Unsure;
        piece = (box.maxY < middle) == (v[1] < middle) ? first : second;
    }
}

// On a passage the height rises or falls all the way, and the solver's root was never seen farther off the
// level than 2e-15 of the largest coordinate. So when the curve is clearly below the level at one time and
// clearly above at another, the root lies between; the two are chosen so near each other that x changes by
// less than a quarter of closeDistance.
Side sideByBracket(const vxMono &piece, const Box &reach, const vxPoint &point)
{
    const double *v = piece.values;
    const double fastest = 3 * (reach.maxX - reach.minX); // bound of |dx / dt|
    const double beside = std::min(closeDistance / (8 * fastest), 1e-3);
    const PowerForm height(v + 1, point.y);
    const double t = guessRoot(height, (point.y - v[1]) / (v[7] - v[1]), beside / 16);
    if (!(t > beside && t < 1 - beside))
        return Side::Unsure;
    const double clearly = 2e-12 + 1e-13 * std::max(std::fabs(v[1]), std::fabs(v[7]));
    const double up = piece.winding;
    if (!(height.at(t - beside) * up < -clearly && height.at(t + beside) * up > clearly))
        return Side::Unsure;

    constexpr double slack = closeDistance / 4;
    const double off = PowerForm(v, point.x).at(t);
    if (std::fabs(off) < closeDistance - slack)
        return Side::On;
    if (std::fabs(off) > closeDistance + slack)
        return off < 0 ? Side::Left : Side::Right;
    return Side::Unsure;
}

// With x of the control points in order, x rises or falls all the way: what is before the box at one time and
// behind it at another meets its verticals in between.
bool meetsVerticals(const vxMono &piece, const Box &box, double &top, double &bottom)
{
    const double *v = piece.values;
    const double toRight = v[6] > v[0] ? 1 : -1;
    if (!((v[2] - v[0]) * toRight >= 0 && (v[4] - v[2]) * toRight >= 0 && (v[6] - v[4]) * toRight >= 0))
        return false;
    const double x = (box.minX + box.maxX) / 2;
    const double halfWidth = (box.maxX - box.minX) / 2;
    if (isChord(cubicOf(piece)))
        return chordMeetsVerticals(v, (x - v[0]) * toRight, 2 * halfWidth, top, bottom);
    const PowerForm across(v, x);
    const double t = guessRoot(across, (x - v[0]) / (v[6] - v[0]), 1e-9);
    const double beside = 2 * halfWidth / std::fabs(across.slopeAt(t));
    if (!(t > beside && t < 1 - beside))
        return false;
    const double clearly = 1.5 * halfWidth;
    if (!(across.at(t - beside) * toRight < -clearly && across.at(t + beside) * toRight > clearly))
        return false;

    const double fastest =
        3 * std::max({ std::fabs(v[3] - v[1]), std::fabs(v[5] - v[3]), std::fabs(v[7] - v[5]) });
    const double y = PowerForm(v + 1, 0).at(t);
    top = y - fastest * beside;
    bottom = y + fastest * beside;
    return true;
}

} // namespace vx
