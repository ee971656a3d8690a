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
    chained |= part.chained;
    movedSample |= part.movedSample;
    grazedSample |= part.grazedSample;
    discardedContour |= part.discardedContour;
    search.limitReached |= part.search.limitReached;
    search.nearMiss |= part.search.nearMiss;
    counterClockwise |= part.counterClockwise;
}

bool acceptMeeting(vxCurveLocation *location, RunNotes &notes)
{
    if (isNearEnd(*location) || (location->intersection && isNearEnd(*location->intersection)))
        notes.atVertex = true;
    if (location->overlap) {
        notes.overlap = true;
        return true;
    }
    if (location->isCrossing()) {
        notes.shallow = notes.shallow || isShallow(*location);
        return true;
    }
    notes.touch = true;
    return false;
}

void noteChains(const QList<vxCurveLocation *> &locations, RunNotes &notes)
{
    for (const vxCurveLocation *location : locations) {
        if (location->next || location->previous)
            notes.chained = true;
    }
}

} // namespace vx
