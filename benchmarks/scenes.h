#pragma once

#include "pathdata.h"
#include "vxcubic_p.h"

#include <utility>
#include <vector>

/**
 * The shapes that benchmarks run on, made here and nowhere else. The same arguments give the same shape on
 * every machine. Path units as in a drawing: shapes are 100 to 1000 across, y points down.
 */
namespace scenes {

using Pair = std::pair<PathCommands, PathCommands>;

/** A gear of 12 rounded teeth with a round hole: 76 curves, lines and cubics, 100 units across. */
PathCommands icon();
/** A coast of straight lines around a disc, as rough as a map's; it does not cross itself. */
PathCommands mapOutline(int lines, unsigned seed);
/** One contour of straight lines that crosses itself about points * points / 2 times; points is odd. */
PathCommands denseStar(int points);
/** perSide * perSide squares of 10 units, 5 units apart. */
PathCommands manySquares(int perSide);
/** Two discs of the given number of cubics, apart by offset units: outlines that nearly run together. */
Pair nearCoincidentRings(int curves, double offset);
/** Two wobbly rings of the given number of cubics that cross about as often. */
Pair crossingRings(int curves);
// Pairs that grow at an even scale: the curves stay about 15 units long, the drawing gets larger.

/** Two wobbly rings of the given number of cubics that cross about as often. */
Pair longRings(int curves);
/**
 * Square grids of ellipses of four cubics, one compound path of about the given number of curves against
 * another half a step on: as many crossings as curves.
 */
Pair ellipseGrids(int curves);

/** One closed contour of the given number of smooth cubics that does not cross itself. */
PathCommands standingPath(int curves);

/** Cubics of random control points within 1000 units that share at least one point inside both. */
std::vector<std::pair<vx::Cubic, vx::Cubic>> crossingCubics(int pairs);
/** Seeded random points within a box. */
std::vector<QPointF> points(int count, const QRectF &box);

PathCommands moved(const PathCommands &path, const QPointF &by);

} // namespace scenes
