#include "vxplacement_p.h"

#include "vxoutline_p.h"
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
    const auto haveSame = [&corners](double vxPoint::*coordinate, int i) {
        return corners.at(i)->point.*coordinate == corners.at((i + 1) % 4)->point.*coordinate;
    };
    const auto alternates = [&haveSame](double vxPoint::*first, double vxPoint::*second) {
        return haveSame(first, 0) && haveSame(second, 1) && haveSame(first, 2) && haveSame(second, 3);
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
struct BorderLine {
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

/**
 * Whether the line between two boxes that have no common inside is touched at vertices only, and at angles:
 * where outlines have one direction, they may belong together as well as apart.
 */
bool areSideBySide(const BoxedShape &a, const BoxedShape &b)
{
    if (!a.box.touches(b.box))
        return true;
    const auto isTouchedAtPoints = [](const XPath &shape, const BorderLine &side) {
        return allCurves(shape, [&side](const Cubic &c) {
            return side.isTouchedAtEndsOnly(c) && side.isLeftAtAnAngle(c) &&
                   side.isLeftAtAnAngle(c.reversed());
        });
    };
    const auto areParted = [&](int coordinate, double least, double greatest) {
        return isTouchedAtPoints(a.path, { coordinate, greatest, -1 }) &&
               isTouchedAtPoints(b.path, { coordinate, least, 1 });
    };
    return (a.box.right() <= b.box.x && areParted(0, b.box.x, a.box.right())) ||
           (a.box.bottom() <= b.box.y && areParted(1, b.box.y, a.box.bottom()));
}

bool liesFreelyOn(const BoxedShape &page, const BoxedShape &shape)
{
    const vxRect &border = page.box;
    if (!isPageAround(page, shape))
        return false;
    const vxRect inner(border.x + near, border.y + near, border.width - 2 * near, border.height - 2 * near);
    if (inner.containsRect(shape.box))
        return true;
    const BorderLine sides[] = {
        { 0, border.x, 1 }, { 0, border.right(), -1 }, { 1, border.y, 1 }, { 1, border.bottom(), -1 }
    };
    return allCurves(shape.path, [&inner, &sides](const Cubic &c) {
        return hasControlPointsIn(inner, c) ||
               std::all_of(std::begin(sides), std::end(sides),
                           [&c](const BorderLine &side) { return side.isTouchedAtEndsOnly(c); });
    });
}

} // namespace

bool isOutOfScale(const vxRect &first, const vxRect &second)
{
    // Smaller features than closeDistance do not count, and far off the numbers themselves are coarser than
    // it.
    constexpr double leastExtent = 1;
    constexpr double greatestCoordinate = 1e6;
    // From 0 on, so that what is no number counts for nothing.
    const double least = std::min({ 0.0, first.x, first.y, second.x, second.y });
    const double greatest = std::max({ 0.0, first.right(), first.bottom(), second.right(), second.bottom() });
    const double extent = std::max({ 0.0, first.width, first.height, second.width, second.height });
    return extent < leastExtent || least < -greatestCoordinate || greatest > greatestCoordinate;
}

bool haveNoCommonBox(const BoxedShape &a, const BoxedShape &b)
{
    return std::min(a.box.right(), b.box.right()) <= std::max(a.box.x, b.box.x) ||
           std::min(a.box.bottom(), b.box.bottom()) <= std::max(a.box.y, b.box.y);
}

bool isPageAround(const BoxedShape &page, const BoxedShape &shape)
{
    return page.box.containsRect(shape.box) && isUprightRectangle(page.path);
}

Placement placementOf(const BoxedShape &first, const BoxedShape &second)
{
    if (!areClosed(first.path) || !areClosed(second.path))
        return Placement::Unknown;
    if (haveNoCommonBox(first, second)) {
        const bool isPlain = areSideBySide(first, second) || areSideBySide(second, first);
        return isPlain ? Placement::SideBySide : Placement::Unknown;
    }
    if (liesFreelyOn(second, first))
        return Placement::FirstOnSecond;
    return liesFreelyOn(first, second) ? Placement::SecondOnFirst : Placement::Unknown;
}

} // namespace vx
