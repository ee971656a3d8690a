#pragma once

#include "vxintersect_p.h"

/**
 * Quick proofs that two curves have nothing to do with each other, or nothing but the end that they share.
 * They cost some fifty instructions and spare most pairs of a drawing the search for overlaps and meetings.
 *
 * A proof counts only if the full search would find nothing and note nothing, its rounding included. All
 * margins are far above both: curves count as ordinary up to coordinates of a million units, where a computed
 * point is off by less than 1e-9 units.
 */
namespace vx {

/** What two curves may have to do with each other. */
enum class PossibleContact {
    None,     ///< nothing at all
    Crossing, ///< no end of either comes near the other: no overlap, no close ends
    Any
};

PossibleContact possibleContact(const PreparedCurve &c1, const PreparedCurve &c2);
/** The same; where it says Any, nearEnd becomes what findOverlap() wants to know. */
PossibleContact possibleContact(const PreparedCurve &c1, const PreparedCurve &c2, int &nearEnd);

/** False where a point lies so far off that neither timeOf() nor timeNear() within 5 closeDistance finds a
 * time. */
bool mayComeNear(const PreparedCurve &curve, const vxPoint &p);

/** The end at which a curve is joined to its neighbour in a contour. */
enum class Joint {
    EndToStart, ///< the first ends where the second starts
    StartToEnd  ///< the first starts where the second ends
};

/**
 * Whether a search that leaves out meetings at the joint finds nothing: the two share that very point, turn
 * away from each other there, and come near each other nowhere else.
 */
bool meetOnlyAtJoint(const PreparedCurve &c1, const PreparedCurve &c2, Joint joint);

/**
 * Whether two curved curves share an end and lie so that clipping finds that end, exactly, and nothing else.
 * In its first step all of the first but the end lies outside of the second's fat line, which ends there: the
 * first shrinks to that point. In its second step all of the second but the end lies to one side of the
 * vertical through the point. Heights of a shared end are 0 without rounding, and so are its times.
 */
bool clipToSharedEnd(const PreparedCurve &c1, const PreparedCurve &c2, TimePair &meeting);

/**
 * Whether of the four ends only those at the joint, which are one point, come near the other curve. They give
 * an overlap its one end twice, so there is none; nor are there other close ends.
 */
bool touchOnlyAtJoint(const PreparedCurve &c1, const PreparedCurve &c2, Joint joint);

} // namespace vx
