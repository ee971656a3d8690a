#include "vxrunnotes_p.h"

#include "vxcurve.h"
#include "vxcurvelocation.h"
#include "vxsegment.h"
#include "vxtolerance.h"

#include <algorithm>
#include <cmath>

using namespace vxTolerance;

namespace vx {

namespace {

/** Sine of the angle between two outlines below which their crossing is shallow. */
constexpr double shallowSine = 1e-2;

/** Sine of the angle from an outline to the one that it meets; 0 to itself. */
double turnAt(vxCurveLocation &location)
{
    return location.intersection ? location.getTangent().cross(location.intersection->getTangent()) : 0;
}

bool isShallow(double turn)
{
    return !(std::fabs(turn) > shallowSine);
}
static_assert(shallowSine > 2 * angleMargin, "curves that touch are shallow");

bool isNearEnd(const vxCurveLocation &location)
{
    return !(location.time > timeMargin && location.time < timeUpper);
}

/** The end of the curve that a location is near; null where it is near none. */
const vxSegment *vertexAt(const vxCurveLocation &location)
{
    if (!location.curve || !isNearEnd(location))
        return nullptr;
    return location.time < 0.5 ? location.curve->segment1() : location.curve->segment2();
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
    limitReached |= part.limitReached;
    nearMiss |= part.nearMiss;
    counterClockwise |= part.counterClockwise;
}

void RunNotes::add(const SearchDoubts &search)
{
    limitReached |= search.limitReached;
    nearMiss |= !search.nearMisses.empty();
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
    const double turn = turnAt(location);
    if (isShallow(turn))
        return crosses(location);
    // Within two curves isCrossing() asks no more than whether the tangents differ.
    location._setTurn(turn);
    return true;
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
        noteTouch(location);
    else if (isShallow(turnAt(location)))
        m_notes.shallow = true;
    return isCrossing;
}

void MeetingFilter::noteTouch(const vxCurveLocation &location)
{
    m_notes.touch = true;
    const vxSegment *vertex = vertexAt(location);
    if (!vertex && location.intersection)
        vertex = vertexAt(*location.intersection);
    if (vertex)
        m_touched.push_back(vertex);
    else
        m_touchedOffVertices = true;
}

bool MeetingFilter::touchedAtMeetings() const
{
    return !m_touchedOffVertices && areMeetings(m_touched);
}

bool areMeetings(const std::vector<const vxSegment *> &vertices)
{
    return std::all_of(vertices.begin(), vertices.end(),
                       [](const vxSegment *vertex) { return vertex->intersection() != nullptr; });
}

void noteChains(const QList<vxCurveLocation *> &locations, RunNotes &notes)
{
    for (const vxCurveLocation *location : locations) {
        if (location->next || location->previous)
            notes.chained = true;
    }
}

} // namespace vx
