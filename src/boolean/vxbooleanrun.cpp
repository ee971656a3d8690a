#include "vxbooleanrun_p.h"

#include "vxcleancopy_p.h"
#include "vxcurvelocation.h"
#include "vxdividemode_p.h"
#include "vxmeetingplaces_p.h"
#include "vxoperation_p.h"
#include "vxowncontacts_p.h"
#include "vxsampler_p.h"
#include "vxstandingcurves_p.h"
#include "vxtakencontours_p.h"
#include "vxtolerance.h"
#include "vxtracing_p.h"
#include "xpath.h"

#include <algorithm>
#include <cmath>

namespace vx {

namespace {

bool haveAreas(const XPath &path)
{
    return std::all_of(path.children.begin(), path.children.end(), [](const vxPath *child) {
        return std::fabs(child->getArea(true, false)) > vxTolerance::machineZero;
    });
}

/** Whether closing a contour, as filling does, would draw anything that a search does not look at. */
bool isOpenOutline(const vxPath *contour)
{
    if (contour->isClosed() || contour->isEmpty())
        return false;
    const vxSegment *first = contour->getFirstSegment();
    const vxSegment *last = contour->getLastSegment();
    return first->point != last->point || !first->handleIn.isZero() || !last->handleOut.isZero();
}

bool hasOpenOutline(const XPath &path)
{
    return std::any_of(path.children.begin(), path.children.end(), isOpenOutline);
}

} // namespace

BooleanRun::BooleanRun(XPath *path1, XPath *path2, int op, RunNotes &notes)
    : m_op(op), m_notes(notes), m_filter(notes), m_original1(path1), m_original2(path2)
{
    m_path1.reset(cleanCopy(path1, m_own1));
    if (path2 && path2 != path1)
        m_path2.reset(cleanCopy(path2, m_own2));
    m_notes.add(m_own1);
    m_notes.add(m_own2);
    m_notes.open |= hasOpenOutline(*m_path1) || (m_path2 && hasOpenOutline(*m_path2));
    const bool isReversed = orient();
    m_standing1 = standingCurves(*path1, false);
    m_standing2 = m_path2 ? standingCurves(*path2, isReversed) : nullptr;
}

BooleanRun::~BooleanRun() = default;

QVector<vxPath *> BooleanRun::run(Placement placement)
{
    QVector<vxPath *> whole;
    if (takeWhole(placement, whole))
        return whole;
    divide();
    collect();
    const bool isCountedByEnds = countByEnds();
    if (!isCountedByEnds)
        sample();
    forEachContour([this](vxPath &contour) { clearOverlapFlags(contour); });
    RunNotes ofTracing;
    const QVector<vxPath *> contours = tracePaths(m_segments, m_op, Untouched::Taken, ofTracing);
    m_notes.add(ofTracing);
    if (m_notes.anyDoubt() && !ofTracing.anyDoubt() && isSettled(isCountedByEnds))
        m_notes.settle();
    letGoOfTaken(*m_path1);
    if (m_path2)
        letGoOfTaken(*m_path2);
    return contours;
}

// --- preparing ---

/** Turns the second round where the operation wants that; whether it did. */
bool BooleanRun::orient()
{
    m_notes.counterClockwise = !m_path1->isClockwise();
    const bool opposite = m_op == Subtract || m_op == Exclude;
    if (!m_path2 || (m_path1->isClockwise() != m_path2->isClockwise()) == opposite)
        return false;
    m_path2->reverse();
    return true;
}

void BooleanRun::divide()
{
    const auto accept = [this](vxCurveLocation *location) { return m_filter.accepts(*location); };
    const QList<vxCurveLocation *> crossings = findIntersections(*m_path1, m_path2.get(), accept, m_doubts);
    m_notes.add(m_doubts);
    for (const vxUnfinished &pair : m_doubts.unfinished)
        m_unfinished.push_back({ pair.curve1->_cubic(), pair.curve2->_cubic() });
    m_owner.emplace(crossings);
    if (m_standing1)
        m_standing1->number(*m_path1);
    if (m_standing2)
        m_standing2->number(*m_path2);
    m_locations = m_path1->divideLocations(vxCurveLocation::expand(crossings), DivideAtAll);
    noteChains(m_locations, m_notes);
}

void BooleanRun::collect()
{
    forEachContour([this](vxPath &contour) {
        m_segments += contour._segments();
        contour.addFlags(overlapsOnly | onlyOverlapsInResult);
    });
}

template <typename Visit>
void BooleanRun::forEachContour(Visit &&visit) const
{
    for (const XPath *path : { m_path1.get(), m_path2.get() }) {
        if (!path)
            continue;
        for (vxPath *child : path->children)
            visit(*child);
    }
}

DividedOperand BooleanRun::operand1() const
{
    return { m_original1, m_path1.get(), m_path1->isClockwise() };
}

DividedOperand BooleanRun::operand2() const
{
    return { m_original2, m_path2.get(), m_path2->isClockwise() };
}

// --- where nothing meets ---

/**
 * Takes the working copies that are the result as they stand, where it is plain which: of shapes side by side
 * both, on a page one. False, and nothing taken, where it is not.
 */
bool BooleanRun::takeWhole(Placement placement, QVector<vxPath *> &contours)
{
    if (m_notes.anyDoubt())
        return false;
    const auto positionOf = [placement](Placement inside) {
        return placement == inside ? Position::Inside : Position::Outside;
    };
    const bool isFirst = isBoundary(m_op, false, positionOf(Placement::FirstOnSecond));
    const bool isSecond = isBoundary(m_op, true, positionOf(Placement::SecondOnFirst));
    // On a page where both outlines remain, it would be open how they are joined where they touch.
    if (placement == Placement::Unknown || (isFirst && isSecond && placement != Placement::SideBySide))
        return false;
    // A walk would drop contours without an area, and that leaves doubts.
    if ((isFirst && !haveAreas(*m_path1)) || (isSecond && !haveAreas(*m_path2)))
        return false;
    if (isFirst)
        contours += takeChildren(*m_path1);
    if (isSecond)
        contours += takeChildren(*m_path2);
    // As if they had been walked: the result decides which way round they run.
    for (vxPath *contour : qAsConst(contours))
        contour->removeFlags(~0u);
    return true;
}

// --- counting ---

/** Where neither operand touches itself and no search was cut short. */
bool BooleanRun::countByEnds() const
{
    return m_path2 && !m_own1.anyDoubt() && !m_own2.anyDoubt() && m_unfinished.empty() &&
           vx::countByEnds(operand1(), operand2(), m_op);
}

void BooleanRun::sample()
{
    for (StandingCurves *standing : { m_standing1, m_standing2 }) {
        if (standing)
            standing->numberRest();
    }
    Sampler sampler(m_path1.get(), m_path2.get(), m_op, m_notes, m_standing1, m_standing2);
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

/** Leaves the flags to those contours of which they are true. */
void BooleanRun::clearOverlapFlags(vxPath &contour) const
{
    for (const vxSegment *segment : contour._segments()) {
        if (!contour.isFlags(overlapsOnly | onlyOverlapsInResult))
            return;
        // Most runs met no overlap, and need not look at every place once more.
        if (m_notes.overlap && segment->intersection() && segment->intersection()->overlap)
            continue;
        contour.removeFlags(overlapsOnly);
        if (isInResult(m_op, *segment))
            contour.removeFlags(onlyOverlapsInResult);
    }
}

// --- settling doubts ---

/** Whether the walk is right whatever the run met. What costs most comes last. */
bool BooleanRun::isSettled(bool isCountedByEnds) const
{
    return m_path2 && (isCountedByEnds || findPositions(operand1(), operand2(), m_op)) &&
           walkedTheBoundary() && missedNothing() && isConfirmed(m_original1, *m_path1, m_own1) &&
           isConfirmed(m_original2, *m_path2, m_own2);
}

bool BooleanRun::walkedTheBoundary() const
{
    return !m_filter.touchedOffVertices() && vx::walkedTheBoundary(operand1(), operand2(), m_op, contacts());
}

/** Whether searches that were cut short had found all that there is to find. */
bool BooleanRun::missedNothing() const
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
                       [&](const auto &pair) { return meetOnlyAt(pair.first, pair.second, places); });
}

/** Whether an operand that touches itself was cleaned rightly and is joined as it was. */
bool BooleanRun::isConfirmed(const XPath *original, const XPath &copy, const RunNotes &own) const
{
    return !own.anyDoubt() ||
           (keepsContactsOf(copy, m_op, original == m_original2) && isCleaningConfirmed(*original));
}

/** Places where the operands come so near each other that they touch, or may. */
std::vector<vxContact> BooleanRun::contacts() const
{
    std::vector<vxContact> contacts = m_filter.touches();
    contacts.insert(contacts.end(), m_doubts.nearMisses.begin(), m_doubts.nearMisses.end());
    return contacts;
}

} // namespace vx
