#pragma once

class XPath;

/** Shapes on a page or in a frame: what a drawing is clipped to is mostly an upright rectangle around it. */
namespace vx {

/** Whether a shape is one upright rectangle that holds all of another; they may touch. */
bool isPageAround(const XPath &page, const XPath &shape);

/**
 * Whether all curves of a shape keep off the border of the page that is around it, but for vertices that
 * touch it. Then the outlines do not cross, whatever a search may find.
 */
bool touchesAtVerticesOnly(const XPath &page, const XPath &shape);

} // namespace vx
