#include "vxplacement_p.h"

#include "vxmonopieces_p.h"
#include "vxstretchcounts_p.h"
#include "xpath.h"

#include <algorithm>
#include <iterator>

namespace vx {

namespace {

/** Path units: what is farther off a line does not touch it for anybody. */
constexpr double near = 1e-6;

bool isUprightRectangle(const XPath &shape)
{
    if (shape.children.size() != 1 || !shape.children.first()->isClosed())
        return false;
    const QList<vxSegment *> &corners = shape.children.first()->_segments();
    if (corners.size() != 4)
        return false;
    const auto runsAlong = [&corners](double vxPoint::*same, int i) {
        return corners.at(i)->point.*same == corners.at((i + 1) % 4)->point.*same;
    };
    const auto alternates = [&runsAlong](double vxPoint::*first, double vxPoint::*second) {
        return runsAlong(first, 0) && runsAlong(second, 1) && runsAlong(first, 2) && runsAlong(second, 3);
    };
    return std::none_of(corners.begin(), corners.end(), [](vxSegment *s) { return s->hasHandles(); }) &&
           (alternates(&vxPoint::x, &vxPoint::y) || alternates(&vxPoint::y, &vxPoint::x));
}

/** Whether a curve keeps off a line but for its ends; so far off it lie its control points. */
bool touchesAtEndsOnly(double d0, double d1, double d2, double d3)
{
    if (!(d1 >= 0 && d2 >= 0))
        return false;
    const bool startIsNear = !(d0 > near);
    const bool endIsNear = !(d3 > near);
    // The distance is their mean with weights that only vanish at the ends.
    if (startIsNear != endIsNear)
        return startIsNear ? d2 > near : d1 > near;
    return d1 > near && d2 > near;
}

/** An upright or level line, and one side of it. */
struct Side {
    int coordinate; ///< 0: upright, 1: level
    double line;
    int inward; ///< sign of a coordinate's difference from the line's on that side

    double distanceOf(const Cubic &c, int i) const { return inward * (c.v[2 * i + coordinate] - line); }
    bool isTouchedAtEndsOnly(const Cubic &c) const
    {
        return touchesAtEndsOnly(distanceOf(c, 0), distanceOf(c, 1), distanceOf(c, 2), distanceOf(c, 3));
    }
    /** Whether a curve that starts near the line surely does not run along it at first. */
    bool isLeftAtAnAngle(const Cubic &c) const
    {
        constexpr double leastSine = 0.02;
        constexpr double shortest = 1e-4; // path units: a shorter handle gives no direction
        if (distanceOf(c, 0) > near)
            return true;
        const int i = c.p1() != c.p0() ? 1 : c.p2() != c.p0() ? 2 : 3;
        const double length = vxPoint(c.v[2 * i], c.v[2 * i + 1]).getDistance(c.p0());
        return length > shortest && distanceOf(c, i) > leastSine * length;
    }
};

bool hasControlPointsIn(const vxRect &box, const Cubic &c)
{
    return box.containsPt(c.p0()) && box.containsPt(c.p1()) && box.containsPt(c.p2()) &&
           box.containsPt(c.p3());
}

template <typename Predicate>
bool allCurves(const XPath &shape, Predicate &&isRight)
{
    return std::all_of(shape.children.begin(), shape.children.end(), [&](const vxPath *child) {
        for (int i = 0; i < outlineSize(*child); ++i) {
            if (!isRight(outlineCurve(*child, i)))
                return false;
        }
        return true;
    });
}

vxRect boundsOf(const XPath &shape)
{
    return shape.getBounds(vxBoundOpt::geometric(), vxStyle());
}

bool haveNoCommonInside(const vxRect &a, const vxRect &b)
{
    return std::min(a.right(), b.right()) <= std::max(a.x, b.x) ||
           std::min(a.bottom(), b.bottom()) <= std::max(a.y, b.y);
}

/**
 * Whether the line between two boxes that have no common inside is touched at vertices only, and at angles:
 * where outlines have one direction, they may belong together as well as apart.
 */
bool areSideBySide(const XPath &a, const vxRect &boxA, const XPath &b, const vxRect &boxB)
{
    if (!boxA.touches(boxB))
        return true;
    const auto isTouchedAtPoints = [](const XPath &shape, const Side &side) {
        return allCurves(shape, [&side](const Cubic &c) {
            return side.isTouchedAtEndsOnly(c) && side.isLeftAtAnAngle(c) &&
                   side.isLeftAtAnAngle(c.reversed());
        });
    };
    const auto areParted = [&](int coordinate, double least, double greatest) {
        return isTouchedAtPoints(a, { coordinate, greatest, -1 }) &&
               isTouchedAtPoints(b, { coordinate, least, 1 });
    };
    return (boxA.right() <= boxB.x && areParted(0, boxB.x, boxA.right())) ||
           (boxA.bottom() <= boxB.y && areParted(1, boxB.y, boxA.bottom()));
}

bool liesFreelyOn(const XPath &page, const vxRect &border, const XPath &shape, const vxRect &boxOfShape)
{
    if (!border.containsRect(boxOfShape) || !isUprightRectangle(page))
        return false;
    const vxRect inner(border.x + near, border.y + near, border.width - 2 * near, border.height - 2 * near);
    if (inner.containsRect(boxOfShape))
        return true;
    const Side sides[] = {
        { 0, border.x, 1 }, { 0, border.right(), -1 }, { 1, border.y, 1 }, { 1, border.bottom(), -1 }
    };
    return allCurves(shape, [&inner, &sides](const Cubic &c) {
        return hasControlPointsIn(inner, c) ||
               std::all_of(std::begin(sides), std::end(sides),
                           [&c](const Side &side) { return side.isTouchedAtEndsOnly(c); });
    });
}

} // namespace

bool haveNoCommonBox(const XPath &a, const XPath &b)
{
    return haveNoCommonInside(boundsOf(a), boundsOf(b));
}

bool isPageAround(const XPath &page, const XPath &shape)
{
    return isUprightRectangle(page) && boundsOf(page).containsRect(boundsOf(shape));
}

Placement placementOf(const XPath &first, const XPath &second)
{
    if (!areClosed(first) || !areClosed(second))
        return Placement::Unknown;
    const vxRect boxOfFirst = boundsOf(first);
    const vxRect boxOfSecond = boundsOf(second);
    if (haveNoCommonInside(boxOfFirst, boxOfSecond)) {
        const bool isPlain = areSideBySide(first, boxOfFirst, second, boxOfSecond) ||
                             areSideBySide(second, boxOfSecond, first, boxOfFirst);
        return isPlain ? Placement::SideBySide : Placement::Unknown;
    }
    if (liesFreelyOn(second, boxOfSecond, first, boxOfFirst))
        return Placement::FirstOnSecond;
    return liesFreelyOn(first, boxOfFirst, second, boxOfSecond) ? Placement::SecondOnFirst
                                                                : Placement::Unknown;
}

} // namespace vx
