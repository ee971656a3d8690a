#include "vxsharedborder_p.h"

#include "vxtolerance.h"

#include <algorithm>
#include <cmath>

using namespace vxTolerance;

namespace vx {

namespace {

/** Path units; the control points of the two curves may lie this far apart, along each axis. */
constexpr double apart = closeDistance / 20;

/**
 * Whether the derivative, a parabola with control points 3 d[i], keeps to the direction of the chord, and
 * changes so slowly for its size that a root is simple far beyond rounding; see runsAlong().
 */
bool isRegular(const Cubic &c, const vxPoint &chord, double chordLength)
{
    const vxPoint d[3] = { c.p1().subtract(c.p0()), c.p2().subtract(c.p1()), c.p3().subtract(c.p2()) };
    const double least = std::min({ d[0].dot(chord), d[1].dot(chord), d[2].dot(chord) }) / chordLength;
    const double change = std::max(d[1].getDistance(d[0]), d[2].getDistance(d[1]));
    return least > 0 && least * least > 1e-6 * change;
}

} // namespace

bool agree(const Cubic &a, const Cubic &b)
{
    return std::equal(a.v, a.v + 8, b.v, [](double p, double q) { return std::fabs(p - q) <= apart; });
}

// A curve lies in the hull of its control points, and so does the difference of two. A place p on a is
// therefore off b(t), at its own time t or 1 - t, by no more than apart along each axis, and rounding, which
// up to the largest coordinate stays far below that: the solver finds the roots of a cubic that is off by
// 2e-10 at most. Both errors together are called e < 1.1e-8.
//
// timeOf() solves x(s) = p.x and y(s) = p.y. Take the axis along which b is the faster at t. Its speed there
// is m >= 3 least / sqrt(2) and changes by V <= 6 change. Since e V <= m^2 / 8 there is, after Kantorovich,
// one root within 2 e / m of t, it is found, and b moves less than 4 e up to there: the place at the root
// lies within 6 e of p, well within closeDistance. Where the root lies outside [0, 1], that end of b is as
// near to p.
//
// A chord's speed vanishes at its ends: along its longer axis, of extent L, it is 6 s (1 - s) L. A p within
// half of closeDistance of an end is found for that. Any other has advanced by 5e-8 or more, which takes it s
// with 3 s^2 L >= 5e-8, where the square of the speed exceeds 1e-7 L, while V = 6 L and e is 2e-10: again e V
// <= m^2 / 8. The place that is found lies off p by what the chord does.
bool runsAlong(const Cubic &a, const Cubic &b)
{
    constexpr double largest = 1e5;
    constexpr double shortest = 1e-3;
    if (!agree(a, b) && !agree(a.reversed(), b))
        return false;
    if (!std::all_of(b.v, b.v + 8, [](double value) { return std::fabs(value) <= largest; }))
        return false;
    const vxPoint chord = b.p3().subtract(b.p0());
    const double length = std::hypot(chord.x, chord.y);
    return length > shortest && (isChord(b) || isRegular(b, chord, length));
}

} // namespace vx
