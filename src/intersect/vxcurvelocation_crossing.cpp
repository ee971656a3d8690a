#include "vxcubic_p.h"
#include "vxcurve.h"
#include "vxcurvelocation.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

using namespace vxTolerance;

namespace {

/** Part of the shortest neighbouring curve at which directions are compared: near, yet clear of rounding. */
constexpr double directionFraction = 0.015625;

/** Strictly between two angles (degrees), going up from lo to hi through the wrap-around. */
bool inRange(double a, double lo, double hi)
{
    return lo < hi ? a > lo && a < hi : a > lo || a < hi;
}

/** Degrees: how far the direction of a line may be off that of its chord, see Departure::takeChord(). */
constexpr double chordSpread = 0.1;

/**
 * The direction in which a curve leaves a corner: that of its point at a small arc length from there, seen
 * from the meeting. On a line that is the chord's direction but for rounding, and mostly that will do.
 */
class Departure
{
public:
    /** Along the curve from its start, or back from its end. */
    void set(const vxCurve &curve, double length, bool backwards, const vxPoint &from, double offset)
    {
        m_values = curve._cubic();
        m_length = length;
        m_from = from;
        m_offset = backwards ? -offset : offset;
        m_known = Known::Nothing;
        if (vx::isChord(m_values))
            takeChord();
    }
    void set(const vxPoint &direction) { setAngle(direction.getAngle(nullptr)); }
    double angle() const { return m_angle; }

    /** Makes sure that the order of two directions is that of the points. */
    static void settleOrder(Departure &a, Departure &b)
    {
        if (a.m_known != Known::Nothing && b.m_known != Known::Nothing) {
            const double apart = std::fabs(a.m_angle - b.m_angle);
            if (apart > 2 * chordSpread && apart < 360 - 2 * chordSpread)
                return;
        }
        a.settle();
        if (b.m_known != Known::Angle && b.isSamePlaceAs(a))
            b.setAngle(a.m_angle);
        else
            b.settle();
    }

private:
    enum class Known { Nothing, Chord, Angle };

    void setAngle(double angle)
    {
        m_angle = angle;
        m_known = Known::Angle;
    }
    void settle()
    {
        if (m_known != Known::Angle)
            set(vx::pointAt(m_values, vx::timeAtLengthOf(m_values, m_offset, m_length)).subtract(m_from));
    }
    /** Shared outlines often have the same curves; bits, since signs of zeros may turn up in an angle. */
    bool isSamePlaceAs(const Departure &other) const
    {
        return m_offset == other.m_offset && std::memcmp(&m_values, &other.m_values, sizeof m_values) == 0;
    }
    void takeChord();

    vx::Cubic m_values{};
    double m_length = 0;
    vxPoint m_from;
    /** Arc length, negative from the end; NaN for a mere direction. */
    double m_offset = std::numeric_limits<double>::quiet_NaN();
    double m_angle = 0;
    Known m_known = Known::Nothing;
};

/**
 * Takes the chord's direction where the point cannot lie otherwise. The speed of a line without handles is a
 * parabola, which quadrature integrates exactly, so Newton's method finds the point's time to a few 1e-12 (it
 * starts by going to 1/6 and then about halves the time in each round: twenty rounds do down to 1e-6 of the
 * length) and the point lies on the chord at that distance, to within rounding. The corner may lie aside of
 * the meeting by a thousandth of the distance: that turns the direction by less than 0.06 degrees.
 *
 * On a line along an axis through the meeting one coordinate of the difference is 0, so the angle is exact.
 */
void Departure::takeChord()
{
    const vx::Cubic &c = m_values;
    const bool forward = m_offset > 0;
    const double offset = std::fabs(m_offset);
    const vxPoint corner = forward ? c.p0() : c.p3();
    vxPoint chord = (forward ? c.p3() : c.p0()).subtract(corner);
    const double size = std::fabs(corner.x) + std::fabs(corner.y) + m_length;
    const double aside = std::fabs(corner.x - m_from.x) + std::fabs(corner.y - m_from.y);
    if (!(offset > 1e-6 * m_length && offset > 1e-9 && aside + 1e-13 * size < 1e-3 * offset))
        return;
    const bool alongX = chord.y == 0 && corner.y == m_from.y;
    const bool alongY = chord.x == 0 && corner.x == m_from.x;
    if (alongX)
        chord.y = 0; // never -0, which would make an angle of 180 degrees one of -180
    m_angle = chord.getAngle(nullptr);
    m_known = alongX || alongY ? Known::Angle : Known::Chord;
}

/** The two curves that meet at one side of an intersection, and the directions in which they leave it. */
struct Side {
    vxCurve *before = nullptr;
    vxCurve *after = nullptr;
    bool inside = false;
    double time = noTime;
    /** Of before and after, unless inside. */
    double lengthBefore = 0;
    double lengthAfter = 0;
    Departure back;
    Departure out;

    explicit Side(vxCurveLocation *location)
    {
        before = after = location->getCurve();
        time = location->getTime();
        inside = time > timeMargin && time < timeUpper;
        if (before && !inside && time <= timeMargin)
            before = before->getPrevious();
        if (after && !inside && time >= timeUpper)
            after = after->getNext();
    }

    double shortestLength()
    {
        if (inside)
            return qInf();
        lengthBefore = before->getLength();
        lengthAfter = after->getLength();
        return qMin(lengthAfter, lengthBefore);
    }

    void setDirections(const vxPoint &p, double offset)
    {
        if (inside) {
            const vxPoint tangent = after->getTangentAtTime(time);
            out.set(tangent);
            back.set(tangent.negate());
        } else {
            out.set(*after, lengthAfter, false, p, offset);
            back.set(*before, lengthBefore, true, p, offset);
        }
    }

    /** Whether the two curves of other leave this corner on different sides. */
    bool separates(const Side &other) const
    {
        const auto parted = [&other](double lo, double hi) {
            return inRange(other.back.angle(), lo, hi) != inRange(other.out.angle(), lo, hi);
        };
        return parted(back.angle(), out.angle()) && parted(out.angle(), back.angle());
    }
};

/** What is asked of the four directions is their order around the meeting. */
void settleOrder(Side &a, Side &b)
{
    Departure::settleOrder(a.back, a.out);
    Departure::settleOrder(b.back, b.out);
    for (Departure *mine : { &a.back, &a.out }) {
        for (Departure *theirs : { &b.back, &b.out })
            Departure::settleOrder(*mine, *theirs);
    }
}

} // namespace

bool vxCurveLocation::isTouching()
{
    if (!intersection)
        return false;
    if (!getTangent().isCollinear(intersection->getTangent()))
        return false;
    vxCurve *curve1 = getCurve();
    vxCurve *curve2 = intersection->getCurve();
    if (!curve1->isStraight() || !curve2->isStraight())
        return true;
    // Two straight pieces with one direction: they touch unless their chords still cross in a point.
    return curve1->getLine().intersect(curve2->getLine(), false).isNaN();
}

bool vxCurveLocation::isCrossing()
{
    if (!intersection)
        return false;
    Side mine(this);
    Side theirs(intersection);
    if (mine.inside && theirs.inside)
        return !isTouching();
    if (!mine.before || !mine.after || !theirs.before || !theirs.after)
        return false;

    const double offset = qMin(mine.shortestLength(), theirs.shortestLength()) * directionFraction;
    mine.setDirections(point, offset);
    theirs.setDirections(point, offset);
    settleOrder(mine, theirs);
    return mine.inside ? theirs.separates(mine) : mine.separates(theirs);
}
