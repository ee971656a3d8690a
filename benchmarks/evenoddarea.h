#pragma once

class QPainterPath;

/**
 * Area filled under the even-odd rule, in square path units, whatever the outlines do: they may cross, touch
 * or run together. Cubics count as chords that stay within a millionth of the path's size. NaN for a path
 * with a coordinate that is not finite. It shares no code with the library, so that it can judge its results
 * as well as others'.
 */
double evenOddArea(const QPainterPath &path);
