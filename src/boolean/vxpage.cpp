#include "vxpage_p.h"

#include "vxmonopieces_p.h"
#include "xpath.h"

#include <algorithm>

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

/** Whether a curve keeps off a side of the page but for its ends; so far off it lie its control points. */
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

bool touchesAtEndsOnly(const Cubic &c, const vxRect &page)
{
    const auto isOff = [&c](int coordinate, double side, double inward) {
        const auto distance = [&](int i) { return inward * (c.v[2 * i + coordinate] - side); };
        return touchesAtEndsOnly(distance(0), distance(1), distance(2), distance(3));
    };
    return isOff(0, page.x, 1) && isOff(0, page.right(), -1) && isOff(1, page.y, 1) &&
           isOff(1, page.bottom(), -1);
}

vxRect boundsOf(const XPath &shape)
{
    return shape.getBounds(vxBoundOpt::geometric(), vxStyle());
}

} // namespace

bool isPageAround(const XPath &page, const XPath &shape)
{
    return isUprightRectangle(page) && boundsOf(page).containsRect(boundsOf(shape));
}

bool touchesAtVerticesOnly(const XPath &page, const XPath &shape)
{
    const vxRect border = boundsOf(page);
    for (const vxPath *child : shape.children) {
        for (int i = 0; i < outlineSize(*child); ++i) {
            if (!touchesAtEndsOnly(outlineCurve(*child, i), border))
                return false;
        }
    }
    return true;
}

} // namespace vx
