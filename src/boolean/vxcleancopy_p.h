#pragma once

class XPath;

namespace vx {

struct RunNotes;
class StandingCurves;

/**
 * A working copy of an operand (null: an empty one), reduced and cleaned of its own crossings; the caller's.
 *
 * Shape tools ask again and again with an operand that stands while another one moves. So an operand keeps
 * what cleaning came to (XPath::_cleanUp), with crossings of its own a cleaned copy unless that is large, and
 * as long as none of its contours changes the next copy is made by that alone: the same copy to the last bit,
 * and the same notes.
 */
XPath *cleanCopy(const XPath *path, RunNotes &notes);

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
