#include "vxmeetingfilter_p.h"

#include "vxcurve.h"
#include "vxcurvelocation.h"
#include "vxrunnotes_p.h"
#include "vxsegment.h"
#include "vxtolerance.h"

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
    if (m_touches.empty())
        m_touches.reserve(16);
    const vxCurveLocation *other = location.intersection;
    const vxSegment *vertex = vertexAt(location);
    const vxSegment *otherVertex = other ? vertexAt(*other) : nullptr;
    if (vertex && other && other->curve)
        m_touches.push_back({ vertex, otherVertex, other->curve->segment1() });
    else if (otherVertex && location.curve)
        m_touches.push_back({ otherVertex, nullptr, location.curve->segment1() });
    else
        m_touchedOffVertices = true;
}

void noteChains(const QList<vxCurveLocation *> &locations, RunNotes &notes)
{
    for (const vxCurveLocation *location : locations) {
        if (location->next || location->previous)
            notes.chained = true;
    }
}

} // namespace vx
