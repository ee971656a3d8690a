#pragma once

#include "vxoperation_p.h"
#include "vxsegment.h"

#include <QList>
#include <QVector>

class vxPath;

namespace vx {

struct RunNotes;

// Flags of a contour while a boolean runs.
/** Every stretch is an overlap. */
constexpr quint32 overlapsOnly = 4;
/** Every stretch in the result is an overlap. */
constexpr quint32 onlyOverlapsInResult = 8;
/** It stands in the result itself, see Untouched. */
constexpr quint32 taken = 16;

/** Whether the outline of a result runs along a segment's stretch, by what its winding count says. */
inline bool isInResult(int op, const vxSegment &segment)
{
    switch (op) {
    case resolveOnly:
        return true;
    case Intersect:
        return segment.winding == 2;
    case Unite:
    case Subtract:
    case Exclude:
        return segment.winding == 1;
    default:
        return false;
    }
}

/**
 * What a walk gives for a contour that meets nothing and is kept: a copy, or the contour itself. That one
 * stays a child of its compound path, flagged as taken, until letGoOfTaken().
 */
enum class Untouched { Copied, Taken };

/** XPath::tracePaths, with notes of what the walk met; op: an Operation or resolveOnly. */
QVector<vxPath *> tracePaths(const QList<vxSegment *> &segments, int op, Untouched untouched,
                             RunNotes &notes);

/** Whether a contour is one of few segments and no area: a leftover of numerical noise. */
bool isLeftover(const vxPath &contour);

} // namespace vx
