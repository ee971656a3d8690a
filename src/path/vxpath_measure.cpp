#include "vxpath.h"

#include "vxcurvelocation.h"
#include "vxcurvevalues_p.h"
#include "vxmatrix.h"
#include "vxnearestlocation_p.h"
#include "vxnowhere_p.h"

#include <cmath>
#include <limits>

using namespace vxTolerance;
using vx::nowhere;

namespace {

vx::Cubic mapped(const vx::Cubic &c, const vxMatrix &m)
{
    return vx::Cubic::fromPoints(m.transformPoint(c.p0()), m.transformPoint(c.p1()), m.transformPoint(c.p2()),
                                 m.transformPoint(c.p3()));
}

/** The box around an outline's curves, each as map gives it. */
template <typename Map>
vxRect boundsOf(const QList<vxSegment *> &segments, int curves, Map &&map)
{
    if (segments.isEmpty())
        return vxRect();
    vx::Box box = vx::emptyBox;
    for (int i = 0; i < curves; ++i)
        vx::extend(box, vx::bounds(map(vx::curveFrom(segments, i))));
    // A lone segment counts as the curve from itself to itself without handles: its point.
    if (curves == 0)
        vx::extend(box,
                   vx::bounds(map(vx::Cubic::fromLine(segments.first()->point, segments.first()->point))));
    constexpr double undefined = std::numeric_limits<double>::quiet_NaN();
    const bool found = box.minX <= box.maxX && box.minY <= box.maxY;
    return found ? vxRect(box.minX, box.minY, box.maxX - box.minX, box.maxY - box.minY)
                 : vxRect(undefined, undefined, undefined, undefined);
}

} // namespace

// --- area, length, bounds ---

double vxPath::getArea(bool cached, bool closedArgument) const
{
    if (cached && area != 0)
        return area;
    const int count = m_segments.size();
    const int curves = (cached ? closed : closedArgument) ? count : count - 1;
    double sum = 0;
    for (int i = 0; i < curves; ++i)
        sum += vx::signedArea(vx::curveFrom(m_segments, i));
    if (cached)
        area = sum;
    return sum;
}

bool vxPath::isClockwise() const
{
    if (isFlags(madeClockwise | madeCounterClockwise))
        return isFlags(madeClockwise);
    return getArea(true, false) >= 0;
}

double vxPath::getLength() const
{
    if (length == 0) {
        // Left to right: sums of lengths are compared to the bit elsewhere.
        double sum = 0;
        for (const vxCurve *curve : getCurves())
            sum += curve->getLength();
        length = sum;
    }
    return length;
}

vxRect vxPath::getBounds(const vxBoundOpt &, const vxStyle &, const vxMatrix *matrix) const
{
    if (matrix && !matrix->isIdentity())
        return boundsOf(m_segments, _countCurves(),
                        [matrix](const vx::Cubic &c) { return mapped(c, *matrix); });
    if (!m_boundsValid)
        _noticeEdits();
    return _bounds();
}

vxRect vxPath::_bounds() const
{
    if (!m_boundsValid) {
        m_bounds = boundsOf(m_segments, _countCurves(), [](const vx::Cubic &c) { return c; });
        m_boundsValid = true;
    }
    return m_bounds;
}

// --- places by arc length ---

vxCurve *vxPath::getCurveAtOff(double &offset) const
{
    const double wanted = offset < 0 ? offset + getLength() : offset;
    if (!(wanted >= 0))
        return nullptr;
    const QList<vxCurve *> curves = getCurves();
    double sum = 0;
    for (vxCurve *curve : curves) {
        const double start = sum;
        sum += curve->getLength();
        if (sum > wanted) {
            offset = wanted - start;
            return curve;
        }
    }
    if (curves.isEmpty() || !(wanted <= sum))
        return nullptr;
    offset = curves.last()->getLength();
    return curves.last();
}

vxCurve *vxPath::curveAndTimeAt(double offset, double &time) const
{
    vxCurve *curve = getCurveAtOff(offset);
    if (!curve)
        return nullptr;
    // Behind the last curve's length there is only its end, whatever rounding says.
    time = offset < curve->getLength() ? curve->getTimeAt(offset) : 1;
    if (time == noTime)
        time = 1;
    return curve;
}

vxCurveLocation *vxPath::getLocationAt(double offset) const
{
    double time;
    vxCurve *curve = curveAndTimeAt(offset, time);
    return curve ? new vxCurveLocation(curve, time, nowhere, false, 0) : nullptr;
}

vxPoint vxPath::getPointAt(double offset) const
{
    double time;
    const vxCurve *curve = curveAndTimeAt(offset, time);
    return curve ? curve->getPointAtTime(time) : nowhere;
}

vxPoint vxPath::getTangentAt(double offset) const
{
    double time;
    const vxCurve *curve = curveAndTimeAt(offset, time);
    return curve ? curve->getTangentAtTime(time) : nowhere;
}

vxPoint vxPath::getNormalAt(double offset) const
{
    double time;
    const vxCurve *curve = curveAndTimeAt(offset, time);
    return curve ? curve->getNormalAtTime(time) : nowhere;
}

vxPoint vxPath::getWeightedTangentAt(double offset) const
{
    double time;
    const vxCurve *curve = curveAndTimeAt(offset, time);
    return curve ? curve->getWeightedTangentAtTime(time) : nowhere;
}

vxPoint vxPath::getWeightedNormalAt(double offset) const
{
    double time;
    const vxCurve *curve = curveAndTimeAt(offset, time);
    return curve ? curve->getWeightedNormalAtTime(time) : nowhere;
}

double vxPath::getCurvatureAt(double offset) const
{
    double time;
    const vxCurve *curve = curveAndTimeAt(offset, time);
    return curve ? curve->getCurvatureAtTime(time) : 0;
}

// --- places by point ---

vxCurveLocation *vxPath::getNearestLocation(const vxPoint &point) const
{
    return vx::nearestLocation(_curves(), point);
}

vxCurveLocation *vxPath::getLocationOf(const vxPoint &point) const
{
    for (vxCurve *curve : getCurves()) {
        if (vxCurveLocation *location = curve->getLocationOf(point))
            return location;
    }
    return nullptr;
}

double vxPath::getOffsetOf(const vxPoint &point) const
{
    vxCurveLocation *location = getLocationOf(point);
    if (!location)
        return noOffset;
    const double offset = location->getOffset();
    location->release();
    return offset;
}
