#pragma once

#include <QVector>

class XPath;
class vxPath;

namespace vx {

struct RunNotes;
class StandingCurves;

/** Flags of a contour while a boolean runs: all its stretches are overlaps; and none is in the result. */
constexpr quint32 overlapsOnly = 4;
constexpr quint32 validOverlapsOnly = 8;
/** It stands in the result itself, see Untouched. */
constexpr quint32 taken = 16;

/**
 * A working copy of an operand (null: an empty one), reduced and cleaned of its own crossings; the caller's.
 *
 * Shape tools ask again and again with an operand that stands while another one moves. So an operand keeps
 * what cleaning came to (XPath::_cleanUp), with crossings of its own a cleaned copy unless that is large, and
 * as long as none of its contours changes the next copy is made by that alone: the same copy to the last bit,
 * and the same notes.
 */
XPath *cleanCopy(const XPath *path, RunNotes &notes);

/** Whether a contour is one of few segments and no area: a leftover of numerical noise. */
bool isLeftover(const vxPath &contour);

/** The contours of a working copy, which lets go of them: count 0, the caller's. */
QVector<vxPath *> takeChildren(XPath &copy);
/** The same for those that a walk has taken, which then are as if the walk had made them. */
void letGoOfTaken(XPath &copy);

/**
 * Whether the cleaned copy that cleanCopy() just made of an operand is right though its notes leave doubts;
 * asks the arrangement of the operand, once for one that stands. Never of an operand that is too large to
 * keep anything.
 */
bool isCleaningConfirmed(const XPath &operand);

/**
 * The curves of an operand of which cleanCopy() just made a copy, which may have been reversed since; the
 * operand's, null unless it was asked for before.
 */
StandingCurves *standingCurves(const XPath &path, bool isReversed);

} // namespace vx
