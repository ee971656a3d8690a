#include "vxsegment.h"

#include "vxbatch_p.h"
#include "vxcurve.h"
#include "vxcurvelocation.h"
#include "vxmatrix.h"
#include "vxnowhere_p.h"
#include "vxpath.h"

vxSegment &vxSegment::operator=(const vxSegment &other)
{
    point = other.point;
    handleIn = other.handleIn;
    handleOut = other.handleOut;
    return *this;
}

vxSegment *vxSegment::clone() const
{
    return new vxSegment(*this);
}

void vxSegment::die()
{
    refCount = 0xFFFFFFFE;
    vxDestroy(this, m_inBlock);
}

void vxSegment::clearHandles()
{
    handleIn = vxPoint();
    handleOut = vxPoint();
}

void vxSegment::setIntersection(vxCurveLocation *location)
{
    if (location)
        location->addRef();
    if (m_intersection)
        m_intersection->release();
    m_intersection = location;
}

vxSegment *vxSegment::getNext() const
{
    if (!path || path->isEmpty())
        return nullptr;
    const QList<vxSegment *> &segments = path->_segments();
    if (index >= -1 && index < segments.size() - 1)
        return segments.at(index + 1);
    return path->isClosed() ? segments.first() : nullptr;
}

vxSegment *vxSegment::getPrevious() const
{
    if (!path || path->isEmpty())
        return nullptr;
    const QList<vxSegment *> &segments = path->_segments();
    if (index > 0 && index <= segments.size())
        return segments.at(index - 1);
    return path->isClosed() ? segments.last() : nullptr;
}

bool vxSegment::isFirst() const
{
    return path && index == 0;
}

bool vxSegment::isLast() const
{
    return path && index == path->_segments().size() - 1;
}

bool vxSegment::remove()
{
    return path && path->removeSegment(index);
}

vxCurve *vxSegment::getCurve() const
{
    if (!path)
        return nullptr;
    const QList<vxCurve *> &curves = path->_curves();
    // Nothing leaves the end of an open path, where there is one curve fewer than segments.
    const bool isEnd = !path->isClosed() && index > 0 && index == curves.size();
    return curves.value(isEnd ? index - 1 : index, nullptr);
}

vxCurve *vxSegment::getCurvePrev() const
{
    if (!path)
        return nullptr;
    const QList<vxCurve *> &curves = path->_curves();
    if (path->isClosed())
        return curves.value(index == 0 ? curves.size() - 1 : index, nullptr);
    return curves.value(index > 0 ? index - 1 : index, nullptr);
}

vxCurveLocation *vxSegment::getLocation() const
{
    vxCurve *curve = getCurve();
    if (!curve)
        return nullptr;
    return new vxCurveLocation(curve, curve->segment1() == this ? 0 : 1, vx::nowhere, false, 0);
}

void vxSegment::reverse()
{
    std::swap(handleIn, handleOut);
}

void vxSegment::interpolate(const vxSegment &from, const vxSegment &to, double factor)
{
    const double u = 1 - factor;
    const auto mix = [u, factor](const vxPoint &a, const vxPoint &b) {
        return a.multiply(u).add(b.multiply(factor));
    };
    point = mix(from.point, to.point);
    handleIn = mix(from.handleIn, to.handleIn);
    handleOut = mix(from.handleOut, to.handleOut);
}

void vxSegment::transform(const vxMatrix *matrix)
{
    if (!matrix)
        return;
    const vxPoint in = matrix->transformPoint(point.add(handleIn));
    const vxPoint out = matrix->transformPoint(point.add(handleOut));
    point = matrix->transformPoint(point);
    handleIn = in.subtract(point);
    handleOut = out.subtract(point);
}

void vxSegment::transformCoordinates(const vxMatrix *matrix, QVector<double> &coords, bool change)
{
    if (coords.size() < 6)
        return;
    const vxPoint in = point.add(handleIn);
    const vxPoint out = point.add(handleOut);
    const double absolute[6] = { point.x, point.y, in.x, in.y, out.x, out.y };
    std::copy(absolute, absolute + 6, coords.begin());
    if (!matrix)
        return;
    matrix->transformCoords(coords, 3);
    if (!change)
        return;
    point = vxPoint(coords.at(0), coords.at(1));
    handleIn = vxPoint(coords.at(2), coords.at(3)).subtract(point);
    handleOut = vxPoint(coords.at(4), coords.at(5)).subtract(point);
}

namespace {

bool isSame(const vxPoint &a, const vxPoint &b)
{
    return a.subtract(b).isZero();
}

} // namespace

bool vxSegment::segsEquals(const QList<vxSegment *> &list1, const QList<vxSegment *> &list2)
{
    if (list1.size() != list2.size())
        return false;
    for (int i = 0; i < list1.size(); ++i) {
        const vxSegment *a = list1.at(i);
        const vxSegment *b = list2.at(i);
        if (!a || !b) {
            if (a != b)
                return false;
        } else if (!isSame(a->point, b->point) || !isSame(a->handleIn, b->handleIn) ||
                   !isSame(a->handleOut, b->handleOut)) {
            return false;
        }
    }
    return true;
}

QString vxSegment::toString() const
{
    QString text = QStringLiteral("point: ") + point.toString();
    if (!handleIn.isZero())
        text += QStringLiteral(", handleIn: ") + handleIn.toString();
    if (!handleOut.isZero())
        text += QStringLiteral(", handleOut: ") + handleOut.toString();
    text += QStringLiteral(", winding: %1").arg(winding);
    text += QStringLiteral(", contour: %1").arg(contour ? 1 : 0);
    text += QStringLiteral(", visited: %1 %2 %3").arg(visited ? 1 : 0).arg(index).arg(refCount);
    return text;
}
