#include "vxcubic_p.h"
#include "vxcurve.h"
#include "vxcurvelocation.h"

using namespace vxTolerance;

namespace {

/** Part of the shortest neighbouring curve at which directions are compared: near, yet clear of rounding. */
constexpr double directionFraction = 0.015625;

/** Strictly between two angles (degrees), going up from lo to hi through the wrap-around. */
bool inRange(double a, double lo, double hi)
{
    return lo < hi ? a > lo && a < hi : a > lo || a < hi;
}

/** The two curves that meet at one side of an intersection, and the directions in which they leave it. */
struct Side {
    vxCurve *before = nullptr;
    vxCurve *after = nullptr;
    bool inside = false;
    double time = noTime;
    double angleBefore = 0;
    double angleAfter = 0;

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

    double shortestLength() const { return inside ? qInf() : qMin(after->getLength(), before->getLength()); }

    void setAngles(const vxPoint &p, double offset)
    {
        vxPoint out;
        vxPoint back;
        if (inside) {
            out = after->getTangentAtTime(time);
            back = out.negate();
        } else {
            out = after->getPointAt(offset).subtract(p);
            back = before->getPointAt(-offset).subtract(p);
        }
        angleAfter = out.getAngle(nullptr);
        angleBefore = back.getAngle(nullptr);
    }

    /** Whether the two curves of other leave this corner on different sides. */
    bool separates(const Side &other) const
    {
        const auto parted = [&other](double lo, double hi) {
            return inRange(other.angleBefore, lo, hi) != inRange(other.angleAfter, lo, hi);
        };
        return parted(angleBefore, angleAfter) && parted(angleAfter, angleBefore);
    }
};

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
    mine.setAngles(point, offset);
    theirs.setAngles(point, offset);
    return mine.inside ? theirs.separates(mine) : mine.separates(theirs);
}
