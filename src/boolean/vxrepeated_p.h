#pragma once

class XPath;

namespace vx {

/**
 * Leaves out contours that are drawn several times, number for number, as far as the fill rule makes them
 * count for nothing. Many copies of one outline meet each other everywhere: the searches would grow with the
 * cube of their number.
 */
void dropRepeated(XPath &path);

/** Whether two operands have the same contours, number for number and in order, and are filled alike. */
bool areDrawnAlike(const XPath &a, const XPath &b);

} // namespace vx
