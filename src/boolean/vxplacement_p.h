#pragma once

#include "vxrect.h"

class XPath;

/**
 * Cases that bounding boxes almost decide: shapes side by side, or one inside an upright rectangle. That is
 * common, since what a drawing is clipped to is mostly an upright rectangle around it.
 */
namespace vx {

/** A shape and its bounds, which cost a look at every contour. */
struct BoxedShape {
    const XPath &path;
    const vxRect &box;
};

/**
 * Whether the greater of two operands is so small, or one lies so far off, that absolute tolerances do not
 * mean what they should; the box of an operand without contours is empty.
 */
bool isOutOfScale(const vxRect &first, const vxRect &second);

/** Whether no place lies inside the boxes of both: they are apart, or touch. */
bool haveNoCommonBox(const BoxedShape &a, const BoxedShape &b);

/** Whether a shape is one upright rectangle that holds all of another; they may touch. */
bool isPageAround(const BoxedShape &page, const BoxedShape &shape);

/** How two shapes lie of which no curve meets one of the other's, but where vertices touch. */
enum class Placement { SideBySide, FirstOnSecond, SecondOnFirst, Unknown };

/**
 * Of two closed shapes side by side, or on a page: all curves keep off the line between the boxes, or the
 * border of the page, but for vertices that touch it. Then the outlines do not cross, whatever a search may
 * find. Unknown where that is not so, or not plain.
 */
Placement placementOf(const BoxedShape &first, const BoxedShape &second);

} // namespace vx
