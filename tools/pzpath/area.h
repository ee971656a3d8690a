#pragma once

class XPath;

/**
 * Area filled under the even-odd rule, in square path units, exact up to rounding: Green's theorem over the
 * cubics of each closed contour, added or taken off by how many contours lie around it. Contours may touch
 * themselves and each other, as results of booleans do; where they cross, the figure is approximate. Open
 * contours fill nothing.
 */
double filledArea(const XPath &path);
