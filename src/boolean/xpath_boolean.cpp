// The boolean engine. computeBoolean runs these steps:
//  1. copy both operands and clean each of its own crossings (cleanCopy);
//  2. turn the second so that both wind alike (unite, intersect) or against each other (subtract, exclude);
//  3. find the crossings of the two and divide the curves there (getCrossings, divideLocations);
//  4. give every stretch between crossings its winding count, by its ends (countByEnds) or by its middle
//     (Sampler);
//  5. walk the stretches that belong to the result, changing over at crossings (tracePaths);
//  6. hold the result against the arrangement of all curves where the run met anything doubtful (audit) and
//     that the walk kept just the boundary does not settle;
//  7. drop what is left of straight runs (createResult).

#include "xpath.h"

#include "vxarrangement_p.h"
#include "vxaudit_p.h"
#include "vxcleancopy_p.h"
#include "vxcurvelocation.h"
#include "vxintersections_p.h"
#include "vxlocationowner_p.h"
#include "vxmeetingplaces_p.h"
#include "vxowncontacts_p.h"
#include "vxpage_p.h"
#include "vxref_p.h"
#include "vxsampler_p.h"
#include "vxstandingcurves_p.h"
#include "vxstretchcounts_p.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace {

enum Operation { Intersect = 1, Unite = 2, Subtract = 3, Exclude = 4 };

bool isEmpty(const XPath *path)
{
    return !path || path->children.isEmpty();
}

/** Whether no place lies inside the boxes of both: they are apart, or touch. */
bool haveNoCommonBox(const XPath &a, const XPath &b)
{
    const vxRect boxA = a.getBounds(vxBoundOpt::geometric(), vxStyle());
    const vxRect boxB = b.getBounds(vxBoundOpt::geometric(), vxStyle());
    return std::min(boxA.right(), boxB.right()) <= std::max(boxA.x, boxB.x) ||
           std::min(boxA.bottom(), boxB.bottom()) <= std::max(boxA.y, boxB.y);
}

/** The children of a working copy, which lets go of them: count 0, the caller's. */
QVector<vxPath *> takeChildren(XPath &path)
{
    QVector<vxPath *> taken = path.children;
    std::vector<vxRef<vxPath>> held;
    for (vxPath *child : qAsConst(taken))
        held.emplace_back(child);
    path.removeChildren(0, -1);
    for (vxRef<vxPath> &child : held)
        child.take();
    return taken;
}

/**
 * What an operation gives when at least one operand is empty: the cleaned contours of the one that counts.
 */
QVector<vxPath *> contoursWithEmpty(XPath *path1, XPath *path2, int op, vx::RunNotes &notes)
{
    const XPath *kept = nullptr;
    if (op == Subtract)
        kept = path1;
    else if (op == Unite || op == Exclude)
        kept = isEmpty(path1) ? path2 : path1;
    const std::unique_ptr<XPath> copy(vx::cleanCopy(kept, notes));
    return takeChildren(*copy);
}

/** The cleaned contours of an operand that have an area. */
QVector<vxPath *> cleanContours(const XPath *path, vx::RunNotes &notes)
{
    const std::unique_ptr<XPath> copy(vx::cleanCopy(path, notes));
    notes.counterClockwise = !copy->isClockwise();
    QVector<vxPath *> contours = takeChildren(*copy);
    const auto hasNoArea = [](vxPath *contour) {
        const bool isNothing = contour->getArea(true, false) == 0;
        if (isNothing)
            contour->release();
        return isNothing;
    };
    contours.erase(std::remove_if(contours.begin(), contours.end(), hasNoArea), contours.end());
    return contours;
}

/** Prepared working copies of both operands, divided at their crossings; lives as long as one boolean. */
class BooleanRun
{
public:
    BooleanRun(XPath *path1, XPath *path2, int op, vx::RunNotes &notes)
        : m_op(op), m_notes(notes), m_filter(notes), m_original1(path1), m_original2(path2)
    {
        m_path1.reset(vx::cleanCopy(path1, m_own1));
        if (path2 && path2 != path1)
            m_path2.reset(vx::cleanCopy(path2, m_own2));
        m_notes.add(m_own1);
        m_notes.add(m_own2);
        const bool isReversed = orient();
        m_standing1 = vx::standingCurves(*path1, false);
        m_standing2 = m_path2 ? vx::standingCurves(*path2, isReversed) : nullptr;
        divide();
    }

    QVector<vxPath *> trace()
    {
        collect();
        const bool isCounted = countByEnds();
        if (!isCounted)
            sample();
        for (const vxSegment *segment : qAsConst(m_segments))
            clearOverlapFlags(segment);
        vx::RunNotes ofTracing;
        const QVector<vxPath *> contours = vx::tracePaths(m_segments, m_op, ofTracing);
        m_notes.add(ofTracing);
        if (m_notes.any() && !ofTracing.any() && (isCounted || findPositions()) && walkedTheBoundary() &&
            missedNothing() && isConfirmed(m_original1, *m_path1, m_own1) &&
            isConfirmed(m_original2, *m_path2, m_own2))
            m_notes.clearDoubts();
        return contours;
    }

private:
    /** Returns whether that reversed the second. */
    bool orient()
    {
        m_notes.counterClockwise = !m_path1->isClockwise();
        const bool opposite = m_op == Subtract || m_op == Exclude;
        if (!m_path2 || (m_path1->isClockwise() != m_path2->isClockwise()) == opposite)
            return false;
        m_path2->reverse();
        return true;
    }

    void divide()
    {
        m_path1->_makeCurves();
        if (m_path2)
            m_path2->_makeCurves();
        if (m_standing1)
            m_standing1->number(*m_path1);
        if (m_standing2)
            m_standing2->number(*m_path2);
        const auto accept = [this](vxCurveLocation *location) { return m_filter.accepts(*location); };
        const QList<vxCurveLocation *> crossings =
            meetsNothing() ? QList<vxCurveLocation *>()
                           : vx::findIntersections(*m_path1, m_path2.get(), accept, m_doubts);
        m_notes.add(m_doubts);
        for (const vxUnfinished &pair : m_doubts.unfinished)
            m_unfinished.push_back({ pair.curve1->_cubic(), pair.curve2->_cubic() });
        m_owner = std::make_unique<vx::LocationOwner>(crossings);
        m_locations = m_path1->divideLocations(vxCurveLocation::expand(crossings), 0);
        vx::noteChains(m_locations, m_notes);
    }

    /** Whether one operand lies in a page that is the other, and where they touch only one is in the result.
     */
    bool meetsNothing() const
    {
        const auto isOnPage = [](const XPath &page, const XPath &shape) {
            return vx::isPageAround(page, shape) && vx::areClosed(shape) &&
                   vx::touchesAtVerticesOnly(page, shape);
        };
        return m_path2 && (m_op == Intersect || m_op == Unite) &&
               (isOnPage(*m_original2, *m_original1) || isOnPage(*m_original1, *m_original2));
    }

    void collect()
    {
        for (XPath *path : { m_path1.get(), m_path2.get() }) {
            if (!path)
                continue;
            for (vxPath *child : qAsConst(path->children)) {
                m_segments += child->_segments();
                child->addFlags(vx::overlapsOnly | vx::validOverlapsOnly);
            }
        }
    }

    vx::DividedOperand operand1() const { return { m_original1, m_path1.get(), m_path1->isClockwise() }; }
    vx::DividedOperand operand2() const { return { m_original2, m_path2.get(), m_path2->isClockwise() }; }

    /** Where neither operand touches itself and no search was cut short. */
    bool countByEnds() const
    {
        return m_path2 && !m_own1.any() && !m_own2.any() && !m_doubts.limitReached &&
               vx::countByEnds(operand1(), operand2(), m_op);
    }

    /** Of stretches that were sampled. */
    bool findPositions() const { return m_path2 && vx::findPositions(operand1(), operand2(), m_op); }

    /** Whether searches that were cut short had found all that there is to find. */
    bool missedNothing() const
    {
        constexpr double samePlace = 1e-5; // path units; what clipping reports may be no meeting at all
        if (m_unfinished.empty())
            return true;
        std::vector<vxPoint> places;
        for (const vxCurveLocation *location : m_locations) {
            const vxCurveLocation *partner = location->intersection;
            if (!partner || !location->point.isClose(partner->point, samePlace))
                return false;
            places.push_back(location->point);
        }
        for (const vxContact &contact : contacts())
            places.push_back(contact.vertex->point);
        return std::all_of(m_unfinished.begin(), m_unfinished.end(),
                           [&](const auto &pair) { return vx::meetOnlyAt(pair.first, pair.second, places); });
    }

    /** After tracing, whether an operand that touches itself was cleaned rightly and is joined as it was. */
    bool isConfirmed(const XPath *original, const XPath &copy, const vx::RunNotes &own) const
    {
        return !own.any() || (vx::keepsContactsOf(copy, m_op, original == m_original2) &&
                              vx::isCleaningConfirmed(*original));
    }

    /** After tracing stretches of which the positions are known. */
    bool walkedTheBoundary() const
    {
        return !m_filter.touchedOffVertices() &&
               vx::walkedTheBoundary(operand1(), operand2(), m_op, contacts());
    }

    /** Places where the operands come so near each other that they touch, or may. */
    std::vector<vxContact> contacts() const
    {
        std::vector<vxContact> contacts = m_filter.touches();
        contacts.insert(contacts.end(), m_doubts.nearMisses.begin(), m_doubts.nearMisses.end());
        return contacts;
    }

    void sample()
    {
        vx::Sampler sampler(m_path1.get(), m_path2.get(), m_op, m_notes, m_standing1, m_standing2);
        const vxSegment *previous = nullptr; // several places at one vertex follow each other
        for (vxCurveLocation *location : qAsConst(m_locations)) {
            vxSegment *segment = location->segmentM();
            if (segment && segment != previous)
                sampler.propagate(segment);
            previous = segment;
        }
        for (vxSegment *segment : qAsConst(m_segments)) {
            if (segment->winding == -1)
                sampler.propagate(segment);
        }
    }

    void clearOverlapFlags(const vxSegment *segment) const
    {
        if (segment->intersection() && segment->intersection()->overlap)
            return;
        segment->path->removeFlags(vx::overlapsOnly);
        const bool inResult =
            m_op == Intersect ? segment->winding == 2 : m_op >= Unite && segment->winding == 1;
        if (inResult)
            segment->path->removeFlags(vx::validOverlapsOnly);
    }

    int m_op;
    vx::RunNotes &m_notes;
    vx::MeetingFilter m_filter;
    vx::SearchDoubts m_doubts;
    /** Curves of which the search was cut short, undivided. */
    std::vector<std::pair<vx::Cubic, vx::Cubic>> m_unfinished;
    /** What cleaning the operands met. */
    vx::RunNotes m_own1, m_own2;
    const XPath *m_original1;
    const XPath *m_original2;
    // Declared before the working copies: segments drop their locations before the last reference goes.
    std::unique_ptr<vx::LocationOwner> m_owner;
    std::unique_ptr<XPath> m_path1;
    std::unique_ptr<XPath> m_path2;
    /** What the operands keep of their copies' curves; null where that is nothing. */
    vx::StandingCurves *m_standing1 = nullptr;
    vx::StandingCurves *m_standing2 = nullptr;
    QList<vxCurveLocation *> m_locations;
    QList<vxSegment *> m_segments;
};

} // namespace

XPath *XPath::unite(XPath *other)
{
    return computeBoolean(this, other, Unite);
}

XPath *XPath::unite(XPath *other, vxBooleanReport &report)
{
    return computeBoolean(this, other, Unite, report);
}

XPath *XPath::intersect(XPath *other)
{
    return computeBoolean(this, other, Intersect);
}

XPath *XPath::intersect(XPath *other, vxBooleanReport &report)
{
    return computeBoolean(this, other, Intersect, report);
}

XPath *XPath::subtract(XPath *other)
{
    return computeBoolean(this, other, Subtract);
}

XPath *XPath::subtract(XPath *other, vxBooleanReport &report)
{
    return computeBoolean(this, other, Subtract, report);
}

XPath *XPath::exclude(XPath *other)
{
    return computeBoolean(this, other, Exclude);
}

XPath *XPath::exclude(XPath *other, vxBooleanReport &report)
{
    return computeBoolean(this, other, Exclude, report);
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
    if (path1 && path1->children.size() == 1 && !path1->children.first()->isClosed())
        return computeOpenBoolean(path1, path2, op, report);
    if (op < ::Intersect || op > ::Exclude)
        return new XPath;
    RunNotes notes;
    // One object as both operands counts once: nothing is filled twice, and all else gives the object.
    const bool once = path1 == path2 && path1;
    QVector<vxPath *> contours;
    if (isEmpty(path1) || isEmpty(path2)) {
        contours = contoursWithEmpty(path1, path2, op, notes);
    } else if (!once && areClosed(*path1) && areDrawnAlike(*path1, *path2)) {
        // Every outline would be found to run along its like.
        if (op == ::Intersect || op == ::Unite)
            contours = cleanContours(path1, notes);
    } else if (!once && areClosed(*path1) && (op == ::Intersect || op == ::Subtract) &&
               haveNoCommonBox(*path1, *path2)) {
        if (op == ::Subtract)
            contours = cleanContours(path1, notes);
    } else if (!once && areClosed(*path1) && op == ::Subtract && isPageAround(*path2, *path1)) {
        // Nothing is left.
    } else {
        contours = BooleanRun(path1, path2, op, notes).trace();
    }
    if (!once || op != ::Intersect) {
        const QVector<const XPath *> operands =
            once ? QVector<const XPath *>{ path1 } : QVector<const XPath *>{ path1, path2 };
        contours =
            audit(operands, once ? SetOperation::Unite : SetOperation(op), contours, notes, mode, report);
    }
    // What was audited is given as it was: simplifying it, or simplifying it twice, would move its area.
    const bool isSimplified =
        report.verdict == vxBooleanReport::Plain && notes.settled && mode != AuditMode::Never;
    const bool simplify = !isSimplified && (report.verdict == vxBooleanReport::Plain ||
                                            report.verdict == vxBooleanReport::Doubtful);
    return XPath::createResult(contours, simplify, path1, path2);
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
