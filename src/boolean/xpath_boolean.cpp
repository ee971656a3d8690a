// The boolean engine. computeBoolean runs these steps, of which BooleanRun makes the first five:
//  1. copy both operands and clean each of its own crossings (cleanCopy);
//  2. turn the second so that both wind alike (unite, intersect) or against each other (subtract, exclude);
//  3. find the crossings of the two (findIntersections, of which MeetingFilter takes those that count) and
//     divide the curves there (divideLocations);
//  4. give every stretch between crossings its winding count, by its ends (countByEnds) or by its middle
//     (Sampler);
//  5. walk the stretches that belong to the result, changing over at crossings (tracePaths);
//  6. hold the result against the arrangement of all curves where the run met anything doubtful (audit) that
//     is not settled by what the walk kept;
//  7. drop what is left of straight runs (createResult), where an audit has not done so.
// docs/architecture.md tells how they work together.

#include "xpath.h"

#include "vxaudit_p.h"
#include "vxboolean_p.h"
#include "vxbooleanrun_p.h"
#include "vxcleancopy_p.h"
#include "vxoperation_p.h"
#include "vxoutline_p.h"
#include "vxplacement_p.h"
#include "vxrepeated_p.h"
#include "vxrunnotes_p.h"
#include "vxsampler_p.h"
#include "vxtakencontours_p.h"
#include "vxtracing_p.h"

#include <algorithm>
#include <memory>

namespace {

bool isEmpty(const XPath *path)
{
    return !path || path->children.isEmpty();
}

/**
 * What an operation gives when at least one operand is empty: the cleaned contours of the one that counts.
 */
QVector<vxPath *> contoursWithEmpty(XPath *path1, XPath *path2, int op, vx::RunNotes &notes)
{
    const XPath *kept = nullptr;
    if (op == vx::Subtract)
        kept = path1;
    else if (op == vx::Unite || op == vx::Exclude)
        kept = isEmpty(path1) ? path2 : path1;
    const std::unique_ptr<XPath> copy(vx::cleanCopy(kept, notes));
    return vx::takeChildren(*copy);
}

/** The contours of a cleaned copy of an operand but for those that a run would not keep. */
template <typename IsDropped>
QVector<vxPath *> cleanContours(const XPath *path, vx::RunNotes &notes, IsDropped &&isDropped)
{
    const std::unique_ptr<XPath> copy(vx::cleanCopy(path, notes));
    notes.counterClockwise = !copy->isClockwise();
    QVector<vxPath *> contours = vx::takeChildren(*copy);
    const auto drop = [&](vxPath *contour) {
        const bool isGone = isDropped(*contour);
        if (isGone)
            contour->release();
        return isGone;
    };
    contours.erase(std::remove_if(contours.begin(), contours.end(), drop), contours.end());
    return contours;
}

/** The result when both operands have the same outlines. */
QVector<vxPath *> sharedContours(const XPath *path, vx::RunNotes &notes)
{
    return cleanContours(path, notes,
                         [](const vxPath &contour) { return contour.getArea(true, false) == 0; });
}

/** The result when the operand is kept whole; which way round its contours run is decided by the result. */
QVector<vxPath *> walkedContours(const XPath *path, vx::RunNotes &notes)
{
    const QVector<vxPath *> contours = cleanContours(path, notes, vx::isLeftover);
    for (vxPath *contour : contours)
        contour->removeFlags(~0u);
    return contours;
}

vxRect boundsOf(const XPath *path)
{
    return path ? path->_bounds() : vxRect();
}

/** The contours of the result before any audit. No run is made where it is plain what they are. */
QVector<vxPath *> contoursOf(XPath *path1, const vxRect &box1, XPath *path2, const vxRect &box2, int op,
                             vx::RunNotes &notes)
{
    using vx::Placement;
    if (isEmpty(path1) || isEmpty(path2))
        return contoursWithEmpty(path1, path2, op, notes);
    if (path1 == path2 || !vx::areClosed(*path1))
        return vx::BooleanRun(path1, path2, op, notes).run(Placement::Unknown);
    // Every outline would be found to run along its like.
    if (vx::areDrawnAlike(*path1, *path2))
        return op == vx::Intersect || op == vx::Unite ? sharedContours(path1, notes) : QVector<vxPath *>();
    const vx::BoxedShape first{ *path1, box1 };
    const vx::BoxedShape second{ *path2, box2 };
    if (op == vx::Subtract && vx::isPageAround(second, first))
        return {};
    if ((op == vx::Intersect || op == vx::Subtract) && vx::haveNoCommonBox(first, second))
        return op == vx::Subtract ? walkedContours(path1, notes) : QVector<vxPath *>();
    // Differences of shapes that lie so are plain by now, or both outlines are in the result.
    const Placement placement = op == vx::Subtract ? Placement::Unknown : vx::placementOf(first, second);
    return vx::BooleanRun(path1, path2, op, notes).run(placement);
}

} // namespace

XPath *XPath::unite(XPath *other)
{
    return computeBoolean(this, other, vx::Unite);
}

XPath *XPath::unite(XPath *other, vxBooleanReport &report)
{
    return computeBoolean(this, other, vx::Unite, report);
}

XPath *XPath::intersect(XPath *other)
{
    return computeBoolean(this, other, vx::Intersect);
}

XPath *XPath::intersect(XPath *other, vxBooleanReport &report)
{
    return computeBoolean(this, other, vx::Intersect, report);
}

XPath *XPath::subtract(XPath *other)
{
    return computeBoolean(this, other, vx::Subtract);
}

XPath *XPath::subtract(XPath *other, vxBooleanReport &report)
{
    return computeBoolean(this, other, vx::Subtract, report);
}

XPath *XPath::exclude(XPath *other)
{
    return computeBoolean(this, other, vx::Exclude);
}

XPath *XPath::exclude(XPath *other, vxBooleanReport &report)
{
    return computeBoolean(this, other, vx::Exclude, report);
}

QList<XPath *> XPath::divide(XPath *other)
{
    return { subtract(other), intersect(other) };
}

XPath *XPath::computeBoolean(XPath *path1, XPath *path2, int op)
{
    vxBooleanReport report;
    return computeBoolean(path1, path2, op, report);
}

XPath *XPath::computeBoolean(XPath *path1, XPath *path2, int op, vxBooleanReport &report)
{
    return vx::computeBoolean(path1, path2, op, vx::AuditMode::WhereDoubtful, report);
}

XPath *vx::computeBoolean(XPath *path1, XPath *path2, int op, AuditMode mode, vxBooleanReport &report)
{
    report = vxBooleanReport();
    for (const XPath *path : { path1, path2 }) {
        if (path)
            path->_noticeEdits();
    }
    if (path1 && isSingleOpen(*path1))
        return computeOpenBoolean(path1, path2, op, report);
    if (op < vx::Intersect || op > vx::Exclude)
        return new XPath;
    RunNotes notes;
    const vxRect box1 = boundsOf(path1);
    const vxRect box2 = boundsOf(path2);
    AuditedContours result{ contoursOf(path1, box1, path2, box2, op, notes), false };
    // Only now: a run that settles its doubts clears all of them, and this is none that it can settle.
    notes.outOfScale = vx::isOutOfScale(box1, box2);
    // One object as both operands counts once: the run has made one copy of it, so that nothing is filled
    // twice. An intersection keeps nothing then, and every other operation the object itself.
    const bool once = path1 == path2 && path1;
    if (!once || op != vx::Intersect) {
        const QVector<const XPath *> operands =
            once ? QVector<const XPath *>{ path1 } : QVector<const XPath *>{ path1, path2 };
        result =
            audit(operands, once ? Operation::Unite : Operation(op), result.contours, notes, mode, report);
    }
    return XPath::createResult(result.contours, !result.isFinal, path1, path2);
}

void XPath::propagateWinding(vxSegment *start, XPath *path1, XPath *path2, const QList<vxMono *> &monos,
                             int op)
{
    vx::RunNotes notes;
    if (start && path1)
        vx::Sampler(path1, path2, monos, op, notes).propagate(start);
}

XPath *XPath::createResult(const QVector<vxPath *> &paths, bool simplify, XPath *, XPath *)
{
    auto *result = new XPath;
    result->addChildren(paths, -1);
    if (simplify)
        result->reduce(true);
    return result;
}
