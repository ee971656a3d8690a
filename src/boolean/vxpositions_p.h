#pragma once

#include <QtGlobal>

#include <optional>

class vxSegment;
struct vxContact;

namespace vx {

/**
 * Where a stretch of one operand's outline, from one meeting with the other operand to the next, lies. Along:
 * it is one curve that runs along one of the other's, and both fill the same side of it, or opposite ones.
 */
enum class Position : quint8 { Outside, Inside, AlongSame, AlongOpposite };

inline bool isAlong(Position position)
{
    return position == Position::AlongSame || position == Position::AlongOpposite;
}

/** Of the stretches that end and begin at a vertex. */
struct Positions {
    Position before, after;
};

/**
 * Which side of an outline its operand fills, of the operand that a vertex belongs to and of the other; right
 * as it runs, y pointing down.
 */
struct FilledSides {
    bool ownRight, otherRight;
    /** Straight curves between the same places run together, wherever on their chord their handles lie. */
    bool straightIsShared = false;
};

/** Of two outlines that meet: that of a vertex, and the other where that could be told as well. */
struct MeetingPositions {
    Positions own;
    vxSegment *partner; ///< the other's vertex; null where its positions were not told
    Positions partners;
};

/** Of two outlines that touch without passing through each other: that of a vertex, and the other. */
struct ContactPositions {
    Position own, other;
    /** Where the other's curve that holds the place, or follows it, starts. */
    const vxSegment *otherStretch;
    /** Two of the curves leave the place in one direction. */
    bool isTangent;
};

/** The other operand's vertex at the same place; null where there is none, or more than one. */
vxSegment *partnerAt(const vxSegment &vertex);

/**
 * How two outlines lie to each other at a vertex where they meet, told by the directions in which the four
 * curves leave it. False where two of these are so near each other, or curves so short, that it is not sure.
 */
bool positionsAt(const vxSegment &vertex, const FilledSides &sides, MeetingPositions &positions);

/**
 * The same at a contact that was not taken for a meeting; the curve of the other outline may have been
 * divided since. None where it is not sure that the two only touch.
 */
std::optional<ContactPositions> positionsAtContact(const vxContact &contact, const FilledSides &sides);

} // namespace vx
