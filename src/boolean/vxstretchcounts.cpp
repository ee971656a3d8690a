#include "vxstretchcounts_p.h"

#include "vxcubic_p.h"
#include "vxcurvelocation.h"
#include "vxfilledregion_p.h"
#include "vxmono.h"
#include "vxoperation_p.h"
#include "vxoutline_p.h"
#include "xpath.h"

#include <algorithm>
#include <memory>
#include <optional>

namespace vx {

namespace {

/** What Sampler counts on a stretch of an operand: the larger of the windings of its two sides. */
vxWinding countOf(int op, bool isSecond, Position position)
{
    // Operands that are subtracted or excluded wind against each other: what both fill counts as nothing.
    const bool against = op == Subtract || op == Exclude;
    switch (position) {
    case Position::Outside:
        return op == Subtract && isSecond ? vxWinding{} : vxWinding{ 1, true };
    case Position::Inside:
        if (op == Subtract && !isSecond)
            return {};
        return against ? vxWinding{ 1, true } : vxWinding{ 2, false };
    case Position::AlongSame:
        if (op == Subtract && !isSecond)
            return {};
        return { 2, !against };
    case Position::AlongOpposite:
        break;
    }
    return op == Subtract && !isSecond ? vxWinding{} : vxWinding{ 1, false };
}

void clearCounts(const XPath &path)
{
    for (const vxPath *child : path.children) {
        for (vxSegment *segment : child->_segments()) {
            segment->winding = -1;
            segment->contour = false;
            segment->arrival = vxSegment::noPosition;
        }
    }
}

/** What is written to stretches whose positions are known. */
enum class Write { PositionsAndCounts, PositionsOnly };

/** What an operand fills, of which nothing is made before it is asked for. */
class RegionOnDemand
{
public:
    explicit RegionOnDemand(const XPath &operand) : m_operand(operand) {}

    std::optional<bool> holds(const vxPoint &p)
    {
        if (!m_box)
            m_box = m_operand.getBounds(vxBoundOpt::geometric(), vxStyle());
        if (p.x < m_box->x || p.x > m_box->right() || p.y < m_box->y || p.y > m_box->bottom())
            return false;
        if (!m_region)
            m_region = filledRegion(m_operand);
        return m_region->holds(p);
    }

private:
    const XPath &m_operand;
    std::optional<vxRect> m_box;
    std::shared_ptr<const FilledRegion> m_region;
};

/** Finds where the contours of one operand lie with respect to the other. */
class StretchClassifier
{
public:
    StretchClassifier(const DividedOperand &own, const DividedOperand &other, int op, bool isSecond,
                      Write writes)
        : m_own(own), m_op(op), m_isSecond(isSecond),
          m_writes(writes), m_sides{ own.fillsRight, other.fillsRight, writes == Write::PositionsOnly },
          m_otherRegion(*other.original)
    {
    }

    bool classify()
    {
        const QVector<vxPath *> &children = m_own.copy->children;
        return std::all_of(children.begin(), children.end(),
                           [this](const vxPath *child) { return classifyContour(*child); });
    }

private:
    bool classifyContour(const vxPath &contour)
    {
        const QList<vxSegment *> &segments = contour._segments();
        int first = 0;
        while (first < segments.size() && !segments.at(first)->intersection())
            ++first;
        return first < segments.size() ? classifyFrom(first, segments) : classifyWhole(contour);
    }

    /** Around a contour, from a vertex at which it meets the other operand. */
    bool classifyFrom(int first, const QList<vxSegment *> &segments)
    {
        Positions atFirst;
        if (!tellPositions(*segments.at(first), atFirst))
            return false;
        Position position = atFirst.after;
        give(*segments.at(first), position);
        for (int i = 1; i < segments.size(); ++i) {
            vxSegment *segment = segments.at((first + i) % segments.size());
            if (segment->intersection()) {
                Positions here;
                if (!tellPositions(*segment, here) || here.before != position)
                    return false;
                position = here.after;
            }
            give(*segment, position);
        }
        return position == atFirst.before;
    }

    /** At a meeting, where both outlines' positions are told at once: each vertex keeps its own. */
    bool tellPositions(vxSegment &vertex, Positions &positions) const
    {
        if (vertex.arrival == vxSegment::noPosition) {
            MeetingPositions told;
            if (!positionsAt(vertex, m_sides, told))
                return false;
            keep(vertex, told.own);
            if (told.partner)
                keep(*told.partner, told.partners);
        }
        positions = { Position(vertex.arrival), Position(vertex.position) };
        return true;
    }

    static void keep(vxSegment &vertex, const Positions &positions)
    {
        vertex.arrival = quint8(positions.before);
        vertex.position = quint8(positions.after);
    }

    /** A contour that meets nothing. */
    bool classifyWhole(const vxPath &contour)
    {
        const std::optional<bool> isInside =
            tellByPlaces(contour, [this](const vxPoint &p) { return m_otherRegion.holds(p); });
        if (!isInside)
            return false;
        for (vxSegment *segment : contour._segments())
            give(*segment, *isInside ? Position::Inside : Position::Outside);
        return true;
    }

    void give(vxSegment &segment, Position position) const
    {
        segment.position = quint8(position);
        if (m_writes == Write::PositionsOnly)
            return;
        const vxWinding count = countOf(m_op, m_isSecond, position);
        segment.winding = count.winding;
        segment.contour = count.contour;
    }

    const DividedOperand &m_own;
    const int m_op;
    const bool m_isSecond;
    const Write m_writes;
    const FilledSides m_sides;
    RegionOnDemand m_otherRegion;
};

bool findPositions(const DividedOperand &first, const DividedOperand &second, int op, Write writes)
{
    return areClosed(*first.copy) && areClosed(*second.copy) &&
           StretchClassifier(first, second, op, false, writes).classify() &&
           StretchClassifier(second, first, op, true, writes).classify();
}

// --- after tracing ---

/** Whether one of two stretches that run together was walked, as the boundary does or does not. */
bool walkedOneOf(const vxSegment &stretch, bool isWanted)
{
    const vxSegment *theirStart = partnerAt(stretch);
    const vxSegment *theirEnd = partnerAt(*stretch.getNext());
    if (!theirStart || !theirEnd)
        return false;
    const vxSegment &theirs = theirStart->getNext() == theirEnd ? *theirStart : *theirEnd;
    return isAlong(Position(theirs.position)) && int(stretch.walked) + int(theirs.walked) == int(isWanted);
}

bool walkedRightly(const XPath &path, int op, bool isSecond)
{
    for (const vxPath *child : path.children) {
        for (const vxSegment *segment : child->_segments()) {
            const auto position = Position(segment->position);
            const bool isWanted = isBoundary(op, isSecond, position);
            if (isAlong(position) ? !walkedOneOf(*segment, isWanted) : segment->walked != isWanted)
                return false;
        }
    }
    return true;
}

/** Whether the result passes a meeting once, or the outlines cross there and each passes once. */
bool passesOnce(const vxSegment &vertex)
{
    const vxSegment *partner = partnerAt(vertex);
    if (!partner)
        return false;
    const vxSegment &before = *vertex.getPrevious();
    const vxSegment &theirBefore = *partner->getPrevious();
    const int walked = before.walked + vertex.walked + theirBefore.walked + partner->walked;
    const auto crosses = [](const vxSegment &from, const vxSegment &to) {
        return from.position != to.position && !isAlong(Position(from.position)) &&
               !isAlong(Position(to.position));
    };
    // At a crossing of two shapes that exclude each other, a walk that goes straight on crosses itself.
    return walked <= 2 || (crosses(before, vertex) && crosses(theirBefore, *partner) && vertex.changedOver &&
                           partner->changedOver);
}

bool passesEachMeetingOnce(const XPath &path)
{
    for (const vxPath *child : path.children) {
        for (const vxSegment *segment : child->_segments()) {
            if (segment->intersection() && !passesOnce(*segment))
                return false;
        }
    }
    return true;
}

bool hasMeetings(const XPath &path)
{
    return std::any_of(path.children.begin(), path.children.end(), [](const vxPath *child) {
        const QList<vxSegment *> &segments = child->_segments();
        return std::any_of(segments.begin(), segments.end(),
                           [](const vxSegment *segment) { return segment->intersection(); });
    });
}

/**
 * Whether the result passes a contact as one of the outlines does, or, with two contours, as both do where
 * each is outside of the other. Otherwise contours would be joined in another way.
 */
bool passesApart(const vxContact &contact, const FilledSides &sides, bool hasContourOfEach)
{
    if (contact.vertex->intersection() || (contact.otherVertex && contact.otherVertex->intersection()))
        return true; // passesOnce() tells
    const std::optional<ContactPositions> lie = positionsAtContact(contact, sides);
    if (!lie || Position(contact.vertex->position) != lie->own ||
        Position(lie->otherStretch->position) != lie->other)
        return false;
    if (!contact.vertex->walked || !lie->otherStretch->walked)
        return true;
    return hasContourOfEach && !lie->isTangent && lie->own == Position::Outside &&
           lie->other == Position::Outside;
}

} // namespace

bool isBoundary(int op, bool isSecond, Position position)
{
    switch (position) {
    case Position::Outside:
        return op == Unite || op == Exclude || (op == Subtract && !isSecond);
    case Position::Inside:
        return op == Intersect || op == Exclude || (op == Subtract && isSecond);
    case Position::AlongSame:
        return op == Unite || op == Intersect;
    case Position::AlongOpposite:
        break;
    }
    return op == Subtract;
}

bool findPositions(const DividedOperand &first, const DividedOperand &second, int op)
{
    return findPositions(first, second, op, Write::PositionsOnly);
}

bool countByEnds(const DividedOperand &first, const DividedOperand &second, int op)
{
    if (findPositions(first, second, op, Write::PositionsAndCounts))
        return true;
    clearCounts(*first.copy);
    clearCounts(*second.copy);
    return false;
}

bool walkedTheBoundary(const DividedOperand &first, const DividedOperand &second, int op,
                       const std::vector<vxContact> &contacts)
{
    // Elsewhere one contour may go around both, and pass the contact twice.
    const bool hasContourOfEach = op == Exclude || !hasMeetings(*first.copy);
    const auto isApart = [&](const vxContact &contact) {
        const bool isFirst = contact.vertex->path->parent == first.copy;
        return passesApart(contact,
                           isFirst ? FilledSides{ first.fillsRight, second.fillsRight }
                                   : FilledSides{ second.fillsRight, first.fillsRight },
                           hasContourOfEach);
    };
    return walkedRightly(*first.copy, op, false) && walkedRightly(*second.copy, op, true) &&
           passesEachMeetingOnce(*first.copy) && std::all_of(contacts.begin(), contacts.end(), isApart);
}

} // namespace vx
