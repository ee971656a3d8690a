#pragma once

#include "vxpositions_p.h"

#include <vector>

class XPath;
struct vxContact;

namespace vx {

/** Whether the result's boundary runs along a stretch of an operand; of two that run together, along one. */
bool isBoundary(int op, bool isSecond, Position position);

/** One operand of a boolean: as it was given, and its working copy, divided. */
struct DividedOperand {
    const XPath *original;
    const XPath *copy;
    /** The copy has what it fills on the right of its outlines, y pointing down. */
    bool fillsRight;
};

/**
 * Gives the stretches of two divided operands their positions and the counts that Sampler gives, without a
 * sample. Neither operand may have crossings, overlaps or contacts of its own.
 *
 * How outlines lie at a meeting tells where the stretches that end and begin there lie, so that every stretch
 * is told twice, by both its ends, which must agree. A contour that meets nothing lies inside or outside with
 * all its points, and one that is clear of the other's outline tells it. The counts follow, since each
 * operand fills its region once.
 *
 * False, and no segment is counted, where something does not fit or is not sure.
 */
bool countByEnds(const DividedOperand &first, const DividedOperand &second, int op);

/**
 * Gives stretches that have been sampled their positions in the same way, and leaves their counts alone. Then
 * operands may touch themselves, and straight borders with handles of different lengths are shared.
 */
bool findPositions(const DividedOperand &first, const DividedOperand &second, int op);

/**
 * Whether the traced contours consist of exactly the boundary stretches, and could only be joined one way.
 * Call countByEnds() or findPositions() first. contacts: those that were not taken for meetings. Then there
 * is nothing left to doubt.
 */
bool walkedTheBoundary(const DividedOperand &first, const DividedOperand &second, int op,
                       const std::vector<vxContact> &contacts);

} // namespace vx
