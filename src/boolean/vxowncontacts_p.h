#pragma once

class XPath;

namespace vx {

/**
 * Whether a result joins the contours of an operand just as the operand does wherever these touch each other
 * at vertices. copy: its working copy after walking, with positions. Otherwise what hangs together at a point
 * could be drawn as other contours.
 */
bool keepsContactsOf(const XPath &copy, int op, bool isSecond);

} // namespace vx
