#include "vxrunnotes_p.h"

#include "vxcurvelocation.h"
#include "vxtolerance.h"

using namespace vxTolerance;

namespace vx {

namespace {

/** Sine of the angle between two outlines below which their crossing is shallow. */
constexpr double shallowSine = 1e-2;

bool isShallow(vxCurveLocation &location)
{
    const vxPoint mine = location.getTangent();
    const vxPoint theirs = location.intersection ? location.intersection->getTangent() : mine;
    return !(std::fabs(mine.cross(theirs)) > shallowSine);
}
static_assert(shallowSine > 2 * angleMargin, "curves that touch are shallow");

bool isNearEnd(const vxCurveLocation &location)
{
    return !(location.time > timeMargin && location.time < timeUpper);
}

} // namespace

void RunNotes::add(const RunNotes &part)
{
    overlap |= part.overlap;
    touch |= part.touch;
    shallow |= part.shallow;
    atVertex |= part.atVertex;
    selfCrossing |= part.selfCrossing;
    simplified |= part.simplified;
    folded |= part.folded;
    chained |= part.chained;
    movedSample |= part.movedSample;
    grazedSample |= part.grazedSample;
    discardedContour |= part.discardedContour;
    tiltedLevel |= part.tiltedLevel;
    search.limitReached |= part.search.limitReached;
    search.nearMiss |= part.search.nearMiss;
    counterClockwise |= part.counterClockwise;
}

bool MeetingFilter::accepts(vxCurveLocation &location)
{
    const bool atVertex = isNearEnd(location) || (location.intersection && isNearEnd(*location.intersection));
    m_notes.atVertex = m_notes.atVertex || atVertex;
    if (location.overlap) {
        m_notes.overlap = true;
        return true;
    }
    if (!location.intersection)
        return crosses(location);
    if (atVertex)
        return crossesAtVertex(location);
    // Within two curves isCrossing() asks no more than whether the tangents differ.
    return !isShallow(location) || crosses(location);
}

bool MeetingFilter::crossesAtVertex(vxCurveLocation &location)
{
    const vxCurveLocation &partner = *location.intersection;
    const Question question{ location.curve, partner.curve, location.time, partner.time, location.point };
    for (const Answer &answer : m_latest) {
        if (answer.question == question)
            return answer.crosses;
    }
    Answer &answer = m_latest[m_oldest];
    m_oldest = (m_oldest + 1) % m_latest.size();
    answer = { question, crosses(location) };
    return answer.crosses;
}

bool MeetingFilter::crosses(vxCurveLocation &location)
{
    const bool isCrossing = location.isCrossing();
    if (!isCrossing)
        m_notes.touch = true;
    else if (isShallow(location))
        m_notes.shallow = true;
    return isCrossing;
}

void noteChains(const QList<vxCurveLocation *> &locations, RunNotes &notes)
{
    for (const vxCurveLocation *location : locations) {
        if (location->next || location->previous)
            notes.chained = true;
    }
}

} // namespace vx
