#include "vxcurvelocation.h"

#include "vxbatch_p.h"
#include "vxcubic_p.h"
#include "vxcurve.h"
#include "vxnowhere_p.h"
#include "vxpath.h"
#include "vxsegment.h"

using namespace vxTolerance;

vxCurveLocation::vxCurveLocation(vxCurve *onCurve, double atTime, const vxPoint &atPoint, bool isOverlap,
                                 double atDistance)
    : overlap(isOverlap), distance(atDistance), point(atPoint)
{
    // One place has one name: the end of a curve is the start of the next one where there is one.
    if (onCurve && atTime > timeUpper) {
        if (vxCurve *following = onCurve->getNext()) {
            onCurve = following;
            atTime = 0;
        }
    }
    setCurve(onCurve);
    time = atTime;
    if (point.isNaN() && onCurve)
        point = onCurve->getPointAtTime(atTime);
}

vxCurveLocation::~vxCurveLocation()
{
    if (intersection && intersection->intersection == this)
        intersection->intersection = nullptr;
    if (next)
        next->previous = previous;
    if (previous)
        previous->next = next;
}

void vxCurveLocation::die()
{
    refCount = -2;
    vxDestroy(this, m_inBlock);
}

void vxCurveLocation::setCurve(vxCurve *onCurve)
{
    if (!onCurve)
        return;
    path = onCurve->path();
    version = path ? path->version : 0;
    curve = onCurve;
    segment = nullptr;
    segment1 = onCurve->segment1();
    segment2 = onCurve->segment2();
}

bool vxCurveLocation::setSegment(vxSegment *s)
{
    return s && placeOn(s->getCurve(), s);
}

bool vxCurveLocation::setSegmentPrev(vxSegment *s)
{
    return s && placeOn(s->getCurvePrev(), s);
}

void vxCurveLocation::_setTurn(double sine)
{
    m_turn = sine;
    if (intersection)
        intersection->m_turn = -sine;
}

bool vxCurveLocation::placeOn(vxCurve *onCurve, vxSegment *s)
{
    setCurve(onCurve);
    segment = s;
    time = onCurve && s == onCurve->segment1() ? 0 : 1;
    offset = noOffset;
    point = s->point;
    return time == 1;
}

vxCurve *vxCurveLocation::getCurve()
{
    if (path && path->version != version) {
        curve = nullptr;
        time = noTime;
        offset = noOffset;
    } else if (curve) {
        return curve;
    }
    if (attachThrough(segment) || attachThrough(segment1) ||
        attachThrough(segment2 ? segment2->getPrevious() : nullptr))
        return curve;
    return nullptr;
}

bool vxCurveLocation::attachThrough(vxSegment *candidate)
{
    vxCurve *found = candidate ? candidate->getCurve() : nullptr;
    if (!found)
        return false;
    const double t = found->getTimeOf(point);
    if (t == noTime)
        return false;
    setCurve(found);
    time = t;
    segment = candidate;
    return true;
}

double vxCurveLocation::getTime()
{
    vxCurve *on = getCurve();
    if (on && time == noTime)
        time = on->getTimeOf(point);
    return time;
}

vxPoint vxCurveLocation::getTangent()
{
    const double t = getTime();
    if (!curve || t == noTime)
        return vx::nowhere;
    return curve->getTangentAtTime(t);
}

vxSegment *vxCurveLocation::getSegment()
{
    vxCurve *on = getCurve();
    if (segment)
        return segment;
    const double t = getTime();
    if (!on || t == noTime)
        return nullptr;
    if (t == 0)
        segment = on->segment1();
    else if (t == 1)
        segment = on->segment2();
    else
        segment = on->getPartLength(t, 1) > on->getPartLength(0, t) ? on->segment1() : on->segment2();
    return segment;
}

double vxCurveLocation::getCurveOffset()
{
    vxCurve *on = getCurve();
    const double t = getTime();
    return on && t != noTime ? on->getPartLength(0, t) : 0;
}

double vxCurveLocation::getOffset()
{
    vxCurve *on = getCurve();
    if (offset != noOffset)
        return offset;
    offset = (on ? on->_startOffset() : 0) + getCurveOffset();
    return offset;
}

vxCurve *vxCurveLocation::divide()
{
    vxCurve *on = getCurve();
    if (!on)
        return nullptr;
    vxCurve *second = on->divideAtTime(getTime(), false);
    // Not setSegment(): the second half of a free curve starts at a segment that finds no curve.
    if (second)
        placeOn(second, second->segment1());
    return second;
}

QString vxCurveLocation::toString()
{
    vxCurve *on = getCurve();
    return QStringLiteral("point: ") + point.toString() +
           QStringLiteral(" index: %1 %2").arg(on ? on->index() : -1).arg(refCount) +
           QStringLiteral(" time: %1").arg(getTime()) + QStringLiteral(" distance: %1").arg(distance) +
           QStringLiteral(" segment1: ") + (segment1 ? segment1->toString() : QString()) +
           QStringLiteral(" segment2: ") + (segment2 ? segment2->toString() : QString());
}
